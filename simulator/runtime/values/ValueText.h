#pragma once
#include "simulator/runtime/Namespaces.h"

#include <string>
#include <string_view>
#include <winrt/Windows.Foundation.Collections.h>

namespace sim
{

// Sets of values as text (model/SetText.h), which is how they leave the process: any value that PropertyValue makes but
// objects and arrays of objects, null, and sets in sets.

// Throws hresult_error: ERROR_UNSUPPORTED_TYPE for another value.
std::wstring TextOf(Collections::IPropertySet const& set);

// The opposite; a new set with values of its own. Throws hresult_error E_INVALIDARG when it is no such text.
Collections::ValueSet SetFrom(std::wstring_view text);

// One value alone.
struct ValueText
{
    std::wstring type;
    std::wstring text;
};

ValueText TextOfValue(IInspectable const& value);
IInspectable ValueFrom(std::wstring_view type, std::wstring_view text);

} // namespace sim
