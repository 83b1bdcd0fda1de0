#pragma once
#include <string>

namespace test
{

// Creates a symbolic link. The system reports one to a folder as a reparse point. Wine cannot create links, so under
// Wine the system below it does; there a link to a file appears as that file.
void MakeLink(std::wstring const& link, std::wstring const& target);

} // namespace test
