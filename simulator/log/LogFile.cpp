#include "simulator/log/LogFile.h"

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
    return device.AppTemporaryFolder(RegisteredPackage(device).FamilyName()) + L"\\Tessaline\\HOV\\KZEB.log";
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
    std::wstring_view rest = text;
    while (auto const line = TakeLine(rest))
    {
        lines.emplace_back(*line);
    }
    m_rest = rest;
    return lines;
}

} // namespace sim
