#pragma once
#include "simulator/protocol/Device.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sim
{

// Reads the app's log file (UTF-16LE, lines ended by CR LF) while others write it. It begins with a mark.
class LogFile
{
  public:
    explicit LogFile(std::wstring path);

    // The log file of the device's registered package. Throws Error when none is registered.
    static std::wstring PathOn(Device const& device);

    // The paths of the logs at a path: of a log itself, or of all *.log in a folder and below, sorted. Throws Error
    // when there is none.
    static std::vector<std::wstring> Find(std::wstring const& path);

    // The lines completed since the last call; none while the file is missing. A file that has become shorter was begun
    // again and is read from its start.
    std::vector<std::wstring> NewLines();

    // Makes the file so many bytes long, as long use would, but without any line. Throws Error.
    void GrowTo(std::uint64_t bytes) const;

    // How long those who follow it wait before they look again. Nothing tells them earlier: what is written in a folder
    // made after a watch began is now and then not told under Wine.
    static constexpr unsigned lookMilliseconds = 20;

  private:
    std::wstring m_path;
    std::uint64_t m_position = 0; // bytes read
    std::wstring m_rest;          // the beginning of a line that is not complete yet
};

} // namespace sim
