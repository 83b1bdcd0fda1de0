#pragma once
#include "simulator/base/FolderWatch.h"

#include <memory>
#include <string>

namespace sim
{

// Tells when the app's log changes, from before its folder is there.
//
// It watches the log's own folder as soon as it can, and until then the deepest one above it that is there. One watch
// of all that is below the topmost would not do: under Wine it now and then, in one play of thirty on a busy machine,
// told nothing of what was written in a folder made after it.
class LogWatch
{
  public:
    // Makes the folder that is there before the app makes the log's: two above the log's own. Throws Error.
    explicit LogWatch(std::wstring const& logPath);

    // Signalled once something has changed, until Next; it may be another one after that.
    HANDLE Get() const noexcept { return m_watch->Get(); }

    // Look at the log after this, not before. Throws Error.
    void Next();

  private:
    void WatchDeepest();
    std::wstring DeepestFolder() const;

    std::wstring m_logFolder;
    std::wstring m_watched;
    std::unique_ptr<FolderWatch> m_watch;
};

} // namespace sim
