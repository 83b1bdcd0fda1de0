#pragma once
#include "simulator/runtime/values/NamedValues.h"

#include <memory>
#include <string>

namespace sim
{

// An app's local settings, on disk (simulator/protocol/SettingsFile.h). Read once in a process, which is the only one
// that writes them; written at each change, which fails with hresult_error, and changes nothing, when the file cannot
// be written. Any thread.
class SettingsStore : public NamedValues
{
  public:
    // Of the current host's app. Throws hresult_error for a process without package identity, and when the file cannot
    // be read.
    static std::shared_ptr<SettingsStore> OfThisProcess();

    explicit SettingsStore(std::wstring path);

    // Null for a missing name.
    IInspectable CopyOf(winrt::hstring const& name) const;

    // Keeps a copy; null removes the value. True when it replaced one. Throws hresult_error for a name or a value that
    // is too large, and for one of a wrong type.
    bool Insert(winrt::hstring const& name, IInspectable const& value);

  protected:
    void Save(Entries const& entries) override;

  private:
    std::wstring m_path;
};

} // namespace sim
