#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// The words of a line, as in scenario files and in the journal: separated by blanks; '…' and "…" keep blanks (and each
// other) unchanged, also in the middle of a word (command='"a b" c'). A # at the start of a word begins a comment.
// Throws Error when a quote is not closed.
std::vector<std::wstring> SplitWords(std::wstring_view line);

// The text as one word for SplitWords; line ends become blanks.
std::wstring Quoted(std::wstring_view text);

// The line that SplitWords splits into these words.
std::wstring Joined(std::vector<std::wstring> const& words);

} // namespace sim
