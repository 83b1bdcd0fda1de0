#pragma once
#include <filesystem>
#include <string>

namespace doctor
{

// The system's message for an error code of its functions, in UTF-8: "Access is denied (5)".
std::string SystemText(unsigned long code);

// "C:\logs\KZEB.log: Access is denied (5)".
std::string FailureText(std::filesystem::path const& path, unsigned long code);

// Throws Error with that text for the calling thread's last error.
[[noreturn]] void ThrowLastError(std::filesystem::path const& path);

// A path as people read it, in UTF-8.
std::string PathText(std::filesystem::path const& path);

} // namespace doctor
