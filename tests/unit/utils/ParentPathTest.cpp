#include "utils/ParentPath.h"

#include "tests/support/ShortMemory.h"

#include <gtest/gtest.h>

using namespace zant;

namespace
{

struct Step
{
    std::wstring from;
    std::wstring to;
};

void PrintTo(Step const& step, std::ostream* stream)
{
    *stream << testing::PrintToString(step.from);
}

class ParentPathOf : public testing::TestWithParam<Step>
{
};

INSTANTIATE_TEST_SUITE_P(Paths, ParentPathOf,
                         testing::Values(Step{L"C:\\a\\b.log", L"C:\\a"}, Step{L"C:\\a", L"C:\\"},
                                         Step{L"C:\\a\\b\\", L"C:\\a"}, Step{L"C:\\a\\b\\\\\\", L"C:\\a"},
                                         Step{L"C:\\a\\", L"C:\\"}, Step{L"a\\b", L"a"}, Step{L"a", L""},
                                         Step{L"a\\", L""}, Step{L"\\a", L"\\"}, Step{L"C:a", L"C:"},
                                         Step{L"\\\\server\\share\\a\\b", L"\\\\server\\share\\a"},
                                         Step{L"\\\\server\\share\\a\\", L"\\\\server\\share"},
                                         Step{L"\\\\?\\C:\\a\\b", L"\\\\?\\C:\\a"}));

class ParentPathMissing : public testing::TestWithParam<std::wstring>
{
};

INSTANTIATE_TEST_SUITE_P(Paths, ParentPathMissing,
                         testing::Values(L"", L"C:", L"C:\\", L"C:\\\\\\", L"\\", L"\\\\", L"\\\\\\\\"));

} // namespace

TEST_P(ParentPathOf, TakesThePathsPlace)
{
    auto path = GetParam().from;
    EXPECT_TRUE(RemoveLastComponent(path));
    EXPECT_EQ(path, GetParam().to);
    EXPECT_EQ(path.find(L'\0'), path.npos);
}

TEST_P(ParentPathMissing, LeavesThePathAsItIs)
{
    auto path = GetParam();
    EXPECT_FALSE(RemoveLastComponent(path));
    EXPECT_EQ(path, GetParam());
}

TEST(ParentPath, IsNotToldOfAPathThatIsTooLong)
{
    auto const path = L"C:\\" + std::wstring(250, L'a') + L"\\bcdef"; // 259 characters
    auto longest = path;
    EXPECT_TRUE(RemoveLastComponent(longest));
    auto const beyond = path + L"g";
    auto unchanged = beyond;
    EXPECT_FALSE(RemoveLastComponent(unchanged));
    EXPECT_EQ(unchanged, beyond);
}

// It would overwrite the stack, were it copied before it is measured.
TEST(ParentPath, IsNotLookedForInALongPath)
{
    std::wstring const path(1000, L'a');
    auto unchanged = path;
    EXPECT_FALSE(RemoveLastComponent(unchanged));
    EXPECT_EQ(unchanged, path);
}

// Systems differ in the root of a share; each walk ends.
TEST(ParentPathOfAShare, EndsTheWay)
{
    std::wstring path = L"\\\\server\\share\\a\\b";
    auto steps = 0;
    for (auto length = path.size(); RemoveLastComponent(path); length = path.size())
    {
        ASSERT_LT(path.size(), length);
        ++steps;
    }
    EXPECT_GE(steps, 2);
}

TEST(ParentPath, NeedsNoMemory)
{
    std::wstring path = L"C:\\a folder\\with a name that is longer\\than a short string\\";
    test::ShortMemory const none;
    EXPECT_TRUE(RemoveLastComponent(path));
    EXPECT_TRUE(path == L"C:\\a folder\\with a name that is longer");
}
