#pragma once
#include "simulator/platform/Journal.h"

#include <functional>
#include <string>
#include <vector>

namespace sim
{

// A file in which the platform keeps something beyond the device's restart, as lines of words.
class StateFile
{
  public:
    using Words = std::vector<std::wstring>;

    StateFile(std::wstring path, Journal& journal) : m_path(std::move(path)), m_journal(&journal) {}

    // Gives its lines to `take`, which throws Error for one that makes no sense. A damaged file is set aside
    // (Device::SetAside), the journal says what is wrong with it, and its other lines stay in force.
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

// The number that a word stands for, at most the largest one. Throws Error; what: its name.
std::int64_t NumberIn(std::wstring const& word, std::wstring_view what, std::int64_t largest = INT64_MAX);

} // namespace sim
