#include "simulator/runtime/PipeHost.h"
#include "simulator/transport/Pipe.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <thread>
#include <windows.h>

namespace
{

// The app's process, and its device's end of the connection. Both live until the process ends: a process whose device
// goes is ended.
class PipeHosts : public testing::Test
{
  protected:
    static constexpr wchar_t struckCall[] = L"CoreApplication.Exit";

    PipeHosts()
    {
        SetEnvironmentVariableW(L"VELMO_SIM_HOME", m_folder.Path().c_str());
        pipe = (new sim::Handle(sim::MakePipe(sim::Device::FromEnvironment().PipeName())))->Get();
        std::thread broker([this] {
            Hear();
            sim::Activation const launch = {L"1", sim::ActivationKind::Launch, L"", {}};
            Say(sim::Encode({L"fault", struckCall, L"now", L"0x80004005"}) +
                sim::Encode(sim::MakeMessage(L"activate", launch.Words())) +
                sim::Encode({L"welcome", L"Family", L"C:\\package"}));
        });
        host = new sim::PipeHost;
        broker.join();
    }

    // The first message that has come or comes.
    sim::Message Hear()
    {
        for (;;)
        {
            if (auto message = m_decoder.Next())
            {
                return *message;
            }
            char bytes[4096];
            OVERLAPPED overlapped{};
            ReadFile(pipe, bytes, sizeof bytes, nullptr, &overlapped);
            DWORD size = 0;
            GetOverlappedResult(pipe, &overlapped, &size, TRUE);
            m_decoder.Add({bytes, size});
        }
    }

    // What has come by now.
    sim::Message Heard()
    {
        DWORD size = 0;
        PeekNamedPipe(pipe, nullptr, 0, nullptr, &size, nullptr);
        return size == 0 ? sim::Message() : Hear();
    }

    void Say(std::string const& bytes) const
    {
        OVERLAPPED overlapped{};
        WriteFile(pipe, bytes.data(), static_cast<DWORD>(bytes.size()), nullptr, &overlapped);
        DWORD size = 0;
        GetOverlappedResult(pipe, &overlapped, &size, TRUE);
    }

    HANDLE pipe = nullptr;
    sim::PipeHost* host = nullptr;

  private:
    test::TemporaryFolder m_folder;
    sim::MessageDecoder m_decoder;
};

} // namespace

// The process may end right after each of these calls.
TEST_F(PipeHosts, HaveSaidWhatHappenedWhenTheCallReturns)
{
    EXPECT_TRUE(host->TakeFault(struckCall));
    EXPECT_EQ(Heard(), (sim::Message{L"fault-used", struckCall}));
    EXPECT_TRUE(host->NextActivation());
    EXPECT_EQ(Heard(), (sim::Message{L"taken", L"1"}));
    for (int round = 0; round < 200; ++round) // said without waiting, it would have left by chance in some
    {
        host->Report(L"unhandled-exception", {L"result=0x80004005"});
        ASSERT_EQ(Heard(), (sim::Message{L"report", L"unhandled-exception", L"result=0x80004005"}));
        host->Tell({L"request-completed", L"1"});
        ASSERT_EQ(Heard(), (sim::Message{L"tell", L"request-completed", L"1"}));
        host->AskLater({L"respond", L"1", L""}, [](auto&&) {});
        ASSERT_EQ(Heard().front(), L"ask");
        host->LaunchDesktop(L"", std::nullopt, [](auto) {});
        ASSERT_EQ(Heard().front(), L"launch-desktop");
    }
    host->Exit();
    EXPECT_EQ(Heard(), sim::Message{L"exiting"});
    EXPECT_EQ(Heard(), sim::Message());
}

TEST_F(PipeHosts, AnswerARequestThatIsTooLargeThemselves)
{
    EXPECT_EQ(host->Ask({L"open-app-service", std::wstring(sim::largestMessage / sizeof(wchar_t), L'x')}).front(),
              L"error");
    EXPECT_EQ(Heard(), sim::Message()); // the device takes it for gibberish, and would hang up
    host->Tell({L"task-returned", L"1"});
    EXPECT_EQ(Heard(), (sim::Message{L"tell", L"task-returned", L"1"}));
}
