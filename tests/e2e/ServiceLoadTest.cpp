#include "simulator/platform/Journal.h"
#include "simulator/protocol/Device.h"
#include "tests/e2e/ClientProcess.h"
#include "tests/e2e/ProcessUsage.h"
#include "tests/e2e/SimulatorDevice.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace
{

using test::ClientProcess;

// One in four asks for the channel, which takes longest.
constexpr char mixed[] = "UnregisterBackgroundTask GetChannelUri UnregisterBackgroundTask UnregisterBackgroundTask";

// A leak shows in every spell of work. A thread that joins the pool, with a megabyte of stack and two handles, shows in
// the few spells in which one does: how many those are is up to the load on the machine, and the middle spell ignores
// them. What is left moves by a page or two.
constexpr int spells = 19;
constexpr long long handleMargin = 2;
constexpr long long memoryMargin = 64 * 1024;

// By how much a process has grown in the middle one of all spells, for each of its measures alone.
struct Growth
{
    long long handles;
    long long events;
    long long memory;
};

long long MiddleGrowth(std::vector<test::ProcessUsage> const& usages, std::size_t test::ProcessUsage::* measure)
{
    std::vector<long long> growths;
    for (std::size_t spell = 1; spell < usages.size(); ++spell)
    {
        growths.push_back(static_cast<long long>(usages[spell].*measure) -
                          static_cast<long long>(usages[spell - 1].*measure));
    }
    auto const middle = growths.begin() + static_cast<std::ptrdiff_t>(growths.size() / 2);
    std::ranges::nth_element(growths, middle);
    return *middle;
}

// What the app's real process makes of many requests of real helpers.
class ServiceLoad : public test::SimulatorDevice
{
  protected:
    ServiceLoad() { EXPECT_EQ(Run(L"register").exitCode, 0u); }

    std::vector<ClientProcess> StartClients(std::size_t count) const
    {
        std::vector<ClientProcess> clients;
        for (std::size_t client = 0; client < count; ++client)
        {
            clients.emplace_back(m_semaphore);
        }
        return clients;
    }

    // Says the line to all of them before the first answer is waited for.
    static std::vector<std::string> AskAll(std::vector<ClientProcess> const& clients, std::string_view line)
    {
        for (auto const& client : clients)
        {
            client.Say(line);
        }
        std::vector<std::string> answers;
        for (auto const& client : clients)
        {
            answers.push_back(client.Answer());
        }
        return answers;
    }

    // Those of all clients together.
    void WaitForMessages(int count) const
    {
        constexpr DWORD limit = 30'000; // shorter than the watchdog's
        for (auto message = 0; message < count; ++message)
        {
            ASSERT_EQ(WaitForSingleObject(m_messages.Get(), limit), static_cast<DWORD>(WAIT_OBJECT_0))
                << "after 30 s still missing: another message to the clients, after " << message << " of " << count;
        }
    }

    // Once the clients have gone.
    bool HasMoreMessages() const { return WaitForSingleObject(m_messages.Get(), 0) == WAIT_OBJECT_0; }

    // The ids of the app's processes so far.
    std::vector<unsigned long> AppProcesses() const
    {
        std::vector<unsigned long> processes;
        for (auto const& event : sim::ReadJournal(sim::Device(m_device).JournalFile()))
        {
            if (event.kind == L"app-started")
            {
                processes.push_back(std::stoul(event.Detail(L"pid").value()));
            }
        }
        return processes;
    }

    // Of the app, when it has answered so many more requests of one client: ask COUNT and this.
    test::ProcessUsage UsageAfter(ClientProcess const& client, int requests, std::string const& aheadAndCommands) const
    {
        auto const count = std::to_string(requests);
        EXPECT_EQ(client.Ask("ask " + count + " " + aheadAndCommands), "succeeded " + count);
        WaitForMessages(requests);
        return test::UsageOf(AppProcesses().front());
    }

    // Of the app in spells of so many requests, the first of which is to warm it up.
    Growth GrowthInSpells(ClientProcess const& client, int requests, std::string const& aheadAndCommands) const
    {
        std::vector<test::ProcessUsage> usages;
        for (auto spell = 0; spell <= spells; ++spell)
        {
            usages.push_back(UsageAfter(client, requests, aheadAndCommands));
        }
        return {MiddleGrowth(usages, &test::ProcessUsage::handles), MiddleGrowth(usages, &test::ProcessUsage::events),
                MiddleGrowth(usages, &test::ProcessUsage::memory)};
    }

  private:
    std::wstring m_semaphore = L"messages-" + std::to_wstring(GetCurrentProcessId());
    sim::Handle m_messages{CreateSemaphoreW(nullptr, 0, LONG_MAX, m_semaphore.c_str())};
};

TEST_F(ServiceLoad, OfEightHelpersAtOnceIsAnsweredInFull)
{
    constexpr std::size_t helpers = 8;
    constexpr int requests = 200;
    auto clients = StartClients(helpers);
    EXPECT_EQ(AskAll(clients, "open"), std::vector<std::string>(helpers, "opened 0"));
    EXPECT_EQ(AskAll(clients, std::string("ask 200 1 ") + mixed), std::vector<std::string>(helpers, "succeeded 200"));
    // The helper that connected last gets them all; which one that is, is open.
    WaitForMessages(helpers * requests);
    // The first that leaves takes the app's connection with it: so none does before.
    for (auto& client : clients)
    {
        client.EndInput();
    }
    for (auto const& client : clients)
    {
        EXPECT_EQ(client.ExitCode(), 0u);
    }
    EXPECT_FALSE(HasMoreMessages());
    EXPECT_EQ(AppProcesses().size(), 1u);
}

TEST_F(ServiceLoad, OfTwoHelpersThatConnectAtTheSameInstantStartsOneProcess)
{
    constexpr std::size_t helpers = 2;
    auto const clients = StartClients(helpers);
    for (std::size_t round = 1; round <= 5; ++round)
    {
        EXPECT_EQ(AskAll(clients, "open"), std::vector<std::string>(helpers, "opened 0"));
        EXPECT_EQ(AppProcesses().size(), round);
        EXPECT_EQ(AskAll(clients, "close"), std::vector<std::string>(helpers, "closed"));
        EXPECT_EQ(Run(L"kill").exitCode, 0u);
    }
}

TEST_F(ServiceLoad, OfTenThousandRequestsLeavesNothingBehind)
{
    auto const clients = StartClients(1);
    EXPECT_EQ(AskAll(clients, "open").front(), "opened 0");
    auto const some = std::string("8 ") + mixed; // some on the way at once: each alone is mostly waiting
    auto const growth = GrowthInSpells(clients.front(), 500, some);
    EXPECT_LE(growth.handles, handleMargin);
    EXPECT_LE(growth.memory, memoryMargin);
    EXPECT_EQ(AppProcesses().size(), 1u);
}

TEST_F(ServiceLoad, OfRegistrationsLeavesOneEventBehindForEach)
{
    constexpr int registrations = 20;
    auto const clients = StartClients(1);
    EXPECT_EQ(AskAll(clients, "open").front(), "opened 0");
    auto const growth = GrowthInSpells(clients.front(), registrations, "1 RegisterBackgroundTask");
    EXPECT_NEAR(static_cast<double>(growth.events), registrations, handleMargin);
    EXPECT_NEAR(static_cast<double>(growth.handles), registrations, handleMargin);
    EXPECT_LE(growth.memory, memoryMargin);
}

} // namespace
