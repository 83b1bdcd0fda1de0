#include "tests/unit/simulator/ServicesFixture.h"

#include "simulator/model/Files.h"

#include <algorithm>

ServicesFixture::ServicesFixture() : m_device(m_folder / L"device")
{
    sim::MakeFolder(m_device.Home());
    Restart();
}

void ServicesFixture::Restart(sim::Limits limits)
{
    m_services.reset();
    sim::Outside const outside{.activate =
                                   [this](sim::ActivationKind kind, std::vector<std::wstring> more) {
                                       m_activations.push_back({kind, more});
                                       if (!m_appStarts)
                                       {
                                           m_services->Lost(more[0]);
                                       }
                                   },
                               .endApp =
                                   [this] {
                                       ++m_endings;
                                       m_happened.notify_all();
                                   },
                               .report =
                                   [this](std::wstring kind, std::vector<std::wstring> details) {
                                       m_reports.push_back(sim::Event{0, std::move(kind), std::move(details)}.Text());
                                       m_happened.notify_all();
                                   },
                               .familyName = [this] { return m_family; },
                               .declaresAppService = [](std::wstring_view name) { return name == service; },
                               .runsInBackgroundOnly = [this] { return m_runsInBackgroundOnly; },
                               .isApp = [this](sim::Peer const& peer) { return &peer == m_app.get(); }};
    m_services = std::make_unique<sim::Services>(m_device, outside, limits, m_mutex);
}

std::shared_ptr<sim::Message> ServicesFixture::AskLater(std::shared_ptr<FakePeer> const& from,
                                                        sim::Message const& request)
{
    auto answer = std::make_shared<sim::Message>();
    Do([&](sim::Services& services) {
        services.Ask(from, request, [answer](sim::Message const& words) { *answer = words; });
    });
    return answer;
}

sim::Message ServicesFixture::Ask(std::shared_ptr<FakePeer> const& from, sim::Message const& request)
{
    auto const answer = AskLater(from, request);
    EXPECT_FALSE(answer->empty());
    return *answer;
}

void ServicesFixture::Tell(std::shared_ptr<FakePeer> const& from, sim::Message const& words)
{
    Do([&](sim::Services& services) { services.Tell(from, words); });
}

void ServicesFixture::Take(std::size_t index)
{
    Do([&](sim::Services& services) { services.Taken(m_app, InstanceOf(index)); });
}

void ServicesFixture::Return(std::size_t index)
{
    Take(index);
    Tell(m_app, {L"task-returned", InstanceOf(index)});
}

void ServicesFixture::Complete(std::size_t index)
{
    Tell(m_app, {L"task-completed", InstanceOf(index)});
}

void ServicesFixture::AdvanceClock(std::int64_t minutes)
{
    Do([&](sim::Services& services) { services.AdvanceClock(minutes); });
}

std::wstring ServicesFixture::Push(std::wstring const& payload)
{
    return Do([&](sim::Services& services) { return services.Push(payload); });
}

void ServicesFixture::Gone(FakePeer const& peer)
{
    Do([&](sim::Services& services) { services.Gone(peer, &peer == m_app.get()); });
}

void ServicesFixture::WaitForEndings(unsigned count)
{
    std::unique_lock lock(m_mutex);
    m_happened.wait(lock, [&] { return m_endings == count; });
}

void ServicesFixture::WaitForReport(std::wstring const& text)
{
    std::unique_lock lock(m_mutex);
    m_happened.wait(lock, [&] { return std::ranges::find(m_reports, text) != m_reports.end(); });
}

std::vector<std::wstring> ServicesFixture::Reports()
{
    std::lock_guard const lock(m_mutex);
    return std::exchange(m_reports, {});
}

std::wstring ServicesFixture::Register(std::wstring const& name, std::wstring const& trigger, unsigned minutes,
                                       bool once)
{
    auto const answer = Ask(m_app, {L"register-task", name, trigger, std::to_wstring(minutes), once ? L"1" : L"0"});
    EXPECT_EQ(answer[1], L"0x00000000");
    return answer[2];
}

std::wstring ServicesFixture::Open(std::shared_ptr<FakePeer> const& caller)
{
    auto const opened = AskLater(caller, {L"open-app-service", service, family});
    Return(m_activations.size() - 1);
    EXPECT_EQ(opened->front(), L"opened");
    return opened->back();
}
