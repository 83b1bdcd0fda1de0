#include "simulator/scenario/Expectations.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/Words.h"

#include <algorithm>
#include <deque>

namespace sim
{

namespace
{

// How long something expected may take to come: much longer than it should on a busy machine, and above the longest
// wait of the app. Once the app has ended little can follow: a desktop component's end, a new process.
constexpr unsigned limitMilliseconds = 90'000;
constexpr unsigned limitAfterEndMilliseconds = 5'000;

std::wstring Joined(std::vector<std::wstring> const& words)
{
    std::wstring text;
    for (auto const& word : words)
    {
        text += (text.empty() ? L"" : L" ") + Quoted(word);
    }
    return text;
}

bool HasDetails(Event const& event, std::vector<std::wstring> const& details, std::size_t from)
{
    return std::all_of(details.begin() + static_cast<std::ptrdiff_t>(from), details.end(), [&](auto const& detail) {
        return std::find(event.details.begin(), event.details.end(), detail) != event.details.end();
    });
}

// The value of an option NAME=VALUE among the words.
std::wstring Option(std::vector<std::wstring> const& words, std::wstring const& name, std::wstring const& otherwise)
{
    for (auto const& word : words)
    {
        if (StartsWith(word, name + L"="))
        {
            return word.substr(name.size() + 1);
        }
    }
    return otherwise;
}

struct Range
{
    Moment from = 0;
    Moment to = 0;
};

// "after 3000..6000 ms" from the word at `at`; nothing when the words end there.
std::optional<Range> ParseRange(std::vector<std::wstring> const& words, std::size_t at)
{
    if (words.size() <= at)
    {
        return std::nullopt;
    }
    auto const dots = words.size() == at + 3 ? words[at + 1].find(L"..") : std::wstring::npos;
    auto const from = dots == std::wstring::npos ? std::nullopt : ParseNumber(words[at + 1].substr(0, dots));
    auto const to = dots == std::wstring::npos ? std::nullopt : ParseNumber(words[at + 1].substr(dots + 2));
    if (words[at] != L"after" || !from || !to || words[at + 2] != L"ms")
    {
        throw Error(L"a time is written so: after 3000..6000 ms");
    }
    return Range{*from, *to};
}

struct ExpectedLine
{
    std::wstring message;
    std::wstring level;
    std::wstring category; // empty: any
};

using Lines = std::deque<ExpectedLine>;

// Messages, each with the options that stand before it: those of each thread, which a | parts from the next one's.
std::vector<Lines> ParseThreads(std::vector<std::wstring> const& words)
{
    std::vector<Lines> threads(1);
    std::wstring level = L"INFO";
    std::wstring category;
    for (auto const& word : words)
    {
        if (StartsWith(word, L"level="))
        {
            level = word.substr(word.find(L'=') + 1);
        }
        else if (StartsWith(word, L"category="))
        {
            category = word.substr(word.find(L'=') + 1);
        }
        else if (word == L"|")
        {
            threads.emplace_back();
        }
        else
        {
            threads.back().push_back({word, level, category});
        }
    }
    return threads;
}

bool IsLine(std::wstring const& text, ExpectedLine const& expected)
{
    auto const line = ParseLogLine(text);
    return line && line->message == expected.message && line->level == expected.level &&
           (expected.category.empty() || line->category == expected.category);
}

bool IsCode(std::wstring const& actual, std::wstring const& expected)
{
    return ParseNumber(actual) == ParseNumber(expected);
}

// how: exit, crash or terminated. code: empty for none given.
bool IsEnd(Event const& event, std::wstring const& how, std::wstring const& code)
{
    auto const actual = event.Detail(L"code").value_or(L"");
    if (how == L"terminated")
    {
        return event.kind == L"app-terminated";
    }
    auto const isCode = code.empty() ? !IsCode(actual, L"0") : IsCode(actual, code);
    return event.kind == (how == L"exit" ? L"app-exited" : L"app-crashed") && isCode;
}

std::wstring WhoIs(std::wstring const& helper)
{
    return helper.empty() ? L"the helper" : L"the helper " + helper;
}

} // namespace

HelperWords::HelperWords(std::vector<std::wstring> all) : words(std::move(all))
{
    if (!words.empty() && StartsWith(words.front(), L"@"))
    {
        name = words.front();
        words.erase(words.begin());
    }
}

Expectations::Expectations(Device const& device, Observer& observer) : m_device(device), m_observer(observer) {}

void Expectations::Check(Words const& words)
{
    struct Expectation
    {
        std::wstring_view what;
        std::size_t fewestWords;
        void (Expectations::*check)(Words const& words);
    };

    static constexpr Expectation expectations[] = {
        {L"event", 2, &Expectations::CheckEvent},
        {L"log", 2, &Expectations::CheckLog},
        {L"interleaved", 3, &Expectations::CheckInterleavedLog},
        {L"desktop", 3, &Expectations::CheckDesktop},
        {L"helper", 2, &Expectations::CheckHelper},
        {L"helper-exit", 2, &Expectations::CheckHelperExit},
        {L"exit", 2, &Expectations::CheckEnd},
        {L"crash", 1, &Expectations::CheckEnd},
        {L"terminated", 1, &Expectations::CheckEnd},
    };
    auto const* const found =
        std::ranges::find(expectations, words.empty() ? std::wstring_view() : words.front(), &Expectation::what);
    if (found == std::end(expectations) || words.size() < found->fewestWords)
    {
        throw Error(
            L"expect event KIND …, log MESSAGE …, interleaved log MESSAGE … | MESSAGE …, desktop GROUP COMMANDLINE, "
            L"helper [@NAME] LINE, helper-exit [@NAME] CODE, exit CODE …, crash … or terminated …");
    }
    (this->*found->check)(words);
}

void Expectations::CheckNothingIsLeft()
{
    m_observer.Collect();
    std::wstring left;
    for (auto const* events : {&m_observer.platformEvents, &m_observer.desktopEvents})
    {
        for (auto const& event : *events)
        {
            left += L"\n    " + event.Text();
        }
    }
    for (auto const& [name, lines] : m_observer.helperLines)
    {
        for (auto const& said : lines)
        {
            left += L"\n    " + WhoIs(name) + (said.exitCode ? L" ended" : L": " + said.line);
        }
    }
    for (auto const& line : m_observer.logLines)
    {
        left += L"\n    " + line;
    }
    if (!left.empty())
    {
        throw Difference{L"nothing more", left.substr(1)};
    }
    if (m_appStarted)
    {
        throw Difference{L"the app's process has ended", L"it runs"};
    }
}

std::wstring Expectations::Summary() const
{
    return L"checked: " + std::to_wstring(m_eventCount) + L" events, " + std::to_wstring(m_lineCount) +
           L" log lines, " + std::to_wstring(m_desktopCount) + L" desktop processes, " +
           std::to_wstring(m_helperLineCount) + L" lines of helpers; nothing else happened";
}

void Expectations::CheckEvent(Words const& words)
{
    Words const expected(words.begin() + 1, words.end());
    auto const isDesktop = StartsWith(words[1], L"desktop-");
    auto const event = Take(isDesktop ? m_observer.desktopEvents : m_observer.platformEvents, Joined(expected));
    if (event.kind != words[1] || !HasDetails(event, words, 2))
    {
        throw Difference{Joined(expected), event.Text()};
    }
    if (event.kind == L"app-started")
    {
        m_appStarted = event.time;
    }
}

void Expectations::CheckLog(Words const& words)
{
    // Here options stand behind the message.
    ExpectedLine const expected{words[1], Option(words, L"level", L"INFO"), Option(words, L"category", L"")};
    auto const text = TakeLogLine(L"log line " + expected.level + L": " + expected.message);
    if (!IsLine(text, expected))
    {
        throw Difference{L"log line " + Joined(words), L"log line " + text};
    }
}

void Expectations::CheckInterleavedLog(Words const& words)
{
    auto threads = ParseThreads({words.begin() + 2, words.end()});
    if (words[1] != L"log" || std::ranges::any_of(threads, &Lines::empty))
    {
        throw Error(L"expect interleaved log MESSAGE … | MESSAGE …");
    }
    while (!threads.empty())
    {
        auto const text = TakeLogLine(L"log line: " + threads[0].front().message);
        auto const found =
            std::ranges::find_if(threads, [&](auto const& lines) { return IsLine(text, lines.front()); });
        if (found == threads.end())
        {
            throw Difference{Joined(words), L"log line " + text};
        }
        found->pop_front();
        if (found->empty())
        {
            threads.erase(found);
        }
    }
}

void Expectations::CheckHelper(Words const& words)
{
    HelperWords const helper({words.begin() + 1, words.end()});
    if (helper.words.size() != 1)
    {
        throw Error(L"expect helper [@NAME] LINE");
    }
    auto const& expected = helper.words[0];
    auto const said = TakeFromHelper(helper.name, expected);
    if (said.exitCode || said.line != expected)
    {
        throw Difference{WhoIs(helper.name) + L": " + expected,
                         said.exitCode ? L"it ended with " + std::to_wstring(*said.exitCode) : said.line};
    }
    ++m_helperLineCount;
}

void Expectations::CheckHelperExit(Words const& words)
{
    HelperWords const helper({words.begin() + 1, words.end()});
    auto const code = helper.words.size() == 1 ? ParseNumber(helper.words[0]) : std::nullopt;
    if (!code)
    {
        throw Error(L"expect helper-exit [@NAME] CODE");
    }
    auto const said = TakeFromHelper(helper.name, L"its end");
    if (said.exitCode != *code)
    {
        throw Difference{WhoIs(helper.name) + L" ended with " + helper.words[0],
                         said.exitCode ? std::to_wstring(*said.exitCode) : said.line};
    }
}

void Expectations::CheckDesktop(Words const& words)
{
    if (words.size() != 3)
    {
        throw Error(L"expect desktop GROUP COMMANDLINE");
    }
    auto const started = TakeDesktopEvent(L"desktop-started");
    auto const ended = TakeDesktopEvent(L"desktop-exited");
    auto const id = started.Detail(L"pid").value_or(L"");
    if (started.Detail(L"group") != words[1] || ended.Detail(L"pid") != id || ended.Detail(L"code") != L"0")
    {
        throw Difference{L"the desktop component for " + words[1] + L", ended well",
                         started.Text() + L", " + ended.Text()};
    }
    // What the process itself saw.
    auto const seen = FromUtf8(ReadBytes(m_device.DesktopReportFile(ParseNumber(id).value_or(0))));
    auto const expected = words[2] + L"\r\n" + m_device.DesktopTemporaryFolder() + L"\\\r\n";
    if (seen != expected)
    {
        throw Difference{expected, seen};
    }
    ++m_desktopCount;
}

void Expectations::CheckEnd(Words const& words)
{
    auto const hasCode = words.size() > 1 && ParseNumber(words[1]);
    auto const range = ParseRange(words, hasCode ? 2 : 1);
    auto const event = Take(m_observer.platformEvents, Joined(words));
    if (!IsEnd(event, words[0], hasCode ? words[1] : std::wstring()))
    {
        throw Difference{Joined(words), event.Text()};
    }
    auto const duration = event.time - m_appStarted.value_or(event.time);
    if (range && (duration < range->from || duration > range->to))
    {
        throw Difference{Joined(words), event.Text() + L" after " + std::to_wstring(duration) + L" ms"};
    }
    m_appStarted.reset();
}

Event Expectations::TakeDesktopEvent(std::wstring const& kind)
{
    auto event = Take(m_observer.desktopEvents, kind);
    if (event.kind != kind)
    {
        throw Difference{kind, event.Text()};
    }
    return event;
}

std::wstring Expectations::TakeLogLine(std::wstring const& expected)
{
    auto& lines = m_observer.logLines;
    WaitFor([&] { return !lines.empty(); }, expected);
    auto text = std::move(lines.front());
    lines.pop_front();
    ++m_lineCount;
    return text;
}

Helpers::Said Expectations::TakeFromHelper(std::wstring const& name, std::wstring const& expected)
{
    auto& lines = m_observer.helperLines[name];
    WaitFor([&] { return !lines.empty(); }, WhoIs(name) + L": " + expected);
    auto said = std::move(lines.front());
    lines.pop_front();
    return said;
}

Event Expectations::Take(std::deque<Event>& events, std::wstring const& expected)
{
    WaitFor([&] { return !events.empty(); }, expected);
    auto event = std::move(events.front());
    events.pop_front();
    ++m_eventCount;
    return event;
}

void Expectations::WaitFor(std::function<bool()> const& isThere, std::wstring const& expected)
{
    m_observer.WaitUntil([&] { return isThere() || m_observer.IsAppOver(); }, limitMilliseconds);
    auto const limit = m_observer.IsAppOver() ? limitAfterEndMilliseconds : 0;
    if (!m_observer.WaitUntil(isThere, limit))
    {
        throw Difference{expected, L"nothing came"};
    }
}

} // namespace sim
