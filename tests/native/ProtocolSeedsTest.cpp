#include "simulator/protocol/Encoding.h"
#include "simulator/protocol/Messages.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace
{

using namespace sim;
namespace fs = std::filesystem;

// What the fuzzer of the protocol begins with, by the names of its files.
struct Seed
{
    char const* name;
    std::string bytes;
};

std::string From(FromProcess const& message)
{
    return Encode(message);
}

std::string To(ToProcess const& message)
{
    return Encode(message);
}

std::vector<Seed> Seeds()
{
    Fault const fault{.call = L"A.B", .kind = FaultKind::Delay, .value = 7, .times = 3, .after = 2};
    return {
        {"activate-for-a-service", To(Activate{{1, ServiceStart{2, 3, L"a.service", L"A_b"}}})},
        {"activate-for-a-task", To(Activate{{1, TaskStart{2, L"id", L"Task", Trigger::Timer, L"\u20ac", 4}}})},
        {"answer-device", To(Answer{1, DeviceState{}})},
        {"answer-response", To(Answer{2, ResponseGiven{ResponseStatus::Failure, std::string("\1\0\xFF", 3)}})},
        {"answer-tasks", To(Answer{3, TaskList{{{L"id", L"one"}, {L"id", L"two"}}}})},
        {"connection-closed", From(ConnectionClosed{1, ConnectionEnd::Service})},
        {"event", To(EventHappened{{5, L"app-ended", {L"a=b", L""}}})},
        {"fault-set", To(FaultSet{fault})},
        {"hello", From(Hello{42})},
        {"report", From(Report{L"exit", {L"a=b", L"c"}})},
        {"request-launch-with-a-group", From(Request{1, LaunchDesktop{L"App", L"g"}})},
        {"request-register-task", From(Request{2, RegisterTask{L"Task", Trigger::Timer, 15, true}})},
        {"request-send", From(Request{3, SendRequest{4, ConnectionEnd::Service, "set"}})},
        {"switch-off", From(SwitchOff{})},
        {"welcome", To(Welcome{L"A_b", L"C:\\a"})},
    };
}

std::string Read(fs::path const& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

TEST(ProtocolSeeds, AreTheEncodingsOfMessages)
{
    auto const isWriting = std::getenv("VELMO_WRITE_SEEDS") != nullptr;
    for (auto const& [name, bytes] : Seeds())
    {
        auto const path = fs::path(CORPUS) / name;
        if (isWriting)
        {
            std::ofstream(path, std::ios::binary) << bytes;
        }
        EXPECT_EQ(Read(path), bytes) << name << ": this test writes it with VELMO_WRITE_SEEDS=1";
    }
}

TEST(ProtocolSeeds, AreAllThatTheFuzzerHas)
{
    auto const seeds = Seeds();
    for (auto const& file : fs::directory_iterator(CORPUS))
    {
        EXPECT_TRUE(std::ranges::any_of(seeds, [&](Seed const& seed) { return file.path().filename() == seed.name; }))
            << file.path();
    }
}
