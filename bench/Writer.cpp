#include "bench/Writer.h"

#include "simulator/base/Error.h"
#include "simulator/base/Process.h"

#include <algorithm>
#include <chrono>

namespace bench
{

namespace
{

sim::Handle NamedEvent(std::wstring const& name)
{
    return sim::Handle(CreateEventW(nullptr, FALSE, FALSE, name.c_str()));
}

} // namespace

Writer::Writer(std::wstring const& name)
    : m_go(NamedEvent(name + L".go")), m_done(NamedEvent(name + L".done")),
      m_memory(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Work),
                                  (name + L".work").c_str())),
      m_work(static_cast<Work*>(MapViewOfFile(m_memory.Get(), FILE_MAP_WRITE, 0, 0, sizeof(Work))))
{
    if (!m_go || !m_done || m_work == nullptr)
    {
        throw sim::Error(L"a writer's memory cannot be shared");
    }
}

Writer::Writer(sim::WindowsProcessStarter& starter, std::wstring const& name, std::wstring const& arguments)
    : Writer(name)
{
    auto const program = sim::ProgramPath();
    if (starter.Start({program, L"\"" + program + L"\" " + arguments, {}, {}}).error != 0)
    {
        throw sim::Error(L"a writer does not start");
    }
    WaitForSingleObject(m_done.Get(), INFINITE);
}

void Writer::Start(int lines)
{
    m_work->lines = lines;
    SetEvent(m_go.Get());
}

double Writer::SlowestLine() const
{
    return m_work->slowest;
}

void Writer::Serve(std::wstring const& name, std::function<void()> const& writeLine)
{
    using Clock = std::chrono::steady_clock;
    Writer const writer(name);
    for (;;)
    {
        SignalObjectAndWait(writer.m_done.Get(), writer.m_go.Get(), INFINITE, FALSE);
        auto before = Clock::now();
        for (auto left = writer.m_work->lines; left > 0; --left)
        {
            writeLine();
            auto const now = Clock::now();
            std::chrono::duration<double, std::micro> const taken = now - before;
            writer.m_work->slowest = std::max(writer.m_work->slowest, taken.count());
            before = now;
        }
    }
}

} // namespace bench
