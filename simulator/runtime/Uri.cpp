#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Record.h"

#include <algorithm>
#include <string_view>

namespace sim
{

namespace
{

// Path: from the slash after the host on.
using Uri = Record<Foundation::Uri, Interfaces<Foundation::IUriRuntimeClass, Foundation::IStringable>,
                   Property<"AbsoluteUri", winrt::hstring>, Property<"SchemeName", winrt::hstring>,
                   Property<"Host", winrt::hstring>, Property<"Path", winrt::hstring>>;

// As far as the address of a resource needs it: nothing is escaped or made canonical. Throws E_INVALIDARG for a string
// without a scheme.
Foundation::Uri Parse(winrt::hstring const& uri)
{
    constexpr std::wstring_view separator = L"://";
    std::wstring_view rest = uri;
    auto const schemeEnd = rest.find(separator);
    if (schemeEnd == std::wstring_view::npos || schemeEnd == 0)
    {
        throw winrt::hresult_invalid_argument();
    }
    winrt::hstring const scheme(rest.substr(0, schemeEnd));
    rest.remove_prefix(schemeEnd + separator.size());
    auto const hostEnd = std::min(rest.find(L'/'), rest.size());
    return winrt::make<Uri>(uri, scheme, winrt::hstring(rest.substr(0, hostEnd)), winrt::hstring(rest.substr(hostEnd)));
}

struct UriFactory : Implements<UriFactory, IActivationFactory, Foundation::IUriRuntimeClassFactory>
{
    Foundation::Uri CreateUri(winrt::hstring const& uri) const
    {
        return InjectFault(L"Uri.CreateUri") ? Foundation::Uri(nullptr) : Parse(uri);
    }
};

} // namespace

IInspectable MakeUriFactory()
{
    return winrt::make<UriFactory>();
}

} // namespace sim
