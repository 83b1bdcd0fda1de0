#pragma once
#include "simulator/runtime/Namespaces.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.Controls.Primitives.h>
#include <winrt/Windows.UI.Xaml.h>

namespace sim
{

constexpr auto xamlParseFailed = static_cast<std::int32_t>(0x802B000A); // E_XAMLPARSEFAILED

// Any object will do for an element: the interface of UIElement itself is not among the known ones.
Xaml::UIElement AsElement(IInspectable const& object);

// Reads the markup of a page out of the package (ms-appx:///FILE) and gives the page the content that it describes: an
// object of the root's one child, which knows its class and no more. The root must be a page of the component's class.
//
// Throws, as the platform does for whatever is wrong with markup, XamlParseException 0x802B000A: also for a file that
// is not there. The device's journal gets the reason (markup-failed), or markup-loaded.
// location: where the component's own resources belong; it is told in the journal, and makes no difference here.
void LoadMarkup(IInspectable const& component, Foundation::Uri const& address,
                Xaml::Controls::Primitives::ComponentResourceLocation location);

} // namespace sim
