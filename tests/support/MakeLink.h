#pragma once
#include <string>

namespace test
{

// Makes a symbolic link that the system shows as a reparse point when it leads to a folder. Under Wine, which makes
// none itself, it is made by the system below; there a link to a file shows as that file.
void MakeLink(std::wstring const& link, std::wstring const& target);

} // namespace test
