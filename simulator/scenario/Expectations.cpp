#include "simulator/scenario/Expectations.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/Words.h"
#include "simulator/log/LogVerdict.h"

#include <algorithm>
#include <deque>

namespace sim
{

namespace
{

// How long something expected may take to arrive: much longer than a busy machine needs, and longer than any wait
// of the app.
constexpr unsigned limitMilliseconds = 90'000;

bool HasDetails(Event const& event, Words const& details)
{
    return std::ranges::all_of(
        details, [&](auto const& detail) { return std::ranges::find(event.details, detail) != event.details.end(); });
}

struct Range
{
    Moment from = 0;
    Moment to = 0;
};

// "after 3000..6000 ms" from the word at `at`; nullopt when the words end there.
std::optional<Range> ParseRange(Words const& words, std::size_t at)
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
        throw Error(L"expected a time such as: after 3000..6000 ms");
    }
    return Range{*from, *to};
}

using Lines = std::deque<ExpectedLine>;

// The messages of each thread, separated by |. Options apply to the messages after them.
std::vector<Lines> ParseThreads(Words const& words)
{
    std::vector<Lines> threads(1);
    std::wstring level = L"INFO";
    std::wstring category;
    for (auto const& word : words)
    {
        if (word.starts_with(L"level="))
        {
            level = word.substr(word.find(L'=') + 1);
        }
        else if (word.starts_with(L"category="))
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

bool IsLine(std::string const& text, ExpectedLine const& expected)
{
    auto const line = doctor::ParseLogLine(text);
    return line && FromUtf8(line->message) == expected.message && zant::LevelName(line->level) == expected.level &&
           (expected.category.empty() || FromUtf8(line->category) == expected.category);
}

std::wstring Described(std::wstring const& helper)
{
    return helper.empty() ? L"the helper" : L"the helper " + helper;
}

std::wstring const& Only(Words const& words, std::wstring const& usage)
{
    return words.size() == 1 ? words[0] : throw Error(L"usage: " + usage);
}

} // namespace

std::wstring TakeHelperName(Words& words)
{
    std::wstring name;
    if (!words.empty() && words.front().starts_with(L'@'))
    {
        name = words.front();
        words.erase(words.begin());
    }
    return name;
}

std::wstring Difference::Text(std::wstring const& where) const
{
    return L"\n" + where + L" differs\n  expected: " + expected + L"\n  found:    " + found;
}

Expectations::Expectations(Device const& device, Observer& observer) : m_device(device), m_observer(observer) {}

std::span<Expectations::Check const> Expectations::All()
{
    static constexpr Check checks[] = {
        {L"event", L"KIND [NAME=VALUE …]", L"the next event of the device, with these details", L"", 1, anyNumber,
         &Expectations::CheckEvent},
        {L"log", L"MESSAGE [level=LEVEL] [category=CATEGORY]", L"the next line of the app's log, INFO without a level",
         L"", 1, 3, &Expectations::CheckLog},
        {L"interleaved", L"log MESSAGE … | MESSAGE …", L"the next lines of several threads, each one's in order", L"",
         2, anyNumber, &Expectations::CheckInterleavedLog},
        {L"helper", L"[@NAME] LINE", L"the next line that a helper prints", L"", 1, 2, &Expectations::CheckHelper},
        {L"helper-exit", L"[@NAME] CODE", L"a helper has ended, and has printed nothing more", L"", 1, 2,
         &Expectations::CheckHelperExit},
        {L"desktop", L"GROUP COMMANDLINE", L"the desktop component starts, sees this command line and ends well", L"",
         2, 2, &Expectations::CheckDesktop},
        {L"exit", L"CODE [after A..B ms]",
         L"the app's process ends as it announced, A ms or more after its start, within B of its last activation", L"",
         1, 4, &Expectations::CheckExit},
        {L"crash", L"[CODE] [after A..B ms]", L"it ends without an announcement; not with 0 when there is no CODE", L"",
         0, 4, &Expectations::CheckCrash},
        {L"terminated", L"[after A..B ms]", L"the platform ends it", L"", 0, 3, &Expectations::CheckTerminated},
        {L"verdict", L"worked | not-seen | failed STAGE …",
         L"what the doctor finds in the app's log, to which nothing writes any more", L"", 1, anyNumber,
         &Expectations::CheckVerdict},
    };
    return checks;
}

void Expectations::Run(Words const& words)
{
    auto const* const check = FindCommand(All(), words);
    if (!check)
    {
        throw Error(L"there is no such expectation; sim help play lists them");
    }
    (this->*check->run)(check->ArgumentsOf(words));
}

void Expectations::CheckVerdict(Words const& words)
{
    std::wstring expected;
    for (auto const& word : words)
    {
        expected += (expected.empty() ? L"" : L" ") + word;
    }
    auto const report = LogReport(m_device);
    if (auto const found = VerdictText(report); found != expected)
    {
        throw Difference{L"the verdict " + expected, found + L": " + FromUtf8(report.summary)};
    }
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
        for (auto const& output : lines)
        {
            left += L"\n    " + Described(name) + L": " + output.Text();
        }
    }
    for (auto const& line : m_observer.logLines)
    {
        left += L"\n    " + FromUtf8(line);
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
    auto const isDesktop = words[0].starts_with(L"desktop-");
    auto const event = TakeEvent(isDesktop ? m_observer.desktopEvents : m_observer.platformEvents, Joined(words));
    if (event.kind != words[0] || !HasDetails(event, {words.begin() + 1, words.end()}))
    {
        throw Difference{Joined(words), event.Text()};
    }
    if (event.kind == L"app-started")
    {
        m_appStarted = event.time;
    }
    if (event.kind == L"app-started" || event.kind == L"activated" || event.kind == L"fault")
    {
        m_lastActivation = event.time;
    }
}

void Expectations::CheckLog(Words const& words)
{
    // Here the options follow the message.
    auto reordered = words;
    std::ranges::rotate(reordered, reordered.begin() + 1);
    auto threads = ParseThreads(reordered);
    if (threads.size() != 1 || threads[0].size() != 1)
    {
        throw Error(L"usage: expect log MESSAGE [level=LEVEL] [category=CATEGORY]");
    }
    CheckLines(std::move(threads), Joined(words));
}

void Expectations::CheckInterleavedLog(Words const& words)
{
    auto threads = ParseThreads({words.begin() + 1, words.end()});
    if (words[0] != L"log" || std::ranges::any_of(threads, &Lines::empty))
    {
        throw Error(L"usage: expect interleaved log MESSAGE … | MESSAGE …");
    }
    CheckLines(std::move(threads), Joined(words));
}

// The next lines: those of each thread in order, interleaved in any way.
void Expectations::CheckLines(std::vector<Lines> threads, std::wstring const& expected)
{
    while (!threads.empty())
    {
        auto const text = Take(m_observer.logLines, L"log line " + threads[0].front().message);
        auto const found =
            std::ranges::find_if(threads, [&](auto const& lines) { return IsLine(text, lines.front()); });
        if (found == threads.end())
        {
            throw Difference{L"log line " + expected, L"log line " + FromUtf8(text)};
        }
        ++m_lineCount;
        found->pop_front();
        if (found->empty())
        {
            threads.erase(found);
        }
    }
}

void Expectations::CheckHelper(Words const& words)
{
    auto line = words;
    auto const name = TakeHelperName(line);
    auto const& expected = Only(line, L"expect helper [@NAME] LINE");
    auto const output = TakeFromHelper(name, expected);
    if (output.exitCode || output.line != expected)
    {
        throw Difference{Described(name) + L": " + expected, output.Text()};
    }
    ++m_helperLineCount;
}

void Expectations::CheckHelperExit(Words const& words)
{
    auto code = words;
    auto const name = TakeHelperName(code);
    auto const expected = ParseNumber(Only(code, L"expect helper-exit [@NAME] CODE"));
    if (!expected)
    {
        throw Error(code[0] + L" is no exit code");
    }
    auto const output = TakeFromHelper(name, L"its end");
    if (output.exitCode != *expected)
    {
        throw Difference{Described(name) + L": ended with " + code[0], output.Text()};
    }
}

void Expectations::CheckDesktop(Words const& words)
{
    auto const started = TakeDesktopEvent(L"desktop-started");
    auto const ended = TakeDesktopEvent(L"desktop-exited");
    auto const id = started.Detail(L"pid").value_or(L"");
    if (started.Detail(L"group") != words[0] || ended.Detail(L"pid") != id || ended.Detail(L"code") != L"0")
    {
        throw Difference{L"the desktop component for " + words[0] + L", ended well",
                         started.Text() + L", " + ended.Text()};
    }
    // The report of the process itself.
    auto const reported = FromUtf8(ReadBytes(m_device.DesktopReportFile(ParseNumber(id).value_or(0))));
    auto const expected = words[1] + L"\r\n" + m_device.DesktopTemporaryFolder() + L"\\\r\n";
    if (reported != expected)
    {
        throw Difference{expected, reported};
    }
    ++m_desktopCount;
}

void Expectations::CheckEnd(std::wstring const& kind, Words const& words)
{
    auto const code = words.empty() ? std::nullopt : ParseNumber(words[0]);
    auto const range = ParseRange(words, code ? 1 : 0);
    auto const expected = Joined(words);
    auto const event = TakeEvent(m_observer.platformEvents, kind + L" " + expected);
    auto const actual = ParseNumber(event.Detail(L"code").value_or(L""));
    auto const isCode = kind == L"app-terminated" || (code ? actual == code : actual != 0u);
    // The start of a process takes long on a busy machine.
    auto const duration = event.time - m_appStarted.value_or(event.time);
    auto const late = event.time - m_lastActivation;
    if (event.kind != kind || !isCode || (range && (duration < range->from || late > range->to)))
    {
        throw Difference{kind + L" " + expected, event.Text() + L" " + std::to_wstring(duration) +
                                                     L" ms after its start, " + std::to_wstring(late) +
                                                     L" ms after its last activation"};
    }
    m_appStarted.reset();
}

Helpers::Output Expectations::TakeFromHelper(std::wstring const& name, std::wstring const& expected)
{
    return Take(m_observer.helperLines[name], Described(name) + L": " + expected);
}

Event Expectations::TakeDesktopEvent(std::wstring const& kind)
{
    auto event = TakeEvent(m_observer.desktopEvents, kind);
    return event.kind == kind ? event : throw Difference{kind, event.Text()};
}

Event Expectations::TakeEvent(std::deque<Event>& events, std::wstring const& expected)
{
    ++m_eventCount;
    return Take(events, expected);
}

// Waits for the next item.
template <typename Item>
Item Expectations::Take(std::deque<Item>& items, std::wstring const& expected)
{
    if (!m_observer.WaitUntil([&] { return !items.empty(); }, limitMilliseconds))
    {
        throw Difference{expected, L"nothing arrived"};
    }
    auto item = std::move(items.front());
    items.pop_front();
    return item;
}

} // namespace sim
