#pragma once
#include "simulator/client/BrokerClient.h"
#include "simulator/client/Command.h"
#include "simulator/package/Package.h"
#include "simulator/scenario/Expectations.h"
#include "simulator/scenario/Helpers.h"
#include "simulator/scenario/Observer.h"
#include "simulator/scenario/Timeline.h"

#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace sim
{

// Plays the steps of a scenario on a device, which is emptied first. docs/simulator.md describes the language.
class Player
{
  public:
    // A step that is not one of the device's commands.
    using Step = Command<void (Player::*)(Words const& arguments)>;

    static std::span<Step const> Steps();

    // The names in the words of a step and their values, longer values first.
    using Names = std::vector<std::pair<std::wstring_view, std::wstring>>;

    static std::span<std::wstring_view const> NameList();

    // Each step and expectation on a line of its own.
    static std::wstring Help();

    // Prints what happens as it happens.
    Player(Device const& device, Colour colour);

    // Throws Difference when something differs from the step, Error when the step cannot be played.
    void Play(std::wstring const& text, Words const& words);

    // At the end of a scenario: nothing is left.
    void CheckNothingIsLeft();

    // Switches the device off.
    void End();

    Names AllNames() const;
    Observer& Observed() noexcept { return m_observer; }
    bool IsAnythingRunning() const { return m_observer.IsAppRunning() || !m_helpers.Running().empty(); }
    Timeline const& Played() const noexcept { return m_timeline; }
    std::wstring Summary() const { return m_expectations.Summary(); }

  private:
    void Run(Words const& words);
    void Expect(Words const& words) { m_expectations.Run(words); }
    template <typename Request>
    void Install(Words const& words);
    void Restart(Words const& words);
    void Refuse(Words const& words);
    void StartHelper(Words const& words);
    void Kill(Words const& words);
    void GrowLog(Words const& words);
    std::wstring PackageFolder(Words const& options);
    std::wstring ChannelUri() const;

    Device const& m_device;
    std::unique_ptr<BrokerClient> m_broker;
    Timeline m_timeline;
    Helpers m_helpers;
    Observer m_observer;
    Expectations m_expectations;
    Package m_package;
    unsigned m_copies = 0;
};

} // namespace sim
