#pragma once

namespace test
{

// The first line that every process of the application writes.
inline constexpr wchar_t banner[] = L"****************************** VelmoNotificationCLient Started. "
                                    L"*********************************";

} // namespace test
