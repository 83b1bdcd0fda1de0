#include "doctor/watches/CopyWatch.h"

#include <algorithm>
#include <string>
#include <type_traits>

namespace doctor
{

std::optional<LogTime> TimeOfCopy(std::filesystem::path const& file)
{
    auto const wide = file.filename();
    std::string name;
    for (auto const each : wide.native())
    {
        auto const unit = static_cast<std::make_unsigned_t<std::filesystem::path::value_type>>(each);
        name.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    }
    for (auto const* form : {"KZEB YYYY-M-D hh-mm-ss.log", "KZEB YYYY-MM-D hh-mm-ss.log", "KZEB YYYY-M-DD hh-mm-ss.log",
                             "KZEB YYYY-MM-DD hh-mm-ss.log"})
    {
        if (auto const time = TimeIn(name, form))
        {
            return time;
        }
    }
    return std::nullopt;
}

void CopyWatch::Begin(std::filesystem::path const& file)
{
    if (m_own)
    {
        m_copied.push_back(*m_own);
    }
    m_own = TimeOfCopy(file);
    m_isFirstLine = true;
}

// A copy is named for the second before the next file's first line.
bool CopyWatch::HasCopyOf(LogTime time) const
{
    constexpr std::chrono::minutes mostApart{1};
    return std::ranges::any_of(m_copied, [&](LogTime copied) { return abs(time - copied) < mostApart; });
}

void CopyWatch::Add(LogPlace const& place, TakeRemark const& take)
{
    using enum Line;
    if (m_isFirstLine)
    {
        auto const isRotated = place.line == HeaderEdge;
        auto const hasCopy = HasCopyOf(place.time);
        auto const last = m_last.value_or(place);
        if (isRotated && m_last)
        {
            take(rotated, last, place);
        }
        if (!isRotated && hasCopy)
        {
            take(setAside, last, place);
        }
        else if (!m_last && place.line != Started)
        {
            take(beginningMissing, place, place);
        }
        else if (isRotated && !hasCopy && !m_copied.empty())
        {
            take(copyMissing, last, place);
        }
    }
    m_isFirstLine = false;
    m_last = place;
}

} // namespace doctor
