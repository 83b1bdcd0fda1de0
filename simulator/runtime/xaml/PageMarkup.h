#pragma once
#include "simulator/base/XmlElement.h"

#include <string_view>

namespace sim
{

// The content of a page, or null when it has none. Throws Error for markup that is no page of that class, or has an
// element that is not known.
XmlElement const* ContentOfPage(XmlElement const& root, std::wstring_view className);

} // namespace sim
