// What the product costs while nobody needs it: the process with a helper connected, against a bare app of the same
// kind; and by how much it grows with requests and lines.
#include "app/SetUpLogging.h"
#include "bench/Harness.h"
#include "bench/IdleApp.h"
#include "bench/ProcessHandles.h"
#include "helper/PackageFacts.h"
#include "service/AppServiceLog.h"
#include "service/Messages.h"
#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"

#include <deque>
#include <iterator>
#include <list>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>

using namespace winrt::Windows::ApplicationModel::AppService;
using winrt::Windows::Foundation::Collections::ValueSet;

namespace
{

namespace Messages = VelmoNotificationClient::Messages;

// A desktop program's connection to the app of its device, which is that of this process's environment.
class Caller
{
  public:
    Caller()
    {
        m_connection.PackageFamilyName(packageFamilyName);
        m_connection.AppServiceName(appServiceName);
        m_connection.RequestReceived([this](auto&&...) { ReleaseSemaphore(m_messages.Get(), 1, nullptr); });
        m_request.Insert(Messages::commandKey, winrt::box_value(Messages::getChannelUri));
        if (m_connection.OpenAsync().get() != AppServiceConnectionStatus::Success)
        {
            throw sim::Error(L"the app's service cannot be connected to");
        }
    }

    // So many requests, some of them on the way at once. Returns when the last one's message is here.
    void Ask(long long requests) const
    {
        constexpr std::size_t ahead = 8;
        std::deque<Operation> onTheWay;
        for (auto request = requests; request > 0 || !onTheWay.empty(); --request)
        {
            if (request > 0)
            {
                onTheWay.push_back(m_connection.SendMessageAsync(m_request));
            }
            if (request <= 0 || onTheWay.size() == ahead)
            {
                if (onTheWay.front().get().Status() != AppServiceResponseStatus::Success)
                {
                    throw sim::Error(L"a request fails");
                }
                onTheWay.pop_front();
            }
        }
        for (; requests > 0; --requests)
        {
            WaitForSingleObject(m_messages.Get(), INFINITE);
        }
    }

  private:
    using Operation = winrt::Windows::Foundation::IAsyncOperation<AppServiceResponse>;

    sim::Handle m_messages{CreateSemaphoreW(nullptr, 0, LONG_MAX, nullptr)};
    AppServiceConnection m_connection;
    ValueSet m_request;
};

// This program again, as a caller of another device's app: so this process is none, which would end with its device.
// It makes so many requests and ends; without a number it stays connected.
class OtherCaller
{
  public:
    explicit OtherCaller(std::wstring const& device, std::wstring const& requests = {})
        : m_process(
              sim::StartProcess({sim::ProgramPath(), L"idle_bench " + requests, {}, {{L"VELMO_SIM_HOME", device}}}))
    {
    }
    OtherCaller(OtherCaller const&) = delete;
    OtherCaller& operator=(OtherCaller const&) = delete;
    ~OtherCaller() { TerminateProcess(m_process.Get(), 0); }

    void AwaitEnd() const
    {
        DWORD exitCode = 1;
        WaitForSingleObject(m_process.Get(), INFINITE);
        if (!GetExitCodeProcess(m_process.Get(), &exitCode) || exitCode != 0)
        {
            throw sim::Error(L"a caller fails");
        }
    }

  private:
    sim::Handle m_process;
};

int Call(std::wstring const& requests)
{
    winrt::init_apartment();
    Caller const caller;
    if (requests.empty())
    {
        Sleep(INFINITE);
    }
    caller.Ask(std::stoi(requests));
    return 0;
}

constexpr DWORD second = 1'000;

// The platform's threads wait five seconds for more work and end: so until nothing has woken up for longer.
void AwaitIdle(bench::UnixProcess const& process)
{
    constexpr int longer = 8;
    constexpr int patience = 60;
    auto waits = process.Waits();
    for (int quiet = 0, seconds = 0; quiet < longer && seconds < patience; ++seconds)
    {
        Sleep(second);
        auto const now = process.Waits();
        quiet = now == waits ? quiet + 1 : 0;
        waits = now;
    }
}

std::wstring CopyOf(std::wstring const& package, int number)
{
    auto copy = package + std::to_wstring(number);
    sim::CopyFolder(package, copy);
    return copy;
}

// An app of a package, with a desktop program connected.
struct ConnectedApp
{
    // From a copy of the package, by which Linux tells its process from others. The device is made.
    ConnectedApp(std::wstring const& simulator, std::wstring const& package, wchar_t const* program, int number)
        : device(package + L"-device" + std::to_wstring(number)),
          app(simulator, device, CopyOf(package, number), program), caller(device)
    {
        app.AwaitConnection();
    }

    std::wstring const device;
    bench::IdleApp app;
    OtherCaller caller;
};

using ConnectedApps = std::list<ConnectedApp>;

// Their middle one.
template <typename Measure>
double Median(ConnectedApps const& apps, Measure measure)
{
    std::vector<double> values;
    for (auto const& [device, app, caller] : apps)
    {
        values.push_back(static_cast<double>(measure(app.Process())));
    }
    return bench::SpreadOf(values).median;
}

// product, bare: in an order of their own, such as before and after.
bool PrintRow(std::string const& what, double product, double bare, double limit, char const* unit)
{
    std::printf("  %-34s %9.0f %9.0f %9.0f", what.c_str(), product, bare, product - bare);
    auto const holds = bench::Judge(product - bare, limit, 0, unit);
    std::printf("\n");
    return holds;
}

std::vector<std::wstring> Beyond(std::vector<std::wstring> const& some, std::vector<std::wstring> const& others)
{
    std::vector<std::wstring> beyond;
    std::ranges::set_difference(some, others, std::back_inserter(beyond));
    return beyond;
}

void PrintNames(std::vector<std::wstring> const& handles, char const* what)
{
    std::printf("  %s: %zu\n", what, handles.size());
    for (auto const& handle : handles)
    {
        std::printf("    %s\n", sim::ToUtf8(handle).c_str());
    }
}

bool CompareIdle(ConnectedApps const& products, ConnectedApps const& bare)
{
    for (auto const* const apps : {&products, &bare})
    {
        for (auto const& [device, app, caller] : *apps)
        {
            AwaitIdle(app.Process());
        }
    }
    auto const waits = [](auto const& process) { return process.Waits(); };
    auto const seconds = bench::IsShort() ? 10 : 60;
    auto const productBefore = Median(products, waits), bareBefore = Median(bare, waits);
    Sleep(static_cast<DWORD>(seconds) * second);
    auto const productWakes = Median(products, waits) - productBefore, bareWakes = Median(bare, waits) - bareBefore;

    auto const memory = [](auto const& process) { return process.PrivateKilobytes(); };
    auto const threads = [](auto const& process) { return process.Threads(); };
    std::printf("\nidle, with a helper connected; the middle one of %zu\n  %-34s %9s %9s %9s\n", products.size(), "",
                "product", "bare app", "more");
    auto holds = PrintRow("private memory, KB", Median(products, memory), Median(bare, memory), 150, " KB");
    holds &= PrintRow("threads", Median(products, threads), Median(bare, threads), 0, "");
    holds &= PrintRow("wake-ups in " + std::to_string(seconds) + " s", productWakes, bareWakes, 0, "");
    auto const ours = products.front().app.Handles(), floor = bare.front().app.Handles();
    std::printf("  %-34s %9zu %9zu\n", "handles", ours.size(), floor.size());
    PrintNames(Beyond(ours, floor), "handles that only the product has");
    PrintNames(Beyond(floor, ours), "handles that only the bare app has");
    return holds;
}

struct Usage
{
    explicit Usage(bench::UnixProcess const& process, std::vector<std::wstring> ofHandles)
        : kilobytes(process.PrivateKilobytes()), threads(process.Threads()), handles(std::move(ofHandles))
    {
    }

    long long kilobytes;
    long long threads;
    std::vector<std::wstring> handles;
};

// limit: of the growth of memory. A block of 16 bytes left by each piece of work would be far above it.
bool PrintGrowth(Usage const& before, Usage const& after, double limit)
{
    auto const row = [](char const* what, auto later, auto earlier, double most, char const* unit) {
        return PrintRow(what, static_cast<double>(later), static_cast<double>(earlier), most, unit);
    };
    std::printf("  %-34s %9s %9s %9s\n", "", "after all", "before", "more");
    auto holds = row("private memory, KB", after.kilobytes, before.kilobytes, limit, " KB");
    holds &= row("threads", after.threads, before.threads, 0, "");
    holds &= row("handles", after.handles.size(), before.handles.size(), 0, "");
    PrintNames(Beyond(after.handles, before.handles), "handles that were not there before");
    return holds;
}

// Of one app's real process. Through Wine's server each request takes milliseconds: as many as there is time for.
bool MeasureRequests(ConnectedApp const& connected)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::minutes patience(6);
    auto const spell = bench::IsShort() ? 100 : 1'000;
    auto const most = bench::IsShort() ? 2 * spell : 100'000;
    auto const& app = connected.app;
    auto const ask = [&] { OtherCaller(connected.device, std::to_wstring(spell)).AwaitEnd(); };
    ask();
    AwaitIdle(app.Process());
    Usage const before(app.Process(), app.Handles());
    auto requests = spell;
    for (auto const end = Clock::now() + patience; requests < most && Clock::now() < end; requests += spell)
    {
        ask();
    }
    AwaitIdle(app.Process());
    std::printf("\n%d requests \"GetChannelUri\", %d of them at first\n", requests, spell);
    constexpr double ofThePoolsThreads = 256; // Wine keeps some pages for each one that there ever was
    return PrintGrowth(before, Usage(app.Process(), app.Handles()), ofThePoolsThreads);
}

// Of the log, in this process.
bool MeasureLines(std::wstring const& folder)
{
    SetEnvironmentVariableW(L"TMP", folder.c_str());
    SetUpLogging();
    auto const first = 1'000;
    auto const most = bench::IsShort() ? 2 * first : 1'000'000;
    auto const write = [](int lines) {
        for (; lines > 0; --lines)
        {
            VelmoNotificationClient::appServiceLog.Info(L"Received Channel URI is %ls", L"https://notify/?token=AQ");
        }
    };
    bench::UnixProcess const process(sim::FromUtf8(sim::UnixPath(sim::ProgramPath())));
    write(first);
    Usage const before(process, bench::HandlesOf(GetCurrentProcessId()));
    write(most - first);
    std::printf("\n%d lines, %d of them at first\n", most, first);
    constexpr double fewPages = 16;
    return PrintGrowth(before, Usage(process, bench::HandlesOf(GetCurrentProcessId())), fewPages);
}

} // namespace

// idle_bench FOLDER SIM: FOLDER contains the packages "product" and "bare". Otherwise it is a caller: idle_bench
// [REQUESTS]
int wmain(int count, wchar_t** arguments)
try
{
    if (count != 3)
    {
        return Call(count == 2 ? arguments[1] : L"");
    }
    std::wstring const folder = arguments[1], simulator = arguments[2];
    auto const pairs = bench::IsShort() ? 1 : 5;
    ConnectedApps products, bare;
    for (int number = 1; number <= pairs; ++number)
    {
        products.emplace_back(simulator, folder + L"\\product", L"VelmoNotificationClient.exe", number);
        bare.emplace_back(simulator, folder + L"\\bare", L"BareApp.exe", number);
    }
    auto holds = CompareIdle(products, bare);
    holds &= MeasureRequests(products.front());
    holds &= MeasureLines(folder);
    return bench::Conclude("idle", holds);
}
catch (sim::Error const& error)
{
    std::fprintf(stderr, "idle_bench: %s\n", sim::ToUtf8(error.Message()).c_str());
    return 1;
}
