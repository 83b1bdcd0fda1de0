#pragma once
#include "doctor/base/Column.h"

#include <cstddef>

namespace doctor
{

// Columns of what people read, for the longest names of a result and of a stage.
inline constexpr std::size_t resultWidth = 16;
inline constexpr std::size_t stageWidth = 19;

} // namespace doctor
