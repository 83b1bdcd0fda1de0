#pragma once
#include <string>
#include <string_view>

namespace sim
{

// The name of a type without its namespace, such as RegisterTask.
template <typename Type>
std::wstring TypeName()
{
    std::string_view name = __PRETTY_FUNCTION__; // … [Type = sim::RegisterTask], or with other parameters behind a ;
    constexpr std::string_view start = "Type = ";
    name.remove_prefix(name.find(start) + start.size());
    name = name.substr(0, name.find_first_of(";]"));
    name.remove_prefix(name.rfind(':') + 1);
    return {name.begin(), name.end()};
}

} // namespace sim
