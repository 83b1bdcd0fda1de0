#include "logging/OldCopies.h"

#include <algorithm>

namespace zant
{

OldCopies::OldCopies(std::wstring_view base, std::wstring_view liveName, std::vector<std::wstring> dayPrefixes)
    : m_base(base), m_liveName(liveName), m_dayPrefixes(std::move(dayPrefixes))
{
}

bool OldCopies::Judge(std::wstring const& name)
{
    if (!name.starts_with(m_base))
    {
        return false;
    }
    auto const isRecent =
        std::ranges::any_of(m_dayPrefixes, [&](auto const& prefix) { return name.starts_with(prefix); });
    if (!isRecent && name != m_liveName)
    {
        return true;
    }
    m_candidates.push_back(name);
    return false;
}

std::vector<std::wstring> OldCopies::TakeSurplus()
{
    constexpr std::size_t mostKept = 5;
    std::ranges::sort(m_candidates);
    auto const surplus = m_candidates.size() > mostKept ? m_candidates.size() - mostKept : 0;
    return {m_candidates.begin(), m_candidates.begin() + static_cast<std::ptrdiff_t>(surplus)};
}

} // namespace zant
