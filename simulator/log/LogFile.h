#pragma once
#include "simulator/protocol/Device.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sim
{

// Reads the app's log file (UTF-16LE with a byte-order mark, lines ended by CR LF) while others write it.
class LogFile
{
  public:
    explicit LogFile(std::wstring path);

    // The log file of the device's registered package. Throws Error when none is registered.
    static std::wstring PathOn(Device const& device);

    // The log files at a path: the file itself, or all *.log in a folder and its subfolders, sorted. Throws Error when
    // there is none.
    static std::vector<std::wstring> Find(std::wstring const& path);

    // The lines completed since the last call; none while the file is missing. A file that has become shorter is read
    // from its start.
    std::vector<std::wstring> NewLines();

    // Extends the file to that size without adding a line: simulates long use. Throws Error.
    void GrowTo(std::uint64_t bytes) const;

    // The interval at which the file is polled. Under Wine, folder watches miss changes in folders that are created
    // after the watch began.
    static constexpr unsigned pollMilliseconds = 20;

  private:
    std::wstring m_path;
    std::uint64_t m_position = 0; // bytes read
    std::wstring m_rest;          // an incomplete line
};

} // namespace sim
