#include "simulator/scenario/Recorder.h"

#include "simulator/base/Text.h"
#include "simulator/base/Words.h"

#include <algorithm>

namespace sim
{

namespace
{

// Appends the items of one container to the other. False when there are none.
template <typename From, typename To>
bool MoveAll(From& from, To& to)
{
    auto const has = !from.empty();
    std::ranges::move(from, std::back_inserter(to));
    from.clear();
    return has;
}

bool Varies(std::wstring const& detail)
{
    constexpr std::wstring_view names[] = {L"pid=", L"id=", L"command=", L"expires=", L"to=", L"at=", L"callers="};
    return std::ranges::any_of(names, [&](auto const name) { return detail.starts_with(name); });
}

// The end of the app has its own kinds of step.
Words WordsOf(Event const& event)
{
    auto const code = event.Detail(L"code").value_or(L"");
    if (event.kind == L"app-exited" || event.kind == L"app-crashed")
    {
        return {event.kind == L"app-exited" ? L"exit" : L"crash", code};
    }
    if (event.kind == L"app-terminated")
    {
        return {L"terminated"};
    }
    Words words = {L"event", event.kind};
    std::ranges::remove_copy_if(event.details, std::back_inserter(words), Varies);
    return words;
}

// Text that the app did not write becomes a message, which differs when it is replayed.
doctor::LogLine LineOf(std::string const& text)
{
    return doctor::ParseLogLine(text).value_or(doctor::LogLine{.message = text});
}

Words OptionsOf(doctor::LogLine const& line)
{
    return {L"level=" + std::wstring(zant::LevelName(line.level)), L"category=" + FromUtf8(line.category)};
}

} // namespace

bool Recorder::Take(Observer& observer)
{
    auto has = MoveAll(observer.platformEvents, m_events);
    has |= MoveAll(observer.desktopEvents, m_events);
    for (auto& [name, lines] : observer.helperLines)
    {
        has |= MoveAll(lines, m_helperOutput);
    }
    has |= MoveAll(observer.logLines, m_log);
    return has;
}

void Recorder::AddStep(std::wstring const& step)
{
    m_text += (m_text.empty() ? L"" : L"\n") + step + L"\n";
}

void Recorder::AddTaken(Player::Names const& names)
{
    for (auto const& event : std::exchange(m_events, {}))
    {
        AddExpectation(WordsOf(event), names);
    }
    AddLog(names);
    for (auto const& output : std::exchange(m_helperOutput, {}))
    {
        Words words = {output.exitCode ? L"helper-exit" : L"helper"};
        if (!output.name.empty())
        {
            words.push_back(output.name);
        }
        words.push_back(output.exitCode ? std::to_wstring(*output.exitCode) : output.line);
        AddExpectation(std::move(words), names);
    }
}

// Lines of several threads may be ordered differently in the next run.
void Recorder::AddLog(Player::Names const& names)
{
    auto const texts = std::exchange(m_log, {});
    std::vector<doctor::LogLine> log; // parts of the texts
    std::ranges::transform(texts, std::back_inserter(log), LineOf);
    Words interleaved = {L"interleaved", L"log"};
    std::vector<std::uint32_t> threads;
    for (auto const& first : log)
    {
        if (std::ranges::find(threads, first.thread) != threads.end())
        {
            continue;
        }
        if (!threads.empty())
        {
            interleaved.emplace_back(L"|");
        }
        threads.push_back(first.thread);
        for (auto const& line : log)
        {
            if (line.thread == first.thread)
            {
                std::ranges::move(OptionsOf(line), std::back_inserter(interleaved));
                interleaved.push_back(FromUtf8(line.message));
            }
        }
    }
    if (threads.size() > 1)
    {
        AddExpectation(std::move(interleaved), names);
        return;
    }
    for (auto const& line : log)
    {
        Words words = {L"log", FromUtf8(line.message)};
        std::ranges::move(OptionsOf(line), std::back_inserter(words));
        AddExpectation(std::move(words), names);
    }
}

void Recorder::AddExpectation(Words words, Player::Names const& names)
{
    words.insert(words.begin(), L"expect");
    for (auto& word : words)
    {
        for (auto const& [name, value] : names)
        {
            ReplaceAll(word, value, name);
        }
    }
    m_text += Joined(words) + L"\n";
}

} // namespace sim
