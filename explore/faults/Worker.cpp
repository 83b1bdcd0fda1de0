#include "explore/faults/Worker.h"

#include "explore/faults/Pipe.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <vector>
#include <winrt/base.h>

namespace explore::faults
{

namespace
{

constexpr char separator = '\x1F';
constexpr DWORD hungCode = 99;
constexpr DWORD crashedCode = 98;

std::string TextOf(Verdict const& verdict)
{
    std::string text;
    for (auto const& part : {verdict.kind, verdict.what, verdict.outcome, verdict.shown})
    {
        text += part + separator;
    }
    text += verdict.endsProcess ? "1 " : "0 ";
    for (auto const state : verdict.states)
    {
        text += std::to_string(state) + ' ';
    }
    return text;
}

Verdict VerdictOf(std::string const& text)
{
    std::istringstream stream(text);
    Verdict verdict;
    for (auto* part : {&verdict.kind, &verdict.what, &verdict.outcome, &verdict.shown})
    {
        std::getline(stream, *part, separator);
    }
    stream >> verdict.endsProcess;
    for (std::uint64_t state = 0; stream >> state;)
    {
        verdict.states.push_back(state);
    }
    return verdict;
}

std::atomic<unsigned> secondsInPlay = 0;

// A bare thread: the play replaces calls that others make.
DWORD WINAPI Watch(void*)
{
    constexpr unsigned limit = 60;
    while (secondsInPlay++ < limit)
    {
        SleepEx(1000, FALSE);
    }
    return static_cast<DWORD>(TerminateProcess(GetCurrentProcess(), hungCode));
}

LONG WINAPI EndAfterCrash(EXCEPTION_POINTERS*)
{
    TerminateProcess(GetCurrentProcess(), crashedCode);
    return EXCEPTION_CONTINUE_SEARCH;
}

int HandleCount()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<int>(count);
}

// An operation that never ends keeps what it holds, as does a helper that dies while it opens its connection.
bool HasNever(PlayId const& id)
{
    return std::ranges::any_of(id.deviations, [&](auto const& deviation) {
        return deviation.what == "never" || (id.story == "connect" && deviation.what == "helper-dies");
    });
}

// What a play leaves behind in the process.
struct Leavings
{
    int handles = HandleCount();
    int objects = static_cast<int>(winrt::get_module_lock().load());
};

struct Played
{
    Verdict verdict;
    Leavings more;
};

Played PlayHere(PlayId const& id, HANDLE output)
{
    Leavings const before;
    Verdict verdict;
    PlayOnce(id, [&](Verdict const& judged) {
        verdict = judged;
        if (judged.endsProcess)
        {
            WriteText(output, TextOf(judged));
        }
    });
    Leavings const after;
    return {verdict, {after.handles - before.handles, after.objects - before.objects}};
}

// Empty for nothing.
std::string KindOf(Leavings const& more, int handlesKept)
{
    if (more.objects > 0)
    {
        return "objects stay";
    }
    return more.handles > handlesKept ? "handles stay" : "";
}

// A first play may leave what the process keeps for good.
Verdict PlayUntilSure(PlayId const& id, HANDLE output)
{
    constexpr int times = 4;
    auto const registers = id.story == "register" || id.story == "two-requests";
    auto const handlesKept = registers ? 1 : 0; // the event of a registration
    for (int time = 1;; ++time)
    {
        auto [verdict, more] = PlayHere(id, output);
        auto const stay = KindOf(more, handlesKept);
        if (!verdict.kind.empty() || stay.empty() || HasNever(id))
        {
            return verdict;
        }
        if (time == times)
        {
            verdict.kind = stay;
            verdict.what = "  each time " + std::to_string(more.objects) + " objects and " +
                           std::to_string(more.handles) + " handles more";
            return verdict;
        }
    }
}

std::wstring ThisProgram()
{
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
    return path;
}

} // namespace

int Work()
{
    SetUnhandledExceptionFilter(EndAfterCrash);
    CloseHandle(CreateThread(nullptr, 0, Watch, nullptr, 0, nullptr));
    auto* const output = GetStdHandle(STD_OUTPUT_HANDLE);
    TextReader reader(GetStdHandle(STD_INPUT_HANDLE));
    while (auto const text = reader.Next())
    {
        secondsInPlay = 0;
        auto const id = PlayIdOf(*text);
        Verdict verdict;
        try
        {
            verdict = id ? PlayUntilSure(*id, output) : throw std::runtime_error("no play " + *text);
        }
        catch (std::exception const& error)
        {
            verdict = {.kind = "not playable", .what = error.what()};
        }
        WriteText(output, TextOf(verdict));
    }
    return 0;
}

struct Worker::Process
{
    Process()
    {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        HANDLE ends[4];
        if (!CreatePipe(&ends[0], &ends[1], &inherited, 0) || !CreatePipe(&ends[2], &ends[3], &inherited, 0))
        {
            throw std::runtime_error("no pipe to a worker");
        }
        zant::UniqueHandle const itsInput(ends[0]);
        input = zant::UniqueHandle(ends[1]);
        output = zant::UniqueHandle(ends[2]);
        zant::UniqueHandle const itsOutput(ends[3]);
        SetHandleInformation(input.Get(), HANDLE_FLAG_INHERIT, 0);
        SetHandleInformation(output.Get(), HANDLE_FLAG_INHERIT, 0);
        STARTUPINFOW start{};
        start.cb = sizeof start;
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdInput = itsInput.Get();
        start.hStdOutput = itsOutput.Get();
        start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
        auto const program = ThisProgram();
        auto line = L"\"" + program + L"\" --worker";
        PROCESS_INFORMATION started{};
        if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                            &started))
        {
            throw std::runtime_error("no worker starts");
        }
        process = zant::UniqueHandle(started.hProcess);
        CloseHandle(started.hThread);
        reader = TextReader(output.Get());
    }

    DWORD ExitCode() const
    {
        constexpr DWORD limit = 20'000; // in milliseconds
        if (WaitForSingleObject(process.Get(), limit) != WAIT_OBJECT_0)
        {
            TerminateProcess(process.Get(), hungCode);
        }
        DWORD code = 0;
        GetExitCodeProcess(process.Get(), &code);
        return code;
    }

    zant::UniqueHandle input{nullptr};
    zant::UniqueHandle output{nullptr};
    zant::UniqueHandle process{nullptr};
    TextReader reader{nullptr};
};

Worker::Worker() = default;

Worker::~Worker()
{
    if (m_process)
    {
        m_process->input = zant::UniqueHandle(nullptr); // its plays are over
        m_process->ExitCode();
    }
}

Verdict Worker::Play(PlayId const& id)
{
    if (!m_process)
    {
        m_process = std::make_unique<Process>();
    }
    WriteText(m_process->input.Get(), explore::TextOf(id));
    auto const text = m_process->reader.Next();
    auto verdict = text ? VerdictOf(*text) : Verdict();
    if (text && !verdict.endsProcess)
    {
        return verdict;
    }
    auto const code = m_process->ExitCode();
    m_process.reset();
    if (!text)
    {
        verdict.kind = code == hungCode ? "the process hangs" : "the process ends";
        verdict.what = "  with code " + std::to_string(code);
    }
    return verdict;
}

} // namespace explore::faults
