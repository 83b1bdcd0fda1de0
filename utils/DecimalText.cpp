#include "utils/DecimalText.h"

namespace zant
{

// std::to_wstring brings MinGW's own wide printf along, 24 KB.
std::wstring DecimalText(std::int64_t number)
{
    auto const digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

} // namespace zant
