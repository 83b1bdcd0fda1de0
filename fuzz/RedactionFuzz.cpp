// Redaction against the rules applied one by one. The first byte of an input selects how the rest is read.
#include "fuzz/Demand.h"
#include "tests/native/MessagePieces.h"
#include "tests/native/RedactionReference.h"

using fuzz::Demand;
using namespace zant;

namespace
{

void Compare(Utf16String const& message, std::vector<Utf16String> const& keys)
{
    static Utf16String changed; // with what the message before has left in it
    auto const expected = test::RedactedByTheRules(message, LogLevel::Info, keys);
    auto level = LogLevel::Info;
    Demand(Redact(message, changed, level, keys) == expected.message, "the message");
    Demand(level == expected.printedLevel, "the level");
    Demand(ContainsToken(message) == (level == LogLevel::Warn), "whether it has a token");
    if (level != LogLevel::Warn)
    {
        auto output = message;
        MaskCredentials(keys, message, output);
        Demand(output == expected.message, "the masked message");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static test::MessagePieces const pieces;
    static auto const keys = CredentialKeys();
    static auto const reversed = std::vector(keys.rbegin(), keys.rend());
    if (size == 0)
    {
        return 0;
    }
    std::span const rest(data + 1, size - 1);
    auto const message = (data[0] & 1) != 0 ? pieces.Units(rest) : pieces.Message(rest);
    Compare(message, (data[0] & 2) != 0 ? reversed : keys);
    return 0;
}
