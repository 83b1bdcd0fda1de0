#pragma once
#include "simulator/runtime/Host.h"

#include <memory>
#include <string>

namespace sim
{

// The module of the runtime classes: VelmoPlatform.dll, beside sim.exe.
std::wstring RuntimeModulePath();

// The host of a real process, over a pipe to its device's broker. It lives until the process ends. When the broker
// goes, the device is off, and so is the process.
class ProcessHost : public Host
{
  public:
    // Connects to the broker of the device in VELMO_SIM_HOME. Throws hresult_error: APPMODEL_ERROR_NO_PACKAGE when
    // there is none.
    static std::shared_ptr<ProcessHost> Connected();

    using Host::Host;

    [[noreturn]] void Fail(std::int32_t result) override;

  protected:
    void PlatformLost() override;
};

} // namespace sim
