#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Runtime.h"

#include <algorithm>
#include <string_view>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// Windows.Foundation.Uri, as far as the address of a resource needs it: nothing is escaped or made canonical.
struct Uri : Implements<Uri, Foundation::IUriRuntimeClass, Foundation::IStringable>
{
    using class_type = Foundation::Uri;

    // Throws E_INVALIDARG for a text without a scheme.
    explicit Uri(winrt::hstring const& text) : m_text(text)
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

    winrt::hstring AbsoluteUri() const { return m_text; }

    winrt::hstring DisplayUri() const { return m_text; }

    winrt::hstring RawUri() const { return m_text; }

    winrt::hstring ToString() const { return m_text; }

    winrt::hstring SchemeName() const { return m_scheme; }

    winrt::hstring Host() const { return m_host; }

    // From the slash after the host on.
    winrt::hstring Path() const { return m_path; }

    bool Equals(Foundation::Uri const& other) const { return other.AbsoluteUri() == m_text; }

  private:
    winrt::hstring m_text;
    winrt::hstring m_scheme;
    winrt::hstring m_host;
    winrt::hstring m_path;
};

struct UriFactory : Implements<UriFactory, IActivationFactory, Foundation::IUriRuntimeClassFactory>
{
    Foundation::Uri CreateUri(winrt::hstring const& text) const
    {
        return StruckByNull(L"Uri.CreateUri") ? Foundation::Uri(nullptr) : winrt::make<Uri>(text);
    }
};

} // namespace sim
