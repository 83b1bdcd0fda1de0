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

constexpr wchar_t mark = L'\xFEFF';

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Throws Error when a file that is there cannot be read.
void Expect(bool result, std::wstring const& path)
{
    if (!result)
    {
        throw Error(L"the log cannot be read: " + path);
    }
}

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

std::vector<std::wstring> LogFile::NewLines()
{
    std::vector<std::wstring> lines;
    if (!FileExists(m_path))
    {
        return lines;
    }
    auto const bytes = NewBytes();
    auto const units = bytes.size() / sizeof(wchar_t);
    std::wstring text(units, L'\0');
    std::memcpy(text.data(), bytes.data(), units * sizeof(wchar_t));
    if (m_position == 0 && text.starts_with(mark))
    {
        text.erase(0, 1);
    }
    m_position += units * sizeof(wchar_t);
    text.insert(0, m_rest);
    std::wstring_view rest = text;
    while (auto const line = TakeLine(rest))
    {
        lines.emplace_back(*line);
    }
    m_rest = rest;
    return lines;
}

// Only what is behind the bytes read: the whole of a file that is emptied meanwhile would be read in part, as if it had
// been begun again with its old lines.
std::string LogFile::NewBytes()
{
    Handle const file(CreateFileW(m_path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER size = {};
    Expect(file && GetFileSizeEx(file.Get(), &size) != FALSE, m_path);
    if (static_cast<std::uint64_t>(size.QuadPart) < m_position)
    {
        m_position = 0;
        m_rest.clear();
    }
    LARGE_INTEGER position;
    position.QuadPart = static_cast<LONGLONG>(m_position);
    Expect(SetFilePointerEx(file.Get(), position, nullptr, FILE_BEGIN) != FALSE, m_path);
    std::string bytes;
    char block[16'384];
    DWORD read = 0;
    do
    {
        Expect(ReadFile(file.Get(), block, sizeof block, &read, nullptr) != FALSE, m_path);
        bytes.append(block, read);
    } while (read > 0);
    return bytes;
}

void LogFile::GrowTo(std::uint64_t bytes) const
{
    Handle const file(
        CreateFileW(m_path.c_str(), GENERIC_WRITE, shareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER end;
    end.QuadPart = static_cast<LONGLONG>(bytes);
    if (!file.Get() || !SetFilePointerEx(file.Get(), end, nullptr, FILE_BEGIN) || !SetEndOfFile(file.Get()))
    {
        throw Error(L"the log cannot be made longer: " + m_path);
    }
}

} // namespace sim
