#pragma once
#include "utils/UniqueHandle.h"

#include <filesystem>
#include <string_view>

namespace doctor
{

// A file that somebody asked for. One that is there is replaced.
class OutputFile
{
  public:
    // Throws Error.
    explicit OutputFile(std::filesystem::path const& path);

    // Throws Error; what was written before stays.
    void Write(std::string_view bytes) const;

  private:
    std::filesystem::path m_path;
    zant::UniqueHandle m_file;
};

} // namespace doctor
