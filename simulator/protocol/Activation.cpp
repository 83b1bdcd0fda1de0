#include "simulator/protocol/Activation.h"

#include "simulator/base/Overloaded.h"
#include "simulator/protocol/Event.h"

namespace sim
{

namespace
{

using Details = std::vector<std::wstring>;

Details WithArgument(std::wstring_view kind, std::wstring_view name, std::wstring const& argument)
{
    return argument.empty() ? Details{Detail(L"kind", kind)} : Details{Detail(L"kind", kind), Detail(name, argument)};
}

} // namespace

std::wstring_view NameOf(Trigger trigger) noexcept
{
    return trigger == Trigger::Push ? L"push" : L"timer";
}

std::vector<std::wstring> DetailsOf(Activation const& activation)
{
    return std::visit(
        Overloaded{
            [](UserLaunch const& it) { return WithArgument(L"launch", L"arguments", it.arguments); },
            [](ProtocolLaunch const& it) { return WithArgument(L"protocol", L"uri", it.uri); },
            [](ServiceStart const& it) { return WithArgument(L"app-service", L"name", it.service); },
            [](TaskStart const& it) { return WithWake(WithArgument(L"background-task", L"name", it.task), it.wake); },
            [](Suspension const&) { return WithArgument(L"suspend", L"", L""); },
            [](PageRequest const& it) { return WithArgument(L"page", L"class", it.className); },
        },
        activation.content);
}

std::uint32_t InstanceOf(Activation const& activation)
{
    if (auto const* const service = std::get_if<ServiceStart>(&activation.content))
    {
        return service->instance;
    }
    auto const* const task = std::get_if<TaskStart>(&activation.content);
    return task ? task->instance : 0;
}

std::vector<std::wstring> WithWake(std::vector<std::wstring> details, std::uint32_t wake)
{
    if (wake != 0)
    {
        details.push_back(Detail(L"wake", std::to_wstring(wake)));
    }
    return details;
}

bool IsForeground(Activation const& activation)
{
    return std::holds_alternative<UserLaunch>(activation.content) ||
           std::holds_alternative<ProtocolLaunch>(activation.content);
}

} // namespace sim
