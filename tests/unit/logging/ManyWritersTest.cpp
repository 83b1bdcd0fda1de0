#include "tests/support/ChildProcess.h"
#include "tests/support/WrappedSystem.h"
#include "tests/unit/logging/LogFixture.h"

#include <algorithm>
#include <map>
#include <thread>

using namespace test;
using namespace zant;

namespace
{

constexpr unsigned linesEach = 5'000;

class ManyWriters : public LogFixture
{
  protected:
    ChildProcess Writer(std::wstring const& what, std::wstring const& tag) const
    {
        return ChildProcess(L"logging_writer.exe",
                            what + L" \"" + LogPath() + L"\" " + tag + L' ' + std::to_wstring(linesEach));
    }

    // A process that has reached the middle of what it does there: of holding the mutex, or of copying the log.
    ChildProcess InTheMiddle(std::wstring const& of) const
    {
        auto const readyName = LogName() + L"-ready";
        UniqueHandle const ready(CreateEventW(nullptr, TRUE, FALSE, readyName.c_str()));
        ChildProcess process(L"logging_writer.exe", of + L' ' + readyName);
        EXPECT_TRUE(process.AwaitSignal(ready.Get()));
        return process;
    }

    // Starts four writers together, the first of which does `what`, and waits for their end.
    void RunFour(std::wstring const& what)
    {
        UniqueHandle const start(CreateEventW(nullptr, TRUE, FALSE, (LogName() + L"-start").c_str()));
        std::vector<ChildProcess> writers;
        writers.push_back(Writer(what, L"A"));
        writers.push_back(Writer(L"write", L"B"));
        writers.push_back(Writer(L"write", L"C"));
        writers.push_back(Writer(L"write", L"D"));
        SetEvent(start.Get());
        for (auto& writer : writers)
        {
            EXPECT_EQ(writer.ExitCode(), 0u);
        }
    }

    // The messages of a file by the tag of their writer; a line that is not whole is a failure.
    std::map<std::wstring, std::vector<unsigned>> NumbersByTag(std::wstring const& path) const
    {
        std::map<std::wstring, std::vector<unsigned>> numbers;
        for (auto const& line : ReadLines(path))
        {
            if (line.starts_with(L'\0'))
            {
                continue; // what the file held before
            }
            auto const columns = Split(line, L" | ");
            auto const message = Split(columns.back(), L" ");
            EXPECT_EQ(columns.size(), 10u) << testing::PrintToString(line);
            EXPECT_EQ(message.size(), 2u) << testing::PrintToString(line);
            numbers[message.front()].push_back(static_cast<unsigned>(std::stoul(message.back())));
        }
        return numbers;
    }
};

std::vector<unsigned> UpToLast()
{
    std::vector<unsigned> numbers;
    for (unsigned number = 1; number <= linesEach; ++number)
    {
        numbers.push_back(number);
    }
    return numbers;
}

} // namespace

TEST_F(ManyWriters, FourProcessesLoseNoLineAndKeepTheirOrders)
{
    WriteBytes(LogPath(), wideMark);
    RunFour(L"write");
    auto const numbers = NumbersByTag(LogPath());
    EXPECT_EQ(numbers.size(), 4u);
    for (auto const& [tag, ofTag] : numbers)
    {
        EXPECT_TRUE(ofTag == UpToLast()) << testing::PrintToString(tag);
    }
}

// Every line is in the copy or in the new log, once.
TEST_F(ManyWriters, ARotationByOneOfFourProcessesLosesNoLine)
{
    WriteLogOfSize(LogPath(), limit - 2'000);
    RunFour(L"rotate");
    std::map<std::wstring, std::vector<unsigned>> numbers;
    int files = 0;
    for (auto const& name : NamesIn(folder.Path())) // a copy's name sorts before the log's
    {
        if (name.starts_with(Base()))
        {
            ++files;
            for (auto const& [tag, ofTag] : NumbersByTag(folder / name))
            {
                numbers[tag].insert(numbers[tag].end(), ofTag.begin(), ofTag.end());
            }
        }
    }
    EXPECT_GE(files, 2) << "nothing was rotated";
    EXPECT_EQ(numbers.size(), 4u);
    for (auto const& [tag, ofTag] : numbers)
    {
        EXPECT_TRUE(ofTag == UpToLast()) << testing::PrintToString(tag);
    }
}

TEST_F(ManyWriters, AProcessKilledWhileItHoldsTheMutexDoesNotStopTheOthers)
{
    LogTargetDefault target;
    Configure(target);
    ASSERT_TRUE(target.Open());
    auto holder = InTheMiddle(L"hold " + LogName());
    holder.Kill();
    LogAt(target, 0, L"first");
    LogAt(target, 0, L"second");
    EXPECT_EQ(MessagesIn(LogPath()), (std::vector<std::wstring>{L"first", L"second"}));
}

// Unlike a killed one it does not abandon the mutex. It finishes its line when it is resumed; the others have given up.
TEST_F(ManyWriters, AProcessSuspendedWhileItHoldsTheMutexSilencesTheOthersUntilTheyEnd)
{
    LogTargetDefault target;
    Configure(target);
    ASSERT_TRUE(target.Open());
    auto holder = InTheMiddle(L"hold " + LogName());
    holder.Suspend();
    EXPECT_TRUE(LogAt(target, 0, L"lost"));
    LogTargetDefault late; // of a process that starts meanwhile
    Configure(late);
    EXPECT_TRUE(late.Open());
    holder.Resume();
    holder.Kill();
    EXPECT_TRUE(LogAt(target, 0, L"lost too"));
    EXPECT_TRUE(LogAt(late, 0, L"lost as well"));
    LogTargetDefault next;
    Configure(next);
    ASSERT_TRUE(next.Open());
    LogAt(next, 0, L"written");
    EXPECT_EQ(MessagesIn(LogPath()), std::vector<std::wstring>{L"written"});
}

// A partial copy would replace a whole one, and repeat what the log still has.
TEST_F(ManyWriters, AProcessKilledWhileItCopiesTheLogLeavesNoPartOfTheCopy)
{
    WriteLogOfSize(LogPath(), 1'000'000);
    auto copying = InTheMiddle(L"copy \"" + LogPath() + L'"');
    EXPECT_EQ(NamesIn(folder.Path()).size(), 2u) << "the copy in the making";
    copying.Kill();
    EXPECT_EQ(NamesIn(folder.Path()), std::vector{LogName()});
    EXPECT_EQ(ReadBytes(LogPath()).size(), 1'000'000u);
}

// The only test with the whole wait.
TEST_F(ManyWriters, AMutexHeldForTwoSecondsSilencesTheTargetForGood)
{
    LogTargetDefault target;
    Configure(target);
    ASSERT_TRUE(target.Open());
    {
        auto const readyName = LogName() + L"-ready";
        UniqueHandle const ready(CreateEventW(nullptr, TRUE, FALSE, readyName.c_str()));
        ChildProcess const holder(L"logging_writer.exe", L"hold " + LogName() + L" " + readyName);
        ASSERT_TRUE(holder.AwaitSignal(ready.Get()));
        auto const before = GetTickCount64();
        EXPECT_TRUE(LogAt(target, 0, L"lost"));
        EXPECT_GE(GetTickCount64() - before, 1'990u); // the clock's ticks are some milliseconds apart
    }
    EXPECT_TRUE(LogAt(target, 0, L"lost too"));
    EXPECT_EQ(ReadBytes(LogPath()), wideMark);
}

// No lock of their own: the mutex between processes also keeps threads apart.
TEST_F(ManyWriters, ThreadsWithoutALockLoseNoLine)
{
    constexpr int threadCount = 4, linesOfThread = 500;
    LogTargetDefault target;
    Configure(target);
    ASSERT_TRUE(target.Open());
    WaitCall const patient([](auto next, HANDLE handle, DWORD) { return next(handle, INFINITE); }); // as the writers
    std::vector<std::thread> threads;
    for (int number = 0; number < threadCount; ++number)
    {
        threads.emplace_back([&, own = std::to_wstring(number)] {
            for (int line = 0; line < linesOfThread; ++line)
            {
                target.Log(LogLevel::Info, L"", L"", L"", own.c_str(), L"", L"", own.c_str(), nullptr, 0, true);
            }
        });
    }
    std::ranges::for_each(threads, &std::thread::join);
    std::map<std::wstring, int> counts;
    for (auto const& line : ReadLines(LogPath()))
    {
        auto const columns = Split(line, L" | ");
        ASSERT_EQ(columns.size(), 10u);
        EXPECT_EQ(columns[5], columns[9]);
        ++counts[columns[9]];
    }
    EXPECT_EQ(counts, (std::map<std::wstring, int>{
                          {L"0", linesOfThread}, {L"1", linesOfThread}, {L"2", linesOfThread}, {L"3", linesOfThread}}));
}
