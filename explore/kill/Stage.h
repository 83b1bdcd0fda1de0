#pragma once
#include "explore/kill/LogText.h"
#include "explore/kill/Story.h"
#include "explore/kill/Watch.h"
#include "simulator/client/BrokerClient.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace explore::kill
{

// Once before the first stage. Throws sim::Error.
void InstallSimulator();

// A device of the simulator whose app is watched. One play at a time.
class Stage
{
  public:
    // Throws sim::Error.
    explicit Stage(unsigned number);
    Stage(Stage const&) = delete;
    Stage& operator=(Stage const&) = delete;
    ~Stage();

    Watch const& Watched() const { return m_watch; }

    // Nothing is left of an earlier play, and the log is as the story has it.
    void Prepare(OldLog const& log);

    // Makes the request and returns when it is through, or the app's process has ended before. A trouble as "KIND:
    // what", empty for none.
    std::string Ask(Story const& story);

    // The helper's exit code, of the last request by one.
    std::optional<unsigned long> HelperCode() const { return m_helperCode; }

    // Ends the app's process if it runs. A trouble, or empty.
    std::string EndApp();

    // Whether the app's process runs; the exit code of the last one that has ended.
    bool Runs() const { return m_runs; }
    std::wstring const& ExitCode() const { return m_exitCode; }

    std::vector<LogText> Logs() const;
    sim::DeviceState State();

  private:
    static constexpr DWORD pollMilliseconds = 5; // of the log and the helper

    void TakeEvents(DWORD milliseconds);
    bool IsThrough(Story const& story, sim::Handle const& helper) const;
    void LetTimePass(Story const& story) const;
    sim::Handle StartHelper() const;

    sim::Device m_device;
    Watch m_watch;
    std::unique_ptr<sim::BrokerClient> m_broker;
    std::wstring m_logFolder;
    std::uint64_t m_logBefore = 0; // the log's size when the request was made
    bool m_hasStarted = false;     // the app's process, since the request was made
    bool m_runs = false;
    std::wstring m_exitCode;
    std::optional<unsigned long> m_helperCode = {};
};

} // namespace explore::kill
