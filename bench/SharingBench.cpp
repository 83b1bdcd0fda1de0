// What it costs that processes share one log: four that write into it at a time, against one that writes as many lines
// alone; and the same of the bare calls.
#include "app/AppLog.h"
#include "app/SetUpLogging.h"
#include "bench/BareLine.h"
#include "bench/Writer.h"
#include "bench/harness/Bench.h"
#include "simulator/base/Error.h"
#include "simulator/base/Text.h"

#include <array>
#include <cstdio>
#include <memory>

namespace
{

constexpr std::size_t processes = 4;

std::wstring const message(100, L'x');

// The four of one kind.
class Writers
{
  public:
    Writers(sim::WindowsProcessStarter& starter, std::wstring const& folder, std::wstring const& kind)
    {
        for (std::size_t index = 0; index < processes; ++index)
        {
            auto const name = L"velmo-bench-" + kind + std::to_wstring(index);
            m_writers[index] = std::make_unique<bench::Writer>(starter, name, folder + L" " + kind + L" " + name);
            m_done[index] = m_writers[index]->Done();
        }
    }

    // How many times as long four of them take for so many lines as one alone.
    double SlowDown(int lines) const
    {
        auto const alone = bench::Timed([&] {
            m_writers[0]->Start(lines);
            WaitForSingleObject(m_done[0], INFINITE);
        });
        auto const together = bench::Timed([&] {
            for (auto const& writer : m_writers)
            {
                writer->Start(lines / static_cast<int>(processes));
            }
            WaitForMultipleObjects(processes, m_done.data(), TRUE, INFINITE);
        });
        return together(1) / alone(1);
    }

    bench::Figure SlowestLine(char const* name) const
    {
        double slowest = 0;
        for (auto const& writer : m_writers)
        {
            slowest = std::max(slowest, writer->SlowestLine());
        }
        return {name, {slowest, slowest, slowest}, "us"};
    }

  private:
    std::array<std::unique_ptr<bench::Writer>, processes> m_writers;
    std::array<HANDLE, processes> m_done{};
};

int Measure(std::wstring const& folder)
{
    constexpr int linesPerBlock = 200;
    constexpr double limit = 1 / 0.97; // of the time: 0.97 of the floor's lines per second
    sim::WindowsProcessStarter starter;
    starter.Listen([](auto&&...) {});
    Writers const bare(starter, folder, L"bare");
    Writers const ours(starter, folder, L"ours");
    bench::Bench bench("sharing", 1);
    bench.Compare({"Lines of 100 characters from four processes, by the time that one alone takes",
                   {{"floor: the five bare calls", [&](int lines) { return bare.SlowDown(lines); }},
                    {"AppLog", [&](int lines) { return ours.SlowDown(lines); }, limit}},
                   linesPerBlock,
                   "four/one"});
    bench.Show("The slowest line of all", {bare.SlowestLine("the five bare calls"), ours.SlowestLine("AppLog")});
    return bench.Conclude();
}

void WriteBareLines(std::wstring const& folder, std::wstring const& name)
{
    bench::BareLine const line(folder + L"\\bare.log", message);
    bench::Writer::Serve(name, [&] { line.Write(); });
}

void WriteOurLines(std::wstring const& folder, std::wstring const& name)
{
    SetEnvironmentVariableW(L"TMP", folder.c_str());
    SetUpLogging();
    bench::Writer::Serve(name, [] { AppLog(30, L"ZEB", L"ZEBMain", L"", L"", message.c_str()); });
}

} // namespace

int wmain(int count, wchar_t** arguments)
try
{
    if (count == 2)
    {
        return Measure(arguments[1]);
    }
    if (count == 4)
    {
        arguments[2] == std::wstring_view(L"bare") ? WriteBareLines(arguments[1], arguments[3])
                                                   : WriteOurLines(arguments[1], arguments[3]);
    }
    std::printf("sharing_bench FOLDER: writes its logs into FOLDER\n");
    return 2;
}
catch (sim::Error const& error)
{
    std::fprintf(stderr, "sharing_bench: %s\n", sim::ToUtf8(error.Message()).c_str());
    return 1;
}
