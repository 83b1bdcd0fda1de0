#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace zant
{

// Decides which files in a log's folder go when old copies are cleaned up. `base` is the live log's name without
// extension; names that do not begin with it (the case counts) are not touched. Of the others stay: the live log and
// the copies whose name begins with one of `dayPrefixes`, but no more than the five that sort highest as text. (Dates
// are not padded with zeros, so that is not always the order of time.)
class OldCopies
{
  public:
    OldCopies(std::wstring_view base, std::wstring_view liveName, std::vector<std::wstring> dayPrefixes);

    // Takes the next name found; whether its file goes at once.
    bool GoesAtOnce(std::wstring const& name);

    // Of the names found that may stay, those that are too many.
    std::vector<std::wstring> Surplus();

  private:
    std::wstring m_base;
    std::wstring m_liveName;
    std::vector<std::wstring> m_dayPrefixes;
    std::vector<std::wstring> m_candidates;
};

} // namespace zant
