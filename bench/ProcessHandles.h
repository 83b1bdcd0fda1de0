#pragma once
#include <string>
#include <vector>

namespace bench
{

// What a process has open, sorted: of each handle the kind of object and its name, if it has one. Throws sim::Error.
std::vector<std::wstring> HandlesOf(unsigned long processId);

} // namespace bench
