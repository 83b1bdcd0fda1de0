// What the redaction of a message costs, compared with a scan of it for one code unit.
#include "bench/harness/Bench.h"
#include "bench/redaction/Texts.h"
#include "logging/Redaction.h"
#include "tests/native/RedactionReference.h"

#ifndef _WIN32
#include "bench/redaction/Pcre2Peer.h"
#endif

#include <emmintrin.h>

using namespace zant;

namespace
{

// Makes the compiler treat a result as used.
template <typename Result>
void Use(Result const& result)
{
    asm volatile("" : : "g"(&result) : "memory");
}

// The floor: whether a text contains a code unit.
bool Holds(Utf16View text, Utf16Unit wanted)
{
    auto const wantedBlock = _mm_set1_epi16(static_cast<short>(wanted));
    auto const* const units = text.data();
    std::size_t at = 0;
    for (; at + 8 <= text.size(); at += 8)
    {
        auto const block = _mm_loadu_si128(reinterpret_cast<__m128i const*>(units + at));
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(block, wantedBlock)) != 0)
        {
            return true;
        }
    }
    return text.substr(at).find(wanted) != text.npos;
}

void CompareOn(bench::Bench& bench, char const* kind, Utf16String const& message, std::optional<double> limit = {})
{
    constexpr std::size_t unitsPerBlock = 400'000;
    auto const keys = CredentialKeys();
    Utf16String changed;
    auto level = LogLevel::Info;
    auto const times = static_cast<int>(unitsPerBlock / message.size());
    auto const title = std::string(kind) + ", " + std::to_string(message.size()) + " units";
    auto const redaction = bench::Timed([&] { Use(Redact(message, changed, level, keys)); });
    bench.Compare(
        {title,
         {{"floor: a scan for one unit", bench::Timed([&] { Use(Holds(message, u'\x1')); })},
          {"redaction", redaction, limit},
          {"the rules, key by key", bench::Timed([&] { Use(test::RedactedByTheRules(message, level, keys)); })}},
         times});
#ifndef _WIN32
    bench::Pcre2Peer peer;
    bench.Compare(
        {title + ", against its peer",
         {{"PCRE2, 16-bit, JIT *", bench::Timed([&] { Use(peer.Redact(message)); })}, {"redaction", redaction, 0.7}},
         times});
#endif
}

} // namespace

int main()
{
#ifdef _WIN32
    bench::Bench bench("redaction", 12);
#else
    bench::Bench bench("redaction on Linux", 24); // with the peer
#endif
    // What is the same for a message of any length weighs more in a short one.
    constexpr std::pair<std::size_t, double> lengthsAndLimits[] = {{100, 12}, {1'000, 9}, {4'000, 8}};
    for (auto const& [length, denseLimit] : lengthsAndLimits)
    {
        auto const english = bench::English(length), dense = bench::Markup(length);
        auto const isShort = length < 1'000, isLong = length >= 4'000;
        CompareOn(bench, "Plain English", english, isShort ? std::nullopt : std::optional(4.0));
        CompareOn(bench, "Dense markup without secrets", dense, denseLimit);
        CompareOn(bench, "English with secrets", bench::WithSecrets(english),
                  isLong ? std::optional(15.0) : std::nullopt);
        CompareOn(bench, "Dense markup with secrets", bench::WithSecrets(dense),
                  isLong ? std::optional(denseLimit) : std::nullopt);
    }
#ifndef _WIN32
    std::printf("  * masks every element of a key and not the first alone: not quite the same work\n");
#endif
    return bench.Conclude();
}
