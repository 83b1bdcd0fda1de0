#include "simulator/runtime/background/BackgroundTaskRegistration.h"

#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/values/MapView.h"

namespace sim
{

winrt::guid BackgroundTaskRegistration::TaskId() const
{
    return m_id.empty() ? winrt::guid{} : winrt::guid(std::wstring_view(m_id));
}

winrt::hstring BackgroundTaskRegistration::Name() const
{
    ThrowIfStruck(L"BackgroundTaskRegistration.Name");
    return m_name;
}

void BackgroundTaskRegistration::Unregister(bool cancelTask) const
{
    ThrowIfStruck(L"BackgroundTaskRegistration.Unregister");
    winrt::check_hresult(CurrentHost().Ask(UnregisterTask{m_id, cancelTask}).result);
}

Collections::IMapView<winrt::guid, Background::IBackgroundTaskRegistration> BackgroundTaskRegistrationFactory::
    AllTasks() const
{
    using AppModel::Background::IBackgroundTaskRegistration;
    constexpr wchar_t call[] = L"BackgroundTaskRegistration.AllTasks";
    if (StruckByNull(call))
    {
        return nullptr;
    }
    auto tasks = std::make_shared<std::vector<std::pair<winrt::guid, IBackgroundTaskRegistration>>>();
    for (auto const& task : CurrentHost().Ask(ListTasks{}).tasks)
    {
        tasks->emplace_back(winrt::guid(std::wstring_view(task.id)),
                            winrt::make<BackgroundTaskRegistration>(task.id, task.name));
    }
    return winrt::make<MapView<winrt::guid, IBackgroundTaskRegistration>>(std::move(tasks), MapCalls{call});
}

} // namespace sim
