#pragma once
#include <string>
#include <windows.h>

namespace sim
{

// Tells when something in a folder changes: in itself, not below.
class FolderWatch
{
  public:
    enum Scope
    {
        Folders, // those that come and go
        Files    // those that come, go and are written
    };

    // Throws Error.
    FolderWatch(std::wstring const& folder, Scope scope);
    FolderWatch(FolderWatch const&) = delete;
    FolderWatch& operator=(FolderWatch const&) = delete;
    ~FolderWatch();

    // Signalled once something has changed, until Next.
    HANDLE Get() const noexcept { return m_change; }

    void Next() const { FindNextChangeNotification(m_change); }

  private:
    HANDLE m_change;
};

} // namespace sim
