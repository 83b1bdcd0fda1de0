// What the product costs while nobody needs it: the process with a helper connected, against a bare app of the same
// kind; and by how much it grows with requests and lines.
#include "app/SetUpLogging.h"
#include "bench/Devices.h"
#include "bench/IdleApp.h"
#include "bench/ProcessHandles.h"
#include "bench/harness/Bench.h"
#include "helper/PackageFacts.h"
#include "service/AppServiceLog.h"
#include "service/Messages.h"
#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"

#include <algorithm>
#include <cstdio>
#include <deque>
#include <functional>
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

    void AwaitEnd() const { bench::AwaitSuccess(m_process, L"a caller"); }

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
    constexpr int patience = 120;
    auto waits = process.Waits();
    for (int quiet = 0, seconds = 0; quiet < longer; ++seconds)
    {
        if (seconds == patience)
        {
            throw sim::Error(L"an app wakes up again and again");
        }
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
    ConnectedApp(std::wstring const& simulator, std::wstring const& package, int number)
        : device(package + L"-device" + std::to_wstring(number)), app(simulator, device, CopyOf(package, number)),
          caller(device)
    {
        app.AwaitConnection();
    }

    std::wstring const device;
    bench::IdleApp app;
    OtherCaller caller;
};

using ConnectedApps = std::list<ConnectedApp>;

// What is measured of each process.
template <typename Measure>
std::vector<double> Measured(ConnectedApps const& apps, Measure measure)
{
    std::vector<double> values;
    for (auto const& [device, app, caller] : apps)
    {
        values.push_back(static_cast<double>(measure(app.Process())));
    }
    return values;
}

std::vector<double> Differences(std::vector<double> const& some, std::vector<double> const& others)
{
    std::vector<double> differences(some.size());
    std::ranges::transform(some, others, differences.begin(), std::minus());
    return differences;
}

// The product's, the bare app's, and what the product has beyond it.
void AddRows(std::vector<bench::Figure>& rows, std::string const& what, std::string const& unit,
             std::vector<double> const& products, std::vector<double> const& bare, std::optional<double> limit)
{
    rows.push_back({what + " of the product", bench::MedianInterval(products), unit});
    rows.push_back({what + " of the bare app", bench::MedianInterval(bare), unit});
    rows.push_back({what + ", more", bench::MedianInterval(Differences(products, bare)), unit, limit});
}

bench::Figure Count(std::string name, long long count, std::string unit, std::optional<double> limit = {})
{
    auto const value = static_cast<double>(count);
    return {std::move(name), {value, value, value}, std::move(unit), limit};
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

// What the C++ library's mutexes and condition variables make when threads first meet at one: how many varies.
bool IsOfLock(std::wstring const& handle)
{
    return handle == L"Event" || handle == L"Semaphore";
}

long long OfLocks(std::vector<std::wstring> const& handles)
{
    return std::ranges::count_if(handles, IsOfLock);
}

long long Others(std::vector<std::wstring> const& handles)
{
    return std::ssize(handles) - OfLocks(handles);
}

// The handles that the product has more are named in docs/performance.md.
void CompareHandles(bench::Bench& bench, ConnectedApps const& products, ConnectedApps const& bare)
{
    auto const counted = [](ConnectedApps const& apps, auto count) {
        std::vector<double> counts;
        std::ranges::transform(apps, std::back_inserter(counts), [&](ConnectedApp const& connected) {
            return static_cast<double>(count(connected.app.Handles()));
        });
        return counts;
    };
    constexpr double named = 4;
    std::vector<bench::Figure> rows;
    AddRows(rows, "handles of locks", "", counted(products, OfLocks), counted(bare, OfLocks), {});
    AddRows(rows, "other handles", "", counted(products, Others), counted(bare, Others), named);
    bench.Show("Handles of the same processes", rows);
    auto const handles = products.front().app.Handles(), bareHandles = bare.front().app.Handles();
    PrintNames(Beyond(handles, bareHandles), "handles that only the first product has");
    PrintNames(Beyond(bareHandles, handles), "handles that only the first bare app has");
}

// How often each process woke up while nothing was asked of it.
std::pair<std::vector<double>, std::vector<double>> WakeUps(ConnectedApps const& products, ConnectedApps const& bare,
                                                            int seconds)
{
    auto const waits = [](auto const& process) { return process.Waits(); };
    auto const productsBefore = Measured(products, waits), bareBefore = Measured(bare, waits);
    Sleep(static_cast<DWORD>(seconds) * second);
    return {Differences(Measured(products, waits), productsBefore), Differences(Measured(bare, waits), bareBefore)};
}

void CompareIdle(bench::Bench& bench, ConnectedApps const& products, ConnectedApps const& bare)
{
    for (auto const* const apps : {&products, &bare})
    {
        for (auto const& [device, app, caller] : *apps)
        {
            AwaitIdle(app.Process());
        }
    }
    auto const seconds = bench::IsShort() ? 10 : 60;
    auto const [ourWakeUps, bareWakeUps] = WakeUps(products, bare, seconds);
    auto const memory = [](auto const& process) { return process.PrivateKilobytes(); };
    auto const threads = [](auto const& process) { return process.Threads(); };
    auto const faults = [](auto const& process) { return process.PageFaults(); };
    std::vector<bench::Figure> rows;
    AddRows(rows, "page faults", "", Measured(products, faults), Measured(bare, faults), {});
    AddRows(rows, "private memory", "KB", Measured(products, memory), Measured(bare, memory), 150);
    AddRows(rows, "threads", "", Measured(products, threads), Measured(bare, threads), 0);
    AddRows(rows, "wake-ups in " + std::to_string(seconds) + " s", "", ourWakeUps, bareWakeUps, 0);
    bench.Show("Idle, with a helper connected; " + std::to_string(products.size()) + " processes of each", rows);
    CompareHandles(bench, products, bare);
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
void ShowGrowth(bench::Bench& bench, std::string const& title, Usage const& before, Usage const& after,
                double mostKilobytes)
{
    constexpr double fewLocks = 8; // of all that there are, some were first contended after the first look
    bench.Show(title,
               {Count("private memory before", before.kilobytes, "KB"),
                Count("private memory, growth", after.kilobytes - before.kilobytes, "KB", mostKilobytes),
                Count("threads before", before.threads, ""),
                Count("threads, growth", after.threads - before.threads, "", 0),
                Count("handles of locks before", OfLocks(before.handles), ""),
                Count("handles of locks, growth", OfLocks(after.handles) - OfLocks(before.handles), "", fewLocks),
                Count("other handles before", Others(before.handles), ""),
                Count("other handles, growth", Others(after.handles) - Others(before.handles), "", 0)});
    PrintNames(Beyond(after.handles, before.handles), "handles that were not there before");
}

// Of one app's real process. Through Wine's server each request takes milliseconds.
void MeasureRequests(bench::Bench& bench, ConnectedApp const& connected)
{
    auto const spell = bench::IsShort() ? 100 : 1'000;
    auto const most = bench::IsShort() ? 2 * spell : 100'000 + spell;
    auto const& app = connected.app;
    auto const ask = [&] { OtherCaller(connected.device, std::to_wstring(spell)).AwaitEnd(); };
    auto const waits = app.Process().Waits();
    ask();
    if (app.Process().Waits() == waits)
    {
        throw sim::Error(L"the app answers requests, and is not seen to wake up");
    }
    AwaitIdle(app.Process());
    Usage const before(app.Process(), app.Handles());
    for (auto requests = spell; requests < most; requests += spell)
    {
        ask();
    }
    AwaitIdle(app.Process());
    constexpr double ofThePoolsThreads = 256; // Wine keeps some pages for each one that there ever was
    ShowGrowth(bench,
               std::to_string(most - spell) + " requests \"GetChannelUri\", after the first " + std::to_string(spell),
               before, Usage(app.Process(), app.Handles()), ofThePoolsThreads);
}

// Of the log, in this process.
void MeasureLines(bench::Bench& bench, std::wstring const& folder)
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
    constexpr double fewPages = 16;
    ShowGrowth(bench, std::to_string(most) + " lines, after the first " + std::to_string(first), before,
               Usage(process, bench::HandlesOf(GetCurrentProcessId())), fewPages);
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
        products.emplace_back(simulator, folder + L"\\product", number);
        bare.emplace_back(simulator, folder + L"\\bare", number);
    }
    bench::Bench bench("idle", 1);
    CompareIdle(bench, products, bare);
    MeasureRequests(bench, products.front());
    MeasureLines(bench, folder);
    return bench.Conclude();
}
catch (sim::Error const& error)
{
    std::fprintf(stderr, "idle_bench: %s\n", sim::ToUtf8(error.Message()).c_str());
    return 1;
}
