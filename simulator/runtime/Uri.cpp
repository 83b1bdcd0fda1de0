#include "simulator/runtime/Uri.h"

namespace sim
{

Uri::Uri(winrt::hstring const& text) : m_text(text)
{
    constexpr std::wstring_view separator = L"://";
    std::wstring_view rest = text;
    auto const schemeEnd = rest.find(separator);
    if (schemeEnd == std::wstring_view::npos || schemeEnd == 0)
    {
        throw winrt::hresult_invalid_argument();
    }
    m_scheme = rest.substr(0, schemeEnd);
    rest.remove_prefix(schemeEnd + separator.size());
    auto const hostEnd = std::min(rest.find(L'/'), rest.size());
    m_host = rest.substr(0, hostEnd);
    m_path = rest.substr(hostEnd);
}

} // namespace sim
