#include "simulator/platform/PushChannel.h"

#include "simulator/base/Error.h"
#include "simulator/protocol/Event.h"

#include <algorithm>
#include <array>
#include <windows.h>

#include <bcrypt.h>

namespace sim
{

namespace
{

constexpr wchar_t ended[] = L"ended";
constexpr std::int64_t lifetime = 30LL * 24 * 60 * Clock::minute;

// With an escaped "+", "/" and "=" in each: clients must keep the escapes.
std::wstring NewUri()
{
    // Those of Base64.
    constexpr std::wstring_view digits = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    constexpr std::wstring_view escapedDigits[] = {L"%2b", L"%2f"};
    for (;;)
    {
        std::array<unsigned char, 150> bytes;
        if (BCryptGenRandom(nullptr, bytes.data(), bytes.size(), BCRYPT_USE_SYSTEM_PREFERRED_RNG) < 0)
        {
            throw Error(L"cannot generate random numbers");
        }
        std::wstring token;
        for (auto const byte : bytes)
        {
            auto const index = byte % 64u;
            token += index < digits.size() ? digits.substr(index, 1) : escapedDigits[index - digits.size()];
        }
        if (std::ranges::all_of(escapedDigits, [&](auto const digit) { return token.find(digit) != token.npos; }))
        {
            return L"https://db5p.notify.windows.com/?token=" + token + L"%3d%3d";
        }
    }
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
