#include "simulator/runtime/Address.h"

namespace sim
{

namespace
{

bool IsOfInstance(Message const& message)
{
    return (message.front() == L"cancel" || message.front() == L"ended") && message.size() > 1;
}

} // namespace

std::wstring AddressOf(Message const& message)
{
    constexpr std::size_t connectionAndEnd = 3;
    if (IsOfInstance(message))
    {
        return InstanceAddress(message[1]);
    }
    return message.size() >= connectionAndEnd ? ConnectionAddress(message[1], message[2]) : std::wstring();
}

std::wstring QueueOf(Message const& message)
{
    auto const hasConnection = IsOfInstance(message) && message.size() > 2 && !message[2].empty();
    return hasConnection ? ConnectionAddress(message[2], L"service") : AddressOf(message);
}

std::wstring ConnectionAddress(std::wstring const& connection, std::wstring const& end)
{
    return end + L" of " + connection;
}

std::wstring InstanceAddress(std::wstring const& instance)
{
    return L"instance " + instance;
}

} // namespace sim
