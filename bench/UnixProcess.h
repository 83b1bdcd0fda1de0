#pragma once
#include <string>

namespace bench
{

// A process under Wine as Linux counts it, read through the drive that is the machine's root: Wine's own counts are
// rough, or missing. Failures are sim::Error.
class UnixProcess
{
  public:
    // The one that was started from this executable.
    explicit UnixProcess(std::wstring const& executable);

    // Of memory that it does not share and has written to.
    long long PrivateKilobytes() const;

    long long Threads() const;

    // Pages that it has touched for the first time since its start, whether or not they had to be read.
    long long PageFaults() const;

    // How often one of its threads has given up the processor to wait: each time, it wakes up later.
    long long Waits() const;

  private:
    std::wstring m_folder; // in /proc
};

} // namespace bench
