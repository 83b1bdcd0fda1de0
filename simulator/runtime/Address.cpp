#include "simulator/runtime/Address.h"

namespace sim
{

std::wstring AddressOf(Message const& message)
{
    constexpr std::size_t connectionAndEnd = 3;
    if ((message.front() == L"cancel" || message.front() == L"ended") && message.size() > 1)
    {
        return InstanceAddress(message[1]);
    }
    return message.size() >= connectionAndEnd ? ConnectionAddress(message[1], message[2]) : std::wstring();
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
