#include "simulator/platform/PushChannel.h"

#include "simulator/base/Error.h"
#include "simulator/protocol/Event.h"

#include <algorithm>
#include <array>
#include <span>
#include <windows.h>

#include <bcrypt.h>

namespace sim
{

namespace
{

constexpr wchar_t ended[] = L"ended";
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
    m_file = StateFile(std::move(file), m_journal);
    m_channel.reset();
    m_ended.clear();
    m_file.Read([this](StateFile::Words const& words) {
        if (words.size() != 2)
        {
            throw Error(L"it is neither URI EXPIRY nor URI ended");
        }
        if (words[1] == ended)
        {
            m_ended.push_back(words[0]);
            return;
        }
        m_channel = Channel{words[0], NumberIn(words[1], L"time")};
    });
}

std::optional<PushChannel::Refusal> PushChannel::RefusalOf(std::wstring const& uri) const
{
    if (m_channel && m_channel->uri == uri)
    {
        return std::nullopt;
    }
    return std::ranges::find(m_ended, uri) != m_ended.end()
               ? Refusal{410, L"Gone: the channel has expired or was revoked"}
               : Refusal{404, L"Not Found: no channel has this URI"};
}

PushChannel::Channel const& PushChannel::Create()
{
    ClockAdvanced(); // time has passed without an advance, too
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
    Save(channel);
    m_journal.Add(L"channel-created", {Detail(L"expires", Clock::Text(channel.expiry))});
    return m_channel.emplace(std::move(channel));
}

void PushChannel::Save(std::optional<Channel> const& channel) const
{
    std::vector<StateFile::Words> lines(m_ended.size());
    std::ranges::transform(m_ended, lines.begin(), [](auto const& uri) { return StateFile::Words{uri, ended}; });
    if (channel)
    {
        lines.push_back({channel->uri, std::to_wstring(channel->expiry)});
    }
    m_file.Write(lines);
}

void PushChannel::Revoke()
{
    if (m_channel)
    {
        End(m_channel->uri, L"channel-revoked");
    }
}

void PushChannel::ClockAdvanced()
{
    if (m_channel && m_channel->expiry <= m_clock.Now())
    {
        End(m_channel->uri, L"channel-expired");
    }
}

void PushChannel::End(std::wstring uri, std::wstring event)
{
    m_ended.push_back(std::move(uri));
    m_channel.reset();
    m_journal.Add(std::move(event));
    Save(std::nullopt);
}

std::wstring PushChannel::Status() const
{
    return m_channel ? L"open, expires " + Clock::Text(m_channel->expiry) : std::wstring(L"none");
}

} // namespace sim
