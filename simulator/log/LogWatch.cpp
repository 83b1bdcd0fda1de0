#include "simulator/log/LogWatch.h"

#include "simulator/base/Files.h"

namespace sim
{

LogWatch::LogWatch(std::wstring const& logPath) : m_logFolder(ParentOf(logPath))
{
    MakeFolder(ParentOf(ParentOf(m_logFolder)));
    WatchDeepest();
}

void LogWatch::Next()
{
    m_watch->Next();
    WatchDeepest();
}

// A look for deeper folders follows each new watch: none can be made unseen in between.
void LogWatch::WatchDeepest()
{
    for (auto folder = DeepestFolder(); folder != m_watched; folder = DeepestFolder())
    {
        m_watch =
            std::make_unique<FolderWatch>(folder, folder == m_logFolder ? FolderWatch::Files : FolderWatch::Folders);
        m_watched = folder;
    }
}

std::wstring LogWatch::DeepestFolder() const
{
    auto folder = m_logFolder;
    while (!FolderExists(folder) && ParentOf(folder) != folder)
    {
        folder = ParentOf(folder);
    }
    return folder;
}

} // namespace sim
