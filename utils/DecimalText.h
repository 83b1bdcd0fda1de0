#pragma once
#include <cstdint>
#include <string>

namespace zant
{

std::wstring DecimalText(std::int64_t number);

} // namespace zant
