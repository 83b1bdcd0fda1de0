#pragma once
#include "tests/unit/simulator/PlatformFixture.h"

#include <variant>
#include <vector>

// The app's process: its activations apart from what else it is sent.
class FakeApp : public FakePeer
{
  public:
    explicit FakeApp(std::vector<sim::Activation>& activations) : m_activations(activations) {}

    void Send(sim::ToProcess const& message) override
    {
        if (auto const* const activate = std::get_if<sim::Activate>(&message))
        {
            m_activations.push_back(activate->activation);
            return;
        }
        FakePeer::Send(message);
    }

  private:
    std::vector<sim::Activation>& m_activations;
};

// A device with a package whose app runs. The user has launched it, unless the test wants it in the background.
class ServicesFixture : public PlatformFixture
{
  protected:
    static constexpr std::uint32_t day = 24 * 60; // minutes

    ServicesFixture();

    // The device is switched off and on again, and the app runs again.
    void Restart();

    // The platform is killed, and the app runs again on the next one.
    void KillPlatform();

    // The app's process is another one: never launched by the user.
    void StartInBackground();

    // The app's process exits, or dies. What it did not take starts the next one, which connects.
    void ExitApp();
    void KillApp();
    void ConnectNextApp();

    using PlatformFixture::Return;
    using PlatformFixture::Take;

    // The app's process takes the n-th activation and comes back from OnBackgroundActivated.
    void Take(std::size_t index);
    void Return(std::size_t index);

    // And its deferrals are completed.
    void Complete(std::size_t index);

    // What the n-th activation carries; its instance.
    sim::TaskStart TaskAt(std::size_t index) const { return std::get<sim::TaskStart>(m_activations.at(index).content); }
    sim::ServiceStart ServiceAt(std::size_t index) const
    {
        return std::get<sim::ServiceStart>(m_activations.at(index).content);
    }
    std::uint32_t InstanceOf(std::size_t index) const { return sim::InstanceOf(m_activations.at(index)); }

    void AdvanceClock(std::int64_t minutes) { Ask(sim::AdvanceClock{minutes}); }
    std::wstring Push(std::wstring const& payload = L"hello") { return Ask(sim::Push{payload}); }

    // A registration's id.
    std::wstring RegisterPush(std::wstring const& name);
    std::wstring RegisterTimer(std::wstring const& name, std::uint32_t minutes, bool once = false);

    sim::TaskList TasksOf(PeerPointer const& peer) { return Ask(peer, sim::ListTasks{}); }

    // A connection of the caller that is open; gives its number.
    std::uint32_t Open(PeerPointer const& caller);

    std::vector<sim::Activation> m_activations;
    PeerPointer m_app;
    PeerPointer m_caller = std::make_shared<FakePeer>();

  private:
    void ExpectApp();
    void ConnectApp(unsigned long processId);

    unsigned long m_appId = 0;
};
