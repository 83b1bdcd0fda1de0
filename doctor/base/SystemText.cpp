#include "doctor/base/SystemText.h"

#include "doctor/base/Error.h"

#include "utils/Utf8.h"

#include <system_error>

namespace doctor
{

std::string SystemText(unsigned long code)
{
    return std::system_category().message(static_cast<int>(code)) + " (" + std::to_string(code) + ")";
}

void ThrowLastError(std::filesystem::path const& path)
{
    auto const error = GetLastError();
    throw Error(PathText(path) + ": " + SystemText(error));
}

std::string PathText(std::filesystem::path const& path)
{
    return zant::ToUtf8(path.native()).value_or("(a path that is no text)");
}

} // namespace doctor
