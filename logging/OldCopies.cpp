#include "logging/OldCopies.h"

#include <algorithm>

namespace zant
{

std::vector<std::wstring> CopiesToDelete(std::span<std::wstring const> names, std::wstring_view base,
                                         std::wstring_view liveName, std::span<std::wstring const> dayPrefixes)
{
    constexpr std::size_t mostKept = 5;
    std::vector<std::wstring> doomed;
    std::vector<std::wstring> candidates;
    for (auto const& name : names)
    {
        if (!name.starts_with(base))
        {
            continue;
        }
        auto const isRecent =
            std::ranges::any_of(dayPrefixes, [&](auto const& prefix) { return name.starts_with(prefix); });
        (isRecent || name == liveName ? candidates : doomed).push_back(name);
    }
    std::ranges::sort(candidates);
    auto const surplus = candidates.size() > mostKept ? candidates.size() - mostKept : 0;
    doomed.insert(doomed.end(), candidates.begin(), candidates.begin() + static_cast<std::ptrdiff_t>(surplus));
    return doomed;
}

} // namespace zant
