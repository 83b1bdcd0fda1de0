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

// The device's record of events: a text file in UTF-8, a line for each, and a listener. Not thread-safe: its
// owner serialises.
class Journal
{
  public:
    // Appends to the file, made when missing; without a path there is none. time: outlives this. Throws Error when the
    // file cannot be opened.
    Journal(std::wstring path, TimeSource const& time);

    // The stamp of an event that happens now.
    Moment Now() const { return LocalMoment(m_time.Utc()); }

    // Called for each event, after it has been written.
    void Listen(std::function<void(Event const&)> listener);

    // A line that the disk does not take is lost for the file, not for the listener. The file is not kept open: the
    // device's folder may be removed at any time.
    void Add(std::wstring kind, std::vector<std::wstring> details = {});

    // A process has sent a message that is for another one to send. name, value: of what it is about.
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

// All events of a journal's file; none when it is missing.
std::vector<Event> ReadJournal(std::wstring const& path);

} // namespace sim
