#include "explore/log/LogWatch.h"

#include "explore/log/LogFiles.h"
#include "explore/log/Rule.h"
#include "explore/log/Story.h"

#include <algorithm>

namespace explore
{

namespace
{

constexpr std::wstring_view ofCopies = L"c:\\temp\\tessaline\\hov\\kzeb ";

bool IsCopy(std::wstring const& path)
{
    return path.starts_with(ofCopies);
}

std::vector<std::wstring> LinesOf(File const& file)
{
    return ReadLogFile({}, file.content.Bytes()).lines;
}

std::wstring DateOf(std::uint64_t seconds)
{
    return FormattedDate(Clock::LocalAt(seconds), L"yyyy-M-d");
}

std::wstring CopyOf(std::uint64_t seconds)
{
    return std::wstring(ofCopies) + DateOf(seconds) + L" " + FormattedTime(Clock::LocalAt(seconds), L"hh'-'mm'-'ss") +
           L".log";
}

} // namespace

void LogWatch::OnChange(FileChange change, std::wstring const& path, File const& file)
{
    switch (change)
    {
    case FileChange::Begin:
        OnBegin(path, file);
        break;
    case FileChange::Empty:
        OnEmpty(path, file);
        break;
    case FileChange::Delete:
        OnDelete(path, file);
        break;
    case FileChange::Cut:
        m_record.cut.insert(path);
        break;
    }
}

// A copy of the same second is replaced whole.
void LogWatch::OnBegin(std::wstring const& path, File const& file)
{
    m_copy = path;
    m_record.cut.erase(path);
    if (IsOfNow(path))
    {
        m_record.missing.push_back({rule::copyOfSameSecond, LinesOf(file)});
    }
}

// The log is emptied although its copy is cut.
void LogWatch::OnEmpty(std::wstring const& path, File const& file)
{
    if (path != logPath)
    {
        return;
    }
    ++m_record.rotations;
    auto const* const copy = m_record.files.Find(m_copy);
    if (copy != nullptr && m_record.cut.contains(m_copy))
    {
        auto behindCut = LinesOf(file);
        auto const copied = LinesOf(*copy);
        std::erase_if(behindCut, [&](auto const& line) { return std::ranges::find(copied, line) != copied.end(); });
        m_record.missing.push_back({rule::fullAtRotation, std::move(behindCut)});
    }
    m_copy.clear();
}

void LogWatch::OnDelete(std::wstring const& path, File const& file)
{
    if (IsCopy(path) && IsNotKept(path))
    {
        std::ranges::move(LinesOf(file), std::back_inserter(m_record.cleanedUp));
    }
}

// What the copy holds stands in the log as well, which is not yet emptied.
void LogWatch::OnKill()
{
    auto const* const log = m_record.files.Find(logPath);
    auto const* const copy = m_record.files.Find(m_copy);
    if (log != nullptr && copy != nullptr && !copy->isDeletedOnClose)
    {
        auto lines = LinesOf(*log);
        std::erase_if(lines, [copied = LinesOf(*copy)](auto const& line) {
            return std::ranges::find(copied, line) == copied.end();
        });
        m_record.doubled.push_back({rule::endedBeforeEmptying, std::move(lines)});
    }
}

// Of this second, or of one that has passed since the name was chosen.
bool LogWatch::IsOfNow(std::wstring const& path) const
{
    auto const now = m_clock.Seconds();
    return path == CopyOf(now) || path == CopyOf(now - 1) || path == CopyOf(now - 2);
}

// Four copies stay: of the last four days those whose names sort highest.
bool LogWatch::IsNotKept(std::wstring const& path) const
{
    constexpr std::uint64_t day = 86'400;
    auto isRecent = false;
    for (std::uint64_t back = 0; back < 4; ++back)
    {
        isRecent = isRecent || path.starts_with(std::wstring(ofCopies) + DateOf(m_clock.Seconds() - back * day));
    }
    unsigned higher = 0;
    m_record.files.ForEach(
        [&](std::wstring const& other, File const&) { higher += IsCopy(other) && other > path ? 1u : 0u; });
    return !isRecent || higher >= 4;
}

} // namespace explore
