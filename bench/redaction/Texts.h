#pragma once
#include "logging/Utf16.h"

namespace bench
{

// Messages of any length, cut from an endless text.
zant::Utf16String English(std::size_t length);

// An element or an attribute every few units, names that begin as those of credentials do among them.
zant::Utf16String Markup(std::size_t length);

// The text with the elements of nine credentials spread evenly over it, in the place of as many of its units; as many
// of them as fit.
zant::Utf16String WithSecrets(zant::Utf16String text);

} // namespace bench
