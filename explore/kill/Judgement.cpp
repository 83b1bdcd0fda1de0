#include "explore/kill/Judgement.h"

#include <algorithm>

namespace explore::kill
{

namespace
{

using Count = std::map<std::u16string, int>;

constexpr auto endedBeforeEmptying = "ended-before-emptying";

Count CountOf(std::vector<std::u16string> const& texts)
{
    Count count;
    for (auto const& text : texts)
    {
        ++count[text];
    }
    return count;
}

// The text of an unfinished line that was completed.
std::u16string Completed(std::u16string rest)
{
    if (rest.ends_with(u'\r'))
    {
        rest.pop_back();
    }
    return rest;
}

bool HasAll(LogText const& log, std::vector<std::u16string> const& lines)
{
    return std::ranges::all_of(lines,
                               [&](auto const& line) { return std::ranges::find(log.lines, line) != log.lines.end(); });
}

class Judgement
{
  public:
    explicit Judgement(Facts const& facts) : m_facts(facts) {}

    Verdict Run()
    {
        LookAtWhatIsLeft();
        LookAtEnd();
        LookAtTasks();
        for (auto const& trouble : m_facts.troubles)
        {
            Add(trouble.substr(0, trouble.find(':')), trouble);
        }
        return {Outcome(), std::move(m_flaws)};
    }

  private:
    void Add(std::string kind, std::string what, char const* rule = "")
    {
        m_flaws.push_back({std::move(kind), std::move(what), rule});
    }

    bool IsOld(std::u16string const& line) const { return std::ranges::find(m_facts.old, line) != m_facts.old.end(); }

    // --- what the first process has left
    // ------------------------------------------------------------------------------

    void LookAtWhatIsLeft()
    {
        std::vector<std::u16string> old;
        auto isWholeLog = false;
        auto isWholeCopy = false;
        for (auto const& log : m_facts.left)
        {
            std::ranges::for_each(log.lines, [&](auto const& line) { IsOld(line) ? old.push_back(line) : Take(line); });
            TakeRest(log);
            auto const isWhole = !m_facts.old.empty() && HasAll(log, m_facts.old);
            (log.isCopy ? isWholeCopy : isWholeLog) |= isWhole;
            if (log.isCopy && log.size != 0 && !isWhole)
            {
                Add("part of a copy", log.name + " holds a part of the log");
            }
        }
        m_isCopiedNotEmptied = isWholeCopy && isWholeLog;
        CompareOld(CountOf(old), "left by the first process");
        LookAtThreads();
        LookAtMessages();
    }

    void Take(std::u16string const& line)
    {
        auto const fields = FieldsOf(line);
        m_left.push_back(line);
        if (!fields)
        {
            Add("torn", "the first process has left a torn line: " + Narrow(line));
        }
        else if (!IsHeader(fields->message))
        {
            ++m_threads[fields->thread];
            m_messages.push_back(fields->message);
        }
    }

    // A call that has begun may have written its line, and not its line's end.
    void TakeRest(LogText const& log)
    {
        if (log.rest.empty() && !log.hasHalf)
        {
            return;
        }
        ++m_unfinished;
        if (log.isCopy || log.hasHalf)
        {
            Add("torn", log.name + ", left by the first process, ends within a line: " + Narrow(log.rest));
        }
        Take(Completed(log.rest));
    }

    void CompareOld(Count const& found, std::string const& where)
    {
        for (auto const& line : m_facts.old)
        {
            auto const entry = found.find(line);
            auto const times = entry == found.end() ? 0 : entry->second;
            if (times == 0)
            {
                Add("lost", "'" + Narrow(line) + "' stands nowhere, " + where);
            }
            else if (times > 1)
            {
                Add("doubled", "'" + Narrow(line) + "' stands there " + std::to_string(times) + " times, " + where,
                    m_isCopiedNotEmptied ? endedBeforeEmptying : "");
            }
        }
    }

    // Each thread has written what its calls that have returned wrote, and at most one line more.
    void LookAtThreads()
    {
        for (auto const& [thread, lines] : m_facts.returned)
        {
            m_threads.try_emplace(thread, 0);
        }
        for (auto const& [thread, lines] : m_threads)
        {
            auto const entry = m_facts.returned.find(thread);
            auto const returned = entry == m_facts.returned.end() ? 0 : entry->second;
            auto const text = "thread " + std::to_string(thread) + " has " + std::to_string(lines) + " lines, and " +
                              std::to_string(returned) + " calls have returned";
            if (lines < returned)
            {
                Add("lost", text);
            }
            if (lines > returned + 1)
            {
                Add("doubled", text);
            }
        }
    }

    void LookAtMessages()
    {
        auto allowed = CountOf(m_facts.allowed);
        for (auto const& [message, times] : CountOf(m_messages))
        {
            if (allowed[message] == 0)
            {
                Add("torn", "the app says nothing like '" + Narrow(message) + "'");
            }
            else if (times > allowed[message])
            {
                Add("doubled", "'" + Narrow(message) + "' was left " + std::to_string(times) + " times");
            }
        }
    }

    // --- the end
    // ------------------------------------------------------------------------------------------------------

    void LookAtEnd()
    {
        std::vector<std::u16string> lines;
        auto hasLog = false;
        for (auto const& log : m_facts.end)
        {
            m_copies += log.isCopy ? 1u : 0u;
            hasLog = hasLog || !log.isCopy;
            // A log that was empty when the next process found it is moved to a copy's name.
            if (!log.hasMark && (!log.isCopy || log.size != 0))
            {
                Add("no mark", log.name + " does not begin with its mark");
            }
            if (!log.rest.empty() || log.hasHalf)
            {
                Add("torn", log.name + " ends within a line: " + Narrow(log.rest));
            }
            std::ranges::copy(log.lines, std::back_inserter(lines));
        }
        if (!hasLog)
        {
            Add("no log", "there is no log");
        }
        std::vector<std::u16string> old;
        std::ranges::copy_if(lines, std::back_inserter(old), [&](auto const& line) { return IsOld(line); });
        std::erase_if(lines, [&](auto const& line) { return IsOld(line); });
        CompareOld(CountOf(old), "at the end");
        TakeOut(lines);
        LookAtNext(lines);
    }

    // What the first process has left still stands there.
    void TakeOut(std::vector<std::u16string>& lines)
    {
        for (auto const& line : m_left)
        {
            auto const found = std::ranges::find(lines, line);
            if (found == lines.end())
            {
                Add("lost", "'" + Narrow(line) + "' was there before the next process started, and is not now");
            }
            else
            {
                lines.erase(found);
            }
        }
    }

    // All others are the next one's.
    void LookAtNext(std::vector<std::u16string> const& lines)
    {
        Count found;
        auto headers = 0;
        for (auto const& line : lines)
        {
            auto const fields = FieldsOf(line);
            if (!fields)
            {
                Add("torn", "a line is torn: " + Narrow(line));
            }
            else
            {
                IsHeader(fields->message) ? ++headers : ++found[fields->message];
            }
        }
        if (found.empty())
        {
            Add("silent", "the next process has written nothing");
            return;
        }
        Compare(found, CountOf(m_facts.again));
        if ((headers != 0) != m_facts.isLogAtLimit)
        {
            Add("header", "the next process has written " + std::to_string(headers) + " lines of a header");
        }
    }

    void Compare(Count found, Count const& meant)
    {
        for (auto const& [message, times] : meant)
        {
            if (found[message] < times)
            {
                Add("lost", "'" + Narrow(message) + "' of the next process stands nowhere");
            }
        }
        for (auto const& [message, times] : found)
        {
            auto const entry = meant.find(message);
            if (times > (entry == meant.end() ? 0 : entry->second))
            {
                Add(entry == meant.end() ? "torn" : "doubled",
                    "'" + Narrow(message) + "' stands there, and the next process did not write it");
            }
        }
    }

    void LookAtTasks()
    {
        auto tasks = m_facts.tasks;
        auto meant = m_facts.tasksMeant;
        std::ranges::sort(tasks);
        std::ranges::sort(meant);
        if (tasks == meant)
        {
            return;
        }
        std::string names;
        std::ranges::for_each(tasks, [&](auto const& name) { names += " " + name; });
        Add("tasks", "registered at the end:" + (names.empty() ? " none" : names));
    }

    std::string Outcome() const
    {
        auto const part = [](std::size_t number, char const* name) {
            return number != 0 ? ", " + std::to_string(number) + " " + name : std::string();
        };
        return std::to_string(m_messages.size()) + " lines left" + part(m_unfinished, "of them unfinished") +
               part(m_copies, "copies at the end");
    }

    Facts const& m_facts;
    std::vector<Flaw> m_flaws;
    std::vector<std::u16string> m_left; // whole, or completed by the next process
    std::vector<std::u16string> m_messages;
    std::map<std::uint32_t, unsigned> m_threads; // lines of each
    bool m_isCopiedNotEmptied = false;
    unsigned m_unfinished = 0;
    unsigned m_copies = 0;
};

} // namespace

Verdict Judge(Facts const& facts)
{
    return Judgement(facts).Run();
}

} // namespace explore::kill
