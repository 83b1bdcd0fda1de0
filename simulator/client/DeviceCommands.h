#pragma once
#include "simulator/protocol/Requests.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

using Words = std::vector<std::wstring>;

// What a person or a scenario asks of a device, in words. The command line's help is made of this.
struct DeviceCommand
{
    std::wstring_view name;
    std::wstring_view arguments;
    std::wstring_view summary;
    std::wstring_view help; // the rest, for those who ask
    std::size_t fewestWords;
    std::size_t mostWords;

    // words: the arguments, as many as there may be. Throws Error when they make no sense.
    AnyRequest (*request)(Words const& words);
};

std::span<DeviceCommand const> DeviceCommands();

// Null when there is none of that name.
DeviceCommand const* FindDeviceCommand(std::wstring_view name);

// The request that the words stand for, the command's name first. Throws Error when there is none of that name or the
// arguments make no sense.
AnyRequest RequestFor(Words const& words);

} // namespace sim
