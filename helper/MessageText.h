#pragma once
#include <string>
#include <winrt/Windows.Foundation.Collections.h>

namespace helper
{

// KEY="VALUE" KEY="VALUE", in the message's order; (empty) without any. What is not text shows as the runtime class
// that it gives: KEY=(Windows.Foundation.IReference`1<Int32>), and null as KEY=(null). Throws hresult_error when the
// message cannot be read.
std::wstring MessageText(winrt::Windows::Foundation::Collections::ValueSet const& message);

} // namespace helper
