#include "bench/harness/Bench.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>

using bench::Bench;

namespace
{

class BenchTest : public testing::Test
{
  protected:
    BenchTest()
    {
        setenv("VELMO_BENCH_JSON", m_json.c_str(), 1);
        unsetenv("VELMO_BENCH_SHORT");
        testing::internal::CaptureStdout();
    }

    ~BenchTest() override
    {
        unsetenv("VELMO_BENCH_JSON");
        unsetenv("VELMO_BENCH_SHORT");
        std::filesystem::remove(m_json);
    }

    // A run with one comparison of contenders that take so many microseconds, the floor first.
    int ExitCodeOf(std::vector<double> const& microseconds, double limit)
    {
        Bench bench("name", 1);
        bench::Comparison comparison{"table", {}, 1};
        for (auto const time : microseconds)
        {
            comparison.contenders.push_back({std::to_string(time), [time](int) { return time; },
                                             comparison.contenders.empty() ? std::nullopt : std::optional(limit)});
        }
        bench.Compare(comparison);
        return bench.Conclude();
    }

    static std::string Output() { return testing::internal::GetCapturedStdout(); }

    std::vector<nlohmann::json> Rows() const
    {
        std::vector<nlohmann::json> rows;
        std::ifstream file(m_json);
        for (std::string line; std::getline(file, line);)
        {
            rows.push_back(nlohmann::json::parse(line));
        }
        return rows;
    }

  private:
    std::string m_json =
        testing::TempDir() + testing::UnitTest::GetInstance()->current_test_info()->name() + ".bench.json";
};

// No two copies of it take the same time.
class SlowerEachTimeItIsCopied
{
  public:
    SlowerEachTimeItIsCopied() = default;
    SlowerEachTimeItIsCopied(SlowerEachTimeItIsCopied const& other) : m_copies(other.m_copies), m_mine(++*m_copies) {}
    SlowerEachTimeItIsCopied& operator=(SlowerEachTimeItIsCopied const&) = delete;

    double operator()(int) const { return 100 + m_mine; }

  private:
    std::shared_ptr<int> m_copies = std::make_shared<int>(0);
    int m_mine = 0;
};

} // namespace

TEST_F(BenchTest, KeptLimitsAreSaidAndEndWithZero)
{
    EXPECT_EQ(ExitCodeOf({100, 102}, 1.03), 0);
    EXPECT_NE(Output().find("at most 1.03: holds\n"), std::string::npos);
}

TEST_F(BenchTest, ALimitThatIsNotKeptIsSaidAndEndsWithOne)
{
    EXPECT_EQ(ExitCodeOf({100, 104, 105}, 1.03), 1);
    auto const output = Output();
    EXPECT_NE(output.find("at most 1.03: OVER\n"), std::string::npos);
    EXPECT_TRUE(output.ends_with("\nbench name: 2 of its limits NOT kept\n")) << output;
}

TEST_F(BenchTest, WhatCannotBeToldIsSaidAndIsNoFailure)
{
    Bench bench("name", 1);
    bench.Show("figures", {{"bytes", {1, 2, 3}, "bytes", 2}});
    EXPECT_EQ(bench.Conclude(), 0);
    auto const output = Output();
    EXPECT_NE(output.find("at most 2: cannot tell on this machine now\n"), std::string::npos);
    EXPECT_TRUE(output.ends_with("\nbench name: 1 of its limits cannot be told on this machine now\n")) << output;
}

TEST_F(BenchTest, AShortRunJudgesNothing)
{
    setenv("VELMO_BENCH_SHORT", "1", 1);
    EXPECT_EQ(ExitCodeOf({100, 200}, 1.03), 0);
    auto const output = Output();
    EXPECT_EQ(output.find("at most"), std::string::npos);
    EXPECT_TRUE(output.ends_with("\nbench name: works (a short run, without a verdict)\n")) << output;
}

TEST_F(BenchTest, AFloorThatDoesNotEqualItselfIsSaid)
{
    Bench bench("name", 1);
    bench.Compare({"table", {{"floor", SlowerEachTimeItIsCopied{}}}, 1});
    bench.Conclude();
    auto const output = Output();
    EXPECT_NE(output.find("The floor does not equal itself"), std::string::npos);
    EXPECT_TRUE(output.ends_with("\nbench name: its limits hold; a floor did not equal itself\n")) << output;
}

TEST_F(BenchTest, EachRowIsALineOfJson)
{
    ExitCodeOf({100, 102}, 1.03);
    Output();
    auto const rows = Rows();
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[2], nlohmann::json::parse(R"({"bench": "name", "table": "table", "row": "102.000000",
        "unit": "ratio", "low": 1.02, "median": 1.02, "high": 1.02, "limit": 1.03, "verdict": "holds"})"));
}

TEST_F(BenchTest, AFigureIsALineOfJsonToo)
{
    Bench bench("name", 1);
    bench.Show("figures", {{"size", {5, 5, 5}, "bytes", 4}});
    EXPECT_EQ(bench.Conclude(), 1);
    Output();
    ASSERT_EQ(Rows().size(), 1u);
    EXPECT_EQ(Rows()[0]["unit"], "bytes");
    EXPECT_EQ(Rows()[0]["median"], 5);
    EXPECT_EQ(Rows()[0]["verdict"], "OVER");
}

TEST_F(BenchTest, ASecondRowOfTheSameNameIsAnError)
{
    Bench bench("name", 1);
    bench.Show("figures", {{"size", {5, 5, 5}, "bytes"}});
    bench.Show("others", {{"size", {5, 5, 5}, "bytes"}});
    EXPECT_THROW(bench.Show("figures", {{"size", {5, 5, 5}, "bytes"}}), std::logic_error);
    Output();
}

TEST_F(BenchTest, AFileThatCannotBeWrittenIsAnError)
{
    setenv("VELMO_BENCH_JSON", "/nonexistent/rows.json", 1);
    EXPECT_THROW(ExitCodeOf({100, 102}, 1.03), std::runtime_error);
    Output();
}

TEST_F(BenchTest, NanosecondsAreThousandsOfMicroseconds)
{
    auto const figure = bench::Nanoseconds("name", [](int operations) { return operations * 0.5; }, 100, 4, 50);
    Output();
    EXPECT_EQ(figure.value.low, 2'000);
    EXPECT_EQ(figure.value.high, 2'000);
    EXPECT_EQ(figure.unit, "ns");
    EXPECT_EQ(figure.limit, 100);
}
