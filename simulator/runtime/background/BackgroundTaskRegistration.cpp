#include "simulator/runtime/background/BackgroundTaskRegistration.h"

#include "simulator/runtime/Answers.h"
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
    AskForResult({L"unregister-task", m_id, cancelTask ? L"1" : L"0"});
}

Collections::IMapView<winrt::guid, Platform::Background::IBackgroundTaskRegistration>
BackgroundTaskRegistrationFactory::AllTasks() const
{
    using Platform::Background::IBackgroundTaskRegistration;
    constexpr wchar_t call[] = L"BackgroundTaskRegistration.AllTasks";
    if (StruckByNull(call))
    {
        return nullptr;
    }
    auto const answer = Answered(CurrentHost().Ask({L"tasks"}));
    auto tasks = std::make_shared<std::vector<std::pair<winrt::guid, IBackgroundTaskRegistration>>>();
    for (std::size_t i = 1; i + 1 < answer.size(); i += 2) // ID NAME
    {
        tasks->emplace_back(winrt::guid(std::wstring_view(answer[i])),
                            winrt::make<BackgroundTaskRegistration>(answer[i], answer[i + 1]));
    }
    return winrt::make<MapView<winrt::guid, IBackgroundTaskRegistration>>(std::move(tasks), call);
}

} // namespace sim
