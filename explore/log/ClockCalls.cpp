#include "explore/log/ClockCalls.h"

namespace explore
{

int ClockCalls::Copy(std::wstring const& text, wchar_t* buffer, int size)
{
    auto const length = static_cast<int>(text.size()) + 1;
    if (text.empty() || length > size)
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    text.copy(buffer, text.size());
    buffer[text.size()] = L'\0';
    return length;
}

} // namespace explore
