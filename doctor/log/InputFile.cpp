#include "doctor/log/InputFile.h"

#include "doctor/base/SystemText.h"

namespace doctor
{

namespace
{

HANDLE Open(std::filesystem::path const& path)
{
    return CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                       OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
}

[[noreturn]] void ThrowReadError(std::filesystem::path const& path)
{
    throw ReadError(FailureText(path, GetLastError()));
}

} // namespace

InputFile::InputFile(std::filesystem::path const& path) : m_path(path), m_file(Open(path))
{
    if (!m_file)
    {
        ThrowReadError(m_path);
    }
}

std::optional<InputFile> InputFile::IfThere(std::filesystem::path const& path)
{
    zant::UniqueHandle file(Open(path));
    if (!file && GetLastError() != ERROR_FILE_NOT_FOUND && GetLastError() != ERROR_PATH_NOT_FOUND)
    {
        ThrowReadError(path);
    }
    return file ? std::optional(InputFile(path, std::move(file))) : std::nullopt;
}

std::string_view InputFile::Read(std::span<char> buffer)
{
    DWORD count = 0;
    if (!ReadFile(m_file.Get(), buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr))
    {
        ThrowReadError(m_path);
    }
    return {buffer.data(), count};
}

std::uint64_t InputFile::Size() const
{
    LARGE_INTEGER size;
    if (!GetFileSizeEx(m_file.Get(), &size))
    {
        ThrowReadError(m_path);
    }
    return static_cast<std::uint64_t>(size.QuadPart);
}

void InputFile::Seek(std::uint64_t position)
{
    LARGE_INTEGER target;
    target.QuadPart = static_cast<LONGLONG>(position);
    if (!SetFilePointerEx(m_file.Get(), target, nullptr, FILE_BEGIN))
    {
        ThrowReadError(m_path);
    }
}

} // namespace doctor
