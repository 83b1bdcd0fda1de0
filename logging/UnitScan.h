#pragma once
#include "logging/Utf16.h"

#include <bit>
#include <cstdint>
#include <emmintrin.h>

namespace zant
{

constexpr std::size_t unitsPerBlock = 32;

// One bit for each of the code units of a block: whether it is the wanted one.
inline std::uint32_t BlockHits(Utf16Unit const* units, Utf16Unit wanted) noexcept
{
    auto const wantedUnits = _mm_set1_epi16(static_cast<short>(wanted));
    auto const* const block = reinterpret_cast<__m128i const*>(units);
    auto const half = [&](int at) {
        auto const low = _mm_cmpeq_epi16(_mm_loadu_si128(block + at), wantedUnits);
        auto const high = _mm_cmpeq_epi16(_mm_loadu_si128(block + at + 1), wantedUnits);
        return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(low, high)));
    };
    return half(0) | half(2) << 16;
}

// The same for a text shorter than a block.
inline std::uint32_t ShortHits(Utf16View text, Utf16Unit wanted) noexcept
{
    Utf16Unit padded[unitsPerBlock] = {};
    text.copy(padded, text.size());
    return BlockHits(padded, wanted) & ((std::uint32_t{1} << text.size()) - 1);
}

// The index of the first code unit from `from` on that `accept` takes; npos when there is none. Tests a block of code
// units at a time, of which the last overlaps the one before; the standard library's search tests them one by one.
template <typename Accept>
std::size_t FindUnit(Utf16View text, Utf16Unit wanted, std::size_t from, Accept accept)
{
    auto const isShort = text.size() < unitsPerBlock;
    auto const lastBlock = isShort ? 0 : text.size() - unitsPerBlock;
    while (from < text.size())
    {
        auto const block = std::min(from, lastBlock);
        auto const all = isShort ? ShortHits(text, wanted) : BlockHits(text.data() + block, wanted);
        for (auto hits = all >> (from - block); hits != 0; hits &= hits - 1)
        {
            auto const place = from + static_cast<std::size_t>(std::countr_zero(hits));
            if (accept(place))
            {
                return place;
            }
        }
        from = block + unitsPerBlock;
    }
    return text.npos;
}

} // namespace zant
