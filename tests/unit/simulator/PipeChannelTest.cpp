#include "simulator/transport/PipeChannel.h"
#include "simulator/client/Inbox.h"
#include "simulator/model/Handle.h"
#include "simulator/transport/Pipe.h"

#include <gtest/gtest.h>

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
    auto const bytes = sim::Encode({L"last words"});
    DWORD written = 0;
    OVERLAPPED overlapped{};
    WriteFile(m_clientPipe.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, &overlapped);
    {
        sim::Handle const gone = std::move(m_clientPipe);
    }
    EXPECT_EQ(Wait(m_serverInbox), sim::Message{L"last words"});
    EXPECT_EQ(Wait(m_serverInbox), sim::Message{L"(end)"});
}

TEST_F(PipeChannels, EndAfterGibberish)
{
    auto const server = Open(std::move(m_serverPipe), m_serverInbox);
    DWORD written = 0;
    OVERLAPPED overlapped{};
    WriteFile(m_clientPipe.Get(), "\xFF\xFF\xFF\xFF", 4, &written, &overlapped);
    EXPECT_EQ(Wait(m_serverInbox), sim::Message{L"(end)"});
}

TEST(Pipe, ThatNobodyServesIsNotWaitedFor)
{
    EXPECT_FALSE(sim::ConnectPipe(L"\\\\.\\pipe\\velmo-sim-nobody-" + std::to_wstring(GetCurrentProcessId())));
}
