#include "bench/redaction/Texts.h"

namespace bench
{

using zant::Utf16String;
using zant::Utf16View;
using zant::operator""_utf16;

namespace
{

Utf16String Repeated(Utf16View text, std::size_t length)
{
    Utf16String repeated;
    while (repeated.size() < length)
    {
        repeated += text;
    }
    repeated.resize(length);
    return repeated;
}

} // namespace

Utf16String English(std::size_t length)
{
    return Repeated(
        "The background task was woken by the platform on Tuesday, 3 January, eleven minutes later than its "
        "timer had asked for. It took the deferral, started the desktop component and waited until that "
        "was ready. No key of the settings had changed since the day before, every reply was given in "
        "time, and nobody had to be asked to try again; the connection was closed by the helper, as "
        "always. Just one of the two registrations was found where they used to be (the other one had "
        "been removed by hand), so both were made anew. "_utf16,
        length);
}

Utf16String Markup(std::size_t length)
{
    return Repeated("<item id=\"7\"><name>x</name><path>/a/b</path><url>c</url><port>80</port><p>text</p><br/>"
                    "<update><userid>4</userid><b>9</b></update></item>\n"_utf16,
                    length);
}

Utf16String WithSecrets(Utf16String text)
{
    constexpr Utf16View secrets[] = {
        "<ProxyUsername>name</ProxyUsername>"_utf16,
        "<proxy-user>n</proxy-user>"_utf16,
        "<ProxyUser>somebody</ProxyUser>"_utf16,
        "<User>else</User>"_utf16,
        "<UserName>nobody</UserName>"_utf16,
        "<proxy-password>abc</proxy-password>"_utf16,
        "<ProxyPassword>a1b2c3d4</ProxyPassword>"_utf16,
        "<PASSWORD>x</PASSWORD>"_utf16,
        "<proxypass>secret</proxypass>"_utf16,
    };
    auto const distance = text.size() / std::size(secrets);
    std::size_t at = 0;
    for (auto const secret : secrets)
    {
        if (at + secret.size() <= text.size())
        {
            text.replace(at, secret.size(), secret);
        }
        at += std::max(distance, secret.size());
    }
    return text;
}

} // namespace bench
