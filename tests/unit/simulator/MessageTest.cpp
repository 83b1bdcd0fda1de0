#include "simulator/transport/Message.h"
#include "simulator/model/Error.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>

namespace
{

std::string Number(std::uint32_t value)
{
    std::string bytes(4, '\0');
    std::memcpy(bytes.data(), &value, 4);
    return bytes;
}

} // namespace

TEST(Message, ComesBackAsItWas)
{
    sim::Message const message = {L"verb", L"", L"text \x00E4\xD83D\xDE00", std::wstring(L"a\0b", 3),
                                  std::wstring(100'000, L'x')};
    sim::MessageDecoder decoder;
    decoder.Add(sim::Encode(message));
    EXPECT_EQ(decoder.Next(), message);
    EXPECT_EQ(decoder.Next(), std::nullopt);
}

TEST(Message, ComesTogetherFromSingleBytes)
{
    auto const bytes = sim::Encode({L"one", L"two"}) + sim::Encode({L"three"});
    sim::MessageDecoder decoder;
    std::vector<sim::Message> messages;
    for (auto const byte : bytes)
    {
        decoder.Add({&byte, 1});
        while (auto message = decoder.Next())
        {
            messages.push_back(*message);
        }
    }
    EXPECT_EQ(messages, (std::vector<sim::Message>{{L"one", L"two"}, {L"three"}}));
}

TEST(Message, ThatIsCutGivesNothingYet)
{
    auto const bytes = sim::Encode({L"one", L"two"});
    for (std::size_t length = 0; length < bytes.size(); ++length)
    {
        sim::MessageDecoder decoder;
        decoder.Add(bytes.substr(0, length));
        EXPECT_EQ(decoder.Next(), std::nullopt) << length;
    }
}

TEST(Message, OfTheLongestTextFitsWithOtherWords)
{
    sim::Message const message = {L"ask",        L"4294967295", L"send",
                                  L"4294967295", L"caller",     std::wstring(sim::longestText, L'x')};
    EXPECT_TRUE(sim::Fits(message));
    sim::MessageDecoder decoder;
    decoder.Add(sim::Encode(message));
    EXPECT_EQ(decoder.Next(), message);
}

TEST(Message, FitsUpToTheSizeThatDecodersTake)
{
    constexpr std::size_t numbers = 2 * sizeof(std::uint32_t); // the count of texts, the length of the one
    constexpr auto longest = (sim::largestMessage - numbers) / sizeof(wchar_t);
    EXPECT_TRUE(sim::Fits({std::wstring(longest, L'x')}));
    EXPECT_FALSE(sim::Fits({std::wstring(longest + 1, L'x')}));
    sim::MessageDecoder decoder;
    decoder.Add(sim::Encode({std::wstring(longest + 1, L'x')}));
    EXPECT_THROW(decoder.Next(), sim::Error);
}

TEST(MessageDecoder, RefusesWhatIsNoMessage)
{
    std::vector<std::string> const gibberish = {Number(0),                                   // no count
                                                Number(4) + Number(0),                       // no text
                                                Number(3) + "abc",                           // half a count
                                                Number(8) + Number(1) + Number(1),           // a text without units
                                                Number(8) + Number(1) + Number(0xFFFFFFFF),  // a text beyond the end
                                                Number(8) + Number(0xFFFFFFFF) + Number(0),  // texts beyond the end
                                                Number(12) + Number(1) + Number(0) + "more", // something left over
                                                Number(0xFFFFFFFF),
                                                Number(sim::largestMessage + 1)};
    for (auto const& bytes : gibberish)
    {
        sim::MessageDecoder decoder;
        decoder.Add(bytes);
        EXPECT_THROW(decoder.Next(), sim::Error) << testing::PrintToString(bytes);
    }
}
