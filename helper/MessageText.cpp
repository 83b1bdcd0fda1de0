#include "helper/MessageText.h"

#include <winrt/Windows.Foundation.h>

using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::Foundation::Collections;

namespace helper
{

namespace
{

std::wstring ValueText(IInspectable const& value)
{
    if (!value)
    {
        return L"(null)";
    }
    if (auto const text = value.try_as<IReference<winrt::hstring>>())
    {
        return L"\"" + std::wstring(text.Value()) + L"\"";
    }
    return L"(" + std::wstring(winrt::get_class_name(value)) + L")";
}

} // namespace

std::wstring MessageText(ValueSet const& message)
{
    std::wstring text;
    for (auto const& entry : message)
    {
        text += (text.empty() ? L"" : L" ") + std::wstring(entry.Key()) + L"=" + ValueText(entry.Value());
    }
    return text.empty() ? L"(empty)" : text;
}

} // namespace helper
