#include "app/AppLog.h"

#include "app/LoggingLock.h"
#include "app/SetUpLogging.h"
#include "logging/LogTargetDefault.h"
#include "logging/Logger.h"
#include "service/LogSite.h"
#include "tests/support/Banner.h"
#include "tests/support/Files.h"
#include "tests/support/LogTearDown.h"
#include "tests/support/UserTemporaryFolder.h"
#include "tests/support/WrappedSystem.h"

#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <thread>

using namespace test;

WRAP(DeleteCriticalSectionCall, DeleteCriticalSection);
WRAP(EnterCriticalSectionCall, EnterCriticalSection);
WRAP(InitializeCriticalSectionCall, InitializeCriticalSection);
WRAP(MultiByteToWideCharCall, MultiByteToWideChar);

namespace
{

using test::banner;

class AppLogging : public testing::Test
{
  protected:
    std::wstring LogPath() const { return temporary / L"Tessaline\\HOV\\KZEB.log"; }

    // The columns of each line: time, level, reserved, product, component, category, detail, origin, thread, message.
    std::vector<std::vector<std::wstring>> Lines() const
    {
        std::vector<std::vector<std::wstring>> lines;
        for (auto const& line : test::ReadLines(LogPath()))
        {
            lines.push_back(test::Split(line, L" | "));
        }
        return lines;
    }

    test::UserTemporaryFolder temporary;

  private:
    test::LogTearDown m_logTearDown;
};

// First in this file, so that no other line has been written in this process.
TEST_F(AppLogging, HasItsLockBeforeTheFirstLine)
{
    int made = 0;
    InitializeCriticalSectionCall const initialise([&](auto system, auto* section) {
        ++made;
        system(section);
    });
    zant::Logger logger;
    zant::g_logger = &logger;
    made = 0; // what the logger needs
    AppLog(30, L"ZEB", L"ZEBMain", L"", L"", L"first");
    EXPECT_EQ(made, 0);
}

TEST_F(AppLogging, ALogCallBeforeSetUpProducesNothingAndNoError)
{
    EXPECT_EQ(g_appLogHook, nullptr);
    LogSite(L"ZEBMain").Info(L"too early");
    EXPECT_EQ(AppLog(30, L"ZEB", L"ZEBMain", L"", L"", L"too early"), 0);
    EXPECT_FALSE(test::FileExists(LogPath()));
}

// What is constructed before main may log while the lock is not there.
TEST_F(AppLogging, ALogCallBeforeSetUpTakesNoLock)
{
    auto taken = 0;
    EnterCriticalSectionCall const entering([&](auto system, auto* section) {
        ++taken;
        system(section);
    });
    AppLog(30, L"ZEB", L"ZEBMain", L"", L"", L"too early");
    EXPECT_EQ(taken, 0);
}

TEST_F(AppLogging, SetUpCreatesTheFolderAndWritesTheBannerFirst)
{
    SetUpLogging();
    ASSERT_EQ(Lines().size(), 1u);
    auto const line = Lines()[0];
    std::vector<std::wstring> const columns(line.begin() + 1, line.end());
    EXPECT_EQ(columns, (std::vector<std::wstring>{L"[INFO]", L"", L"ZEB", L"ZEB", L"ZEBMain", L"", L"ZEB",
                                                  std::to_wstring(GetCurrentThreadId()), banner}));
    EXPECT_EQ(std::wstring_view(banner).find(L' '), 30u);
    EXPECT_EQ(std::wstring_view(banner).size() - std::wstring_view(banner).rfind(L' ') - 1, 33u);
}

TEST_F(AppLogging, SetUpInstallsTheHookTheTargetAndTheLogger)
{
    SetUpLogging();
    EXPECT_EQ(g_appLogHook, &AppLog);
    ASSERT_NE(zant::g_defaultLogTarget, nullptr);
    EXPECT_EQ(zant::g_defaultLogTarget->refCount, 1u);
    ASSERT_NE(zant::g_logger, nullptr);
    EXPECT_EQ(zant::g_logger->product, L"ZEB");
}

TEST_F(AppLogging, SetUpTakesTheLevelFromTheMarkersBeforeTheFileIsNamed)
{
    test::WriteBytes(temporary / L"ZANT.debug", "");
    test::WriteBytes(temporary / L"KZEB.trace", "");
    SetUpLogging();
    EXPECT_EQ(zant::g_defaultLogTarget->threshold, zant::LogLevel::Debug);
}

TEST_F(AppLogging, SetUpGoesOnWhenTheFolderCannotBeHad)
{
    test::WriteBytes(temporary / L"Tessaline", "a file where the folder should be");
    SetUpLogging();
    EXPECT_EQ(g_appLogHook, &AppLog);
    EXPECT_FALSE(zant::g_defaultLogTarget->enabled);
    EXPECT_EQ(AppLog(30, L"ZEB", L"ZEBMain", L"", L"", L"goes nowhere"), 0);
}

TEST_F(AppLogging, AProductThatCannotBeConvertedStaysEmpty)
{
    MultiByteToWideCharCall const failing([](auto...) { return 0; });
    SetUpLogging();
    EXPECT_EQ(zant::g_logger->product, L"");
    EXPECT_EQ(g_appLogHook, &AppLog);
}

TEST_F(AppLogging, LocationIsTheDetailAndComponentTheOriginAndTheFourthParameterIsIgnored)
{
    SetUpLogging();
    EXPECT_EQ(AppLog(50, L"component", L"category", L"ignored", L"location", L"%ls %d", L"text", 7), 0);
    auto const line = Lines().at(1);
    std::vector<std::wstring> const columns(line.begin() + 1, line.end());
    EXPECT_EQ(columns, (std::vector<std::wstring>{L"[ERROR]", L"", L"ZEB", L"component", L"category", L"location",
                                                  L"component", std::to_wstring(GetCurrentThreadId()), L"text 7"}));
}

TEST_F(AppLogging, ANullComponentOrCategoryKeepsThatOfTheLineBefore)
{
    SetUpLogging();
    AppLog(30, L"one", L"first", L"", L"", L"a");
    AppLog(30, nullptr, L"second", L"", L"", L"b");
    AppLog(30, L"two", nullptr, L"", L"", L"c");
    auto const lines = Lines();
    EXPECT_EQ(lines.at(2)[4], L"one");
    EXPECT_EQ(lines.at(2)[5], L"second");
    EXPECT_EQ(lines.at(2)[7], L""); // the origin is the parameter, not the field
    EXPECT_EQ(lines.at(3)[4], L"two");
    EXPECT_EQ(lines.at(3)[5], L"second");
}

TEST_F(AppLogging, ALogSiteWritesItsCategoryAndLevel)
{
    SetUpLogging();
    constexpr LogSite site(L"AppService");
    site.Error(L"Received Channel URI is %ls", L"%2b");
    auto const line = Lines().at(1);
    EXPECT_EQ(line[1], L"[ERROR]");
    EXPECT_EQ(line[4], L"ZEB");
    EXPECT_EQ(line[5], L"AppService");
    EXPECT_EQ(line[6], L"");
    EXPECT_EQ(line[9], L"Received Channel URI is %2b");
}

TEST_F(AppLogging, ThreadsWithCategoriesOfTheirOwnEachGetTheirOwn)
{
    constexpr int threadCount = 8;
    constexpr int linesEach = 200;
    SetUpLogging();
    std::vector<std::thread> threads;
    for (int number = 0; number < threadCount; ++number)
    {
        threads.emplace_back([number] {
            auto const name = L"category-" + std::to_wstring(number);
            for (int line = 0; line < linesEach; ++line)
            {
                AppLog(30, name.c_str(), name.c_str(), L"", L"", L"%ls", name.c_str());
            }
        });
    }
    for (auto& thread : threads)
    {
        thread.join();
    }
    std::map<std::wstring, int> written;
    auto const lines = Lines();
    for (auto line = lines.begin() + 1; line != lines.end(); ++line)
    {
        EXPECT_EQ(line->at(4), line->at(9));
        EXPECT_EQ(line->at(5), line->at(9));
        ++written[line->at(9)];
    }
    EXPECT_EQ(written.size(), static_cast<std::size_t>(threadCount));
    for (auto const& [name, count] : written)
    {
        EXPECT_EQ(count, linesEach);
    }
}

TEST(AppLogLock, KeepsItsNameAndMakesNoNamedObjectOfIt)
{
    LoggingLock const lock;
    EXPECT_EQ(lock.name, L"VelmoNotificationClientLock");
    EXPECT_EQ(lock.name.size(), 27u);
    EXPECT_EQ(OpenMutexW(SYNCHRONIZE, FALSE, lock.name.c_str()), nullptr);
    EXPECT_EQ(OpenEventW(SYNCHRONIZE, FALSE, lock.name.c_str()), nullptr);
}

TEST(AppLogLock, HoldsItsNameBeforeItsSection)
{
    LoggingLock const lock;
    EXPECT_EQ(static_cast<void const*>(&lock), static_cast<void const*>(&lock.name));
    EXPECT_LT(static_cast<void const*>(&lock.name), static_cast<void const*>(&lock.section));
}

TEST(AppLogLock, DeletesItsSectionWhileItStillHasItsName)
{
    auto lock = std::make_unique<LoggingLock>();
    std::wstring nameAtDeletion;
    auto const* const section = &lock->section;
    DeleteCriticalSectionCall const deleting([&, observed = lock.get()](auto system, CRITICAL_SECTION* deleted) {
        if (deleted == section)
        {
            nameAtDeletion = observed->name;
        }
        system(deleted);
    });
    lock.reset();
    EXPECT_EQ(nameAtDeletion, L"VelmoNotificationClientLock");
}

} // namespace
