#pragma once
#include "bench/harness/Comparison.h"
#include "bench/harness/TimeShares.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace bench
{

// A short run shows that a bench works. Its figures mean nothing, so it judges no limit.
bool IsShort();

// A figure that is no ratio to a floor.
struct Figure
{
    std::string name;
    Interval value; // of equal values for what is counted
    std::string unit;
    std::optional<double> limit = {};
};

// One bench program's run: prints each table as soon as it is known, and the verdict in the end. Where
// VELMO_BENCH_JSON names a file, each row is appended to it too, a line of JSON each: see bench/compare.py.
class Bench
{
  public:
    // comparisons: how many share its time of three minutes.
    Bench(std::string name, int comparisons);

    void Compare(Comparison comparison);

    // Figures under a title.
    void Show(std::string const& title, std::vector<Figure> const& figures);

    // Prints the closing line, without which a bench does not count as run (cmake/wine-run), and gives the exit code: 1
    // when a limit is not kept.
    int Conclude() const;

  private:
    void Keep(std::string const& table, Figure const& figure, Verdict verdict);

    std::string m_name;
    TimeShares m_time;
    std::set<std::pair<std::string, std::string>> m_rows; // table and name: each once, so that runs can be compared
    int m_over = 0;
    int m_unknown = 0;
    int m_strayed = 0; // comparisons whose floor did not equal itself
};

// Nanoseconds of one operation, median and interval of so many blocks.
Figure Nanoseconds(std::string name, Block const& block, std::optional<double> limit, int operationsPerBlock,
                   int blocks);

} // namespace bench
