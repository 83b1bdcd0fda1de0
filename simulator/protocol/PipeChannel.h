#pragma once
#include "simulator/base/Handle.h"
#include "simulator/protocol/Frames.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <windows.h>

namespace sim
{

// One connected end of a pipe that carries messages, as bytes, both ways. Messages arrive, in order and one at a time,
// on the process's IoThreads; they leave in the order of Send. It keeps itself alive until the connection ends.
class PipeChannel : public std::enable_shared_from_this<PipeChannel>
{
  public:
    struct Events
    {
        // The message is valid until it returns. Throws Error for an invalid one: the connection ends.
        std::function<void(std::string_view message)> received;

        std::function<void()> closed; // once, after the last message; also after an invalid one
    };

    // pipe: opened for overlapped use, connected. Throws Error.
    static std::shared_ptr<PipeChannel> Open(Handle pipe);

    PipeChannel(PipeChannel const&) = delete;
    PipeChannel& operator=(PipeChannel const&) = delete;
    ~PipeChannel() = default;

    // Starts reading. Called once. Events may be raised before it returns.
    void Start(Events events);

    // Never blocks and never fails: a message to a closed end is lost. One larger than largestMessage makes the other
    // end close the connection.
    void Send(std::string_view message);

    // Returns when everything sent has left this process, or never can: called before the process ends.
    void Flush();

    // Ends the connection; `closed` follows.
    void Close();

  private:
    enum class Kind
    {
        Read,
        Write
    };

    struct Operation;

    explicit PipeChannel(Handle pipe);

    void Read();
    void ReadEnded(DWORD error, std::string_view bytes);
    bool Deliver(std::string_view bytes);
    void Write();
    void WriteEnded(DWORD error);
    void Break();                                     // under m_mutex
    bool Begin(std::unique_ptr<Operation> operation); // under m_mutex

    // Starts a read or a write on one of the IoThreads.
    void Post(Kind kind);

    static void OnPosted(OVERLAPPED* overlapped, DWORD error, DWORD size);
    static void OnEnded(OVERLAPPED* overlapped, DWORD error, DWORD size);

    Handle m_pipe;
    Events m_events;
    FrameReader m_incoming;

    std::mutex m_mutex;
    std::condition_variable m_written;
    std::deque<std::string> m_outgoing; // the first one is being written
    bool m_broken = false;              // nothing more is sent
    bool m_closed = false;              // nothing more is read
};

} // namespace sim
