#pragma once
#include <string>

namespace zant
{

// Copies the content of one file into another, which is created or replaced and must be clear of links. True when the
// source could be read to its end, whatever became of the writing. When the copying fails, or the process ends in the
// middle of it, no copy stays.
bool CopyContent(std::wstring const& source, std::wstring const& destination) noexcept;

} // namespace zant
