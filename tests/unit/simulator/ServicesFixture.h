#pragma once
#include "simulator/model/Event.h"
#include "simulator/services/Services.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/simulator/FakePeer.h"

#include <condition_variable>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

// The services of a device with a package; the test is the app's process, the desktop programs and the world.
class ServicesFixture : public testing::Test
{
  protected:
    struct Activation
    {
        sim::ActivationKind kind;
        std::vector<std::wstring> more;
    };

    static constexpr wchar_t family[] = L"A.Package_m7dy57p66fpam";
    static constexpr wchar_t service[] = L"a.service";
    static constexpr unsigned never = 3'600'000;

    ServicesFixture();

    // The device is switched off and on again.
    void Restart(sim::Limits limits = {never, never, never});

    // The answer; none while it waits.
    std::shared_ptr<sim::Message> AskLater(std::shared_ptr<FakePeer> const& from, sim::Message const& request);

    sim::Message Ask(std::shared_ptr<FakePeer> const& from, sim::Message const& request);
    void Tell(std::shared_ptr<FakePeer> const& from, sim::Message const& words);

    // The app's process takes the n-th activation and comes back from OnBackgroundActivated.
    void Take(std::size_t index);
    void Return(std::size_t index);

    // And its deferrals are completed.
    void Complete(std::size_t index);

    // With the services' mutex held.
    template <typename Function>
    auto Do(Function const& function)
    {
        std::lock_guard const lock(m_mutex);
        return function(*m_services);
    }

    void AdvanceClock(std::int64_t minutes);
    std::wstring Push(std::wstring const& payload = L"hello");
    void Gone(FakePeer const& peer);

    // Until the services have asked for the app's end so many times.
    void WaitForEndings(unsigned count);

    // Until this was reported.
    void WaitForReport(std::wstring const& text);

    // What was reported since the last call, as in the journal.
    std::vector<std::wstring> Reports();

    // A registration's id.
    std::wstring Register(std::wstring const& name, std::wstring const& trigger, unsigned minutes = 0,
                          bool once = false);

    // A connection of the caller that is open; gives its id.
    std::wstring Open(std::shared_ptr<FakePeer> const& caller);

    std::wstring InstanceOf(std::size_t index) const { return m_activations[index].more[0]; }

    test::TemporaryFolder m_folder;
    sim::Device m_device;
    std::mutex m_mutex;
    std::condition_variable m_happened;
    std::vector<Activation> m_activations;
    std::vector<std::wstring> m_reports;
    unsigned m_endings = 0;
    bool m_runsInBackgroundOnly = false;
    bool m_appStarts = true;
    std::wstring m_family = family;
    std::shared_ptr<FakePeer> m_app = std::make_shared<FakePeer>();
    std::shared_ptr<FakePeer> m_caller = std::make_shared<FakePeer>();
    std::unique_ptr<sim::Services> m_services;
};
