#include "simulator/runtime/LocalHost.h"

#include "simulator/model/Handle.h"
#include "simulator/model/Words.h"
#include "simulator/runtime/RunOnPool.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/base.h>

#include <roapi.h>

namespace sim
{

namespace
{

std::int32_t __stdcall GetLocalFactory(void* classId, winrt::guid const& id, void** factory) noexcept
{
    UINT32 length = 0;
    auto const* const buffer = WindowsGetStringRawBuffer(static_cast<HSTRING>(classId), &length);
    std::wstring_view const name(buffer, length);
    if (!HasClass(name))
    {
        return RoGetActivationFactory(static_cast<HSTRING>(classId), reinterpret_cast<GUID const&>(id), factory);
    }
    *factory = nullptr;
    winrt::Windows::Foundation::IInspectable object;
    auto const result = GetFactory(name, winrt::put_abi(object));
    return result < 0 ? result : static_cast<std::int32_t>(object.as(id, factory));
}

} // namespace

void LocalHost::Launch::Complete(std::int32_t result) const
{
    Handle const done(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    RunOnPool([&] {
        launched(result);
        SetEvent(done.Get());
    });
    WaitForSingleObject(done.Get(), INFINITE);
}

LocalHost::LocalHost()
{
    SetCurrentHost(this);
    // Factories kept from an earlier test would not meet this one's faults.
    winrt::clear_factory_cache();
    winrt_activation_handler = GetLocalFactory;
}

LocalHost::~LocalHost()
{
    winrt_activation_handler = nullptr;
    winrt::clear_factory_cache();
    SetCurrentHost(nullptr);
}

void LocalHost::SetFault(std::wstring_view words)
{
    auto fault = ParseFault(SplitWords(words));
    std::lock_guard const lock(m_mutex);
    m_faults.Set(std::move(fault));
}

void LocalHost::Activate(ActivationKind kind, std::wstring argument)
{
    m_activations.Add({L"", kind, std::move(argument)});
}

void LocalHost::End()
{
    m_activations.End();
}

LocalHost::Launch LocalHost::WaitForLaunch()
{
    std::unique_lock lock(m_mutex);
    m_launchCame.wait(lock, [&] { return !m_launches.empty(); });
    auto launch = std::move(m_launches.front());
    m_launches.pop_front();
    return launch;
}

std::size_t LocalHost::UnfetchedLaunches() const
{
    std::lock_guard const lock(m_mutex);
    return m_launches.size();
}

bool LocalHost::HasExited() const
{
    std::lock_guard const lock(m_mutex);
    return m_hasExited;
}

std::optional<std::int32_t> LocalHost::Failure() const
{
    std::lock_guard const lock(m_mutex);
    return m_failure;
}

std::vector<Event> LocalHost::Reports() const
{
    std::lock_guard const lock(m_mutex);
    return m_reports;
}

std::optional<Activation> LocalHost::NextActivation()
{
    return m_activations.Next();
}

void LocalHost::Exit()
{
    {
        std::lock_guard const lock(m_mutex);
        m_hasExited = true;
    }
    m_activations.End();
}

void LocalHost::Fail(std::int32_t result)
{
    {
        std::lock_guard const lock(m_mutex);
        m_failure = result;
    }
    m_activations.End();
}

std::optional<Fault> LocalHost::TakeFault(std::wstring_view call)
{
    std::lock_guard const lock(m_mutex);
    return m_faults.Take(call);
}

void LocalHost::LaunchDesktop(std::wstring const& application, std::optional<std::wstring> const& group,
                              Launched launched)
{
    std::lock_guard const lock(m_mutex);
    m_launches.push_back({application, group, std::move(launched)});
    m_launchCame.notify_all();
}

void LocalHost::Report(std::wstring kind, std::vector<std::wstring> details)
{
    std::lock_guard const lock(m_mutex);
    m_reports.push_back({Now(), std::move(kind), std::move(details)});
}

} // namespace sim
