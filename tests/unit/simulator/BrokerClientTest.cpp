#include "simulator/client/BrokerClient.h"
#include "simulator/base/Error.h"
#include "simulator/protocol/Encoding.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace
{

// The broker is the test, which is hung.
class BrokerClientTest : public testing::Test
{
  protected:
    static constexpr unsigned answerLimit = 50;

    std::wstring ErrorOf(auto const& work)
    {
        try
        {
            work();
            return {};
        }
        catch (sim::Error const& error)
        {
            return error.Message();
        }
    }

    std::wstring const m_name = L"\\\\.\\pipe\\velmo-test-" + std::to_wstring(GetCurrentProcessId());
    sim::Handle m_pipe = sim::MakePipe(m_name);
    std::wstring const m_hung = L" has not answered for 5 s: end its process, and the next command starts another one";
};

} // namespace

TEST_F(BrokerClientTest, SaysThatItsBrokerHangs)
{
    sim::BrokerClient client(sim::ConnectPipe(m_name), answerLimit);
    EXPECT_EQ(ErrorOf([&] { client.Ask(sim::ShowStatus{}); }),
              L"the device's broker (process " + std::to_wstring(GetCurrentProcessId()) + L")" + m_hung);
    EXPECT_EQ(ErrorOf([&] { client.Stop(); }),
              L"the device's broker (process " + std::to_wstring(GetCurrentProcessId()) + L")" + m_hung);
}

TEST_F(BrokerClientTest, SaysThatItsBrokerHasEnded)
{
    sim::BrokerClient client(sim::ConnectPipe(m_name));
    m_pipe = sim::Handle();
    EXPECT_EQ(ErrorOf([&] { client.Ask(sim::ShowStatus{}); }), L"the device's broker has ended: the device is off");
}
