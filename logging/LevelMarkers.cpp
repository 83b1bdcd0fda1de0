#include "logging/LevelMarkers.h"

#include "logging/Folders.h"
#include "logging/LogPath.h"

namespace zant
{

LogLevel LevelFromMarkers(std::wstring const& folder, std::wstring_view fileName)
{
    auto const own = WithoutExtension(fileName);
    struct
    {
        std::wstring name;
        LogLevel level;
    } const markers[] = {
        {std::wstring(own) + L".trace", LogLevel::Trace},
        {std::wstring(own) + L".debug", LogLevel::Debug},
        {L"pvq.trace", LogLevel::Trace},
        {L"pvq.debug", LogLevel::Debug},
    };
    for (auto const& marker : markers)
    {
        auto const path = Appended(folder, marker.name);
        if (path && Exists(*path))
        {
            return marker.level;
        }
    }
    return LogLevel::Info;
}

} // namespace zant
