#include "explore/stress/StressCount.h"

#include "doctor/log/LogLine.h"
#include "explore/stress/StressLine.h"

#include <algorithm>
#include <set>

namespace explore::stress
{

namespace
{

constexpr std::uint64_t markSize = 2;
constexpr std::uint64_t lineEndSize = 4;

bool IsInFlight(Life const& life, std::uint64_t number)
{
    return life.wasKilled && number == life.begun && number > life.acknowledged;
}

std::string Place(LogText const& file, std::uint64_t line)
{
    return file.name + ", line " + std::to_string(line);
}

// The beginning of a line that may be long.
std::string Shown(std::string const& text)
{
    constexpr std::size_t most = 160;
    return text.size() <= most ? text : text.substr(0, most) + "...";
}

bool BeginsWith(LogText const& whole, LogText const& part)
{
    return whole.lines.size() >= part.lines.size() &&
           std::equal(part.lines.begin(), part.lines.end(), whole.lines.begin(),
                      [](TextLine const& left, TextLine const& right) { return left.text == right.text; });
}

class Counting
{
  public:
    explicit Counting(StressRecord const& record) : m_record(record)
    {
        for (auto const& life : record.lives)
        {
            m_found.emplace_back(life.begun < life.first ? 0 : life.begun - life.first + 1);
        }
    }

    StressCount Run()
    {
        for (auto const& file : m_record.files)
        {
            LookAtMark(file);
            if (!IsRepeated(file))
            {
                std::ranges::for_each(file.lines, [&](TextLine const& line) { LookAt(file, line); });
                LookAtSize(file);
            }
        }
        for (std::uint32_t life = 0; life < m_record.lives.size(); ++life)
        {
            LookAtLines(life);
        }
        return std::move(m_count);
    }

  private:
    void LookAtMark(LogText const& file)
    {
        if (file.isCopy && file.size == 0)
        {
            ++m_count.empty;
        }
        else if (!file.isMarked)
        {
            m_count.unmarked.Add(file.name);
        }
    }

    // A process that is killed between the copy and the emptying leaves the lines in both: one copy, which has all that
    // the log then had.
    bool IsRepeated(LogText const& file)
    {
        auto const stays = [&](LogText const& other) {
            return other.lines.size() > file.lines.size() && BeginsWith(other, file);
        };
        if (!file.isCopy || file.lines.empty() || std::ranges::none_of(m_record.files, stays))
        {
            return false;
        }
        for (std::uint32_t number = 0; number < m_record.lives.size(); ++number)
        {
            auto const& life = m_record.lives[number];
            if (life.wasKilled && life.wasChecking && life.logSize == file.size && m_repeating.insert(number).second)
            {
                ++m_count.repeated;
                return true;
            }
        }
        return false;
    }

    void LookAt(LogText const& file, TextLine const& line)
    {
        auto const isLastOfCopy = file.isCopy && &line == &file.lines.back();
        if (line.isDamaged || (!line.isComplete && !isLastOfCopy) || !(TakeWhole(line) || TakeCut(line)))
        {
            m_count.torn.Add(Place(file, line.number) + ": " + Shown(line.text));
            m_isTorn.insert(&file);
        }
    }

    // Whether it is a line as a process wrote it; counts it.
    bool TakeWhole(TextLine const& line)
    {
        auto const parsed = doctor::ParseLogLine(line.text);
        if (!parsed || std::string_view(line.text).substr(dateLength) != BehindDate(parsed->thread, parsed->message))
        {
            return false;
        }
        auto const name = LineNameIn(parsed->message);
        if (!name)
        {
            return line.isComplete && IsHeader(*parsed);
        }
        if (name->life >= m_record.lives.size())
        {
            return false;
        }
        auto const& life = m_record.lives[name->life];
        auto const isBegun = name->number >= life.first && name->number <= life.begun;
        auto const isWhole = line.isComplete || IsInFlight(life, name->number);
        if (!isBegun || !isWhole || parsed->thread != life.thread || parsed->message != MessageOf(*name))
        {
            return false;
        }
        ++m_found[name->life][name->number - life.first];
        return true;
    }

    bool IsHeader(doctor::LogLine const& line) const
    {
        return std::ranges::find(m_record.header, line.message) != m_record.header.end() &&
               std::ranges::find(m_record.lives, line.thread, &Life::thread) != m_record.lives.end();
    }

    // Whether it is the beginning of what a killed process was writing; each has one at most.
    bool TakeCut(TextLine const& line)
    {
        std::string_view const text = line.text;
        for (std::uint32_t number = 0; number < m_record.lives.size(); ++number)
        {
            auto const& life = m_record.lives[number];
            if (IsInFlight(life, life.begun) && !m_cut.contains(number) && IsBeginning(text, {number, life.begun}))
            {
                m_cut.insert(number);
                ++m_count.cut;
                return true;
            }
        }
        return false;
    }

    bool IsBeginning(std::string_view text, LineName name) const
    {
        auto const thread = m_record.lives[name.life].thread;
        auto const behind = text.substr(std::min(text.size(), dateLength));
        auto const begins = [&](std::string const& message) { return BehindDate(thread, message).starts_with(behind); };
        return !text.empty() && IsDateOrBeginning(text.substr(0, dateLength)) &&
               (begins(MessageOf(name)) || std::ranges::any_of(m_record.header, begins));
    }

    // The reader of lines takes ends of lines of several kinds.
    void LookAtSize(LogText const& file)
    {
        auto size = file.size == 0 ? 0 : markSize;
        for (auto const& line : file.lines)
        {
            size += line.text.size() * 2 + (line.isComplete ? lineEndSize : 0);
        }
        if (size != file.size && file.isMarked && !m_isTorn.contains(&file))
        {
            m_count.torn.Add(file.name + " has " + std::to_string(file.size) + " bytes, its lines " +
                             std::to_string(size));
        }
    }

    void LookAtLines(std::uint32_t number)
    {
        auto const& life = m_record.lives[number];
        if (life.isSilent)
        {
            m_count.silent.Add("process " + std::to_string(number) + ", from its line " + std::to_string(life.begun) +
                               " on");
        }
        for (auto line = life.first; line <= life.begun; ++line)
        {
            auto const times = m_found[number][line - life.first];
            auto const isReturned = line <= life.acknowledged;
            auto const what = "line " + std::to_string(line) + " of process " + std::to_string(number);
            m_count.lines += times == 1 && isReturned ? 1 : 0;
            m_count.inFlight += times == 1 && !isReturned ? 1 : 0;
            if (times > 1)
            {
                m_count.doubled.Add(what + " stands there " + std::to_string(times) + " times");
            }
            else if (times == 0 && isReturned)
            {
                m_count.lost.Add(what + " stands nowhere");
            }
        }
    }

    StressRecord const& m_record;
    StressCount m_count;
    std::vector<std::vector<unsigned>> m_found; // of each process, how often each of its lines stands there
    std::set<std::uint32_t> m_cut;              // processes that left the beginning of a line
    std::set<std::uint32_t> m_repeating;        // processes that left a copy of what the log has kept
    std::set<LogText const*> m_isTorn;
};

} // namespace

StressCount CountLines(StressRecord const& record)
{
    return Counting(record).Run();
}

} // namespace explore::stress
