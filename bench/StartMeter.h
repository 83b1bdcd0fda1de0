#pragma once
#include "simulator/protocol/Device.h"

#include <string>

namespace bench
{

// Starts packaged apps as the platform does and takes the time from there until they take their first activation,
// which they do as soon as their application object is constructed: then the first line is written.
class StartMeter
{
  public:
    // folder: for the apps' data.
    explicit StartMeter(std::wstring const& folder);

    // Microseconds for one start, the average of so many. Each app is told to end, and has ended, before the next one
    // starts. Ends the program when an app does not behave.
    double Measure(std::wstring const& executable, int starts);

  private:
    double MeasureOne(std::wstring const& executable);

    sim::Device m_device;
};

} // namespace bench
