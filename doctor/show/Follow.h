#pragma once
#include "doctor/log/LineReader.h"
#include "doctor/log/ReadLog.h"

#include <cstdint>
#include <filesystem>

namespace doctor
{

// Reads what is added to a live log file. Each call opens the file for a moment only.
class Follower
{
  public:
    explicit Follower(std::filesystem::path path) : m_path(std::move(path)) {}

    // Gives the lines completed since the last call; none while the file is missing. A file that has become shorter was
    // rotated: it is read from its start. Throws Error.
    void TakeNew(TakeEntry const& take);

  private:
    void BeginAgain();

    std::filesystem::path m_path;
    std::uint64_t m_position = 0; // bytes read
    LineReader m_reader;
};

} // namespace doctor
