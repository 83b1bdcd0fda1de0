#include "simulator/log/LogFile.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Handle.h"
#include "simulator/base/Text.h"
#include "simulator/package/Package.h"

#include <algorithm>
#include <cstring>

namespace sim
{

namespace
{

constexpr wchar_t byteOrderMark = L'\xFEFF';

} // namespace

LogFile::LogFile(std::wstring path) : m_path(std::move(path)) {}

std::wstring LogFile::PathOn(Device const& device)
{
    return device.AppTemporaryFolder(RegisteredPackage(device).FamilyName()) + L"\\Tessaline\\HOV\\KZEB.log";
}

std::vector<std::wstring> LogFile::Find(std::wstring const& path)
{
    if (FileExists(path))
    {
        return {path};
    }
    auto logs = FilesBelow(path);
    std::erase_if(logs, [](auto const& file) { return !file.ends_with(L".log"); });
    std::ranges::sort(logs);
    if (logs.empty())
    {
        throw Error(L"there is no log at " + path);
    }
    return logs;
}

// Reads from the position on: reading the whole of a file that is emptied meanwhile could yield old lines again.
std::vector<std::wstring> LogFile::NewLines()
{
    std::vector<std::wstring> lines;
    auto const size = FileSize(m_path).value_or(0);
    if (size < m_position)
    {
        m_position = 0;
        m_rest.clear();
    }
    if (size == m_position)
    {
        return lines;
    }
    auto const bytes = ReadBytes(m_path, m_position);
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    auto const hasMark = m_position == 0 && text.starts_with(byteOrderMark);
    m_position += text.size() * sizeof(wchar_t);
    text.replace(0, hasMark ? 1 : 0, m_rest);
    std::wstring_view rest = text;
    while (auto const line = TakeLine(rest))
    {
        lines.emplace_back(*line);
    }
    m_rest = rest;
    return lines;
}

void LogFile::GrowTo(std::uint64_t bytes) const
{
    Handle const file(CreateFileW(m_path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER end;
    end.QuadPart = static_cast<LONGLONG>(bytes);
    if (!file || !SetFilePointerEx(file.Get(), end, nullptr, FILE_BEGIN) || !SetEndOfFile(file.Get()))
    {
        throw Error(L"the log cannot be extended: " + m_path);
    }
}

} // namespace sim
