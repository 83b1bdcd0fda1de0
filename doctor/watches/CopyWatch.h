#pragma once
#include "doctor/stories/Remark.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace doctor
{

// Copies: which were set aside or rotated, and which are missing.
class CopyWatch
{
  public:
    // The next file begins.
    void Begin(std::filesystem::path const& file);

    void Add(LogPlace const& place, TakeRemark const& take);

  private:
    bool HasCopyOf(LogTime time) const;

    std::vector<LogTime> m_copied; // when the files before were made copies, by their names
    std::optional<LogTime> m_own;  // the same of this one
    std::optional<LogPlace> m_last;
    bool m_isFirstLine = true;
};

// "KZEB 2024-1-5 09-30-12.log": the local time. nullopt for other names.
std::optional<LogTime> TimeOfCopy(std::filesystem::path const& file);

} // namespace doctor
