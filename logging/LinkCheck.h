#pragma once
#include <string>

namespace zant
{

enum class HardLinks
{
    Check,
    Ignore
};

// Whether nothing on the way to a path is a link. Asked before a log file is opened, copied into, truncated or moved
// to that path; where the answer is no, that is not done. Paths are not looked at: the answer is yes.
inline bool IsFreeOfLinks(std::wstring const& /*path*/, HardLinks /*hardLinks*/) noexcept
{
    return true;
}

} // namespace zant
