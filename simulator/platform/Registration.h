#pragma once
#include "simulator/package/Package.h"
#include "simulator/platform/Journal.h"
#include "simulator/protocol/Device.h"

#include <optional>

namespace sim
{

// The package that is registered on the device.
class Registration
{
  public:
    // Reads it from the device. A package whose files are missing or damaged is no longer registered.
    Registration(Device const& device, Journal& journal);

    // Null when none is registered.
    Package const* Current() const noexcept { return m_package ? &*m_package : nullptr; }

    // Throws Error when none is registered.
    Package const& Require() const;

    // Throws Error for a version lower than the registered one of the same family.
    void RequireNoDowngradeTo(Package const& package) const;

    // Throws Error when it cannot be saved.
    void Set(Package package);

    // Also removes all data that the device keeps for its family, as Windows does.
    void Remove();

  private:
    Device const& m_device;
    Journal& m_journal;
    std::optional<Package> m_package;
};

} // namespace sim
