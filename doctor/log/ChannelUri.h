#pragma once
#include <string>
#include <string_view>

namespace doctor
{

// The text with the query of each channel URI cut after a few characters:
// "https://db3.notify.windows.com/?token=AwYA…". The whole URI is an address that anyone can push to; its beginning is
// enough to tell two apart.
std::string WithShortUris(std::string_view text);

} // namespace doctor
