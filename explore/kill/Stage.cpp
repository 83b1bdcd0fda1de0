#include "explore/kill/Stage.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"
#include "simulator/base/Text.h"
#include "simulator/package/Package.h"
#include "simulator/protocol/BrokerPipe.h"

#include <algorithm>
#include <memory>

namespace explore::kill
{

namespace
{

constexpr DWORD limitMilliseconds = 60'000; // only what hangs reaches it

std::wstring Numbered(std::wstring const& name, unsigned number)
{
    return name + std::to_wstring(number);
}

std::wstring SectionName(unsigned number)
{
    return Numbered(L"velmo-explore-kill-" + std::to_wstring(GetCurrentProcessId()) + L"-", number);
}

// With its own environment, which its app's processes inherit.
void StartBroker(sim::Device const& device, std::wstring const& section)
{
    sim::Handle const ready(CreateEventW(nullptr, TRUE, FALSE, device.ReadyEventName().c_str()));
    auto const process = sim::StartProcess(
        {SIM_PROGRAM,
         L"sim.exe broker",
         {},
         {{L"VELMO_SIM_HOME", device.Home()}, {L"VELMO_SIM_LOAD", WATCH_LIBRARY}, {sectionVariable, section}}});
    HANDLE const either[] = {ready.Get(), process.Get()};
    WaitForMultipleObjects(process ? 2 : 1, either, FALSE, limitMilliseconds);
}

// Nothing of a file that another process is just removing or emptying.
std::string BytesOf(std::wstring const& path, std::uint64_t from = 0)
{
    sim::Handle const file(CreateFileW(path.c_str(), GENERIC_READ,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                       0, nullptr));
    LARGE_INTEGER start;
    start.QuadPart = static_cast<LONGLONG>(from);
    LARGE_INTEGER size;
    if (!file || !GetFileSizeEx(file.Get(), &size) || size.QuadPart <= start.QuadPart ||
        !SetFilePointerEx(file.Get(), start, nullptr, FILE_BEGIN))
    {
        return {};
    }
    std::string bytes(static_cast<std::size_t>(size.QuadPart - start.QuadPart), '\0');
    DWORD read = 0;
    auto const isRead = ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) != FALSE;
    bytes.resize(isRead ? read : 0);
    return bytes;
}

void WriteLog(std::wstring const& path, OldLog const& log)
{
    sim::MakeFolder(sim::ParentOf(path));
    sim::WriteBytes(path, log.begin);
    sim::Handle const file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER place;
    place.QuadPart = static_cast<LONGLONG>(log.size - log.end.size());
    DWORD written = 0;
    if (!file || !SetFilePointerEx(file.Get(), place, nullptr, FILE_BEGIN) ||
        !WriteFile(file.Get(), log.end.data(), static_cast<DWORD>(log.end.size()), &written, nullptr))
    {
        throw sim::Error(L"the log cannot be prepared: " + path);
    }
}

std::wstring LogIn(std::wstring const& folder)
{
    return folder + L"\\KZEB.log";
}

bool HasLine(std::string_view bytes, std::u16string_view message)
{
    auto const line = u"| " + std::u16string(message) + u"\r\n";
    return bytes.find({reinterpret_cast<char const*>(line.data()), line.size() * sizeof(char16_t)}) != bytes.npos;
}

bool HasEnded(sim::Handle const& process)
{
    return !process || WaitForSingleObject(process.Get(), 0) == WAIT_OBJECT_0;
}

} // namespace

void InstallSimulator()
{
    auto const process = sim::StartProcess(SIM_PROGRAM, {L"install"});
    DWORD code = 1;
    if (WaitForSingleObject(process.Get(), limitMilliseconds) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(process.Get(), &code) || code != 0)
    {
        throw sim::Error(L"the simulator's runtime classes are not installed");
    }
}

Stage::Stage(unsigned number) : m_device(Numbered(L"C:\\explore-kill\\", number)), m_watch(SectionName(number))
{
    sim::BrokerClient::StopRunning(m_device);
    m_device.Clear();
    sim::MakeFolder(m_device.Home());
    StartBroker(m_device, SectionName(number));
    auto pipe = sim::FindBroker(m_device);
    if (!pipe)
    {
        throw sim::Error(L"no broker starts for " + m_device.Home());
    }
    m_broker = std::make_unique<sim::BrokerClient>(std::move(pipe));
    m_broker->Follow();
    auto const family = sim::OpenPackage(PACKAGE_FOLDER).FamilyName();
    m_logFolder = m_device.AppTemporaryFolder(family) + L"\\Tessaline\\HOV";
    m_broker->Ask(sim::RegisterPackage{PACKAGE_FOLDER});
}

Stage::~Stage()
{
    try
    {
        EndApp();
        m_broker->Stop();
    }
    catch (sim::Error const&)
    {
        // Ignored: it ends with the prefix.
    }
}

void Stage::Prepare(OldLog const& log)
{
    m_broker->Ask(sim::UnregisterPackage{}); // with all of its data
    m_broker->Ask(sim::RegisterPackage{PACKAGE_FOLDER});
    if (!log.lines.empty())
    {
        WriteLog(LogIn(m_logFolder), log);
    }
}

std::string Stage::Ask(Story const& story)
{
    m_watch.SetTimePasses(false);
    m_logBefore = sim::FileSize(LogIn(m_logFolder)).value_or(0);
    m_hasStarted = false;
    m_helperCode.reset();
    sim::Handle helper;
    switch (story.request)
    {
    case Request::Launch:
        m_broker->Ask(sim::LaunchApp{});
        break;
    case Request::OpenUri:
        m_broker->Ask(sim::OpenUri{L"velmo-notification:"});
        break;
    case Request::Register:
        helper = StartHelper();
        break;
    }
    auto const start = GetTickCount64();
    while (!IsThrough(story, helper))
    {
        if (GetTickCount64() - start > limitMilliseconds)
        {
            return HasEnded(helper) ? "hangs: the app does not come to its end" : "hangs: the helper does not end";
        }
        LetTimePass(story);
        TakeEvents(pollMilliseconds);
    }
    if (DWORD code = 0; helper && GetExitCodeProcess(helper.Get(), &code))
    {
        m_helperCode = code;
    }
    return {};
}

// The process has ended; or it stays, and has written what it does.
bool Stage::IsThrough(Story const& story, sim::Handle const& helper) const
{
    if (!m_hasStarted || !HasEnded(helper))
    {
        return false;
    }
    if (!m_runs)
    {
        return true;
    }
    if (story.closing.empty())
    {
        return false;
    }
    auto const log = BytesOf(LogIn(m_logFolder), m_logBefore);
    return std::ranges::all_of(story.closing, [&](auto const message) { return HasLine(log, message); });
}

// The three seconds that a launched app waits are over when the launch has been dealt with.
void Stage::LetTimePass(Story const& story) const
{
    if (story.request == Request::Launch && HasLine(BytesOf(LogIn(m_logFolder), m_logBefore), u"Launch Done !! "))
    {
        m_watch.SetTimePasses(true);
    }
}

void Stage::TakeEvents(DWORD milliseconds)
{
    WaitForSingleObject(m_broker->Arrived(), milliseconds);
    while (auto const event = m_broker->NextEvent())
    {
        if (event->kind == L"app-started")
        {
            m_hasStarted = true;
            m_runs = true;
        }
        else if (event->kind == L"app-crashed" || event->kind == L"app-exited" || event->kind == L"app-terminated")
        {
            m_runs = false;
            m_exitCode = event->Detail(L"code").value_or(L"");
        }
    }
}

std::string Stage::EndApp()
{
    try
    {
        if (m_runs)
        {
            m_broker->Ask(sim::KillApp{});
        }
    }
    catch (sim::Error const&)
    {
        // Ignored: it has ended meanwhile, as its event will tell.
    }
    for (auto const start = GetTickCount64(); m_runs;)
    {
        if (GetTickCount64() - start > limitMilliseconds)
        {
            return "hangs: the app's process does not end when it is killed";
        }
        TakeEvents(pollMilliseconds);
    }
    return {};
}

std::vector<LogText> Stage::Logs() const
{
    std::vector<LogText> logs;
    for (auto const& path : sim::FilesBelow(m_logFolder))
    {
        logs.push_back(
            ReadLogText(sim::ToUtf8(path.substr(m_logFolder.size() + 1)), path != LogIn(m_logFolder), BytesOf(path)));
    }
    return logs;
}

sim::DeviceState Stage::State()
{
    return std::get<sim::DeviceState>(m_broker->AnswerTo(sim::DescribeDevice{}));
}

sim::Handle Stage::StartHelper() const
{
    return sim::StartProcess(
        {HELPER_PROGRAM, L"helper.exe register --timeout 50", {}, {{L"VELMO_SIM_HOME", m_device.Home()}}});
}

} // namespace explore::kill
