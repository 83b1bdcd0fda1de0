#include "simulator/scenario/Record.h"

#include "console/Console.h"
#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Inbox.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"
#include "simulator/base/Words.h"
#include "simulator/log/LogVerdict.h"
#include "simulator/scenario/Player.h"
#include "simulator/scenario/Recorder.h"

#include <thread>

namespace sim
{

namespace
{

using Lines = Inbox<std::wstring>;

void ReadInput(Lines& lines)
{
    std::string text;
    char block[4'096];
    DWORD read = 0;
    while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), block, sizeof block, &read, nullptr) && read > 0)
    {
        text.append(block, read);
        std::string_view rest = text;
        while (auto line = TakeUtf8Line(rest))
        {
            lines.Add(std::move(*line));
        }
        text.erase(0, text.size() - rest.size());
    }
    lines.Add(FromUtf8(text)); // what follows the last line end
    lines.End();
}

// The lines of standard input, as they arrive. The thread stays until the process ends: nothing interrupts its read.
std::shared_ptr<Lines> StandardInputLines()
{
    auto const lines = std::make_shared<Lines>();
    std::thread([lines] { ReadInput(*lines); }).detach();
    return lines;
}

class Recording
{
  public:
    Recording(std::wstring path, Device const& device, Colour colour)
        : m_path(std::move(path)), m_device(device), m_player(device, colour)
    {
    }

    void PlayLines()
    {
        auto const lines = StandardInputLines();
        auto const hasLine = [&] {
            Take();
            return WaitForSingleObject(lines->Arrived(), 0) == WAIT_OBJECT_0;
        };
        while (m_player.Observed().WaitUntil(hasLine, patience) && !lines->HasEnded())
        {
            WaitUntilQuiet();
            if (auto const line = lines->Take())
            {
                Play(*line);
            }
        }
    }

    // Waits for the end of the app and of the helpers; false when one of them still runs.
    bool End()
    {
        constexpr unsigned limitMilliseconds = 60'000;
        auto const isOver = [&] {
            Take();
            return !m_player.IsAnythingRunning();
        };
        auto const over = m_player.Observed().WaitUntil(isOver, limitMilliseconds);
        WaitUntilQuiet();
        m_recorder.AddTaken(m_player.AllNames());
        m_recorder.AddVerdict(VerdictText(LogReport(m_device)));
        Write();
        m_player.End();
        return over;
    }

  private:
    static constexpr unsigned patience = 0x7FFFFFFF; // milliseconds: weeks
    static constexpr unsigned quietMilliseconds = 1'000;

    bool Take() { return m_recorder.Take(m_player.Observed()); }

    // A step is played when the previous one has no further results, as far as can be observed.
    void WaitUntilQuiet()
    {
        while (m_player.Observed().WaitUntil([&] { return Take(); }, quietMilliseconds))
        {
        }
    }

    // A step that fails is reported and does not become part of the scenario.
    void Play(std::wstring const& line)
    try
    {
        auto const words = SplitWords(line);
        if (words.empty())
        {
            return;
        }
        if (words[0] == L"expect")
        {
            throw UsageError(L"results are recorded by themselves");
        }
        m_recorder.AddTaken(m_player.AllNames());
        m_player.Play(line, words);
        m_recorder.AddStep(line);
        Write();
    }
    catch (Difference const& difference)
    {
        console::WriteLine(difference.Text(line));
    }
    catch (Error const& error)
    {
        console::WriteErrorLine(L"sim: " + error.Message());
    }

    void Write() const { WriteBytes(m_path, ToUtf8(m_recorder.Text())); }

    std::wstring m_path;
    Device const& m_device;
    Player m_player;
    Recorder m_recorder;
};

} // namespace

bool RecordScenario(std::wstring const& path, Device const& device, Colour colour)
{
    WriteBytes(path, ""); // fails before anything is played
    Recording recording(path, device, colour);
    recording.PlayLines();
    auto const isOver = recording.End();
    console::WriteLine(
        isOver ? L"\nrecorded: " + FromUtf8(UnixPath(path))
               : std::wstring(L"\nthe app or a helper still runs: a scenario ends with the end of all, as kill "
                              L"and kill helper bring it about"));
    return isOver;
}

} // namespace sim
