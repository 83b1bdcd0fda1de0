#include "simulator/runtime/Host.h"

#include "simulator/protocol/BrokerPipe.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace
{

// The platform hears everything and says nothing.
class SilentLink : public sim::PlatformLink
{
  public:
    bool Send(sim::FromProcess const&) override { return true; }
};

class TestHost : public sim::Host
{
  public:
    using Host::Host;

    void Fail(std::int32_t) override {}
};

class HostTest : public testing::Test
{
  protected:
    static constexpr unsigned answerLimit = 50;

    void Connect() { m_host->Connect(std::make_shared<SilentLink>(), 1); }

    std::shared_ptr<TestHost> m_host = std::make_shared<TestHost>(sim::Device(L"C:\\no-device"), answerLimit);
};

using Failure = std::pair<std::int32_t, std::wstring>;

Failure CodeAndTextOf(auto const& work)
{
    try
    {
        work();
        return {};
    }
    catch (winrt::hresult_error const& error)
    {
        return {error.code(), std::wstring(error.message())};
    }
}

} // namespace

TEST_F(HostTest, SaysThatThePlatformHangsWhenItConnects)
{
    EXPECT_EQ(CodeAndTextOf([&] { Connect(); }), Failure(HRESULT_FROM_WIN32(ERROR_TIMEOUT), sim::HungText(0)));
}

TEST_F(HostTest, SaysThatThePlatformHangsWhenItAsks)
{
    m_host->Received(sim::NotTheApp{});
    Connect();
    EXPECT_EQ(CodeAndTextOf([&] { m_host->Ask(sim::ListTasks{}); }), Failure(E_FAIL, sim::HungText(0)));
    m_host->Received(sim::Answer{1, sim::TaskList{}}); // too late
}

TEST_F(HostTest, WaitsLongerForWhatIsNotAnsweredAtOnce)
{
    m_host->Received(sim::NotTheApp{});
    Connect();
    auto const answered = std::make_shared<sim::Handle>(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    m_host->AskLater(sim::SendRequest{}, [answered](sim::AnyAnswer const&) { SetEvent(answered->Get()); });
    EXPECT_EQ(WaitForSingleObject(answered->Get(), 2 * answerLimit), static_cast<DWORD>(WAIT_TIMEOUT));
    m_host->Received(sim::Answer{1, sim::ResponseGiven{}});
    EXPECT_EQ(WaitForSingleObject(answered->Get(), 30'000), WAIT_OBJECT_0);
}
