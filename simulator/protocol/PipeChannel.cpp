#include "simulator/protocol/PipeChannel.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/protocol/IoThreads.h"

namespace sim
{

// A read or a write, pending or in progress. It owns the channel, so that the channel outlives the operation.
struct PipeChannel::Operation : OVERLAPPED
{
    Operation(std::shared_ptr<PipeChannel> owner, Kind its) : OVERLAPPED{}, channel(std::move(owner)), kind(its) {}

    std::shared_ptr<PipeChannel> channel;
    Kind kind;
    std::string buffer;
};

std::shared_ptr<PipeChannel> PipeChannel::Open(Handle pipe)
{
    std::shared_ptr<PipeChannel> channel(new PipeChannel(std::move(pipe)));
    if (!IoThreads::Instance().Serve(channel->m_pipe.Get(), OnEnded))
    {
        throw Error(L"cannot use the connection: " + SystemMessage(GetLastError()));
    }
    return channel;
}

PipeChannel::PipeChannel(Handle pipe) : m_pipe(std::move(pipe)) {}

void PipeChannel::Start(Events events)
{
    m_events = std::move(events);
    Post(Kind::Read);
}

void PipeChannel::Send(std::string_view message)
{
    auto bytes = Framed(message);
    std::lock_guard const lock(m_mutex);
    if (m_broken)
    {
        return;
    }
    m_outgoing.push_back(std::move(bytes));
    if (m_outgoing.size() == 1)
    {
        Post(Kind::Write);
    }
}

void PipeChannel::Flush()
{
    std::unique_lock lock(m_mutex);
    m_written.wait(lock, [&] { return m_outgoing.empty(); });
}

void PipeChannel::Close()
{
    std::lock_guard const lock(m_mutex);
    m_closed = true;
    Break();
    CancelIoEx(m_pipe.Get(), nullptr);
}

void PipeChannel::Read()
{
    constexpr std::size_t blockSize = 16384;
    auto operation = std::make_unique<Operation>(shared_from_this(), Kind::Read);
    operation->buffer.resize(blockSize);
    bool reading = false;
    {
        // Under the lock that guards m_closed: else a read could begin just after Close has found none to cancel.
        std::lock_guard const lock(m_mutex);
        reading = !m_closed && Begin(std::move(operation));
    }
    if (!reading)
    {
        ReadEnded(ERROR_BROKEN_PIPE, {});
    }
}

void PipeChannel::ReadEnded(DWORD error, std::string_view bytes)
{
    if (error == ERROR_SUCCESS && Deliver(bytes))
    {
        Read();
        return;
    }
    {
        std::lock_guard const lock(m_mutex);
        Break();
        m_pipe = Handle(); // notifies the other end and ends a write in progress
    }
    auto const events = std::move(m_events); // releases what they own: nothing follows
    events.closed();
}

// False after an invalid message: what follows it cannot be decoded.
bool PipeChannel::Deliver(std::string_view bytes)
try
{
    m_incoming.Add(bytes);
    while (auto const message = m_incoming.Next())
    {
        m_events.received(*message);
    }
    return true;
}
catch (Error const&)
{
    return false;
}

void PipeChannel::Write()
{
    std::lock_guard const lock(m_mutex);
    if (!m_outgoing.empty())
    {
        auto operation = std::make_unique<Operation>(shared_from_this(), Kind::Write);
        operation->buffer = m_outgoing.front();
        if (!Begin(std::move(operation)))
        {
            Break();
        }
    }
}

void PipeChannel::WriteEnded(DWORD error)
{
    std::unique_lock lock(m_mutex);
    if (error != ERROR_SUCCESS)
    {
        Break(); // what the other end sent before it closed is still read
    }
    if (m_broken)
    {
        return;
    }
    m_outgoing.pop_front();
    if (m_outgoing.empty())
    {
        m_written.notify_all();
        return;
    }
    lock.unlock();
    Write();
}

void PipeChannel::Break()
{
    m_broken = true;
    m_outgoing.clear();
    m_written.notify_all();
}

// On the calling thread, one of the IoThreads.
bool PipeChannel::Begin(std::unique_ptr<Operation> operation)
{
    auto* const data = operation->buffer.data();
    auto const size = static_cast<DWORD>(operation->buffer.size());
    auto const started = operation->kind == Kind::Read ? ReadFile(m_pipe.Get(), data, size, nullptr, operation.get())
                                                       : WriteFile(m_pipe.Get(), data, size, nullptr, operation.get());
    if (!started && GetLastError() != ERROR_IO_PENDING)
    {
        return false;
    }
    static_cast<void>(operation.release()); // OnEnded owns it from here
    return true;
}

void PipeChannel::Post(Kind kind)
{
    auto operation = std::make_unique<Operation>(shared_from_this(), kind);
    IoThreads::Instance().Post(operation.release(), OnPosted);
}

void PipeChannel::OnPosted(OVERLAPPED* overlapped, DWORD, DWORD)
{
    std::unique_ptr<Operation> const operation(static_cast<Operation*>(overlapped));
    auto& channel = *operation->channel;
    operation->kind == Kind::Read ? channel.Read() : channel.Write();
}

void PipeChannel::OnEnded(OVERLAPPED* overlapped, DWORD error, DWORD size)
{
    std::unique_ptr<Operation> const operation(static_cast<Operation*>(overlapped));
    auto& channel = *operation->channel;
    if (operation->kind == Kind::Read)
    {
        channel.ReadEnded(error, std::string_view(operation->buffer).substr(0, size));
    }
    else
    {
        channel.WriteEnded(error);
    }
}

} // namespace sim
