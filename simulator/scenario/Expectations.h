#pragma once
#include "simulator/client/Command.h"
#include "simulator/protocol/Device.h"
#include "simulator/scenario/Observer.h"

#include <deque>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace sim
{

// Removes the name of a helper, @NAME, from the front of the words; empty when there is none.
std::wstring TakeHelperName(Words& words);

// Something differs from the scenario: what was expected and what was found.
struct Difference
{
    std::wstring expected;
    std::wstring found;

    // For people. where: the step.
    std::wstring Text(std::wstring const& where) const;
};

// A line of the log, as a step expects it.
struct ExpectedLine
{
    std::wstring message;
    std::wstring level;
    std::wstring category; // empty: any
};

// The expect steps: each waits for what it expects and takes it from the observer. It throws Difference when something
// else arrives, or nothing.
class Expectations
{
  public:
    using Check = Command<void (Expectations::*)(Words const& arguments)>;

    static std::span<Check const> All();

    Expectations(Device const& device, Observer& observer);

    // words: those after "expect". Throws Error for an unknown expectation.
    void Run(Words const& words);

    // At the end: nothing is left and the app does not run.
    void CheckNothingIsLeft();

    // What was checked, for people.
    std::wstring Summary() const;

  private:
    void CheckEvent(Words const& words);
    void CheckLog(Words const& words);
    void CheckInterleavedLog(Words const& words);
    void CheckHelper(Words const& words);
    void CheckHelperExit(Words const& words);
    void CheckDesktop(Words const& words);
    void CheckExit(Words const& words) { CheckEnd(L"app-exited", words); }
    void CheckCrash(Words const& words) { CheckEnd(L"app-crashed", words); }
    void CheckVerdict(Words const& words);
    void CheckTerminated(Words const& words) { CheckEnd(L"app-terminated", words); }
    void CheckEnd(std::wstring const& kind, Words const& words);
    void CheckLines(std::vector<std::deque<ExpectedLine>> threads, std::wstring const& expected);
    Helpers::Output TakeFromHelper(std::wstring const& name, std::wstring const& expected);
    Event TakeDesktopEvent(std::wstring const& kind);
    Event TakeEvent(std::deque<Event>& events, std::wstring const& expected);

    template <typename Item>
    Item Take(std::deque<Item>& items, std::wstring const& expected);

    Device const& m_device;
    Observer& m_observer;
    std::optional<Moment> m_appStarted; // while it runs
    Moment m_lastActivation = 0;        // or start, or fault
    unsigned m_eventCount = 0;
    unsigned m_lineCount = 0;
    unsigned m_desktopCount = 0;
    unsigned m_helperLineCount = 0;
};

} // namespace sim
