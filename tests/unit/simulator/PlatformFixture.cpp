#include "tests/unit/simulator/PlatformFixture.h"

#include "simulator/base/Files.h"
#include "tests/support/Files.h"

#include <algorithm>

std::string const PlatformFixture::manifest =
    R"(<Package xmlns="http://schemas.microsoft.com/appx/manifest/foundation/windows10"
    xmlns:uap="http://schemas.microsoft.com/appx/manifest/uap/windows10"
    xmlns:desktop="http://schemas.microsoft.com/appx/manifest/desktop/windows10"
    xmlns:rescap="http://schemas.microsoft.com/appx/manifest/foundation/windows10/restrictedcapabilities">
  <Identity Name="A.Package" Publisher="CN=Velmo" Version="1.0.0.0"/>
  <Applications><Application Id="App" Executable="App.exe" EntryPoint="A.App"><Extensions>
    <uap:Extension Category="windows.protocol"><uap:Protocol Name="a-protocol"/></uap:Extension>
    <uap:Extension Category="windows.appService"><uap:AppService Name="a.service"/></uap:Extension>
    <desktop:Extension Category="windows.fullTrustProcess" Executable="Sub\Desktop.exe"><desktop:FullTrustProcess>
      <desktop:ParameterGroup GroupId="Group" Parameters="/of the group"/>
    </desktop:FullTrustProcess></desktop:Extension>
  </Extensions></Application></Applications>
  <Capabilities><rescap:Capability Name="runFullTrust"/></Capabilities></Package>)";

PlatformFixture::PlatformFixture() : m_device(m_folder / L"device"), m_layout(m_folder / L"layout")
{
    sim::MakeFolder(m_layout);
    WriteManifest(manifest);
    test::WriteBytes(m_layout + L"\\App.exe", "x");
    SwitchOn();
}

void PlatformFixture::WriteManifest(std::string const& text) const
{
    test::WriteBytes(m_layout + L"\\AppxManifest.xml", text);
}

void PlatformFixture::SwitchOn(sim::Limits limits)
{
    if (m_platform)
    {
        m_platform->SwitchOff();
        m_time.Advance(1); // a session is told from the one before by its start
    }
    StartPlatform(limits);
}

void PlatformFixture::Kill()
{
    StartPlatform({});
}

void PlatformFixture::StartPlatform(sim::Limits limits)
{
    m_platform.reset();
    auto processes = std::make_unique<FakeProcesses>();
    m_processes = processes.get();
    m_platform = std::make_unique<sim::Platform>(
        m_device, m_time, std::move(processes), [this] { m_isSwitchedOff = true; }, limits);
}

void PlatformFixture::Run()
{
    while (m_platform->Dispatcher().Step())
    {
    }
}

void PlatformFixture::Pass(unsigned milliseconds)
{
    m_time.Advance(milliseconds);
    Run();
}

void PlatformFixture::Say(PeerPointer const& from, sim::FromProcess const& message)
{
    m_platform->Received(from, message);
    Run();
}

void PlatformFixture::Close(PeerPointer const& peer)
{
    m_platform->Closed(peer);
    Run();
}

void PlatformFixture::Register()
{
    EXPECT_EQ(Ask(sim::RegisterPackage{m_layout}), family);
}

void PlatformFixture::Launch(std::wstring const& arguments)
{
    Ask(sim::LaunchApp{arguments});
}

PeerPointer PlatformFixture::Connect(std::size_t index)
{
    auto peer = std::make_shared<FakePeer>();
    Say(peer, sim::Hello{static_cast<std::uint32_t>(FakeProcesses::IdOf(index))});
    return peer;
}

void PlatformFixture::End(std::size_t index, unsigned long exitCode)
{
    m_processes->End(FakeProcesses::IdOf(index), exitCode);
    Run();
}

void PlatformFixture::Exit(std::size_t index, PeerPointer const& peer)
{
    Say(peer, sim::ExitAnnounced{});
    Close(peer);
    End(index, 0);
}

void PlatformFixture::Take(PeerPointer const& app, std::uint32_t activation)
{
    Say(app, sim::ActivationTaken{activation});
}

void PlatformFixture::Return(PeerPointer const& app, std::uint32_t activation, std::uint32_t instance)
{
    Take(app, activation);
    Say(app, sim::TaskReturned{instance});
}

std::vector<sim::Activation> PlatformFixture::ActivationsOf(FakePeer const& app)
{
    std::vector<sim::Activation> activations;
    for (auto const& message : app.received)
    {
        if (auto const* const activate = std::get_if<sim::Activate>(&message))
        {
            activations.push_back(activate->activation);
        }
    }
    return activations;
}

std::vector<sim::Event> PlatformFixture::Events() const
{
    return sim::ReadJournal(m_device.JournalFile());
}

PlatformFixture::Kinds PlatformFixture::EventKinds() const
{
    auto const events = Events();
    Kinds kinds(events.size());
    std::ranges::transform(events, kinds.begin(), &sim::Event::kind);
    return kinds;
}

sim::Event PlatformFixture::LastEvent() const
{
    return Events().back();
}

PlatformFixture::Texts PlatformFixture::Reports()
{
    Texts texts;
    auto const events = Events();
    for (; m_reportedEvents < events.size(); ++m_reportedEvents)
    {
        texts.push_back(events[m_reportedEvents].Text());
    }
    return texts;
}
