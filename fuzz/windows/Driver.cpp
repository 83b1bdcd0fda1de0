// Fuzzes a target under Wine, where the library that does so on Linux is not there: LLVMFuzzerTestOneInput gets inputs
// made of earlier ones by chance, and those that reach code that none before has reached join them.
//
// NAME_fuzz.exe [-max_total_time=SECONDS] [-max_len=BYTES] [-timeout=SECONDS] [-seed=N] [-artifact_prefix=PREFIX]
// FOLDERS... the first of which gets what is found; or FILES... to play these.
#include "fuzz/windows/Counters.h"
#include "fuzz/windows/Mutations.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <filesystem>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <thread>
#include <windows.h>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace
{

using namespace fuzz;
using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

struct Options
{
    std::uint64_t seconds = 10;
    std::uint64_t longest = 4096;
    std::uint64_t timeout = 20;
    std::uint64_t seed = static_cast<std::uint64_t>(Clock::now().time_since_epoch().count());
    std::wstring artifactPrefix = L"fuzz-";
    std::vector<fs::path> places;
};

// What is played now, for whatever ends it.
struct Current
{
    Input const* input = nullptr;
    std::wstring artifactPrefix;
    std::atomic<std::uint64_t> number = 0;
};
Current current;

using File = std::unique_ptr<std::FILE, decltype([](std::FILE* file) { std::fclose(file); })>;

void Write(fs::path const& path, Input const& input)
{
    File const file(_wfopen(path.c_str(), L"wb"));
    if (!file || std::fwrite(input.data(), 1, input.size(), file.get()) != input.size())
    {
        std::fputs("the input cannot be written\n", stderr);
        std::_Exit(2);
    }
}

Input Read(fs::path const& path)
{
    File const file(_wfopen(path.c_str(), L"rb"));
    if (!file)
    {
        std::fwprintf(stderr, L"%ls cannot be read\n", path.c_str());
        std::_Exit(2);
    }
    Input input(static_cast<std::size_t>(fs::file_size(path)));
    input.resize(std::fread(input.data(), 1, input.size(), file.get()));
    return input;
}

// In an order that does not depend on the disk, so that a seed gives the same inputs everywhere.
std::set<fs::path> FilesIn(fs::path const& folder)
{
    return {fs::directory_iterator(folder), fs::directory_iterator()};
}

std::wstring HashName(Input const& input)
{
    auto hash = std::hash<std::string_view>()({reinterpret_cast<char const*>(input.data()), input.size()});
    std::wstring name;
    for (; name.size() < 16; hash >>= 4)
    {
        name += L"0123456789abcdef"[hash & 15];
    }
    return name;
}

[[noreturn]] void EndWith(wchar_t const* what)
{
    if (current.input == nullptr)
    {
        std::fwprintf(stderr, L"%ls before the first input\n", what);
        std::_Exit(2);
    }
    auto const path = current.artifactPrefix + what + L"-" + HashName(*current.input);
    Write(path, *current.input);
    std::fwprintf(stderr, L"%ls: the input is %ls\n", what, path.c_str());
    std::fflush(stderr);
    std::_Exit(77);
}

LONG WINAPI EndWithCrash(EXCEPTION_POINTERS* exception)
{
    std::fprintf(stderr, "exception %08lX at %p\n", exception->ExceptionRecord->ExceptionCode,
                 exception->ExceptionRecord->ExceptionAddress);
    EndWith(L"crash");
}

// Ends the process when one input takes as long.
void WatchFor(std::chrono::seconds limit)
{
    std::thread([limit] {
        for (auto last = ~std::uint64_t(); last != current.number; std::this_thread::sleep_for(limit))
        {
            last = current.number;
        }
        EndWith(L"timeout");
    }).detach();
}

void PrepareForTheWorst(Options const& options)
{
    current.artifactPrefix = options.artifactPrefix;
    ULONG forTheHandler = 256 << 10;
    SetThreadStackGuarantee(&forTheHandler); // a stack that is used up is an exception, too
    SetUnhandledExceptionFilter(EndWithCrash);
    std::signal(SIGABRT, [](int) { EndWith(L"crash"); });
    WatchFor(std::chrono::seconds(options.timeout));
}

// Whether it reached something that none before has.
bool Play(Input const& input)
{
    current.input = &input;
    ++current.number;
    ClearCounters();
    auto const copy = input; // exactly as long
    LLVMFuzzerTestOneInput(copy.data(), copy.size());
    return TakeNews();
}

void Fuzz(Options const& options)
{
    auto const end = Clock::now() + std::chrono::seconds(options.seconds);
    Noise noise(options.seed);
    std::vector<Input> corpus;
    for (auto const& folder : options.places)
    {
        for (auto const& file : FilesIn(folder))
        {
            corpus.push_back(Read(file));
            Play(corpus.back());
        }
    }
    corpus.emplace_back();
    auto const before = corpus.size();
    while (Clock::now() < end)
    {
        auto const& base = corpus[noise.Below(corpus.size())];
        auto const input = Mutated(noise, base, corpus[noise.Below(corpus.size())], options.longest);
        if (Play(input))
        {
            Write(options.places.front() / HashName(input), input);
            corpus.push_back(input);
        }
    }
    std::printf("seed %llu: %zu inputs reached something new\n", static_cast<unsigned long long>(options.seed),
                corpus.size() - before);
    std::printf("stat::number_of_executed_units: %llu\n", static_cast<unsigned long long>(current.number));
}

Options Parse(std::span<wchar_t*> arguments)
{
    Options options;
    std::pair<std::wstring_view, std::uint64_t*> const numbers[] = {{L"-max_total_time=", &options.seconds},
                                                                    {L"-max_len=", &options.longest},
                                                                    {L"-timeout=", &options.timeout},
                                                                    {L"-seed=", &options.seed}};
    constexpr std::wstring_view prefix = L"-artifact_prefix=";
    for (std::wstring_view const argument : arguments)
    {
        for (auto const& [name, number] : numbers)
        {
            if (argument.starts_with(name))
            {
                *number = std::wcstoull(argument.data() + name.size(), nullptr, 10);
            }
        }
        if (argument.starts_with(prefix))
        {
            options.artifactPrefix = argument.substr(prefix.size());
        }
        if (!argument.starts_with(L'-'))
        {
            options.places.emplace_back(argument);
        }
    }
    return options;
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    auto const options = Parse(std::span(arguments, static_cast<std::size_t>(count)).subspan(1));
    PrepareForTheWorst(options);
    if (options.places.empty())
    {
        std::fputs("name the corpus, or the files to play\n", stderr);
        return 2;
    }
    if (fs::is_directory(options.places.front()))
    {
        Fuzz(options);
        return 0;
    }
    for (auto const& file : options.places)
    {
        Play(Read(file));
    }
    std::puts("nothing differs");
    return 0;
}
