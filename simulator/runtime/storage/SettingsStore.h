#pragma once
#include "simulator/runtime/values/ValueBytes.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace sim
{

// An app's local settings, on disk (simulator/protocol/SettingsFile.h). Read once in a process, which is the only one
// that writes them; written at each change. Any thread.
class SettingsStore
{
  public:
    // Of the current host's app. Throws hresult_error for a process without package identity, and when the file cannot
    // be read.
    static std::shared_ptr<SettingsStore> OfThisProcess();

    explicit SettingsStore(std::wstring path);

    // Each time an object of its own; null for a name that there is not.
    IInspectable Find(std::wstring_view name) const;
    bool Contains(std::wstring_view name) const;
    std::vector<std::wstring> Names() const;

    // True when it replaced a value. Null removes it. Throws hresult_error, and changes nothing, for a name or a value
    // that is too large, for one of a wrong type, and when the file cannot be written.
    bool Insert(std::wstring_view name, IInspectable const& value);

    // False when there is none of that name.
    bool Remove(std::wstring_view name);
    void Clear();

  private:
    void Keep(SetEntries settings); // with the lock held

    std::wstring m_path;
    mutable std::mutex m_mutex;
    SetEntries m_settings;
};

} // namespace sim
