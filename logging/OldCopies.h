#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace zant
{

// Decides which files in a log's folder are deleted when old copies are cleaned up. `base` is the live log's name
// without extension; names that do not begin with it (case-sensitive) are left alone. Of the others, the live log and
// the copies whose name begins with one of `dayPrefixes` may stay, of which the five that sort highest as text are
// kept. (Dates are not padded with zeros, so that is not always the order of time.)
class OldCopies
{
  public:
    OldCopies(std::wstring_view base, std::wstring_view liveName, std::vector<std::wstring> dayPrefixes);

    // Judges the next name found. True: the file is to be deleted at once. False: the name is not concerned, or is
    // remembered since its file may stay.
    bool Judge(std::wstring const& name);

    // The remembered names beyond the number kept, in ascending order. Sorts the names remembered.
    std::vector<std::wstring> TakeSurplus();

  private:
    std::wstring m_base;
    std::wstring m_liveName;
    std::vector<std::wstring> m_dayPrefixes;
    std::vector<std::wstring> m_candidates;
};

} // namespace zant
