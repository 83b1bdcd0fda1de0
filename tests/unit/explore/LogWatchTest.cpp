#include "explore/log/LogWatch.h"

#include "explore/log/Rule.h"
#include "explore/log/Story.h"

#include <gtest/gtest.h>

using namespace explore;

namespace
{

class LogWatchTest : public testing::Test
{
  protected:
    LogWatchTest()
    {
        for (auto const* const folder : {L"C:\\Temp", L"C:\\Temp\\Tessaline", L"C:\\Temp\\Tessaline\\HOV"})
        {
            files.CreateFolder(folder);
        }
        files.onChange = [this](FileChange change, std::wstring const& path, File const& file) {
            watch.OnChange(change, path, file);
        };
        files.Put(logPath, Content(L"one\r\ntwo\r\n"));
    }

    static std::string Bytes(std::wstring_view text)
    {
        return "\xFF\xFE" + std::string(reinterpret_cast<char const*>(text.data()), text.size() * sizeof(wchar_t));
    }
    static FileContent Content(std::wstring_view text) { return FileContent(Bytes(text)); }

    static std::wstring Copy(std::wstring const& moment)
    {
        return L"C:\\Temp\\Tessaline\\HOV\\KZEB " + moment + L".log";
    }

    void Write(std::wstring const& path, std::string_view bytes, DWORD disposition)
    {
        std::shared_ptr<explore::OpenFile> file;
        ASSERT_EQ(files.Open({path, GENERIC_WRITE, 0, disposition, 0}, file), DWORD{ERROR_SUCCESS});
        DWORD written = 0;
        files.Write(*file, bytes, written);
        files.Close(*file);
    }

    void MakeCopy(std::wstring_view text = L"one\r\ntwo\r\n") { Write(now, Bytes(text), OPEN_ALWAYS); }
    void EmptyLog() { Write(std::wstring(logPath), {}, TRUNCATE_EXISTING); }

    // Those that a rule excuses.
    static std::vector<std::wstring> LinesOf(std::vector<Excused> const& excused, std::string const& rule)
    {
        std::vector<std::wstring> lines;
        for (auto const& some : excused)
        {
            if (some.rule == rule)
            {
                lines.insert(lines.end(), some.lines.begin(), some.lines.end());
            }
        }
        return lines;
    }
    std::vector<std::wstring> MissingByFull() const { return LinesOf(record.missing, rule::fullAtRotation); }
    std::vector<std::wstring> MissingByCopy() const { return LinesOf(record.missing, rule::copyOfSameSecond); }

    using Lines = std::vector<std::wstring>;

    std::wstring const now = Copy(L"2024-1-5 09-30-12"); // where the clock begins
    Files files;
    Clock clock;
    LogRecord record{files};
    LogWatch watch{record, clock};
};

} // namespace

TEST_F(LogWatchTest, CountsTheRotations)
{
    MakeCopy();
    EmptyLog();
    EmptyLog();
    EXPECT_EQ(record.rotations, 2u);
}

TEST_F(LogWatchTest, CountsNoOtherFileThatIsEmptied)
{
    MakeCopy();
    Write(now, {}, TRUNCATE_EXISTING);
    EXPECT_EQ(record.rotations, 0u);
}

TEST_F(LogWatchTest, ExcusesNothingBehindAWholeCopy)
{
    MakeCopy();
    EmptyLog();
    EXPECT_EQ(MissingByFull(), Lines());
}

TEST_F(LogWatchTest, ExcusesWhatIsBehindTheCutOfACopy)
{
    files.room = 2 + 10 + 3;
    MakeCopy();
    EmptyLog();
    EXPECT_EQ(MissingByFull(), Lines{L"two"});
}

TEST_F(LogWatchTest, ExcusesNothingThatIsEmptiedBeforeItsCopyIsCut)
{
    EmptyLog();
    files.room = 0;
    MakeCopy();
    EXPECT_EQ(MissingByFull(), Lines());
}

// The cut copy belongs to another rotation.
TEST_F(LogWatchTest, ExcusesNothingThatIsEmptiedWithoutACopy)
{
    files.room = 0;
    MakeCopy();
    EmptyLog();
    files.Find(logPath)->content = Content(L"three\r\n");
    EmptyLog();
    EXPECT_EQ(MissingByFull(), (Lines{L"one", L"two"}));
}

TEST_F(LogWatchTest, NotesWhichFilesAreCut)
{
    files.room = 0;
    MakeCopy();
    EXPECT_EQ(record.cut, std::set<std::wstring>{L"c:\\temp\\tessaline\\hov\\kzeb 2024-1-5 09-30-12.log"});
    files.room = Files::unlimited;
    MakeCopy();
    EXPECT_EQ(record.cut, std::set<std::wstring>());
}

TEST_F(LogWatchTest, ExcusesWhatACopyOfTheSameSecondReplaces)
{
    files.Put(now, Content(L"zero\r\n"));
    MakeCopy();
    EXPECT_EQ(MissingByCopy(), Lines{L"zero"});
}

TEST_F(LogWatchTest, ExcusesItWhereASecondPassesMeanwhile)
{
    files.Put(now, Content(L"zero\r\n"));
    clock.Advance(1);
    MakeCopy();
    EXPECT_EQ(MissingByCopy(), Lines{L"zero"});
}

TEST_F(LogWatchTest, ExcusesNotWhatACopyOfAnotherMomentReplaces)
{
    files.Put(now, Content(L"zero\r\n"));
    clock.Advance(3);
    MakeCopy();
    EXPECT_EQ(MissingByCopy(), Lines());
}

TEST_F(LogWatchTest, ExcusesNotWhatReplacesAFileThatIsNoCopy)
{
    Write(std::wstring(logPath), {}, OPEN_ALWAYS);
    EXPECT_EQ(MissingByCopy(), Lines());
}

TEST_F(LogWatchTest, LetsAKillDoubleWhatStandsInLogAndCopy)
{
    MakeCopy(L"one\r\n");
    watch.OnKill();
    EXPECT_EQ(LinesOf(record.doubled, rule::endedBeforeEmptying), Lines{L"one"});
}

TEST_F(LogWatchTest, LetsAKillDoubleNothingOnceTheLogIsEmpty)
{
    MakeCopy();
    EmptyLog();
    watch.OnKill();
    EXPECT_EQ(LinesOf(record.doubled, rule::endedBeforeEmptying), Lines());
}

TEST_F(LogWatchTest, LetsAKillDoubleNothingWhileTheCopyGoesWithItsProcess)
{
    MakeCopy();
    files.Find(now)->isDeletedOnClose = true;
    watch.OnKill();
    EXPECT_EQ(LinesOf(record.doubled, rule::endedBeforeEmptying), Lines());
}

TEST_F(LogWatchTest, LetsACopyGoFromBeforeTheLastFourDays)
{
    files.Put(Copy(L"2024-1-2 08-00-00"), Content(L"of three days ago\r\n"));
    files.Put(Copy(L"2024-1-1 08-00-00"), Content(L"of four days ago\r\n"));
    files.Delete(Copy(L"2024-1-2 08-00-00"));
    files.Delete(Copy(L"2024-1-1 08-00-00"));
    EXPECT_EQ(record.cleanedUp, Lines{L"of four days ago"});
}

TEST_F(LogWatchTest, LetsACopyGoThatFourOthersFollow)
{
    for (auto const* const moment : {L"01-00-00", L"02-00-00", L"03-00-00", L"04-00-00", L"05-00-00"})
    {
        files.Put(Copy(std::wstring(L"2024-1-5 ") + moment), Content(moment + std::wstring(L"\r\n")));
    }
    files.Delete(Copy(L"2024-1-5 02-00-00"));
    EXPECT_EQ(record.cleanedUp, Lines());
    files.Put(Copy(L"2024-1-5 06-00-00"), Content(L""));
    files.Delete(Copy(L"2024-1-5 01-00-00"));
    EXPECT_EQ(record.cleanedUp, Lines{L"01-00-00"});
}

TEST_F(LogWatchTest, LetsTheLogNeverGo)
{
    files.Delete(logPath);
    EXPECT_EQ(record.cleanedUp, Lines());
}
