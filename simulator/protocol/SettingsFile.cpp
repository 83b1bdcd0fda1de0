#include "simulator/protocol/SettingsFile.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"

#include <cstring>

namespace sim
{

namespace
{

constexpr wchar_t byteOrderMark = 0xFEFF;

} // namespace

std::wstring SettingsFileIn(std::wstring const& dataFolder)
{
    return dataFolder + L"\\Settings\\LocalSettings.txt";
}

std::wstring ReadSettings(std::wstring const& path)
{
    if (!FileExists(path))
    {
        return {};
    }
    auto const bytes = ReadBytes(path);
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    if (text.empty() || text.front() != byteOrderMark)
    {
        throw Error(path + L" is no file of local settings");
    }
    return text.substr(1);
}

void WriteSettings(std::wstring const& path, std::wstring_view set)
{
    MakeFolder(ParentOf(path));
    auto const text = byteOrderMark + std::wstring(set);
    ReplaceBytes(path, {reinterpret_cast<char const*>(text.data()), text.size() * sizeof(wchar_t)});
}

} // namespace sim
