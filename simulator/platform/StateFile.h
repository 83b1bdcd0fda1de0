#pragma once
#include "simulator/platform/Journal.h"

#include <functional>
#include <string>
#include <vector>

namespace sim
{

// A file of the platform's state that outlasts the device's restart. Its lines are words.
class StateFile
{
  public:
    using Words = std::vector<std::wstring>;

    StateFile(std::wstring path, Journal& journal) : m_path(std::move(path)), m_journal(&journal) {}

    // Passes each line to `take`, which throws Error for an invalid one. A damaged file is set aside
    // (Device::SetAside), the journal gives the reason, and its valid lines stay in force.
    void Read(std::function<void(Words const&)> const& take) const;

    // Throws Error.
    void Write(std::vector<Words> const& lines) const;

    bool Exists() const;
    void Remove() const;

  private:
    void SetAside(std::wstring const& damage, std::vector<Words> const& rest) const;

    std::wstring m_path;
    Journal* m_journal;
};

// Parses a number of at most `largest`. what: its name in the Error that it throws.
std::int64_t NumberIn(std::wstring const& word, std::wstring_view what, std::int64_t largest = INT64_MAX);

} // namespace sim
