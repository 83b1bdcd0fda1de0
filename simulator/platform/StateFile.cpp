#include "simulator/platform/StateFile.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/WordFile.h"
#include "simulator/protocol/Device.h"

#include <windows.h>

namespace sim
{

void StateFile::Read(std::function<void(Words const&)> const& take) const
{
    std::vector<Words> taken;
    auto const damage = ReadWordFile(m_path, [&](Words const& words) {
        take(words);
        taken.push_back(words);
    });
    if (!damage.empty())
    {
        SetAside(damage, taken);
    }
}

void StateFile::Write(std::vector<Words> const& lines) const
{
    WriteWordFile(m_path, lines);
}

bool StateFile::Exists() const
{
    return FileExists(m_path);
}

void StateFile::Remove() const
{
    sim::Remove(m_path);
}

void StateFile::SetAside(std::wstring const& damage, std::vector<Words> const& rest) const
{
    auto const kept = Device::SetAside(m_path);
    std::vector<std::wstring> details = {Detail(L"file", m_path), Detail(L"reason", damage), Detail(L"kept", kept)};
    try
    {
        if (!MoveFileExW(m_path.c_str(), kept.c_str(), MOVEFILE_REPLACE_EXISTING))
        {
            details.back() = Detail(L"not-kept", SystemMessage(GetLastError()));
        }
        else if (!rest.empty())
        {
            Write(rest);
        }
    }
    catch (Error const& error)
    {
        details.push_back(Detail(L"rest-not-kept", error.Message()));
    }
    m_journal->Add(L"state-damaged", std::move(details));
}

std::int64_t NumberIn(std::wstring const& word, std::wstring_view what, std::int64_t largest)
{
    auto const number = ParseNumberUpTo(static_cast<std::uint64_t>(largest), word);
    return number ? static_cast<std::int64_t>(*number)
                  : throw Error(word + L" is no " + std::wstring(what) + L" of at most " + std::to_wstring(largest));
}

} // namespace sim
