#pragma once
#include "simulator/protocol/Device.h"
#include "simulator/scenario/Observer.h"

#include <optional>
#include <string>
#include <vector>

namespace sim
{

// The words of a step that are for a helper: its name from @NAME in front, empty without; and the rest.
struct HelperWords
{
    explicit HelperWords(std::vector<std::wstring> all);

    std::wstring name;
    std::vector<std::wstring> words;
};

// Something was other than the scenario says: what was expected and what was there.
struct Difference
{
    std::wstring expected;
    std::wstring found;
};

// The expect steps: each takes what it expects from the observer, waiting for it, and throws Difference when something
// else is there or nothing comes.
class Expectations
{
  public:
    Expectations(Device const& device, Observer& observer);

    // words: those after "expect". Throws Error for a step that there is not.
    void Check(std::vector<std::wstring> const& words);

    // At the end: nothing is left, and the app does not run.
    void CheckNothingIsLeft();

    // What was checked, for people.
    std::wstring Summary() const;

  private:
    using Words = std::vector<std::wstring>;

    void CheckEvent(Words const& words);
    void CheckLog(Words const& words);
    void CheckInterleavedLog(Words const& words);
    void CheckHelper(Words const& words);
    void CheckHelperExit(Words const& words);
    void CheckDesktop(Words const& words);
    void CheckEnd(Words const& words);
    std::wstring TakeLogLine(std::wstring const& expected);
    Helpers::Said TakeFromHelper(std::wstring const& name, std::wstring const& expected);
    Event TakeDesktopEvent(std::wstring const& kind);
    Event Take(std::deque<Event>& events, std::wstring const& expected);
    void WaitFor(std::function<bool()> const& isThere, std::wstring const& expected);

    Device const& m_device;
    Observer& m_observer;
    std::optional<Moment> m_appStarted; // while it runs
    unsigned m_eventCount = 0;
    unsigned m_lineCount = 0;
    unsigned m_desktopCount = 0;
    unsigned m_helperLineCount = 0;
};

} // namespace sim
