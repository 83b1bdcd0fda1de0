#include "utils/WideScan.h"

#include <bit>
#include <cstdint>
#include <emmintrin.h>

namespace zant
{

// Reads whole aligned blocks. A block never spans two pages, so its bytes around the string are readable, too; those
// before the string are masked out.
wchar_t const* FindOrEnd(wchar_t const* text, wchar_t wanted) noexcept
{
    static_assert(sizeof(wchar_t) == 2);
    constexpr std::uintptr_t blockSize = sizeof(__m128i);
    auto const wantedBlock = _mm_set1_epi16(static_cast<short>(wanted));
    auto const offset = reinterpret_cast<std::uintptr_t>(text) % blockSize;
    auto const* block = reinterpret_cast<__m128i const*>(reinterpret_cast<char const*>(text) - offset);
    auto visible = 0xFFFFu << offset; // one bit for each byte of the block
    for (;; ++block, visible = 0xFFFF)
    {
        auto const characters = _mm_load_si128(block);
        auto const hits =
            _mm_or_si128(_mm_cmpeq_epi16(characters, wantedBlock), _mm_cmpeq_epi16(characters, _mm_setzero_si128()));
        if (auto const bytes = static_cast<unsigned>(_mm_movemask_epi8(hits)) & visible)
        {
            return reinterpret_cast<wchar_t const*>(block) + std::countr_zero(bytes) / 2;
        }
    }
}

} // namespace zant
