#include "simulator/runtime/LocalPlatform.h"

#include "simulator/model/Files.h"

#include <atomic>
#include <windows.h>

namespace sim
{

namespace
{

class DeliveringPeer : public Peer
{
  public:
    explicit DeliveringPeer(Deliveries& deliveries) : m_deliveries(deliveries) {}

    void Send(Message const& message) override { m_deliveries.Add(message); }

  private:
    Deliveries& m_deliveries;
};

std::wstring NewFolder()
{
    static std::atomic<unsigned> last = 0;
    wchar_t parent[MAX_PATH + 1];
    auto const length = GetTempPathW(ARRAYSIZE(parent), parent);
    auto const folder = std::wstring(parent, length) + L"velmo-local-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
                        std::to_wstring(++last);
    MakeFolder(folder);
    return folder;
}

} // namespace

LocalPlatform::LocalPlatform(App app, Limits limits) : m_device(NewFolder())
{
    Outside outside;
    outside.activate = std::move(app.activate);
    outside.endApp = std::move(app.end);
    outside.report = std::move(app.report);
    outside.familyName = [] { return std::wstring(familyName); };
    outside.declaresAppService = [](std::wstring_view name) { return name == appServiceName; };
    outside.isApp = [this](Peer const& peer) { return &peer == m_app.get(); };
    m_services = std::make_unique<Services>(m_device, std::move(outside), limits, m_mutex);
}

LocalPlatform::~LocalPlatform()
{
    AppGone();
    CallerGone();
    WaitUntilQuiet();
    m_services = nullptr;
    Remove(m_device.Home());
}

Message LocalPlatform::Ask(Message const& request)
{
    std::mutex mutex;
    std::condition_variable answered;
    Message answer;
    AskNow(request, [&](Message const& message) {
        std::lock_guard const lock(mutex);
        answer = message;
        answered.notify_all();
    });
    std::unique_lock lock(mutex);
    answered.wait(lock, [&] { return !answer.empty(); });
    return answer;
}

void LocalPlatform::AskLater(Message const& request, std::function<void(Message)> answered)
{
    AskNow(request, [this, answered = std::move(answered)](Message answer) {
        m_work.Run([answered, answer = std::move(answer)] { answered(answer); });
    });
}

void LocalPlatform::Tell(Message const& words)
{
    std::lock_guard const lock(m_mutex);
    m_services->Tell(SenderOf(words), words);
}

void LocalPlatform::Taken(std::wstring const& instance)
{
    std::lock_guard const lock(m_mutex);
    m_services->Taken(m_app, instance);
}

void LocalPlatform::AppGone()
{
    std::lock_guard const lock(m_mutex);
    m_services->Gone(*m_app, true);
}

void LocalPlatform::CallerGone()
{
    std::lock_guard const lock(m_mutex);
    m_services->Gone(*m_caller, false);
    m_caller = MakePeer();
}

void LocalPlatform::AskNow(Message const& request, Services::Answer const& answer)
{
    std::lock_guard const lock(m_mutex);
    m_services->Ask(SenderOf(request), request, answer);
}

std::shared_ptr<Peer> LocalPlatform::MakePeer()
{
    return std::make_shared<DeliveringPeer>(m_deliveries);
}

// What the test itself does as a caller is said by the callers' process.
std::shared_ptr<Peer> LocalPlatform::SenderOf(Message const& message) const
{
    constexpr std::size_t end = 2; // send CONNECTION END …, close CONNECTION END
    auto const isCaller = message.front() == L"open-app-service" || (message.size() > end && message[end] == L"caller");
    return isCaller ? m_caller : m_app;
}

} // namespace sim
