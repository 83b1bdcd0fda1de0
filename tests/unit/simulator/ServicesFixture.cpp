#include "tests/unit/simulator/ServicesFixture.h"

ServicesFixture::ServicesFixture()
{
    Register();
    Launch();
    ConnectNextApp();
    Take(0);
    m_activations.clear();
    Reports();
}

void ServicesFixture::Restart()
{
    SwitchOn();
    ExpectApp();
}

void ServicesFixture::KillPlatform()
{
    Kill();
    ExpectApp();
}

void ServicesFixture::StartInBackground()
{
    ExitApp();
    ExpectApp();
    Reports();
}

void ServicesFixture::ExitApp()
{
    Say(m_app, sim::ExitAnnounced{});
    KillApp();
}

void ServicesFixture::KillApp()
{
    Close(m_app);
    m_processes->End(m_appId, 1);
    Run();
}

void ServicesFixture::ConnectNextApp()
{
    ConnectApp(FakeProcesses::IdOf(m_processes->started.size() - 1));
}

void ServicesFixture::Take(std::size_t index)
{
    Take(m_app, m_activations.at(index).id);
}

void ServicesFixture::Return(std::size_t index)
{
    Return(m_app, m_activations.at(index).id, InstanceOf(index));
}

void ServicesFixture::Complete(std::size_t index)
{
    Say(m_app, sim::TaskCompleted{InstanceOf(index)});
}

std::wstring ServicesFixture::RegisterPush(std::wstring const& name)
{
    auto const registered = Ask(m_app, sim::RegisterTask{.name = name});
    EXPECT_EQ(registered.result, 0);
    return registered.id;
}

std::wstring ServicesFixture::RegisterTimer(std::wstring const& name, std::uint32_t minutes, bool once)
{
    auto const registered = Ask(m_app, sim::RegisterTask{name, sim::Trigger::Timer, minutes, once});
    EXPECT_EQ(registered.result, 0);
    return registered.id;
}

std::uint32_t ServicesFixture::Open(PeerPointer const& caller)
{
    auto const asked = AskLater(caller, OpenService());
    Return(m_activations.size() - 1);
    auto const opened = asked.Take().value_or(sim::ConnectionOpened{sim::OpenStatus::AppUnavailable});
    EXPECT_EQ(opened.status, sim::OpenStatus::Success);
    return opened.connection;
}

void ServicesFixture::ExpectApp()
{
    constexpr unsigned long startedOutside = 7;
    m_platform->ExpectApp(startedOutside);
    ConnectApp(startedOutside);
}

void ServicesFixture::ConnectApp(unsigned long processId)
{
    m_appId = processId;
    m_app = std::make_shared<FakeApp>(m_activations);
    Say(m_app, sim::Hello{static_cast<std::uint32_t>(processId)});
    m_app->received.clear(); // the welcome
}
