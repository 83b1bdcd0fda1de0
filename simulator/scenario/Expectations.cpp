#include "simulator/scenario/Expectations.h"

#include "simulator/model/Error.h"
#include "simulator/model/Files.h"
#include "simulator/model/Text.h"
#include "simulator/model/Words.h"

#include <algorithm>

namespace sim
{

namespace
{

// How long something expected may take to come: much longer than it should on a busy machine, and above the longest
// wait of the app. Once the app has ended little can follow: a desktop component's end, a new process.
constexpr unsigned limitMilliseconds = 60'000;
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

bool IsCode(std::wstring const& actual, std::wstring const& expected)
{
    return ParseNumber(actual) == ParseNumber(expected);
}

} // namespace

Expectations::Expectations(Device const& device, Observer& observer) : m_device(device), m_observer(observer) {}

void Expectations::Check(Words const& words)
{
    auto const& what = words.empty() ? std::wstring() : words.front();
    if (what == L"event" && words.size() >= 2)
    {
        CheckEvent(words);
    }
    else if (what == L"log" && words.size() >= 2)
    {
        CheckLog(words);
    }
    else if (what == L"desktop" && words.size() == 3)
    {
        CheckDesktop(words);
    }
    else if ((what == L"exit" && words.size() >= 2) || what == L"crash")
    {
        CheckEnd(words);
    }
    else
    {
        throw Error(L"expect event KIND …, log MESSAGE …, desktop GROUP COMMANDLINE, exit CODE … or crash …");
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
           L" log lines, " + std::to_wstring(m_desktopCount) + L" desktop processes; nothing else happened";
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
    auto const level = Option(words, L"level", L"INFO");
    auto const expected = level + L": " + words[1];
    auto& lines = m_observer.logLines;
    WaitFor([&] { return !lines.empty(); }, L"log line " + expected);
    auto const text = lines.front();
    lines.pop_front();
    auto const line = ParseLogLine(text);
    if (!line || line->message != words[1] || line->level != level ||
        line->category != Option(words, L"category", line->category))
    {
        throw Difference{L"log line " + Joined(words), L"log line " + text};
    }
    ++m_lineCount;
}

void Expectations::CheckDesktop(Words const& words)
{
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
    auto const isExit = words[0] == L"exit";
    auto const hasCode = words.size() > 1 && ParseNumber(words[1]);
    auto const range = ParseRange(words, hasCode ? 2 : 1);
    auto const event = Take(m_observer.platformEvents, Joined(words));
    auto const code = event.Detail(L"code").value_or(L"");
    if (event.kind != (isExit ? L"app-exited" : L"app-crashed") ||
        (hasCode ? !IsCode(code, words[1]) : IsCode(code, L"0")))
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
