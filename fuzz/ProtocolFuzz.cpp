// What the simulator's processes and platform say to each other: bytes either are refused with an Error, or are exactly
// the encoding of the message that they decode to.
#include "fuzz/Demand.h"
#include "simulator/protocol/Encoding.h"
#include "simulator/protocol/Messages.h"

#include <cstdint>

namespace
{

template <typename Message>
void Check(std::string_view bytes)
{
    try
    {
        fuzz::Demand(sim::Encode(sim::Decode<Message>(bytes)) == bytes, "the encoding of the decoded message");
    }
    catch (sim::Error const&)
    {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string_view const bytes(reinterpret_cast<char const*>(data), size);
    Check<sim::FromProcess>(bytes);
    Check<sim::ToProcess>(bytes);
    return 0;
}
