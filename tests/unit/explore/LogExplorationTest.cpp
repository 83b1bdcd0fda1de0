#include "explore/log/LogExploration.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>

using namespace explore;

namespace
{

Story const& StoryOf(std::string const& name)
{
    return *std::ranges::find(Stories(), name, &Story::name);
}

// The kinds of flaws that a story shows whose system is spoilt.
std::vector<std::string> FlawsOf(std::string const& name, std::shared_ptr<void> (*spoil)(), Limits limits)
{
    auto story = StoryOf(name);
    story.spoil = spoil;
    Report report("log", 1);
    testing::internal::CaptureStdout();
    LogExploration(report, story, 1).PlayEveryOrder(limits);
    testing::internal::GetCapturedStdout();
    std::vector<std::string> kinds;
    for (auto const& [kind, entry] : report.Findings())
    {
        auto const [refusal, verdict] = PlayAgain(story, entry.shortest);
        EXPECT_EQ(refusal, "");
        EXPECT_TRUE(std::ranges::any_of(verdict.flaws, [&, &flaw = kind](Flaw const& seen) {
            return seen.kind == flaw && seen.rule.empty();
        })) << TextOf(entry.shortest);
        kinds.push_back(kind);
    }
    return kinds;
}

template <typename Call, auto result>
std::shared_ptr<void> Returning()
{
    return std::make_shared<Call>([](auto...) { return result; });
}

bool Contains(std::vector<std::string> const& kinds, std::string const& kind)
{
    return std::ranges::find(kinds, kind) != kinds.end();
}

} // namespace

TEST(LogExplorationTest, FindsNothingInTheOrdinaryWayOfEachStory)
{
    for (auto const& story : Stories())
    {
        for (auto const& flaw : PlayAgain(story, {story.name}).verdict.flaws)
        {
            EXPECT_FALSE(flaw.rule.empty()) << story.name << ": " << flaw.what;
        }
    }
}

TEST(LogExplorationTest, FindsLinesThatNoMutexKeepsApart)
{
    auto const kinds = FlawsOf("line-x-line", Returning<test::WaitCall, DWORD{WAIT_OBJECT_0}>, {1, 0});
    EXPECT_TRUE(Contains(kinds, "torn") || Contains(kinds, "lost")) << testing::PrintToString(kinds);
}

TEST(LogExplorationTest, FindsAMutexThatIsNotReleased)
{
    auto const kinds = FlawsOf("line-x-line", Returning<test::ReleaseMutexCall, TRUE>, {0, 0});
    EXPECT_TRUE(Contains(kinds, "silent"));
    EXPECT_TRUE(Contains(kinds, "mutex held"));
}

TEST(LogExplorationTest, FindsAHandleThatIsNotClosed)
{
    EXPECT_TRUE(Contains(FlawsOf("start-x-start", Returning<test::CloseHandleCall, TRUE>, {0, 0}), "handle open"));
}

// Attributes that name no link let the log's opening follow it.
TEST(LogExplorationTest, FindsALinkThatIsFollowed)
{
    auto const spoil = []() -> std::shared_ptr<void> {
        struct Spoilt
        {
            test::GetFileAttributesCall attributes{
                [](auto original, auto path) { return original(path) & ~DWORD{FILE_ATTRIBUTE_REPARSE_POINT}; }};
            test::CreateFileCall open{[](auto original, auto path, DWORD access, DWORD share, auto security,
                                         DWORD disposition, DWORD flags, HANDLE like) {
                return original(path, access, share, security, disposition,
                                flags & ~DWORD{FILE_FLAG_OPEN_REPARSE_POINT}, like);
            }};
        };
        return std::make_shared<Spoilt>();
    };
    EXPECT_TRUE(Contains(FlawsOf("link-x-start", spoil, {0, 0}), "other file"));
}

TEST(LogExplorationTest, FindsALineThatIsNotTakenBack)
{
    EXPECT_TRUE(Contains(FlawsOf("line-x-line", Returning<test::SetEndOfFileCall, FALSE>, {0, 1}), "torn"));
}

TEST(LogExplorationTest, FindsRotationsThatNoMutexKeepsApart)
{
    auto const kinds = FlawsOf("rotation-x-rotation", Returning<test::WaitCall, DWORD{WAIT_OBJECT_0}>, {1, 0});
    EXPECT_TRUE(Contains(kinds, "doubled") || Contains(kinds, "lost")) << testing::PrintToString(kinds);
}

TEST(LogExplorationTest, FindsOldContentThatIsNotCopied)
{
    auto const spoil = []() -> std::shared_ptr<void> {
        return std::make_shared<test::WriteFileCall>(
            [](auto original, HANDLE file, void const* bytes, DWORD size, DWORD* written, OVERLAPPED* overlapped) {
                auto const isOld = std::wstring_view(static_cast<wchar_t const*>(bytes), size / 2).starts_with(L"old");
                return isOld ? TRUE : original(file, bytes, size, written, overlapped);
            });
    };
    EXPECT_TRUE(Contains(FlawsOf("rotation-x-rotation", spoil, {0, 0}), "lost"));
}

TEST(LogExplorationTest, FindsALogThatIsCopiedAndNotEmptied)
{
    auto const spoil = []() -> std::shared_ptr<void> {
        return std::make_shared<test::CreateFileCall>([](auto original, wchar_t const* path, DWORD access, DWORD share,
                                                         SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                                                         HANDLE like) {
            return disposition == TRUNCATE_EXISTING ? INVALID_HANDLE_VALUE
                                                    : original(path, access, share, security, disposition, flags, like);
        });
    };
    EXPECT_TRUE(Contains(FlawsOf("rotation-x-rotation", spoil, {0, 0}), "doubled"));
}

TEST(LogExplorationTest, FindsCopiesThatAllHaveOneName)
{
    auto const spoil = []() -> std::shared_ptr<void> {
        return std::make_shared<test::GetTimeFormatCall>([](auto...) { return 0; });
    };
    EXPECT_TRUE(Contains(FlawsOf("rotation-x-rotation", spoil, {0, 0}), "lost"));
}

// The third date is that of today, as the clean-up asks for it; two are for names.
TEST(LogExplorationTest, FindsACopyThatIsCleanedUpTooSoon)
{
    auto const spoil = []() -> std::shared_ptr<void> {
        return std::make_shared<test::GetDateFormatCall>(
            [dates = 0](auto original, auto locale, DWORD flags, SYSTEMTIME const* time, auto... more) mutable {
                auto other = *time;
                if (++dates == 3)
                {
                    ++other.wYear;
                }
                return original(locale, flags, &other, more...);
            });
    };
    EXPECT_EQ(FlawsOf("cleaning-x-line", spoil, {0, 0}), std::vector<std::string>{"lost"});
}

TEST(LogExplorationTest, RotatesTwiceWhereBothProcessesCan)
{
    for (auto const* const name : {"rotation-x-rotation", "rotations-in-a-second", "cleaning-x-cleaning"})
    {
        EXPECT_NE(PlayAgain(StoryOf(name), {name}).verdict.outcome.find(", 2 rotations"), std::string::npos) << name;
    }
    EXPECT_NE(
        PlayAgain(StoryOf("start-x-rotation"), {"start-x-rotation", {{0, "B"}}}).verdict.outcome.find(", 2 rotations"),
        std::string::npos);
}

// Of three processes one is killed within its line, the next finds the disk full, and the last knows nothing of that.
TEST(LogExplorationTest, ContinuesNoUnfinishedLineOnceThereIsRoomAgain)
{
    for (auto const* const id : {"three-lines:12=kill,19=full", "three-lines:11=almost-full,14=kill"})
    {
        auto const [refusal, verdict] = PlayAgain(StoryOf("three-lines"), *PlayIdOf(id));
        EXPECT_EQ(refusal, "");
        EXPECT_TRUE(std::ranges::none_of(verdict.flaws, [](Flaw const& flaw) { return flaw.rule.empty(); })) << id;
    }
}

// docs/log.md lists what the rules lose, each with a play.
TEST(LogExplorationTest, ShowsEachLossThatTheRulesPrescribe)
{
    std::ifstream file(PRODUCT_SOURCES "/docs/log.md");
    std::string const text(std::istreambuf_iterator<char>(file), {});
    std::regex const row(R"(\| `([a-z-]+: [a-z ]+)` \|[^\n]*\| `([a-z-]+(?::[^`]+)?)` \|)");
    unsigned rows = 0;
    for (std::sregex_iterator found(text.begin(), text.end(), row), end; found != end; ++found, ++rows)
    {
        auto const name = (*found)[1].str();
        auto const id = PlayIdOf((*found)[2].str());
        ASSERT_TRUE(id) << name;
        auto const [refusal, verdict] = PlayAgain(StoryOf(id->story), *id);
        EXPECT_EQ(refusal, "");
        EXPECT_TRUE(std::ranges::any_of(verdict.flaws, [&](Flaw const& flaw) {
            return flaw.rule + ": " + flaw.kind == name;
        })) << name;
        EXPECT_TRUE(std::ranges::none_of(verdict.flaws, [](Flaw const& flaw) { return flaw.rule.empty(); })) << name;
    }
    EXPECT_EQ(rows, 10);
}
