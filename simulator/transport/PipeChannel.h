#pragma once
#include "simulator/model/Handle.h"
#include "simulator/transport/Peer.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <windows.h>

namespace sim
{

// One connected end of a pipe that carries messages both ways. Messages arrive, in order and one at a time, on the
// process's IoThreads; they leave in the order of Send. It keeps itself alive while the other end is there.
class PipeChannel : public Peer, public std::enable_shared_from_this<PipeChannel>
{
  public:
    struct Events
    {
        std::function<void(Message)> received;
        std::function<void()> closed; // once, after the last message; also when the other end speaks gibberish
    };

    // pipe: opened for overlapped use, connected. Throws Error.
    static std::shared_ptr<PipeChannel> Open(Handle pipe);

    PipeChannel(PipeChannel const&) = delete;
    PipeChannel& operator=(PipeChannel const&) = delete;
    ~PipeChannel() override = default;

    // Begins to listen. Once. What it tells may come before it returns.
    void Start(Events events);

    void Send(Message const& message) override;

    // Returns when all that was sent has left this process (or cannot leave it any more): before the process ends.
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

    // Reads or writes on a thread that stays.
    void Post(Kind kind);

    static void OnPosted(OVERLAPPED* overlapped, DWORD error, DWORD size);
    static void OnEnded(OVERLAPPED* overlapped, DWORD error, DWORD size);

    Handle m_pipe;
    Events m_events;
    MessageDecoder m_decoder;

    std::mutex m_mutex;
    std::condition_variable m_written;
    std::deque<std::string> m_outgoing; // the first one is being written
    bool m_broken = false;              // nothing more is sent
    bool m_closed = false;              // nothing more is read
};

} // namespace sim
