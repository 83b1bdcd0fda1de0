#pragma once
#include <string_view>

namespace sim
{

// Whether a file of XML in UTF-8 or ASCII has an element and ends outside of all elements, comments and the like.
// Wine's reader neither refuses nor ends a file of which that is not true: it reads on without end, or ends the
// process. What else is wrong is left to the reader.
bool IsWholeXml(std::string_view text) noexcept;

} // namespace sim
