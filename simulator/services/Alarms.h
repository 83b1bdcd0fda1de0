#pragma once
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <windows.h>

namespace sim
{

// Functions that run once their time is over, on a thread of the system's pool.
class Alarms
{
  public:
    // 0 is none.
    using Id = std::uint64_t;

    // mutex: the owner's. All members are called with it held; it is held, too, while a function runs, which may set
    // and cancel alarms.
    explicit Alarms(std::mutex& mutex);
    Alarms(Alarms const&) = delete;
    Alarms& operator=(Alarms const&) = delete;

    // Without the mutex held. Nothing runs any more when it returns.
    ~Alarms();

    Id Set(unsigned milliseconds, std::function<void()> function);

    // Nothing for an alarm that has run, or for 0.
    void Cancel(Id id);

  private:
    struct Alarm
    {
        std::uint64_t due;
        std::function<void()> function;
    };

    void Run();
    void Arm();
    std::map<Id, Alarm>::iterator Next();

    static void CALLBACK OnTimer(PTP_CALLBACK_INSTANCE, void* context, PTP_TIMER);

    std::mutex& m_mutex;
    std::map<Id, Alarm> m_alarms;
    Id m_last = 0;
    PTP_TIMER m_timer;
};

} // namespace sim
