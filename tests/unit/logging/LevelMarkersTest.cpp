#include "tests/support/WrappedSystem.h"
#include "tests/unit/logging/LogFixture.h"

using namespace test;
using namespace zant;

namespace
{

struct Markers
{
    std::vector<std::wstring> names;
    int threshold;
};

void PrintTo(Markers const& markers, std::ostream* stream)
{
    *stream << testing::PrintToString(markers.names);
}

class LevelMarkers : public LogFixture, public testing::WithParamInterface<Markers>
{
};

INSTANTIATE_TEST_SUITE_P(
    InTheTemporaryFolder, LevelMarkers,
    testing::Values(Markers{{}, 30}, Markers{{L"ZANT.trace"}, 10}, Markers{{L"ZANT.debug"}, 20},
                    Markers{{L"pvq.trace"}, 10}, Markers{{L"pvq.debug"}, 20},
                    Markers{{L"ZANT.trace", L"ZANT.debug"}, 10}, Markers{{L"ZANT.trace", L"pvq.debug"}, 10},
                    Markers{{L"ZANT.debug", L"pvq.trace"}, 20}, Markers{{L"ZANT.debug", L"pvq.debug"}, 20},
                    Markers{{L"pvq.trace", L"pvq.debug"}, 10},
                    Markers{{L"ZANT.trace", L"ZANT.debug", L"pvq.trace", L"pvq.debug"}, 10},
                    Markers{{L"ZEB.trace", L"KZEB.trace", L"KZEB.debug", L"ZANT.log", L"ZANT", L"ZANT.trace.txt"},
                            30}));

} // namespace

TEST_P(LevelMarkers, DecideAboutTheThreshold)
{
    for (auto const& name : GetParam().names)
    {
        WriteBytes(temporary / name, "any content");
    }
    LogTargetDefault target;
    EXPECT_EQ(static_cast<int>(target.threshold), GetParam().threshold);
    target.threshold = LogLevel::Fatal;
    target.ChooseLevel();
    EXPECT_EQ(static_cast<int>(target.threshold), GetParam().threshold);
}

TEST_F(LevelMarkers, AreNamedAfterTheFile)
{
    WriteBytes(temporary / L"other.debug", "");
    WriteBytes(temporary / L"ZANT.trace", "");
    LogTargetDefault target;
    target.fileName = L"other.log";
    target.ChooseLevel();
    EXPECT_EQ(target.threshold, LogLevel::Debug);
}

TEST_F(LevelMarkers, OfTheLogFolderDoNotCount)
{
    WriteBytes(folder / L"pvq.trace", "");
    EXPECT_EQ(LogTargetDefault().threshold, LogLevel::Info);
}

TEST_F(LevelMarkers, CannotBeLookedForWithoutATemporaryFolder)
{
    WriteBytes(temporary / L"ZANT.trace", "");
    LogTargetDefault target;
    GetTempPathCall const fault(Failing(DWORD{0}, ERROR_NOT_ENOUGH_MEMORY));
    target.ChooseLevel();
    EXPECT_EQ(target.threshold, LogLevel::Info);
}

TEST_F(LevelMarkers, ThatCannotBeSeenDoNotCount)
{
    WriteBytes(temporary / L"ZANT.trace", "");
    GetFileAttributesCall const fault(Failing(INVALID_FILE_ATTRIBUTES, ERROR_ACCESS_DENIED));
    EXPECT_EQ(LogTargetDefault().threshold, LogLevel::Info);
}
