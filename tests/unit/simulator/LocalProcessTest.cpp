#include "simulator/testing/LocalDevice.h"

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <memory>
#include <new>

// An object of the app may outlive the device for a moment, and say at its end that it goes.
TEST(LocalProcess, LosesWhatItSaysWhenItsDeviceIsGone)
{
    alignas(sim::LocalDevice) static std::byte memory[sizeof(sim::LocalDevice)];
    auto* const device = new (memory) sim::LocalDevice;
    auto const process = device->Caller();
    std::destroy_at(device);
    std::ranges::fill(memory, std::byte{0xFF}); // a use of the device crashes
    process->Tell(sim::ConnectionClosed{1, sim::ConnectionEnd::Caller});
    process->CloseConnection();
}
