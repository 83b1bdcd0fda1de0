#include "simulator/transport/PipeChannel.h"

#include "simulator/model/Error.h"

#include <optional>
#include <thread>

namespace sim
{

// A read or a write, awaited by the thread that begins it. Used again and again.
class PipeChannel::Operation
{
  public:
    // How many bytes; null when it failed or the channel is closed. Begun under the channel's lock, as else Close could
    // find nothing to cancel just before.
    template <typename Begin>
    std::optional<DWORD> Run(PipeChannel& channel, Begin begin)
    {
        m_overlapped = {};
        m_overlapped.hEvent = m_ended.Get();
        HANDLE pipe = nullptr;
        {
            std::lock_guard const lock(channel.m_mutex);
            pipe = channel.m_pipe.Get();
            if (channel.m_closed || (!begin(&m_overlapped) && GetLastError() != ERROR_IO_PENDING))
            {
                return std::nullopt;
            }
        }
        DWORD size = 0;
        auto const done = GetOverlappedResult(pipe, &m_overlapped, &size, TRUE);
        return done ? std::optional(size) : std::nullopt;
    }

  private:
    Handle m_ended{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    OVERLAPPED m_overlapped{};
};

std::shared_ptr<PipeChannel> PipeChannel::Open(Handle pipe)
{
    return std::shared_ptr<PipeChannel>(new PipeChannel(std::move(pipe)));
}

PipeChannel::PipeChannel(Handle pipe) : m_pipe(std::move(pipe)) {}

void PipeChannel::Start(Events events)
{
    m_events = std::move(events);
    std::thread([channel = shared_from_this()] { channel->WriteAll(); }).detach();
    std::thread([channel = shared_from_this()] { channel->ReadAll(); }).detach();
}

void PipeChannel::Send(Message const& message)
{
    auto bytes = Encode(message);
    std::lock_guard const lock(m_mutex);
    if (!m_broken)
    {
        m_outgoing.push_back(std::move(bytes));
        m_changed.notify_all();
    }
}

void PipeChannel::Flush()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_outgoing.empty(); });
}

void PipeChannel::Close()
{
    std::lock_guard const lock(m_mutex);
    EndTransfers();
}

void PipeChannel::ReadAll()
{
    constexpr DWORD blockSize = 16384;
    std::string block(blockSize, '\0');
    Operation operation;
    auto const read = [&](OVERLAPPED* overlapped) {
        return ReadFile(m_pipe.Get(), block.data(), blockSize, nullptr, overlapped);
    };
    auto size = operation.Run(*this, read);
    while (size && Deliver(std::string_view(block).substr(0, *size)))
    {
        size = operation.Run(*this, read);
    }
    {
        std::lock_guard const lock(m_mutex);
        EndTransfers();
        m_pipe = Handle(); // the other end learns of it
    }
    auto const events = std::move(m_events); // let go of what they hold: nothing follows
    events.closed();
}

// False after gibberish: nothing that follows it can be understood.
bool PipeChannel::Deliver(std::string_view bytes)
try
{
    m_decoder.Add(bytes);
    while (auto message = m_decoder.Next())
    {
        m_events.received(std::move(*message));
    }
    return true;
}
catch (Error const&)
{
    return false;
}

void PipeChannel::WriteAll()
{
    Operation operation;
    std::unique_lock lock(m_mutex);
    for (;;)
    {
        m_changed.wait(lock, [&] { return m_broken || !m_outgoing.empty(); });
        if (m_broken)
        {
            return;
        }
        auto const bytes = m_outgoing.front();
        lock.unlock();
        auto const written = operation.Run(*this, [&](OVERLAPPED* overlapped) {
            return WriteFile(m_pipe.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), nullptr, overlapped);
        });
        lock.lock();
        if (!written)
        {
            EndSending(); // what the other end said before it went is still read
        }
        else if (!m_broken)
        {
            m_outgoing.pop_front();
            m_changed.notify_all();
        }
    }
}

void PipeChannel::EndSending()
{
    m_broken = true;
    m_outgoing.clear();
    m_changed.notify_all();
}

void PipeChannel::EndTransfers()
{
    EndSending();
    m_closed = true;
    CancelIoEx(m_pipe.Get(), nullptr);
}

} // namespace sim
