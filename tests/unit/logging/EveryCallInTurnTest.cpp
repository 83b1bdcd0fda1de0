#include "logging/ApplicationLogFile.h"

#include "tests/unit/logging/HandleLedger.h"
#include "tests/unit/logging/LogFixture.h"

using namespace test;
using namespace zant;

namespace
{

// The whole life of the application's log, from the creation of its folders, with an old copy, a wrong encoding,
// rotations, clean-up and both widths. Whichever call fails: nothing is thrown, each line reports true, and after Close
// no handle is open.
class EveryCallInTurn : public LogFixture
{
  protected:
    // One life with the n-th call of a function failing, for n from 0 until a life makes fewer calls.
    template <typename Call, typename Result>
    void FailEach(Result result, DWORD error)
    {
        auto const handlesBefore = handles.Open();
        for (int turn = 0; turn < 200; ++turn)
        {
            UserTemporaryFolder const user;
            auto left = turn;
            {
                Call const fault(FailingAfter(left, result, error));
                Live(user / L"Tessaline\\HOV");
            }
            EXPECT_EQ(handles.Open(), handlesBefore) << "after failing call " << turn;
            if (left >= 0)
            {
                EXPECT_GT(turn, 0) << "the function is never called";
                return;
            }
        }
        ADD_FAILURE() << "no life made fewer than 200 calls";
    }

    HandleLedger const handles;

  private:
    void Live(std::wstring const& logFolder)
    {
        auto const path = logFolder + L"\\KZEB.log";
        LogTargetDefault one;
        g_defaultLogTarget = &one;
        EXPECT_NO_THROW({
            UseApplicationLogFile();
            one.fileName = LogName(); // the mutex's
            WriteBytesPastFaults(path, "not UTF-16");
            WriteBytesPastFaults(logFolder + L"\\KZEB 2001-1-1 01-01-01.log", "old copy");
            one.Open();
            auto const later = (static_cast<std::uint64_t>(one.lastCheck) + 900) * 1'000;
            EXPECT_TRUE(LogAt(one, 0, L"1"));
            one.file.Reset();
            WriteBytesPastFaults(path, wideMark + std::string(10'000, '.'));
            one.OpenFile(one.file);
            EXPECT_TRUE(LogAt(one, later, L"2"));
            EXPECT_TRUE(LogNarrow(one, LogLevel::Warn, "%d", 3));
            one.wideOutput = false;
            EXPECT_TRUE(LogAt(one, 0, L"4"));
            EXPECT_TRUE(one.Close());
        });
        g_defaultLogTarget = nullptr;
    }

    // Reports a small file as being at its limit.
    GetFileSizeCall const m_limitReached{[](auto next, HANDLE file, LARGE_INTEGER* size) {
        auto const result = next(file, size);
        size->QuadPart = static_cast<LONGLONG>(limit);
        return result;
    }};

    // Prepares a file without the calls that are made to fail; none when the making of its folder failed.
    static void WriteBytesPastFaults(std::wstring const& path, std::string const& bytes)
    {
        auto const file = CreateFileCall::Original(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        DWORD written = 0;
        WriteFileCall::Original(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        CloseHandleCall::Original(file);
    }
};

} // namespace

TEST_F(EveryCallInTurn, CreateDirectory)
{
    FailEach<CreateDirectoryCall>(FALSE, ERROR_ACCESS_DENIED);
}

TEST_F(EveryCallInTurn, CreateFile)
{
    FailEach<CreateFileCall>(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED);
}

TEST_F(EveryCallInTurn, WriteFile)
{
    FailEach<WriteFileCall>(FALSE, ERROR_DISK_FULL);
}

TEST_F(EveryCallInTurn, ReadFile)
{
    FailEach<ReadFileCall>(FALSE, ERROR_CRC);
}

TEST_F(EveryCallInTurn, SetEndOfFile)
{
    FailEach<SetEndOfFileCall>(FALSE, ERROR_DISK_FULL);
}

TEST_F(EveryCallInTurn, SetFileInformation)
{
    FailEach<SetFileInformationCall>(FALSE, ERROR_INVALID_FUNCTION);
}

TEST_F(EveryCallInTurn, SetFilePointer)
{
    FailEach<SetFilePointerCall>(FALSE, ERROR_INVALID_HANDLE);
}

TEST_F(EveryCallInTurn, GetFileSize)
{
    FailEach<GetFileSizeCall>(FALSE, ERROR_IO_DEVICE);
}

TEST_F(EveryCallInTurn, GetFileAttributes)
{
    FailEach<GetFileAttributesCall>(INVALID_FILE_ATTRIBUTES, ERROR_ACCESS_DENIED);
}

TEST_F(EveryCallInTurn, MoveFile)
{
    FailEach<MoveFileCall>(FALSE, ERROR_SHARING_VIOLATION);
}

TEST_F(EveryCallInTurn, DeleteFile)
{
    FailEach<DeleteFileCall>(FALSE, ERROR_SHARING_VIOLATION);
}

TEST_F(EveryCallInTurn, FindFirstFile)
{
    FailEach<FindFirstFileCall>(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED);
}

TEST_F(EveryCallInTurn, FindNextFile)
{
    FailEach<FindNextFileCall>(FALSE, ERROR_IO_DEVICE);
}

TEST_F(EveryCallInTurn, CreateMutex)
{
    FailEach<CreateMutexCall>(HANDLE(nullptr), ERROR_INVALID_HANDLE);
}

// Another process has created the mutex, and denies this one full access.
TEST_F(EveryCallInTurn, OpenMutex)
{
    NamedMutex others;
    ASSERT_TRUE(others.CreateOrOpen(LogName().c_str()));
    CreateMutexCall const denied(Failing(HANDLE(nullptr), ERROR_ACCESS_DENIED));
    FailEach<OpenMutexCall>(HANDLE(nullptr), ERROR_ACCESS_DENIED);
}

TEST_F(EveryCallInTurn, WaitForTheMutex)
{
    FailEach<WaitCall>(DWORD{WAIT_FAILED}, ERROR_INVALID_HANDLE);
}

TEST_F(EveryCallInTurn, ReleaseMutex)
{
    FailEach<ReleaseMutexCall>(FALSE, ERROR_NOT_OWNER);
}

TEST_F(EveryCallInTurn, GetTempPath)
{
    FailEach<GetTempPathCall>(DWORD{0}, ERROR_NOT_ENOUGH_MEMORY);
}

TEST_F(EveryCallInTurn, GetDateFormat)
{
    FailEach<GetDateFormatCall>(0, ERROR_INVALID_PARAMETER);
}

TEST_F(EveryCallInTurn, GetTimeFormat)
{
    FailEach<GetTimeFormatCall>(0, ERROR_INVALID_PARAMETER);
}

TEST_F(EveryCallInTurn, MultiByteToWideChar)
{
    FailEach<MultiByteToWideCharCall>(0, ERROR_NO_UNICODE_TRANSLATION);
}

TEST_F(EveryCallInTurn, WideCharToMultiByte)
{
    FailEach<WideCharToMultiByteCall>(0, ERROR_INSUFFICIENT_BUFFER);
}
