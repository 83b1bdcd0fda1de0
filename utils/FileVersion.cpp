#include "utils/FileVersion.h"

#include "utils/DecimalText.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <optional>
#include <vector>
#include <windows.h>

namespace zant
{

namespace
{

// Copies at most the size that the resource reports: a truncated resource is not read beyond its end, and an empty one
// has no signature.
std::optional<VS_FIXEDFILEINFO> FixedInformationOf(std::wstring const& path)
{
    constexpr DWORD signature = 0xFEEF04BD;
    auto const size = GetFileVersionInfoSizeW(path.c_str(), nullptr);
    if (size == 0)
    {
        return std::nullopt;
    }
    std::vector<std::byte> resource(size);
    void* found = nullptr;
    UINT length = 0;
    if (!GetFileVersionInfoW(path.c_str(), 0, size, resource.data()) ||
        !VerQueryValueW(resource.data(), L"\\", &found, &length) || !found)
    {
        return std::nullopt;
    }
    VS_FIXEDFILEINFO information = {};
    std::memcpy(&information, found, std::min<std::size_t>(length, sizeof information));
    return information.dwSignature == signature ? std::optional(information) : std::nullopt;
}

} // namespace

bool GetFileVersionText(std::wstring const& path, std::wstring& text) noexcept
try
{
    auto const information = FixedInformationOf(path);
    if (!information)
    {
        return false;
    }
    text = DecimalText(HIWORD(information->dwFileVersionMS)) + L"." +
           DecimalText(LOWORD(information->dwFileVersionMS)) + L"." +
           DecimalText(HIWORD(information->dwFileVersionLS)) + L"." + DecimalText(LOWORD(information->dwFileVersionLS));
    return true;
}
catch (std::bad_alloc const&)
{
    return false;
}

} // namespace zant
