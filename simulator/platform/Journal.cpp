#include "simulator/platform/Journal.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"

#include <windows.h>

namespace sim
{

Journal::Journal(std::wstring path, TimeSource const& time) : m_path(std::move(path)), m_time(time)
{
    if (!m_path.empty() && !OpenFile())
    {
        throw Error(L"cannot open " + m_path + L": " + SystemMessage(GetLastError()));
    }
}

void Journal::Listen(std::function<void(Event const&)> listener)
{
    m_listener = std::move(listener);
}

void Journal::Add(std::wstring kind, std::vector<std::wstring> details)
{
    Event const event{Now(), std::move(kind), std::move(details)};
    if (!m_path.empty())
    {
        Write(ToUtf8(event.Line() + L"\r\n"));
    }
    if (m_listener)
    {
        m_listener(event);
    }
}

void Journal::Write(std::string const& line) const
{
    DWORD written = 0;
    if (auto const file = OpenFile())
    {
        WriteFile(file.Get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    }
}

Handle Journal::OpenFile() const
{
    return Handle(CreateFileW(m_path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                              nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

std::vector<Event> ReadJournal(std::wstring const& path)
{
    std::vector<Event> events;
    if (!FileExists(path))
    {
        return events;
    }
    auto const text = ReadText(path);
    std::wstring_view rest = text;
    while (auto const line = TakeLine(rest))
    {
        if (auto event = ParseEvent(*line))
        {
            events.push_back(std::move(*event));
        }
    }
    return events;
}

} // namespace sim
