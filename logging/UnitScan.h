#pragma once
#include "logging/Utf16.h"

#include <bit>
#include <emmintrin.h>

namespace zant
{

// The index of the first code unit from `from` on that `accept` takes; npos when there is none. Tests sixteen code
// units at a time; the standard library's search tests them one by one.
template <typename Accept>
std::size_t FindUnit(Utf16View text, Utf16Unit wanted, std::size_t from, Accept accept)
{
    constexpr std::size_t unitsPerBlock = 16;
    auto const wantedUnits = _mm_set1_epi16(static_cast<short>(wanted));
    for (; from + unitsPerBlock <= text.size(); from += unitsPerBlock)
    {
        auto const* const block = reinterpret_cast<__m128i const*>(text.data() + from);
        auto const low = _mm_cmpeq_epi16(_mm_loadu_si128(block), wantedUnits);
        auto const high = _mm_cmpeq_epi16(_mm_loadu_si128(block + 1), wantedUnits);
        // One bit for each code unit.
        for (auto hits = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(low, high))); hits != 0;
             hits &= hits - 1)
        {
            auto const place = from + static_cast<std::size_t>(std::countr_zero(hits));
            if (accept(place))
            {
                return place;
            }
        }
    }
    for (; from < text.size(); ++from)
    {
        if (text[from] == wanted && accept(from))
        {
            return from;
        }
    }
    return text.npos;
}

} // namespace zant
