#pragma once
#include "simulator/platform/Platform.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/simulator/FakePeer.h"
#include "tests/unit/simulator/FakeProcesses.h"
#include "tests/unit/simulator/ManualTime.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The platform's answer for what is not there: ERROR_NOT_FOUND as an HRESULT.
inline constexpr auto elementNotFound = static_cast<std::int32_t>(0x80070490);

// A request that a process has sent.
template <typename Request>
class Asked
{
  public:
    Asked(PeerPointer peer, std::uint32_t number) : m_peer(std::move(peer)), m_number(number) {}

    // Its answer, once; nullopt while it waits.
    std::optional<typename Request::Answer> Take() const
    {
        auto const answer = m_peer->TakeAnswer(m_number);
        if (!answer)
        {
            return std::nullopt;
        }
        if (auto const* const refused = std::get_if<sim::Refused>(&*answer))
        {
            ADD_FAILURE() << testing::PrintToString(refused->reason);
            return typename Request::Answer{};
        }
        return std::get<typename Request::Answer>(*answer);
    }

    // Why it was refused; empty when it was not.
    std::wstring TakeRefusal() const
    {
        auto const answer = m_peer->TakeAnswer(m_number);
        auto const* const refused = answer ? std::get_if<sim::Refused>(&*answer) : nullptr;
        return refused ? refused->reason : std::wstring();
    }

  private:
    PeerPointer m_peer;
    std::uint32_t m_number;
};

// The platform of a device of its own, with a package in a folder. The test is the command line, the processes and the
// time; whatever it does has run when its function returns.
class PlatformFixture : public testing::Test
{
  protected:
    using Kinds = std::vector<std::wstring>;
    using Texts = std::vector<std::wstring>;

    static constexpr wchar_t family[] = L"A.Package_m7dy57p66fpam";
    static constexpr wchar_t service[] = L"a.service";
    static std::string const manifest;

    PlatformFixture();

    void WriteManifest(std::string const& text) const;

    // The device is switched on, or off and on again: all its processes have ended.
    void SwitchOn(sim::Limits limits = {});

    // The platform is killed, and another one takes its place.
    void Kill();

    // Until nothing is due.
    void Run();

    // The time passes.
    void Pass(unsigned milliseconds);

    // A process says this, or its connection closes.
    void Say(PeerPointer const& from, sim::FromProcess const& message);
    void Close(PeerPointer const& peer);

    template <typename Request>
    Asked<Request> AskLater(PeerPointer const& from, Request const& request)
    {
        auto const number = ++m_lastRequest;
        Say(from, sim::Request{number, request});
        return {from, number};
    }

    // What is answered at once.
    template <typename Request>
    typename Request::Answer Ask(PeerPointer const& from, Request const& request)
    {
        auto const answer = AskLater(from, request).Take();
        EXPECT_TRUE(answer);
        return answer.value_or(typename Request::Answer{});
    }

    // What a command line is shown, and why it is refused.
    template <typename Request>
    std::wstring Ask(Request const& request)
    {
        return Ask(m_commandLine, request).text;
    }

    template <typename Request>
    std::wstring RefusalOf(Request const& request)
    {
        return AskLater(m_commandLine, request).TakeRefusal();
    }

    void Register();
    void Launch(std::wstring const& arguments = L"");

    // The n-th process that was started connects, ends, or exits as apps do.
    PeerPointer Connect(std::size_t index);
    void End(std::size_t index, unsigned long exitCode);
    void Exit(std::size_t index, PeerPointer const& peer);

    // The app's process has taken an activation, and has come back from it.
    void Take(PeerPointer const& app, std::uint32_t activation);
    void Return(PeerPointer const& app, std::uint32_t activation, std::uint32_t instance);

    // The activations that a process was sent.
    static std::vector<sim::Activation> ActivationsOf(FakePeer const& app);

    sim::OpenConnection OpenService() const { return {service, family}; }

    // What happened, and its kinds.
    std::vector<sim::Event> Events() const;
    Kinds EventKinds() const;
    sim::Event LastEvent() const;

    // What has happened since the last call.
    Texts Reports();

    // What a process hears when it has connected.
    sim::Welcome Welcome() const { return {family, m_layout}; }

    test::TemporaryFolder m_folder;
    sim::Device m_device;
    std::wstring m_layout;
    ManualTime m_time;
    FakeProcesses* m_processes = nullptr;
    std::unique_ptr<sim::Platform> m_platform;
    PeerPointer m_commandLine = std::make_shared<FakePeer>();
    bool m_isSwitchedOff = false;

  private:
    void StartPlatform(sim::Limits limits);

    std::uint32_t m_lastRequest = 0;
    std::size_t m_reportedEvents = 0;
};
