#pragma once
#include "simulator/broker/Broker.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/simulator/FakePeer.h"

#include <gtest/gtest.h>
#include <map>
#include <windows.h>

// Processes that are only written down; the test says when they end.
class FakeProcesses : public sim::ProcessStarter
{
  public:
    struct Process
    {
        sim::ProcessRequest request;
        Ended ended;
    };

    sim::StartedProcess Start(sim::ProcessRequest const& request, Ended ended) override
    {
        if (error != 0)
        {
            return {error, 0};
        }
        auto const id = 100 + static_cast<unsigned long>(started.size());
        started.push_back({request, std::move(ended)});
        return {0, id};
    }

    void Kill(unsigned long id, unsigned long) override
    {
        killed.push_back(id);
        SetEvent(m_hasKilled.Get());
    }

    // Also one that comes from another thread.
    void WaitForKill() const { WaitForSingleObject(m_hasKilled.Get(), INFINITE); }

    // The n-th process that was started ends.
    void End(std::size_t index, unsigned long exitCode)
    {
        started[index].ended(100 + static_cast<unsigned long>(index), exitCode);
    }

    unsigned long error = 0; // the next starts fail with it
    std::vector<Process> started;
    std::vector<unsigned long> killed;

  private:
    sim::Handle m_hasKilled{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

// A broker on a device of its own, with a package in a folder; the test is the command line and the processes.
class Brokers : public testing::Test
{
  protected:
    static constexpr wchar_t family[] = L"A.Package_m7dy57p66fpam";
    static std::string const manifest;

    Brokers() : m_device(m_folder / L"device"), m_layout(m_folder / L"layout")
    {
        CreateDirectoryW(m_layout.c_str(), nullptr);
        WriteManifest(manifest);
        test::WriteBytes(m_layout + L"\\App.exe", "x");
        NewBroker();
    }

    void WriteManifest(std::string const& text) const { test::WriteBytes(m_layout + L"\\AppxManifest.xml", text); }

    static std::string Without(std::string const& part)
    {
        auto text = manifest;
        text.erase(text.find(part), part.size());
        return text;
    }

    void NewBroker(sim::Limits limits = {})
    {
        m_broker.reset();
        auto processes = std::make_unique<FakeProcesses>();
        m_processes = processes.get();
        m_broker =
            std::make_unique<sim::Broker>(m_device, std::move(processes), [this] { m_isStopped = true; }, limits);
    }

    // What a command line gets for an answer.
    sim::Message Ask(sim::Message const& message) const
    {
        auto const peer = std::make_shared<FakePeer>();
        m_broker->Received(peer, message);
        m_broker->Closed(peer);
        return peer->received.empty() ? sim::Message{} : peer->received.back();
    }

    void Register() const { EXPECT_EQ(Ask({L"register", m_layout}), (sim::Message{L"ok", family})); }

    // The n-th process that was started connects.
    std::shared_ptr<FakePeer> Connect(std::size_t index) const
    {
        auto const peer = std::make_shared<FakePeer>();
        m_broker->Received(peer, {L"hello-app", std::to_wstring(100 + index)});
        return peer;
    }

    // What a process hears when it has connected.
    sim::Message Welcome() const { return {L"welcome", family, m_layout}; }

    void Say(std::shared_ptr<FakePeer> const& peer, sim::Message const& message) const
    {
        m_broker->Received(peer, message);
    }

    // The process exits as apps do.
    void Exit(std::size_t index, std::shared_ptr<FakePeer> const& peer) const
    {
        Say(peer, {L"exiting"});
        m_broker->Closed(peer);
        m_processes->End(index, 0);
    }

    std::vector<std::wstring> Events() const
    {
        std::vector<std::wstring> texts;
        for (auto const& event : sim::ReadJournal(m_device.JournalFile()))
        {
            texts.push_back(event.kind);
        }
        return texts;
    }

    sim::Event LastEvent() const { return sim::ReadJournal(m_device.JournalFile()).back(); }

    std::wstring Launched(std::vector<std::wstring> const& words) const
    {
        Register();
        Ask({L"launch"});
        auto const app = Connect(0);
        sim::Message message = {L"launch-desktop", L"r1"};
        message.insert(message.end(), words.begin(), words.end());
        Say(app, message);
        auto const& answer = app->received.back();
        EXPECT_EQ(answer[0], L"launched");
        EXPECT_EQ(answer[1], L"r1");
        return answer[2];
    }

    test::TemporaryFolder m_folder;
    sim::Device m_device;
    std::wstring m_layout;
    FakeProcesses* m_processes = nullptr;
    std::unique_ptr<sim::Broker> m_broker;
    bool m_isStopped = false;
};

inline std::string const Brokers::manifest =
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
