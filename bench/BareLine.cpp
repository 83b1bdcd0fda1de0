#include "bench/BareLine.h"

#include <windows.h>

namespace bench
{

BareLine::BareLine(std::wstring const& path, std::wstring const& message)
    : m_line(L"01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  | ZEB | " +
             std::to_wstring(GetCurrentThreadId()) + L" | " + message),
      m_file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                         FILE_ATTRIBUTE_NORMAL, nullptr)),
      m_mutex(CreateMutexW(nullptr, FALSE, L"floor.log"))
{
}

void BareLine::Write() const
{
    DWORD written = 0;
    WaitForSingleObject(m_mutex.Get(), 2'000);
    SetFilePointerEx(m_file.Get(), {}, nullptr, FILE_END);
    WriteFile(m_file.Get(), m_line.data(), static_cast<DWORD>(m_line.size() * sizeof(wchar_t)), &written, nullptr);
    WriteFile(m_file.Get(), L"\r\n", 4, &written, nullptr);
    ReleaseMutex(m_mutex.Get());
}

} // namespace bench
