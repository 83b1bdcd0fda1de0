#pragma once
#include "simulator/protocol/SetEntry.h"
#include "simulator/runtime/Namespaces.h"

#include <string>
#include <string_view>
#include <winrt/Windows.Foundation.Collections.h>

namespace sim
{

// Value sets as bytes, which is how they leave the process: any value that PropertyValue makes but objects and arrays
// of objects, null, and sets in sets.

// Throws hresult_error: ERROR_UNSUPPORTED_TYPE for another value.
std::string BytesOf(Collections::IPropertySet const& set);

// The reverse: a new set with values of its own, an empty one of no bytes. Throws hresult_error E_INVALIDARG for bytes
// that are no set.
Collections::ValueSet SetFrom(std::string_view bytes);

// A single value.
SetEntry EntryOf(std::wstring_view name, IInspectable const& value);
IInspectable ValueFrom(SetEntry const& entry);

} // namespace sim
