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
    // Reads which one that is. A package whose files are missing or broken since then is registered no more.
    Registration(Device const& device, Journal& journal);

    // Null when none is registered.
    Package const* Current() const noexcept { return m_package ? &*m_package : nullptr; }

    // Throws Error when none is registered.
    Package const& Need() const;

    // Throws Error for a version that is lower than the registered one of the same family.
    void NeedNoDowngradeTo(Package const& package) const;

    // Throws Error when it cannot be kept.
    void Set(Package package);

    // As on the platform, all that the device keeps for its family goes with it.
    void Remove();

  private:
    Device const& m_device;
    Journal& m_journal;
    std::optional<Package> m_package;
};

} // namespace sim
