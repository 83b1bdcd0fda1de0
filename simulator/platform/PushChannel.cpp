#include "simulator/platform/PushChannel.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/WordFile.h"
#include "simulator/protocol/Event.h"

#include <array>
#include <cwchar>
#include <span>
#include <windows.h>

#include <bcrypt.h>

namespace sim
{

namespace
{

constexpr std::int64_t lifetime = 30LL * 24 * 60 * Clock::minute;

std::wstring Base64(std::span<unsigned char const> bytes)
{
    constexpr std::wstring_view digits = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::wstring text;
    for (std::size_t i = 0; i < bytes.size(); i += 3)
    {
        auto const at = [&](std::size_t index) { return index < bytes.size() ? bytes[index] : 0u; };
        auto const group = at(i) << 16 | at(i + 1) << 8 | at(i + 2);
        text += digits[group >> 18];
        text += digits[group >> 12 & 63];
        text += i + 1 < bytes.size() ? digits[group >> 6 & 63] : L'=';
        text += i + 2 < bytes.size() ? digits[group & 63] : L'=';
    }
    return text;
}

// With "+", "/" and "=" in it: what has to be escaped in a URI is there each time.
std::wstring NewToken()
{
    for (;;)
    {
        std::array<unsigned char, 112> bytes;
        if (BCryptGenRandom(nullptr, bytes.data(), bytes.size(), BCRYPT_USE_SYSTEM_PREFERRED_RNG) < 0)
        {
            throw Error(L"the system gives no random numbers");
        }
        auto token = Base64(bytes);
        if (token.find(L'+') != std::wstring::npos && token.find(L'/') != std::wstring::npos)
        {
            return token;
        }
    }
}

std::wstring NewUri()
{
    std::wstring uri = L"https://db5p.notify.windows.com/?token=";
    for (auto const character : NewToken())
    {
        switch (character)
        {
        case L'+':
            uri += L"%2b";
            break;
        case L'/':
            uri += L"%2f";
            break;
        case L'=':
            uri += L"%3d";
            break;
        default:
            uri += character;
        }
    }
    return uri;
}

} // namespace

void PushChannel::Load(std::wstring file)
{
    m_file = std::move(file);
    m_channel.reset();
    auto const lines = ReadWordFile(m_file);
    if (!lines.empty() && lines[0].size() == 2)
    {
        m_channel = Channel{lines[0][0], std::wcstoll(lines[0][1].c_str(), nullptr, 10)};
    }
}

PushChannel::Channel const& PushChannel::Create()
{
    ClockAdvanced(); // the wall clock, too, goes on
    return m_channel ? *m_channel : Open(NewUri());
}

void PushChannel::Replace(std::wstring uri)
{
    Revoke();
    Open(std::move(uri));
}

PushChannel::Channel const& PushChannel::Open(std::wstring uri)
{
    Channel channel{std::move(uri), m_clock.Now() + lifetime};
    WriteWordFile(m_file, {{channel.uri, std::to_wstring(channel.expiry)}});
    m_journal.Add(L"channel-created", {Detail(L"expires", Clock::Text(channel.expiry))});
    return m_channel.emplace(std::move(channel));
}

void PushChannel::Revoke()
{
    if (m_channel)
    {
        Remove();
        m_journal.Add(L"channel-revoked");
    }
}

void PushChannel::ClockAdvanced()
{
    if (m_channel && m_channel->expiry <= m_clock.Now())
    {
        Remove();
        m_journal.Add(L"channel-expired");
    }
}

void PushChannel::Remove()
{
    sim::Remove(m_file);
    m_channel.reset();
}

std::wstring PushChannel::Status() const
{
    return m_channel ? L"open, expires " + Clock::Text(m_channel->expiry) : std::wstring(L"none");
}

} // namespace sim
