#include "simulator/protocol/Frames.h"
#include "simulator/base/Error.h"
#include "simulator/protocol/Encoding.h"
#include "simulator/protocol/Messages.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace
{

using Messages = std::vector<std::string>;

// All messages that are whole.
Messages Taken(sim::FrameReader& reader)
{
    Messages messages;
    while (auto const message = reader.Next())
    {
        messages.emplace_back(*message);
    }
    return messages;
}

} // namespace

TEST(FramesTest, ComeBackAsTheyWere)
{
    Messages const messages = {"one", "", std::string("a\0b", 3), std::string(100'000, 'x')};
    sim::FrameReader reader;
    for (auto const& message : messages)
    {
        reader.Add(sim::Framed(message));
    }
    EXPECT_EQ(Taken(reader), messages);
    EXPECT_EQ(reader.Next(), std::nullopt);
}

TEST(FramesTest, BeginWithTheirSize)
{
    EXPECT_EQ(sim::Framed("one"), std::string("\x03\0\0\0one", 7));
}

TEST(FramesTest, ComeTogetherFromSingleBytes)
{
    sim::FrameReader reader;
    Messages messages;
    for (auto const single : sim::Framed("one two") + sim::Framed("") + sim::Framed("three"))
    {
        reader.Add({&single, 1});
        for (auto& message : Taken(reader))
        {
            messages.push_back(std::move(message));
        }
    }
    EXPECT_EQ(messages, (Messages{"one two", "", "three"}));
}

TEST(FramesTest, ComeFromOnePieceWithTheBeginningOfTheNext)
{
    auto const last = sim::Framed("three");
    sim::FrameReader reader;
    reader.Add(sim::Framed("one") + sim::Framed("two") + last.substr(0, 6));
    EXPECT_EQ(Taken(reader), (Messages{"one", "two"}));
    reader.Add(last.substr(6));
    EXPECT_EQ(Taken(reader), Messages{"three"});
}

TEST(FramesTest, ThatAreCutGiveNothingYet)
{
    auto const bytes = sim::Framed("one two");
    for (std::size_t length = 0; length < bytes.size(); ++length)
    {
        sim::FrameReader reader;
        reader.Add(bytes.substr(0, length));
        EXPECT_EQ(reader.Next(), std::nullopt) << length;
    }
}

TEST(FramesTest, AreAsLargeAsTheLargestMessageAndNoLarger)
{
    std::string message(sim::largestMessage, 'x');
    sim::FrameReader reader;
    reader.Add(sim::Framed(message));
    EXPECT_EQ(reader.Next(), message);
    message += 'x';
    reader.Add(sim::Framed(message));
    EXPECT_THROW(reader.Next(), sim::Error);
}

TEST(FramesTest, AreRefusedByTheirSizeAlone)
{
    sim::FrameReader reader;
    reader.Add("\xFF\xFF\xFF\xFF");
    EXPECT_THROW(reader.Next(), sim::Error);
}

TEST(FramesTest, HoldTheLargestSetWithTheOtherFields)
{
    std::string const set(sim::largestSet, 'x');
    sim::FromProcess const request = sim::Request{0, sim::SendRequest{1, sim::ConnectionEnd::Caller, set}};
    EXPECT_LE(sim::Encode(request).size(), sim::largestMessage);
    sim::ToProcess const arrived = sim::RequestArrived{1, sim::ConnectionEnd::Caller, 1, set};
    EXPECT_LE(sim::Encode(arrived).size(), sim::largestMessage);
}
