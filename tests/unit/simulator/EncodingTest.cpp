#include "simulator/base/Error.h"
#include "tests/unit/simulator/MessageEquality.h"

#include <set>

namespace
{

using namespace std::literals;

sim::Fault const fault{L"CoreApplication.Exit", sim::FaultKind::Ended, 0x80004005, 3, 2};

std::vector<sim::Activation::Content> Contents()
{
    return {sim::UserLaunch{L"arguments"},
            sim::ProtocolLaunch{L"a-protocol:x"},
            sim::ServiceStart{1, 2, L"a.service", L"A.Package_m7dy57p66fpam"},
            sim::TaskStart{1, L"id", L"A Task", sim::Trigger::Timer, L"payload"},
            sim::Suspension{},
            sim::PageRequest{L"A.Page"}};
}

std::vector<sim::AnyRequest> Requests()
{
    return {sim::OpenConnection{L"a.service", L"A.Package_m7dy57p66fpam"},
            sim::SendRequest{1, sim::ConnectionEnd::Service, "a\0\xFF"s},
            sim::GiveResponse{0xFFFFFFFF, ""},
            sim::CreateChannel{},
            sim::RegisterTask{L"A Task", sim::Trigger::Timer, 15, true},
            sim::ListTasks{},
            sim::UnregisterTask{L"id", true},
            sim::LaunchDesktop{L"App", std::nullopt},
            sim::LaunchDesktop{L"", L"Group"},
            sim::RegisterPackage{L"C:\\package"},
            sim::UpdatePackage{L"C:\\package", true},
            sim::UnregisterPackage{},
            sim::LaunchApp{L"arguments"},
            sim::OpenUri{L"a-protocol:x"},
            sim::SuspendApp{},
            sim::RequestPage{L"A.Page"},
            sim::KillApp{},
            sim::Push{L"a\0b \x00E4\xD83D\xDE00"s},
            sim::Push{L"payload", L"https://uri"},
            sim::SetCondition{sim::Condition::NetworkOff, true},
            sim::AdvanceClock{-1},
            sim::RevokeChannel{},
            sim::CancelTasks{11},
            sim::ShowTasks{},
            sim::SetFault{fault},
            sim::ClearFaults{},
            sim::ShowStatus{},
            sim::ShowProcess{},
            sim::DescribeDevice{}};
}

std::vector<sim::AnyAnswer> Answers()
{
    return {sim::Refused{L"reason"},
            sim::Shown{L"one\ntwo"},
            sim::ConnectionOpened{sim::OpenStatus::AppServiceUnavailable, 1},
            sim::ResponseGiven{sim::ResponseStatus::Failure, "set"},
            sim::ResponseTaken{sim::ResponseStatus::Failure},
            sim::ChannelCreated{-1, L"https://", 133'489'512'000'000'000},
            sim::TaskRegistered{-2, L"id"},
            sim::TaskList{},
            sim::TaskList{{{L"1", L"one"}, {L"2", L"two"}}},
            sim::TaskUnregistered{1},
            sim::DesktopLaunched{-3},
            sim::DeviceState{},
            sim::DeviceState{sim::PackageState{L"A.Package_m7dy57p66fpam", L"1.0.0.0", L"C:\\package"},
                             {true, true, 1, 2},
                             {133'489'512'000'000'000, 15, -1},
                             sim::ChannelState{L"https://", 1},
                             {{{L"A Task", sim::Trigger::Timer, 2}},
                              {{3, L"A Task", L"instance 1 runs"}},
                              {sim::Condition::NetworkOff}}}};
}

// Each message that there is, and each of what it carries; texts and lists also empty ones.
std::vector<sim::FromProcess> FromProcesses()
{
    std::vector<sim::FromProcess> messages = {
        sim::Hello{12},
        sim::ActivationTaken{1},
        sim::ExitAnnounced{},
        sim::FaultTriggered{L"CoreApplication.Exit"},
        sim::Report{L"kind", {}},
        sim::Report{L"", {L"one=1", L"", L"two=2"}},
        sim::TaskReturned{1},
        sim::TaskCompleted{1},
        sim::RequestCompleted{1},
        sim::RequestRefused{1},
        sim::ConnectionClosed{1, sim::ConnectionEnd::Service},
        sim::Follow{},
        sim::SwitchOff{},
        sim::SuspendingCompleted{},
    };
    for (auto& request : Requests())
    {
        messages.push_back(sim::Request{7, std::move(request)});
    }
    return messages;
}

std::vector<sim::ToProcess> ToProcesses()
{
    std::vector<sim::ToProcess> messages = {
        sim::Welcome{L"A.Package_m7dy57p66fpam", L"C:\\package"},
        sim::NotTheApp{},
        sim::FaultSet{fault},
        sim::FaultsCleared{},
        sim::TaskCancelled{1, 2, 9},
        sim::TaskEnded{1, 2},
        sim::RequestArrived{1, sim::ConnectionEnd::Service, 2, "set"},
        sim::OtherEndClosed{1, sim::ConnectionEnd::Service, sim::ClosedStatus::Canceled},
        sim::EventHappened{{1, L"kind", {L"one=1"}}},
    };
    for (auto& content : Contents())
    {
        messages.push_back(sim::Activate{{3, std::move(content)}});
    }
    for (auto& answer : Answers())
    {
        messages.push_back(sim::Answer{7, std::move(answer)});
    }
    return messages;
}

// Whether each alternative is among them.
template <typename... Alternatives>
bool HasEach(std::vector<std::variant<Alternatives...>> const& values)
{
    std::set<std::size_t> indexes;
    for (auto const& value : values)
    {
        indexes.insert(value.index());
    }
    return indexes.size() == sizeof...(Alternatives);
}

// Bytes either are the encoding of a message, or are refused with an Error: nothing else is thrown.
template <typename Message>
void DecodeOrRefuse(std::string const& bytes)
{
    try
    {
        EXPECT_EQ(sim::Encode(sim::Decode<Message>(bytes)), bytes);
    }
    catch (sim::Error const& error)
    {
        EXPECT_FALSE(error.Message().empty());
    }
}

template <typename Message>
void DecodeOrRefuseEachChange(std::string const& bytes)
{
    for (std::size_t position = 0; position < bytes.size(); ++position)
    {
        for (auto const change : {0x01, 0x02, 0x10, 0x7F, 0x80, 0xFF})
        {
            auto changed = bytes;
            changed[position] = static_cast<char>(changed[position] ^ change);
            DecodeOrRefuse<Message>(changed);
        }
    }
}

template <typename Message>
void ComeBack(std::vector<Message> const& messages)
{
    for (auto const& message : messages)
    {
        auto const back = sim::Decode<Message>(sim::Encode(message));
        EXPECT_EQ(back.index(), message.index());
        EXPECT_EQ(back, message);
    }
}

// A prefix is never a message, as each message is read to its end.
template <typename Message>
void RefusePrefixes(std::vector<Message> const& messages)
{
    for (auto const& message : messages)
    {
        auto const bytes = sim::Encode(message);
        for (std::size_t length = 0; length < bytes.size(); ++length)
        {
            EXPECT_THROW(sim::Decode<Message>(bytes.substr(0, length)), sim::Error) << length;
        }
        EXPECT_THROW(sim::Decode<Message>(bytes + '\0'), sim::Error);
    }
}

template <typename Enum>
void EndsAt(Enum last)
{
    auto const number = static_cast<std::uint32_t>(last);
    for (std::uint32_t known = 0; known <= number; ++known)
    {
        EXPECT_EQ(sim::Decode<Enum>(sim::Encode(known)), static_cast<Enum>(known));
    }
    EXPECT_THROW(sim::Decode<Enum>(sim::Encode(number + 1)), sim::Error);
    EXPECT_THROW(sim::Decode<Enum>(sim::Encode(0xFFFFFFFFu)), sim::Error);
}

} // namespace

TEST(EncodingTest, IsTestedWithEachMessage)
{
    EXPECT_TRUE(HasEach(FromProcesses()));
    EXPECT_TRUE(HasEach(ToProcesses()));
    EXPECT_TRUE(HasEach(Requests()));
    EXPECT_TRUE(HasEach(Answers()));
    EXPECT_TRUE(HasEach(Contents()));
}

TEST(EncodingTest, GivesEachMessageBack)
{
    ComeBack(FromProcesses());
    ComeBack(ToProcesses());
}

TEST(EncodingTest, IsAnotherForEachMessage)
{
    std::set<std::string> encodings;
    for (auto const& message : FromProcesses())
    {
        encodings.insert(sim::Encode(message));
    }
    EXPECT_EQ(encodings.size(), FromProcesses().size());
}

TEST(EncodingTest, KeepsTheFieldsInTheirOrder)
{
    EXPECT_EQ(sim::Encode(sim::FromProcess(sim::ConnectionClosed{0x12345678, sim::ConnectionEnd::Service})),
              "\x09\0\0\0"       // the tenth message
              "\x78\x56\x34\x12" // the connection
              "\x01\0\0\0"s);    // the end
    EXPECT_EQ(sim::Encode(sim::LaunchDesktop{L"A", L""}), "\x01\0\0\0A\0\x01\0\0\0\0"s);
    EXPECT_EQ(sim::Encode(sim::LaunchDesktop{L"A", std::nullopt}), "\x01\0\0\0A\0\0"s);
}

TEST(EncodingTest, RefusesWhatIsCutOrTooLong)
{
    RefusePrefixes(FromProcesses());
    RefusePrefixes(ToProcesses());
}

TEST(EncodingTest, DecodesOrRefusesEachChangedByte)
{
    for (auto const& message : FromProcesses())
    {
        DecodeOrRefuseEachChange<sim::FromProcess>(sim::Encode(message));
    }
    for (auto const& message : ToProcesses())
    {
        DecodeOrRefuseEachChange<sim::ToProcess>(sim::Encode(message));
    }
}

TEST(EncodingTest, RefusesAnUnknownMessage)
{
    auto const unknown = [](std::size_t count) { return sim::Encode(static_cast<std::uint32_t>(count)); };
    EXPECT_THROW(sim::Decode<sim::FromProcess>(unknown(std::variant_size_v<sim::FromProcess>)), sim::Error);
    EXPECT_THROW(sim::Decode<sim::ToProcess>(unknown(std::variant_size_v<sim::ToProcess>)), sim::Error);
    EXPECT_THROW(sim::Decode<sim::AnyRequest>(unknown(std::variant_size_v<sim::AnyRequest>)), sim::Error);
    EXPECT_THROW(sim::Decode<sim::AnyAnswer>(unknown(0xFFFFFFFF)), sim::Error);
}

TEST(EncodingTest, RefusesAnUnknownEnumerator)
{
    EndsAt(sim::Trigger::Timer);
    EndsAt(sim::ConnectionEnd::Service);
    EndsAt(sim::OpenStatus::AppServiceUnavailable);
    EndsAt(sim::ResponseStatus::Failure);
    EndsAt(sim::ClosedStatus::Canceled);
    EndsAt(sim::FaultKind::Held);
}

TEST(EncodingTest, RefusesAFlagThatIsNeitherSetNorClear)
{
    auto bytes = sim::Encode(sim::UnregisterTask{L"", true});
    bytes.back() = '\x02';
    EXPECT_THROW(sim::Decode<sim::UnregisterTask>(bytes), sim::Error);
}

TEST(EncodingTest, RefusesATextOrAListBeyondTheEnd)
{
    auto const count = sim::Encode(0xFFFFFFFFu);
    EXPECT_THROW(sim::Decode<sim::Shown>(count + "ab"), sim::Error);
    EXPECT_THROW(sim::Decode<sim::TaskList>(count + sim::Encode(sim::TaskName{L"1", L"one"})), sim::Error);
}
