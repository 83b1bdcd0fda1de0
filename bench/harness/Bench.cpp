#include "bench/harness/Bench.h"

#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace bench
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::chrono::minutes benchTime{3};
constexpr int leastRounds = 40;

void PrintRow(Row const& row)
{
    std::printf("  %-38s %10.2f  %7.3f  %7.3f - %-7.3f", row.name.c_str(), row.time, row.ratio.median, row.ratio.low,
                row.ratio.high);
    if (row.limit != 0)
    {
        std::printf("  at most %.2f: %s", row.limit, TextOf(row.verdict));
    }
    std::printf("\n");
}

void PrintTable(Table const& table, Comparison const& comparison)
{
    std::printf("\n%s\n  %-38s %10s  %7s  %17s\n", table.title.c_str(), "", ("median " + comparison.unit).c_str(),
                "ratio", "95 % interval ");
    for (auto const& row : table.rows)
    {
        PrintRow(row);
    }
    std::printf("  %zu rounds of a block of %d each, in random order", table.rounds, comparison.operationsPerBlock);
    if (table.leftOut != 0)
    {
        std::printf("; %zu more left out, in which something else had the core", table.leftOut);
    }
    std::printf("\n");
    std::fflush(stdout);
}

// Whether the floor equals itself, as far as its interval can tell; a short run cannot.
bool Strays(Table const& table)
{
    return !IsShort() && !table.SameAgain().ratio.Contains(1);
}

} // namespace

bool IsShort()
{
    return std::getenv("VELMO_BENCH_SHORT") != nullptr;
}

Bench::Bench(std::string name, int comparisons)
    : m_name(std::move(name)), m_share(std::chrono::duration<double>(benchTime) / comparisons)
{
}

void Bench::Compare(Comparison comparison)
{
    if (IsShort())
    {
        for (auto& contender : comparison.contenders)
        {
            contender.limit = 0;
        }
    }
    auto const end = Clock::now() + m_share;
    auto const table =
        bench::Compare(comparison, {IsShort() ? 2 : leastRounds, [end] { return IsShort() || Clock::now() > end; }});
    PrintTable(table, comparison);
    for (auto const& row : table.rows)
    {
        Keep(table.title, row.name, "ratio", row.ratio, row.limit, row.verdict);
    }
    if (Strays(table))
    {
        std::printf("  The floor does not equal itself: trust no third decimal of this table.\n");
        ++m_strayed;
    }
}

void Bench::Show(std::string const& title, std::vector<Figure> const& figures)
{
    std::printf("\n%s\n", title.c_str());
    for (auto const& figure : figures)
    {
        auto const limit = IsShort() ? 0 : figure.limit;
        auto const verdict = Judge(figure.value, limit);
        std::printf("  %-38s %10.0f %s  %.0f - %.0f", figure.name.c_str(), figure.value.median, figure.unit.c_str(),
                    figure.value.low, figure.value.high);
        if (limit != 0)
        {
            std::printf("  at most %.0f: %s", limit, TextOf(verdict));
        }
        std::printf("\n");
        Keep(title, figure.name, figure.unit, figure.value, limit, verdict);
    }
    std::fflush(stdout);
}

void Bench::Keep(std::string const& table, std::string const& row, std::string const& unit, Interval const& value,
                 double limit, Verdict verdict)
{
    m_over += verdict == Verdict::Over ? 1 : 0;
    m_unknown += verdict == Verdict::CannotTell ? 1 : 0;
    auto const* const path = std::getenv("VELMO_BENCH_JSON");
    if (path != nullptr && *path != '\0')
    {
        nlohmann::ordered_json const line{{"bench", m_name},    {"table", table},   {"row", row},
                                          {"unit", unit},       {"low", value.low}, {"median", value.median},
                                          {"high", value.high}, {"limit", limit},   {"verdict", TextOf(verdict)}};
        auto* const file = std::fopen(path, "ab");
        if (file == nullptr || std::fprintf(file, "%s\n", line.dump().c_str()) < 0 || std::fclose(file) != 0)
        {
            throw std::runtime_error(std::string("cannot write ") + path);
        }
    }
}

int Bench::Conclude() const
{
    std::printf("\nbench %s: ", m_name.c_str());
    if (IsShort())
    {
        std::printf("works (a short run, without a verdict)\n");
        return 0;
    }
    std::printf("%s", m_over == 0 && m_unknown == 0 ? "its limits hold" : "");
    if (m_over != 0)
    {
        std::printf("%d of its limits NOT kept", m_over);
    }
    if (m_unknown != 0)
    {
        std::printf("%s%d of its limits cannot be told on this machine now", m_over != 0 ? ", " : "", m_unknown);
    }
    std::printf("%s\n", m_strayed != 0 ? "; a floor did not equal itself" : "");
    return m_over == 0 ? 0 : 1;
}

Figure Nanoseconds(std::string name, Block const& block, double limit, int operationsPerBlock, int blocks)
{
    std::vector<double> times;
    for (int count = 0; count < (IsShort() ? 2 : blocks); ++count)
    {
        times.push_back(block(operationsPerBlock) * 1'000);
    }
    return {std::move(name), MedianInterval(times), "ns", limit};
}

} // namespace bench
