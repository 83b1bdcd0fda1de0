#include "tests/unit/logging/LogFixture.h"

#include "logging/LogPath.h"

namespace test
{

LogFixture::LogFixture() : m_base(zant::FileNameOf(folder.Path())) {}

void LogFixture::Configure(zant::LogTargetDefault& target) const
{
    target.fileName = LogName();
    target.filePath = LogPath();
    target.storedHeader = {}; // so that lines do not depend on the machine
}

bool LogWide(zant::LogTargetDefault& target, zant::LogLevel level, wchar_t const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    auto const result = target.Log(level, L"", L"", L"", L"", L"", L"", format, arguments, 0, true);
    va_end(arguments);
    return result;
}

bool LogNarrow(zant::LogTargetDefault& target, zant::LogLevel level, char const* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    auto const result = target.Log(level, L"", L"", L"", L"", "", "", format, arguments, 0, true);
    va_end(arguments);
    return result;
}

bool LogAt(zant::LogTargetDefault& target, std::uint64_t time, wchar_t const* message)
{
    return target.Log(zant::LogLevel::Info, L"", L"", L"", L"", L"", L"", message, nullptr, time, true);
}

bool LogUnlocked(zant::LogTargetDefault& target, wchar_t const* message)
{
    return target.Log(zant::LogLevel::Info, L"", L"", L"", L"", L"", L"", message, nullptr, 0, false);
}

std::wstring MessageOf(std::wstring const& line)
{
    return Split(line, L" | ").back();
}

std::vector<std::wstring> MessagesIn(std::wstring const& path)
{
    auto lines = ReadLines(path);
    for (auto& line : lines)
    {
        line = MessageOf(line);
    }
    return lines;
}

void WriteLogOfSize(std::wstring const& path, std::uint64_t size)
{
    auto const end = Utf16(L"\r\n");
    WriteBytes(path, wideMark);
    zant::UniqueHandle const file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER position;
    position.QuadPart = static_cast<LONGLONG>(size - end.size());
    DWORD written = 0;
    ASSERT_TRUE(SetFilePointerEx(file.Get(), position, nullptr, FILE_BEGIN));
    ASSERT_TRUE(WriteFile(file.Get(), end.data(), static_cast<DWORD>(end.size()), &written, nullptr));
}

} // namespace test
