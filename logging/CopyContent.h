#pragma once
#include <string>

namespace zant
{

// Copies the content of one file into another, which is created or replaced; fails when a link is in the way. True when
// the source was read to its end; failed writes do not count. Leaves no copy when the copying fails or the process ends
// before it is complete.
bool CopyContent(std::wstring const& source, std::wstring const& destination) noexcept;

} // namespace zant
