#include "explore/log/Verdict.h"

#include "explore/log/LogFiles.h"

#include <algorithm>

namespace explore
{

namespace
{

constexpr std::size_t dateAndTime = 17; // the length of "01/05/24 09:30:12"

// A line of the log without its date and time, which depend on the machine's time zone.
std::wstring BehindDate(std::wstring const& message, std::wstring const& origin = L"ZEB")
{
    return L":000 | [INFO] |  | ZEB | ZEB |  |  | " + origin + L" | " + std::to_wstring(GetCurrentThreadId()) + L" | " +
           message;
}

std::string Narrow(std::wstring_view text)
{
    std::string narrow(text.size(), '?');
    std::ranges::transform(text, narrow.begin(), [](wchar_t character) {
        return character >= L' ' && character <= L'~' ? static_cast<char>(character) : '?';
    });
    return narrow;
}

class Judgement
{
  public:
    explicit Judgement(LogRecord const& record) : m_record(record), m_files(ReadLogFiles(record.files))
    {
        for (auto const& line : record.lines)
        {
            m_expected.push_back({BehindDate(line.message), &line});
        }
    }

    Verdict Run()
    {
        LookAtFiles();
        LookAtLines();
        for (auto const& trouble : m_record.troubles)
        {
            Add(trouble.substr(0, trouble.find(':')), trouble);
        }
        return {Outcome(), std::move(m_flaws)};
    }

  private:
    struct Expected
    {
        std::wstring text;
        LineRecord const* line;
        unsigned found = 0;
    };

    void Add(std::string kind, std::string what, char const* byRule = rule::none)
    {
        m_flaws.push_back({std::move(kind), std::move(what), byRule});
    }

    void LookAtFiles()
    {
        auto hasLog = false;
        for (auto const& file : m_files)
        {
            m_copies += file.IsCopy() ? 1u : 0u;
            m_emptyCopies += file.IsCopy() && file.bytes.empty() ? 1u : 0u;
            hasLog = hasLog || !file.IsCopy();
            if (file.hasMark)
            {
                std::ranges::for_each(file.lines, [&](auto const& line) { LookAt(line); });
                LookAtRest(file);
                LookAtPart(file);
            }
            else if (!file.IsCopy() || !(file.bytes.empty() || file.bytes == otherEncoding))
            {
                LookAtUnmarked(file);
            }
        }
        if (!hasLog)
        {
            Add("no log", "there is no log");
        }
    }

    // A copy is cut at its begin, too, where there is room again for its second block.
    void LookAtUnmarked(LogFile const& file)
    {
        Add("no mark", Narrow(file.path) + " does not begin with its mark",
            file.IsCopy() && m_record.wasFull ? rule::fullAtRotation : rule::none);
    }

    void LookAt(std::wstring const& line)
    {
        if (line == L"old")
        {
            ++m_old;
            return;
        }
        auto const behind = line.size() > dateAndTime ? line.substr(dateAndTime) : std::wstring();
        if (behind == BehindDate(L"header", L""))
        {
            return;
        }
        auto const whole = std::ranges::find(m_expected, behind, &Expected::text);
        if (whole != m_expected.end())
        {
            ++whole->found;
            return;
        }
        ++m_cut;
        Add("torn", "a line is torn: " + Narrow(line), RuleOfCut(line, behind));
    }

    // A line may be cut short where the disk was full, or where it was and its process was killed as well.
    char const* RuleOfCut(std::wstring const& line, std::wstring const& behind) const
    {
        auto const isBeginning =
            IsBeginning(line, [](LineRecord const& meant) { return meant.isWithoutRoom || !meant.isAcknowledged; });
        auto const isOfHeader = BehindDate(L"header", L"").starts_with(behind);
        return m_record.wasFull && (isBeginning || isOfHeader) ? rule::fullAtLine : rule::none;
    }

    void LookAtRest(LogFile const& file)
    {
        if (!file.rest.empty() || file.bytes.size() % 2 != 0)
        {
            Add("torn", Narrow(file.path) + " ends within a line: " + Narrow(file.rest),
                file.IsCopy() ? RuleOfCutCopy(file.rest) : rule::none);
        }
    }

    // The first block of a log at its limit holds no line.
    void LookAtPart(LogFile const& file)
    {
        constexpr std::size_t block = 4096;
        if (file.IsCopy() && file.bytes.size() == block && file.lines.empty() && file.rest.empty())
        {
            Add("part of a copy", Narrow(file.path) + " holds a part of the log",
                m_record.wasFull ? rule::fullAtRotation : rule::none);
        }
    }

    char const* RuleOfCutCopy(std::wstring const& rest) const
    {
        if (m_record.wasFull)
        {
            return rule::fullAtRotation;
        }
        return IsBeginning(rest, [](LineRecord const& line) { return !line.isAcknowledged; }) ? rule::endedWithinLine
                                                                                              : rule::none;
    }

    // Whether a text is the beginning of one of these lines.
    template <typename Predicate>
    bool IsBeginning(std::wstring const& text, Predicate isMeant) const
    {
        auto const behind = text.size() > dateAndTime ? text.substr(dateAndTime) : std::wstring();
        return std::ranges::any_of(m_expected, [&](Expected const& expected) {
            return isMeant(*expected.line) && expected.text.starts_with(behind);
        });
    }

    void LookAtLines()
    {
        LookAtCount("old", m_old, m_old > 0, false);
        for (auto const& [text, line, found] : m_expected)
        {
            LookAtCount(Narrow(line->message), found, !line->isAcknowledged, line->isWithoutRoom);
        }
    }

    void LookAtCount(std::string const& message, unsigned found, bool mayBeMissing, bool isWithoutRoom)
    {
        if (found > 1)
        {
            ++m_doubled;
            Add("doubled", "'" + message + "' stands there " + std::to_string(found) + " times",
                m_record.isCopiedNotEmptied ? rule::endedBeforeEmptying : rule::none);
        }
        if (found == 0 && !mayBeMissing && !(message == "old"))
        {
            ++m_lost;
            Add("lost", "'" + message + "' stands nowhere", RuleOfLoss(isWithoutRoom));
        }
    }

    char const* RuleOfLoss(bool isWithoutRoom) const
    {
        if (isWithoutRoom)
        {
            return rule::fullAtLine;
        }
        return m_record.wasFull && m_copies > 0 ? rule::fullAtRotation : rule::none;
    }

    std::string Outcome() const
    {
        auto const part = [](unsigned number, char const* name) {
            return number != 0 ? ", " + std::to_string(number) + " " + name : std::string();
        };
        auto const found = static_cast<unsigned>(
            std::ranges::count_if(m_expected, [](Expected const& expected) { return expected.found != 0; }));
        return std::to_string(found) + " lines" + part(m_copies, "copies") + part(m_emptyCopies, "of them empty") +
               part(m_cut, "cut") + part(m_doubled, "doubled") + part(m_lost, "lost");
    }

    LogRecord const& m_record;
    std::vector<LogFile> m_files;
    std::vector<Expected> m_expected;
    std::vector<Flaw> m_flaws;
    unsigned m_old = 0;
    unsigned m_copies = 0;
    unsigned m_emptyCopies = 0;
    unsigned m_cut = 0;
    unsigned m_doubled = 0;
    unsigned m_lost = 0;
};

} // namespace

Verdict Judge(LogRecord const& record)
{
    return Judgement(record).Run();
}

} // namespace explore
