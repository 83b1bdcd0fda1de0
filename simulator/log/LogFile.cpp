#include "simulator/log/LogFile.h"

#include "simulator/model/Error.h"
#include "simulator/model/Files.h"
#include "simulator/model/Package.h"
#include "simulator/model/Text.h"

#include <cstring>

namespace sim
{

namespace
{

constexpr wchar_t mark = L'\xFEFF';

} // namespace

LogFile::LogFile(std::wstring path) : m_path(std::move(path)) {}

std::wstring LogFile::PathOn(Device const& device)
{
    if (!FileExists(device.RegistrationFile()))
    {
        throw Error(L"no package is registered, so there is no log: sim register FOLDER comes first");
    }
    auto const package = OpenPackage(FromUtf8(ReadBytes(device.RegistrationFile())));
    return device.AppTemporaryFolder(package.FamilyName()) + L"\\Tessaline\\HOV\\KZEB.log";
}

std::vector<std::wstring> LogFile::NewLines()
{
    std::vector<std::wstring> lines;
    if (!FileExists(m_path))
    {
        return lines;
    }
    auto const bytes = ReadBytes(m_path);
    if (bytes.size() < m_position)
    {
        m_position = 0;
        m_rest.clear();
    }
    auto const units = (bytes.size() - m_position) / sizeof(wchar_t);
    std::wstring text(units, L'\0');
    std::memcpy(text.data(), bytes.data() + m_position, units * sizeof(wchar_t));
    if (m_position == 0 && text.starts_with(mark))
    {
        text.erase(0, 1);
    }
    m_position += units * sizeof(wchar_t);
    text.insert(0, m_rest);
    std::size_t start = 0;
    for (std::size_t end; (end = text.find(L"\r\n", start)) != std::wstring::npos; start = end + 2)
    {
        lines.push_back(text.substr(start, end - start));
    }
    m_rest = text.substr(start);
    return lines;
}

} // namespace sim
