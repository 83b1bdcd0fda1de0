#include "simulator/base/FolderWatch.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"

namespace sim
{

FolderWatch::FolderWatch(std::wstring const& folder, Scope scope)
    : m_change(FindFirstChangeNotificationW((folder + L"\\").c_str(), FALSE,
                                            scope == Folders ? FILE_NOTIFY_CHANGE_DIR_NAME
                                                             : FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_SIZE |
                                                                   FILE_NOTIFY_CHANGE_LAST_WRITE))
{
    if (m_change == INVALID_HANDLE_VALUE)
    {
        throw Error(L"cannot watch the folder " + folder + L": " + SystemMessage(GetLastError()));
    }
}

FolderWatch::~FolderWatch()
{
    FindCloseChangeNotification(m_change);
}

} // namespace sim
