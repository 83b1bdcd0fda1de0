#include "simulator/protocol/SettingsFile.h"

#include "simulator/base/Files.h"
#include "simulator/protocol/Encoding.h"

namespace sim
{

namespace
{

constexpr std::string_view signature = "local settings 2\n";

} // namespace

std::wstring SettingsFileIn(std::wstring const& dataFolder)
{
    return dataFolder + L"\\Settings\\LocalSettings.dat";
}

SetEntries ReadSettings(std::wstring const& path)
{
    if (!FileExists(path))
    {
        return {};
    }
    auto const bytes = ReadBytes(path);
    if (!bytes.starts_with(signature))
    {
        throw Error(path + L" is no file of local settings");
    }
    return Decode<SetEntries>(std::string_view(bytes).substr(signature.size()));
}

void WriteSettings(std::wstring const& path, SetEntries const& settings)
{
    MakeFolder(ParentOf(path));
    ReplaceBytes(path, std::string(signature) + Encode(settings));
}

} // namespace sim
