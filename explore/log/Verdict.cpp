#include "explore/log/Verdict.h"

#include "explore/harness/Narrow.h"
#include "explore/log/LineForm.h"
#include "explore/log/LogFiles.h"
#include "explore/log/Story.h"

#include <algorithm>

namespace explore
{

namespace
{

// A line that is to be found once.
struct Expected
{
    LineRecord const* line;
    std::wstring form;
    unsigned found = 0;

    bool Is(std::wstring const& text) const { return (line->isOld ? text : WithoutTime(text)) == form; }
    bool IsIn(std::vector<std::wstring> const& lines) const
    {
        return std::ranges::any_of(lines, [this](auto const& text) { return Is(text); });
    }
};

class Judgement
{
  public:
    explicit Judgement(LogRecord const& record) : m_record(record), m_files(ReadLogFiles(record.files))
    {
        for (auto const& line : record.lines)
        {
            m_expected.push_back({&line, line.isOld ? line.message : FormOf(line.message)});
        }
    }

    Verdict Run()
    {
        LookAtFiles();
        LookAtOtherText();
        LookAtOtherFiles();
        std::ranges::for_each(m_expected, [this](Expected const& expected) { LookAtCount(expected); });
        for (auto const& trouble : m_record.troubles)
        {
            Add(trouble.substr(0, trouble.find(':')), trouble);
        }
        return {Outcome(), std::move(m_flaws)};
    }

  private:
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
            else if (!file.IsCopy() || !(file.bytes.empty() || file.bytes == m_record.otherText))
            {
                LookAtUnmarked(file);
            }
        }
        if (!hasLog)
        {
            Add("no log", "there is no log");
        }
    }

    bool IsCutCopy(LogFile const& file) const { return file.IsCopy() && m_record.cut.contains(file.path); }

    // A copy is cut at its begin, too, where there is room again for its second block.
    void LookAtUnmarked(LogFile const& file)
    {
        Add("no mark", Narrow(file.path) + " does not begin with its mark",
            IsCutCopy(file) ? rule::fullAtRotation : rule::none);
    }

    void LookAt(std::wstring const& line)
    {
        auto const whole =
            std::ranges::find_if(m_expected, [&](Expected const& expected) { return expected.Is(line); });
        if (whole != m_expected.end())
        {
            ++whole->found;
        }
        else if (WithoutTime(line) != FormOfHeader())
        {
            ++m_cut;
            Add("torn", "a line is torn: " + Narrow(line), RuleOfCut(line));
        }
    }

    // A line of which a part did not fit is cut short where its process was killed before it took that back.
    char const* RuleOfCut(std::wstring const& line) const
    {
        auto const isBeginning = IsOfKilled(line) || (IsOfKilled({}) && FormOfHeader().starts_with(WithoutTime(line)));
        return m_record.cut.contains(std::wstring(logPath)) && isBeginning ? rule::fullAtLine : rule::none;
    }

    void LookAtRest(LogFile const& file)
    {
        if (!file.rest.empty() || file.bytes.size() % 2 != 0)
        {
            Add("torn", Narrow(file.path) + " ends within a line: " + Narrow(file.rest), RuleOfRest(file));
        }
    }

    char const* RuleOfRest(LogFile const& file) const
    {
        if (IsCutCopy(file))
        {
            return rule::fullAtRotation;
        }
        return file.IsCopy() && IsOfKilled(file.rest) ? rule::endedWithinLine : rule::none;
    }

    // The first block of a log at its limit holds no line.
    void LookAtPart(LogFile const& file)
    {
        constexpr std::size_t block = 4096;
        if (file.IsCopy() && file.bytes.size() == block && file.lines.empty() && file.rest.empty())
        {
            Add("part of a copy", Narrow(file.path) + " holds a part of the log",
                IsCutCopy(file) ? rule::fullAtRotation : rule::none);
        }
    }

    // Whether a text, which may be empty, is the beginning of a line whose process was killed meanwhile.
    bool IsOfKilled(std::wstring const& text) const
    {
        auto const beginning = WithoutTime(text);
        return std::ranges::any_of(m_expected, [&](Expected const& expected) {
            return !expected.line->isAcknowledged && expected.form.starts_with(beginning);
        });
    }

    void LookAtOtherText()
    {
        auto const isIt = [this](LogFile const& file) { return file.bytes == m_record.otherText; };
        if (!m_record.otherText.empty() && std::ranges::count_if(m_files, isIt) != 1)
        {
            Add("other text", "the text in another encoding does not stand in one file");
        }
    }

    void LookAtOtherFiles()
    {
        for (auto const& [path, bytes] : m_record.otherFiles)
        {
            auto const* const file = m_record.files.Find(path);
            if (file == nullptr || file->content.Bytes() != bytes)
            {
                Add("other file", Narrow(path) + " is not as it was");
            }
        }
    }

    void LookAtCount(Expected const& expected)
    {
        auto const quoted = "'" + Narrow(expected.line->message) + "'";
        if (expected.found > 1)
        {
            ++m_doubled;
            Add("doubled", quoted + " stands there " + std::to_string(expected.found) + " times",
                RuleOf(expected, m_record.doubled));
        }
        if (expected.found == 0 && expected.line->isAcknowledged && !expected.IsIn(m_record.cleanedUp))
        {
            ++m_lost;
            Add("lost", quoted + " stands nowhere",
                expected.line->isWithoutRoom ? rule::fullAtLine : RuleOf(expected, m_record.missing));
        }
    }

    static char const* RuleOf(Expected const& expected, std::vector<Excused> const& excused)
    {
        auto const found =
            std::ranges::find_if(excused, [&](Excused const& some) { return expected.IsIn(some.lines); });
        return found != excused.end() ? found->rule : rule::none;
    }

    std::string Outcome() const
    {
        auto const part = [](unsigned number, char const* name) {
            return number != 0 ? ", " + std::to_string(number) + " " + name : std::string();
        };
        auto const found = static_cast<unsigned>(std::ranges::count_if(
            m_expected, [](Expected const& expected) { return expected.found != 0 && !expected.line->isOld; }));
        return std::to_string(found) + " lines" + part(m_record.rotations, "rotations") + part(m_copies, "copies") +
               part(m_emptyCopies, "of them empty") + part(m_cut, "cut") + part(m_doubled, "doubled") +
               part(m_lost, "lost");
    }

    LogRecord const& m_record;
    std::vector<LogFile> m_files;
    std::vector<Expected> m_expected;
    std::vector<Flaw> m_flaws;
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
