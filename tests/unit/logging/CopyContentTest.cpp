#include "logging/CopyContent.h"

#include "tests/support/WrappedSystem.h"
#include "tests/unit/logging/LogFixture.h"

using namespace test;
using namespace zant;

namespace
{

std::string Pattern(std::size_t size)
{
    std::string bytes(size, '\0');
    for (std::size_t place = 0; place < size; ++place)
    {
        bytes[place] = static_cast<char>(place % 251);
    }
    return bytes;
}

class CopyContentTest : public testing::Test
{
  protected:
    bool Copy(std::string const& bytes) const
    {
        WriteBytes(source, bytes);
        return CopyContent(source, destination);
    }

    // The bytes requested and received by each read; the read with the given number receives at most `atMost`.
    std::vector<std::pair<DWORD, DWORD>> ReadsOf(std::string const& bytes, std::size_t number = 0, DWORD atMost = 0)
    {
        std::vector<std::pair<DWORD, DWORD>> reads;
        ReadFileCall const noted([&](auto next, HANDLE file, void* buffer, DWORD size, DWORD* read, OVERLAPPED* o) {
            auto const result = next(file, buffer, reads.size() + 1 == number ? atMost : size, read, o);
            reads.emplace_back(size, *read);
            return result;
        });
        EXPECT_TRUE(Copy(bytes));
        return reads;
    }

    TemporaryFolder folder;
    std::wstring const source = folder / L"source";
    std::wstring const destination = folder / L"destination";
};

using Reads = std::vector<std::pair<DWORD, DWORD>>;

} // namespace

TEST_F(CopyContentTest, CopiesEveryByte)
{
    for (auto const size : {0u, 1u, 4'095u, 4'096u, 4'097u, 8'192u, 20'000u})
    {
        EXPECT_TRUE(Copy(Pattern(size)));
        EXPECT_TRUE(ReadBytes(destination) == Pattern(size)) << size;
        EXPECT_TRUE(ReadBytes(source) == Pattern(size)) << size;
        DeleteFileW(destination.c_str());
    }
}

TEST_F(CopyContentTest, ReplacesALongerFileWhole)
{
    WriteBytes(destination, std::string(20'000, 'x'));
    EXPECT_TRUE(Copy(Pattern(5'000)));
    EXPECT_TRUE(ReadBytes(destination) == Pattern(5'000));
}

TEST_F(CopyContentTest, ReplacesAFileByAnEmptyOne)
{
    WriteBytes(destination, "x");
    EXPECT_TRUE(Copy(""));
    EXPECT_EQ(ReadBytes(destination), "");
}

TEST_F(CopyContentTest, ReadsBlocksUntilOneIsNotFull)
{
    EXPECT_EQ(ReadsOf(Pattern(10'000)), (Reads{{4'096, 4'096}, {4'096, 4'096}, {4'096, 1'808}}));
    EXPECT_EQ(ReadsOf(Pattern(8'192)), (Reads{{4'096, 4'096}, {4'096, 4'096}, {4'096, 0}}));
    EXPECT_EQ(ReadsOf(""), (Reads{{4'096, 0}}));
}

// Although the file has more bytes.
TEST_F(CopyContentTest, EndsAtAShortRead)
{
    EXPECT_EQ(ReadsOf(Pattern(10'000), 2, 4'095), (Reads{{4'096, 4'096}, {4'096, 4'095}}));
    EXPECT_TRUE(ReadBytes(destination) == Pattern(4'096 + 4'095));
}

// Only reads decide whether a copy has succeeded.
TEST_F(CopyContentTest, SucceedsThoughNothingCanBeWritten)
{
    WriteBytes(source, "log");
    WriteFileCall const fault(Failing(FALSE, ERROR_DISK_FULL));
    EXPECT_TRUE(CopyContent(source, destination));
    EXPECT_EQ(ReadBytes(destination), "");
}

TEST_F(CopyContentTest, SucceedsThoughItsEndCannotBeSet)
{
    SetEndOfFileCall const fault(Failing(FALSE, ERROR_USER_MAPPED_FILE));
    EXPECT_TRUE(Copy("log"));
    EXPECT_EQ(ReadBytes(destination), "log");
}

TEST_F(CopyContentTest, SucceedsWhereNothingIsDeletedOnClose)
{
    SetFileInformationCall const fault(Failing(FALSE, ERROR_INVALID_PARAMETER));
    EXPECT_TRUE(Copy("log"));
    EXPECT_EQ(ReadBytes(destination), "log");
}

TEST_F(CopyContentTest, FailsWithoutASource)
{
    WriteBytes(destination, "earlier");
    EXPECT_FALSE(CopyContent(source, destination));
    EXPECT_EQ(ReadBytes(destination), "earlier");
}
