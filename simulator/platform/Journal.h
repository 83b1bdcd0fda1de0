#pragma once
#include "simulator/base/Handle.h"
#include "simulator/base/TypeName.h"
#include "simulator/platform/TimeSource.h"
#include "simulator/protocol/Event.h"

#include <functional>
#include <string>
#include <string_view>

namespace sim
{

// The device's record of events: a UTF-8 text file with a line for each, and a listener. Not thread-safe: its owner
// serialises.
class Journal
{
  public:
    // Appends to the file and creates it if needed; without a path there is no file. time: outlives this. Throws Error
    // when the file cannot be opened.
    Journal(std::wstring path, TimeSource const& time);

    // The time stamp of an event that happens now.
    Moment Now() const { return LocalMoment(m_time.Utc()); }

    // The listener is called for each event after it is written.
    void Listen(std::function<void(Event const&)> listener);

    // A failing write loses the line in the file; the listener still gets the event. The file is not kept open: the
    // device's folder may be removed at any time.
    void Add(std::wstring kind, std::vector<std::wstring> details = {});

    // A process has sent a message that only another one may send. name, value: the object of the message.
    template <typename Message>
    void AddRefusal(std::wstring_view name, std::wstring_view value)
    {
        Add(L"message-refused", {Detail(L"message", TypeName<Message>()), Detail(name, value)});
    }

  private:
    void Write(std::string const& line) const;
    Handle OpenFile() const;

    std::wstring m_path;
    TimeSource const& m_time;
    std::function<void(Event const&)> m_listener;
};

// All events in a journal's file; none when it is missing.
std::vector<Event> ReadJournal(std::wstring const& path);

} // namespace sim
