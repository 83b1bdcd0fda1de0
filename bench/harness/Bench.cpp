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
    if (row.limit)
    {
        std::printf("  at most %.2f: %s", *row.limit, TextOf(row.verdict));
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

void PrintFigure(Figure const& figure, Verdict verdict)
{
    auto const& [low, median, high] = figure.value;
    std::printf("  %-38s %10.0f %s", figure.name.c_str(), median, figure.unit.c_str());
    if (low != high)
    {
        std::printf("  %.0f - %.0f", low, high);
    }
    if (verdict != Verdict::None)
    {
        std::printf("  at most %.0f: %s", *figure.limit, TextOf(verdict));
    }
    std::printf("\n");
}

nlohmann::ordered_json JsonOf(std::string const& bench, std::string const& table, Figure const& figure, Verdict verdict)
{
    nlohmann::ordered_json row{{"bench", bench},           {"table", table},          {"row", figure.name},
                               {"unit", figure.unit},      {"low", figure.value.low}, {"median", figure.value.median},
                               {"high", figure.value.high}};
    if (verdict != Verdict::None)
    {
        row["limit"] = *figure.limit;
        row["verdict"] = TextOf(verdict);
    }
    return row;
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

Bench::Bench(std::string name, int comparisons) : m_name(std::move(name)), m_time(Clock::now(), benchTime, comparisons)
{
}

void Bench::Compare(Comparison comparison)
{
    if (IsShort())
    {
        for (auto& contender : comparison.contenders)
        {
            contender.limit.reset();
        }
    }
    auto const end = m_time.EndOfNext(Clock::now());
    auto const table = bench::Compare(comparison, {leastRounds, [end] { return IsShort() || Clock::now() > end; }});
    PrintTable(table, comparison);
    for (auto const& row : table.rows)
    {
        Keep(table.title, {row.name, row.ratio, "ratio", row.limit}, row.verdict);
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
        auto const verdict = IsShort() ? Verdict::None : Judge(figure.value, figure.limit);
        PrintFigure(figure, verdict);
        Keep(title, figure, verdict);
    }
    std::fflush(stdout);
}

void Bench::Keep(std::string const& table, Figure const& figure, Verdict verdict)
{
    if (!m_rows.emplace(table, figure.name).second)
    {
        throw std::logic_error("there are two rows " + figure.name + " in the table " + table);
    }
    m_over += verdict == Verdict::Over ? 1 : 0;
    m_unknown += verdict == Verdict::CannotTell ? 1 : 0;
    auto const* const path = std::getenv("VELMO_BENCH_JSON");
    if (path == nullptr || *path == '\0')
    {
        return;
    }
    auto const line = JsonOf(m_name, table, figure, verdict).dump();
    auto* const file = std::fopen(path, "ab");
    if (file == nullptr || std::fprintf(file, "%s\n", line.c_str()) < 0 || std::fclose(file) != 0)
    {
        throw std::runtime_error(std::string("cannot write ") + path);
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

Figure Nanoseconds(std::string name, Block const& block, std::optional<double> limit, int operationsPerBlock,
                   int blocks)
{
    std::vector<double> times;
    for (int count = 0; count < (IsShort() ? 2 : blocks); ++count)
    {
        times.push_back(block(operationsPerBlock) * 1'000);
    }
    return {std::move(name), MedianInterval(times), "ns", limit};
}

} // namespace bench
