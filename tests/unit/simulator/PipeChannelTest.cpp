#include "simulator/protocol/PipeChannel.h"
#include "simulator/base/Error.h"
#include "simulator/base/Handle.h"
#include "simulator/base/Inbox.h"
#include "simulator/protocol/Pipe.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <string_view>
#include <thread>

namespace
{

// Both ends of a pipe in this process.
class PipeChannelTest : public testing::Test
{
  protected:
    PipeChannelTest() : m_name(L"\\\\.\\pipe\\velmo-sim-test-" + std::to_wstring(GetCurrentProcessId()))
    {
        m_serverPipe = sim::MakePipe(m_name);
        m_clientPipe = sim::ConnectPipe(m_name);
    }

    static std::shared_ptr<sim::PipeChannel> Open(sim::Handle pipe, sim::Inbox<std::string>& inbox)
    {
        auto channel = sim::PipeChannel::Open(std::move(pipe));
        channel->Start(
            {[&inbox](std::string_view message) { inbox.Add(std::string(message)); }, [&inbox] { inbox.End(); }});
        return channel;
    }

    static void Write(sim::Handle const& pipe, std::string_view bytes)
    {
        DWORD written = 0;
        OVERLAPPED overlapped{};
        WriteFile(pipe.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, &overlapped);
    }

    static std::string Wait(sim::Inbox<std::string>& inbox)
    {
        WaitForSingleObject(inbox.Arrived(), INFINITE);
        return inbox.Take().value_or("(end)");
    }

    std::wstring m_name;
    sim::Handle m_serverPipe;
    sim::Handle m_clientPipe;
    sim::Inbox<std::string> m_serverInbox;
    sim::Inbox<std::string> m_clientInbox;
};

} // namespace

TEST_F(PipeChannelTest, CarriesMessagesBothWaysInOrder)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    auto const client = Open(std::move(m_clientPipe), m_clientInbox);
    for (int i = 0; i < 500; ++i)
    {
        client->Send("question " + std::to_string(i));
        server->Send("answer " + std::to_string(i));
    }
    for (int i = 0; i < 500; ++i)
    {
        EXPECT_EQ(Wait(m_serverInbox), "question " + std::to_string(i));
        EXPECT_EQ(Wait(m_clientInbox), "answer " + std::to_string(i));
    }
    client->Close();
    EXPECT_EQ(Wait(m_serverInbox), "(end)");
    EXPECT_EQ(Wait(m_clientInbox), "(end)");
}

TEST_F(PipeChannelTest, CarriesAMessageLargerThanThePipe)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    auto const client = Open(std::move(m_clientPipe), m_clientInbox);
    std::string const large(4'000'000, 'x');
    client->Send(large);
    client->Flush();
    EXPECT_EQ(Wait(m_serverInbox), large);
    client->Close();
    EXPECT_EQ(Wait(m_clientInbox), "(end)");
    EXPECT_EQ(Wait(m_serverInbox), "(end)");
}

// Many rounds: sent without waiting, it would have left by chance in some.
TEST_F(PipeChannelTest, HasSaidAllThatWasSentWhenItIsFlushed)
{
    auto const client = Open(std::move(m_clientPipe), m_clientInbox);
    auto const size = sim::Framed("last words").size();
    for (DWORD round = 1; round <= 500; ++round)
    {
        client->Send("last words");
        client->Flush();
        DWORD arrived = 0;
        ASSERT_TRUE(PeekNamedPipe(m_serverPipe.Get(), nullptr, 0, nullptr, &arrived, nullptr));
        ASSERT_EQ(arrived, size * round);
    }
    client->Close();
    EXPECT_EQ(Wait(m_clientInbox), "(end)");
}

TEST_F(PipeChannelTest, DoesNotBlockASenderToAnEndThatDoesNotRead)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    for (int i = 0; i < 100; ++i)
    {
        server->Send(std::string(200'000, 'x'));
    }
    server->Close();
    EXPECT_EQ(Wait(m_serverInbox), "(end)");
}

TEST_F(PipeChannelTest, TellsOnceThatTheOtherEndHasEndedAndLosesWhatIsSentThen)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    {
        sim::Handle const gone = std::move(m_clientPipe);
    }
    EXPECT_EQ(Wait(m_serverInbox), "(end)");
    server->Send("lost");
    server->Flush();
    server->Close();
    EXPECT_TRUE(m_serverInbox.HasEnded());
}

TEST_F(PipeChannelTest, DeliversTheLastWordsOfAnEndThatGoes)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    Write(m_clientPipe, sim::Framed("last words"));
    {
        sim::Handle const gone = std::move(m_clientPipe);
    }
    EXPECT_EQ(Wait(m_serverInbox), "last words");
    EXPECT_EQ(Wait(m_serverInbox), "(end)");
}

TEST_F(PipeChannelTest, ListensAlthoughTheThreadThatBeganItEnds)
{
    // Each round's message comes a microsecond later: one of them comes just while that thread ends.
    for (int round = 0; round < 200; ++round)
    {
        auto serverPipe = sim::MakePipe(m_name);
        auto clientPipe = sim::ConnectPipe(m_name);
        sim::Inbox<std::string> inbox;
        std::atomic<bool> listening = false;
        std::thread beginner([&] {
            Open(std::move(serverPipe), inbox);
            listening = true;
        });
        while (!listening)
        {
        }
        auto const moment = std::chrono::steady_clock::now() + std::chrono::microseconds(round);
        while (std::chrono::steady_clock::now() < moment)
        {
        }
        Write(clientPipe, sim::Framed("welcome"));
        beginner.join();
        EXPECT_EQ(Wait(inbox), "welcome");
        clientPipe = sim::Handle();
        EXPECT_EQ(Wait(inbox), "(end)");
    }
}

TEST_F(PipeChannelTest, EndsAfterGibberish)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    Write(m_clientPipe, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(Wait(m_serverInbox), "(end)");
}

TEST_F(PipeChannelTest, EndsAfterAMessageThatIsNotUnderstood)
{
    auto const server = sim::PipeChannel::Open(std::move(m_serverPipe));
    server->Start({[this](std::string_view message) {
                       m_serverInbox.Add(std::string(message));
                       throw sim::Error(L"not understood");
                   },
                   [this] { m_serverInbox.End(); }});
    Write(m_clientPipe, sim::Framed("nonsense") + sim::Framed("the next one"));
    EXPECT_EQ(Wait(m_serverInbox), "nonsense");
    EXPECT_EQ(Wait(m_serverInbox), "(end)");
}

TEST_F(PipeChannelTest, EndsWhenAMessageIsTooLarge)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    auto const client = Open(std::move(m_clientPipe), m_clientInbox);
    client->Send(std::string(sim::largestMessage + 1, 'x'));
    EXPECT_EQ(Wait(m_serverInbox), "(end)");
    EXPECT_EQ(Wait(m_clientInbox), "(end)");
}

TEST_F(PipeChannelTest, DoesNotConnectWhereNobodyServes)
{
    EXPECT_FALSE(sim::ConnectPipe(L"\\\\.\\pipe\\velmo-sim-nobody-" + std::to_wstring(GetCurrentProcessId())));
}
