#include "simulator/runtime/ProcessHost.h"
#include "simulator/protocol/Encoding.h"
#include "simulator/protocol/Frames.h"
#include "simulator/protocol/Pipe.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <optional>
#include <thread>
#include <windows.h>

namespace
{

using Said = std::optional<sim::FromProcess>;

// The app's process, and its device's end of the connection. Both live until the process ends: a process whose device
// goes is ended.
class ProcessHost : public testing::Test
{
  protected:
    static constexpr wchar_t faultyCall[] = L"CoreApplication.Exit";

    ProcessHost()
    {
        SetEnvironmentVariableW(L"VELMO_SIM_HOME", m_folder.Path().c_str());
        pipe = (new sim::Handle(sim::MakePipe(sim::Device::FromEnvironment().PipeName())))->Get();
        std::thread broker([this] {
            Hear();
            Say(sim::FaultSet{{faultyCall, sim::FaultKind::Now, 0x80004005}});
            Say(sim::Activate{{1, sim::UserLaunch{}}});
            Say(sim::Welcome{L"Family", L"C:\\package"});
        });
        host = (new std::shared_ptr<sim::ProcessHost>(sim::ProcessHost::Connected()))->get();
        broker.join();
    }

    // The first message that has come or comes.
    sim::FromProcess Hear()
    {
        for (;;)
        {
            if (auto const message = m_incoming.Next())
            {
                return sim::Decode<sim::FromProcess>(*message);
            }
            char bytes[4096];
            OVERLAPPED overlapped{};
            ReadFile(pipe, bytes, sizeof bytes, nullptr, &overlapped);
            DWORD size = 0;
            GetOverlappedResult(pipe, &overlapped, &size, TRUE);
            m_incoming.Add({bytes, size});
        }
    }

    // What has come by now.
    Said Heard()
    {
        DWORD size = 0;
        PeekNamedPipe(pipe, nullptr, 0, nullptr, &size, nullptr);
        return size == 0 ? std::nullopt : Said(Hear());
    }

    // Whether this, and nothing else, has come by now.
    template <typename Message>
    bool HasHeard(Message const& expected)
    {
        auto const heard = Heard();
        return heard && sim::Encode(*heard) == sim::Encode(sim::FromProcess(expected)) && !Heard();
    }

    void Say(sim::ToProcess const& message) const
    {
        auto const bytes = sim::Framed(sim::Encode(message));
        OVERLAPPED overlapped{};
        WriteFile(pipe, bytes.data(), static_cast<DWORD>(bytes.size()), nullptr, &overlapped);
        DWORD size = 0;
        GetOverlappedResult(pipe, &overlapped, &size, TRUE);
    }

    HANDLE pipe = nullptr;
    sim::ProcessHost* host = nullptr;

  private:
    test::TemporaryFolder m_folder;
    sim::FrameReader m_incoming;
};

} // namespace

// The process may end right after each of these calls.
TEST_F(ProcessHost, HasSaidWhatHappenedWhenTheCallReturns)
{
    EXPECT_TRUE(host->TakeFault(faultyCall));
    EXPECT_TRUE(HasHeard(sim::FaultTriggered{faultyCall}));
    EXPECT_TRUE(host->NextActivation());
    EXPECT_TRUE(HasHeard(sim::ActivationTaken{1}));
    for (std::uint32_t round = 1; round <= 200; ++round) // said without waiting, it would have left by chance in some
    {
        host->Report(L"unhandled-exception", {L"result=0x80004005"});
        ASSERT_TRUE(HasHeard(sim::Report{L"unhandled-exception", {L"result=0x80004005"}}));
        host->Tell(sim::RequestCompleted{1});
        ASSERT_TRUE(HasHeard(sim::RequestCompleted{1}));
        host->AskLater(sim::LaunchDesktop{}, [](auto&&) {});
        ASSERT_TRUE(HasHeard(sim::Request{round, sim::LaunchDesktop{}}));
    }
    host->Exit();
    EXPECT_TRUE(HasHeard(sim::ExitAnnounced{}));
}

TEST_F(ProcessHost, AnswersARequestThatIsTooLargeItself)
{
    sim::OpenConnection const request{std::wstring(sim::largestMessage / sizeof(wchar_t), L'x'), L""};
    EXPECT_THROW(host->Ask(request), winrt::hresult_error);
    EXPECT_FALSE(Heard()); // the device would not understand it, and hang up
    host->Tell(sim::TaskReturned{1});
    EXPECT_TRUE(HasHeard(sim::TaskReturned{1}));
}
