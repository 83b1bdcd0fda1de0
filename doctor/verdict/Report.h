#pragma once
#include "doctor/verdict/Finding.h"

#include <array>
#include <vector>

namespace doctor
{

// What is known of one stage.
struct StageReport
{
    Stage stage{};
    Result result = Result::NotSeen;
    std::uint64_t worked = 0; // how often
    std::optional<Evidence> lastWorked{};
    std::vector<Finding> findings{}; // failures, then what cannot be told; each in the order of its first line
};

// A file that was read.
struct FileReport
{
    std::filesystem::path path{};
    std::uint64_t lines = 0;   // of the app
    std::uint64_t others = 0;  // in another format, or of another program
    std::uint64_t damaged = 0; // of both
    std::optional<LogTime> first{};
    std::optional<LogTime> last{};
};

// The last header's values; empty where there is none.
struct MachineFacts
{
    std::string systemName{};
    std::string systemVersion{};
    std::string systemBuild{};
    std::string locale{};
    std::string suiteVersion{};
};

// Of all of them: Failed when one is; else CannotBeTold when one is; else Worked, or NotSeen when none worked.
Result VerdictOf(std::vector<Finding> const& findings);

// Those of one stage stay in their order.
std::vector<Finding> InOrderOfStages(std::vector<Finding> const& findings);

struct Report
{
    std::string summary{}; // the first stage that failed, how often, when; then what failed
    MachineFacts machine{};
    std::array<StageReport, stageCount> stages{};
    std::vector<Finding> remarks{}; // of no stage's failure
    std::vector<FileReport> files{};

    // Failed when a stage failed; else CannotBeTold when that is so of one; else Worked, or NotSeen without any line.
    Result Verdict() const;
};

// Puts in order what is known of the stages: each stage's result and the summary.
void Conclude(Report& report);

} // namespace doctor
