#pragma once
#include "simulator/model/Handle.h"
#include "simulator/transport/Peer.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <windows.h>

namespace sim
{

// One connected end of a pipe that carries messages both ways. Messages arrive, in order and one at a time, on a thread
// of its own; they leave in the order of Send. It keeps itself alive while the other end is there.
//
// Both of its threads stay while the pipe is open, and no other thread begins a read or a write: Wine tells the end of
// one to the thread that began it, and when that thread has just ended (as a pool's do after five idle seconds), what
// was read is lost and the operation fails with ERROR_ALERTED.
class PipeChannel : public Peer, public std::enable_shared_from_this<PipeChannel>
{
  public:
    struct Events
    {
        std::function<void(Message)> received;
        std::function<void()> closed; // once, after the last message; also when the other end speaks gibberish
    };

    // pipe: opened for overlapped use, connected.
    static std::shared_ptr<PipeChannel> Open(Handle pipe);

    PipeChannel(PipeChannel const&) = delete;
    PipeChannel& operator=(PipeChannel const&) = delete;
    ~PipeChannel() override = default;

    // Begins to listen and to send. Once. `closed` may come before it returns.
    void Start(Events events);

    void Send(Message const& message) override;

    // Returns when all that was sent has left this process (or cannot leave it any more): before the process ends.
    void Flush();

    // Ends the connection; `closed` follows.
    void Close();

  private:
    class Operation;

    explicit PipeChannel(Handle pipe);

    void ReadAll();
    bool Deliver(std::string_view bytes);
    void WriteAll();
    void EndSending();   // under m_mutex
    void EndTransfers(); // under m_mutex

    Handle m_pipe;
    Events m_events;
    MessageDecoder m_decoder;

    std::mutex m_mutex;
    std::condition_variable m_changed;  // m_outgoing or m_broken
    std::deque<std::string> m_outgoing; // the first one is being written
    bool m_broken = false;              // nothing more is sent
    bool m_closed = false;              // nor read
};

} // namespace sim
