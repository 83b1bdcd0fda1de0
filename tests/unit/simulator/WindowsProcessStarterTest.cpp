#include "simulator/broker/WindowsProcessStarter.h"

#include "simulator/base/Error.h"
#include "tests/support/WrappedSystem.h"

#include <atomic>
#include <gtest/gtest.h>

WRAP(AssignProcessCall, AssignProcessToJobObject);
WRAP(CreateJobCall, CreateJobObjectW);
WRAP(SetJobInformationCall, SetInformationJobObject);

namespace
{

// A process that runs until the test ends it.
class WindowsProcessStarterTest : public testing::Test
{
  protected:
    WindowsProcessStarterTest()
    {
        m_starter.Listen([this](unsigned long, unsigned long exitCode) {
            m_exitCode = exitCode;
            SetEvent(m_ended.Get());
        });
        auto const started = m_starter.Start({SLEEPING_PROGRAM, L"sleeping_program"});
        EXPECT_EQ(started.error, 0u);
        m_id = started.id;
    }

    ~WindowsProcessStarterTest() override
    {
        m_starter.Kill(m_id, 5);
        WaitForSingleObject(m_ended.Get(), INFINITE);
        EXPECT_EQ(m_exitCode, 5u);
    }

    sim::Handle m_ended{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::atomic<unsigned long> m_exitCode = 0;
    sim::WindowsProcessStarter m_starter;
    unsigned long m_id = 0;
};

} // namespace

TEST(WindowsProcessStarter, NeedsAJobObject)
{
    {
        test::CreateJobCall const failing(test::Failing(HANDLE(), ERROR_NO_SYSTEM_RESOURCES));
        EXPECT_THROW(sim::WindowsProcessStarter(), sim::Error);
    }
    test::SetJobInformationCall const failing(test::Failing(FALSE, ERROR_ACCESS_DENIED));
    EXPECT_THROW(sim::WindowsProcessStarter(), sim::Error);
}

TEST_F(WindowsProcessStarterTest, DoesNotSuspendAProcessThatCannotJoinTheJob)
{
    test::AssignProcessCall const failing(test::Failing(FALSE, ERROR_ACCESS_DENIED));
    EXPECT_FALSE(m_starter.Suspend(m_id));
}

TEST_F(WindowsProcessStarterTest, LetsAProcessJoinTheJobOnce)
{
    int joins = 0;
    test::AssignProcessCall const counting(test::Counting(joins));
    EXPECT_TRUE(m_starter.Suspend(m_id));
    m_starter.Resume(m_id);
    EXPECT_TRUE(m_starter.Suspend(m_id));
    EXPECT_EQ(joins, 1);
}
