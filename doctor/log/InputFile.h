#pragma once
#include "doctor/base/Error.h"
#include "utils/UniqueHandle.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string_view>

namespace doctor
{

// A file cannot be read.
class ReadError : public Error
{
  public:
    using Error::Error;
};

// A file that is read while others write, rename or delete it: it is opened so that nothing of that fails because of
// the reader.
class InputFile
{
  public:
    // Throws ReadError.
    explicit InputFile(std::filesystem::path const& path);

    // Nothing when there is no such file. Throws ReadError when it is there and cannot be opened.
    static std::optional<InputFile> IfThere(std::filesystem::path const& path);

    // The next bytes, into the buffer; empty at the end of the file. Throws ReadError.
    std::string_view Read(std::span<char> buffer);

    // How many bytes it has now. Throws ReadError.
    std::uint64_t Size() const;

    // Reads on from that byte. Throws ReadError.
    void Seek(std::uint64_t position);

  private:
    InputFile(std::filesystem::path const& path, zant::UniqueHandle file) : m_path(path), m_file(std::move(file)) {}

    std::filesystem::path m_path;
    zant::UniqueHandle m_file;
};

} // namespace doctor
