#pragma once
#include <string>
#include <winrt/Windows.Foundation.Collections.h>

namespace helper
{

// KEY="VALUE" KEY="VALUE", in the message's order. What is not text shows as its type: KEY=(Int32). Throws
// hresult_error when the message cannot be read.
std::wstring MessageText(winrt::Windows::Foundation::Collections::ValueSet const& message);

} // namespace helper
