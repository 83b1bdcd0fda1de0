#include "simulator/transport/PipeChannel.h"
#include "simulator/client/Inbox.h"
#include "simulator/model/Handle.h"
#include "simulator/transport/Pipe.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <string_view>
#include <thread>

namespace
{

// Both ends of a pipe in this process.
class PipeChannels : public testing::Test
{
  protected:
    PipeChannels() : m_name(L"\\\\.\\pipe\\velmo-sim-test-" + std::to_wstring(GetCurrentProcessId()))
    {
        m_serverPipe = sim::MakePipe(m_name);
        m_clientPipe = sim::ConnectPipe(m_name);
    }

    static std::shared_ptr<sim::PipeChannel> Open(sim::Handle pipe, sim::Inbox<sim::Message>& inbox)
    {
        auto channel = sim::PipeChannel::Open(std::move(pipe));
        channel->Start({[&inbox](sim::Message message) { inbox.Add(std::move(message)); }, [&inbox] { inbox.End(); }});
        return channel;
    }

    static void Write(sim::Handle const& pipe, std::string_view bytes)
    {
        DWORD written = 0;
        OVERLAPPED overlapped{};
        WriteFile(pipe.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, &overlapped);
    }

    static sim::Message Wait(sim::Inbox<sim::Message>& inbox)
    {
        WaitForSingleObject(inbox.Arrived(), INFINITE);
        return inbox.Take().value_or(sim::Message{L"(end)"});
    }

    std::wstring m_name;
    sim::Handle m_serverPipe;
    sim::Handle m_clientPipe;
    sim::Inbox<sim::Message> m_serverInbox;
    sim::Inbox<sim::Message> m_clientInbox;
};

} // namespace

TEST_F(PipeChannels, CarryMessagesBothWaysInOrder)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    auto const client = Open(std::move(m_clientPipe), m_clientInbox);
    for (int i = 0; i < 500; ++i)
    {
        client->Send({L"question", std::to_wstring(i)});
        server->Send({L"answer", std::to_wstring(i)});
    }
    for (int i = 0; i < 500; ++i)
    {
        EXPECT_EQ(Wait(m_serverInbox), (sim::Message{L"question", std::to_wstring(i)}));
        EXPECT_EQ(Wait(m_clientInbox), (sim::Message{L"answer", std::to_wstring(i)}));
    }
    client->Close();
    EXPECT_EQ(Wait(m_serverInbox), sim::Message{L"(end)"});
    EXPECT_EQ(Wait(m_clientInbox), sim::Message{L"(end)"});
}

TEST_F(PipeChannels, CarryAMessageLargerThanThePipe)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    auto const client = Open(std::move(m_clientPipe), m_clientInbox);
    std::wstring const large(2'000'000, L'x');
    client->Send({large});
    client->Flush();
    EXPECT_EQ(Wait(m_serverInbox), sim::Message{large});
    client->Close();
    EXPECT_EQ(Wait(m_clientInbox), sim::Message{L"(end)"});
    EXPECT_EQ(Wait(m_serverInbox), sim::Message{L"(end)"});
}

// Many rounds: sent without waiting, it would have left by chance in some.
TEST_F(PipeChannels, HaveSaidAllThatWasSentWhenTheyAreFlushed)
{
    auto const client = Open(std::move(m_clientPipe), m_clientInbox);
    auto const size = sim::Encode({L"last words"}).size();
    for (DWORD round = 1; round <= 500; ++round)
    {
        client->Send({L"last words"});
        client->Flush();
        DWORD arrived = 0;
        ASSERT_TRUE(PeekNamedPipe(m_serverPipe.Get(), nullptr, 0, nullptr, &arrived, nullptr));
        ASSERT_EQ(arrived, size * round);
    }
    client->Close();
    EXPECT_EQ(Wait(m_clientInbox), sim::Message{L"(end)"});
}

TEST_F(PipeChannels, DoNotBlockWhoSendsToAnEndThatDoesNotRead)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    for (int i = 0; i < 100; ++i)
    {
        server->Send({std::wstring(100'000, L'x')});
    }
    server->Close();
    EXPECT_EQ(Wait(m_serverInbox), sim::Message{L"(end)"});
}

TEST_F(PipeChannels, TellOnceThatTheOtherEndHasGoneAndLoseWhatIsSentThen)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    {
        sim::Handle const gone = std::move(m_clientPipe);
    }
    EXPECT_EQ(Wait(m_serverInbox), sim::Message{L"(end)"});
    server->Send({L"lost"});
    server->Flush();
    server->Close();
    EXPECT_TRUE(m_serverInbox.HasEnded());
}

TEST_F(PipeChannels, DeliverTheLastWordsOfAnEndThatGoes)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    Write(m_clientPipe, sim::Encode({L"last words"}));
    {
        sim::Handle const gone = std::move(m_clientPipe);
    }
    EXPECT_EQ(Wait(m_serverInbox), sim::Message{L"last words"});
    EXPECT_EQ(Wait(m_serverInbox), sim::Message{L"(end)"});
}

TEST_F(PipeChannels, ListenAlthoughTheThreadThatBeganItEnds)
{
    // Each round's message comes a microsecond later: one of them comes just while that thread ends.
    for (int round = 0; round < 200; ++round)
    {
        auto serverPipe = sim::MakePipe(m_name);
        auto clientPipe = sim::ConnectPipe(m_name);
        sim::Inbox<sim::Message> inbox;
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
        Write(clientPipe, sim::Encode({L"welcome"}));
        beginner.join();
        EXPECT_EQ(Wait(inbox), sim::Message{L"welcome"});
        clientPipe = sim::Handle();
        EXPECT_EQ(Wait(inbox), sim::Message{L"(end)"});
    }
}

TEST_F(PipeChannels, EndAfterGibberish)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    Write(m_clientPipe, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(Wait(m_serverInbox), sim::Message{L"(end)"});
}

TEST(Pipe, ThatNobodyServesIsNotWaitedFor)
{
    EXPECT_FALSE(sim::ConnectPipe(L"\\\\.\\pipe\\velmo-sim-nobody-" + std::to_wstring(GetCurrentProcessId())));
}
