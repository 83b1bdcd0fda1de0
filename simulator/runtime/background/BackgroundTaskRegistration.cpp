#include "simulator/runtime/background/BackgroundTaskRegistration.h"

#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Record.h"
#include "simulator/runtime/values/MapView.h"

namespace sim
{

namespace
{

using Background::IBackgroundTaskRegistration;

winrt::guid GuidOf(std::wstring_view id)
{
    return id.empty() ? winrt::guid{} : winrt::guid(id);
}

struct BackgroundTaskRegistration
    : RecordOf<BackgroundTaskRegistration, Background::BackgroundTaskRegistration,
               Interfaces<IBackgroundTaskRegistration, Background::IBackgroundTaskRegistration2,
                          Background::IBackgroundTaskRegistration3>,
               Property<"TaskId", winrt::guid>, Property<"Name", winrt::hstring>>
{
    BackgroundTaskRegistration(std::wstring const& id, std::wstring_view name)
        : RecordOf(GuidOf(id), winrt::hstring(name)), m_id(id)
    {
    }

    // cancelTask: cancels its running instances, too. Does nothing for a task that is not registered.
    void Unregister(bool cancelTask) const
    {
        ThrowIfStruck(L"BackgroundTaskRegistration.Unregister");
        winrt::check_hresult(CurrentHost().Ask(UnregisterTask{m_id, cancelTask}).result);
    }

  private:
    std::wstring const m_id;
};

struct BackgroundTaskRegistrationFactory
    : Implements<BackgroundTaskRegistrationFactory, IActivationFactory, Background::IBackgroundTaskRegistrationStatics>
{
    // As they are now, in the order of their registration.
    Collections::IMapView<winrt::guid, IBackgroundTaskRegistration> AllTasks() const
    {
        constexpr wchar_t call[] = L"BackgroundTaskRegistration.AllTasks";
        if (StruckByNull(call))
        {
            return nullptr;
        }
        auto tasks = std::make_shared<std::vector<std::pair<winrt::guid, IBackgroundTaskRegistration>>>();
        for (auto const& task : CurrentHost().Ask(ListTasks{}).tasks)
        {
            tasks->emplace_back(GuidOf(task.id), MakeRegistration(task.id, task.name));
        }
        return winrt::make<MapView<winrt::guid, IBackgroundTaskRegistration>>(std::move(tasks), call);
    }
};

} // namespace

Background::BackgroundTaskRegistration MakeRegistration(std::wstring const& id, std::wstring_view name)
{
    return winrt::make<BackgroundTaskRegistration>(id, name);
}

IInspectable MakeBackgroundTaskRegistrationFactory()
{
    return winrt::make<BackgroundTaskRegistrationFactory>();
}

} // namespace sim
