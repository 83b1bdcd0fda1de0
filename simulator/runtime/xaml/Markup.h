#pragma once
#include "simulator/runtime/Namespaces.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.h>

namespace sim
{

// Reads the markup of a page out of the package (ms-appx:///FILE) and gives the page the content that it describes: an
// object of the root's one child, which knows its class and no more. The root must be a page of the component's class.
//
// Throws, as the platform does for whatever is wrong with markup, XamlParseException 0x802B000A: also for a file that
// is not there. The device's journal gets the reason (markup-failed), or markup-loaded.
void LoadMarkup(IInspectable const& component, Foundation::Uri const& address);

} // namespace sim
