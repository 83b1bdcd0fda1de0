#include "simulator/scenario/Play.h"

#include "console/Console.h"
#include "doctor/verdict/ReportText.h"
#include "simulator/base/Error.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"
#include "simulator/log/LogVerdict.h"
#include "simulator/scenario/PlayFiles.h"
#include "simulator/scenario/Player.h"
#include "simulator/scenario/Scenario.h"

#include <filesystem>
#include <optional>

namespace sim
{

namespace
{

// Says where a file is, if it was asked for.
void WritePlace(std::wstring_view what, std::filesystem::path const& file)
{
    if (!file.empty())
    {
        console::WriteLine(L"\n" + std::wstring(what) + L": " + FromUtf8(UnixPath(file)));
    }
}

// What the doctor says and draws of what was played.
void WriteVerdict(std::wstring const& scenario, Device const& device, Player const& player, PlayOptions const& options)
{
    if (options.hasVerdict)
    {
        auto const isColoured = options.colour == Colour::Yes;
        console::WriteLine(L"\n" + FromUtf8(ReportText(LogReport(device), isColoured)));
    }
    auto const& [page, trace] = options.files;
    if (!page.empty() || !trace.empty())
    {
        WritePlayFiles(options.files, std::filesystem::path(scenario).filename(), device, player.Played().Shown());
    }
    WritePlace(L"the timeline", page);
    WritePlace(L"its trace events", trace);
}

} // namespace

bool PlayScenario(std::wstring const& path, Device const& device, PlayOptions const& options)
{
    auto const steps = ReadScenario(path);
    Player player(device, options.colour);
    auto where = path;
    std::optional<Difference> difference;
    try
    {
        for (auto const& step : steps)
        {
            where = path + L":" + std::to_wstring(step.line) + L": " + step.text;
            player.Play(step.text, step.words);
        }
        where = path + L": end";
        player.CheckNothingIsLeft();
    }
    catch (Difference const& found)
    {
        difference = found;
    }
    catch (Error const& error)
    {
        player.End();
        throw Error(where + L": " + error.Message());
    }
    player.End();
    console::WriteLine(difference ? difference->Text(where) : L"\n" + player.Summary());
    if (difference)
    {
        console::WriteLine(L"  kept for a look: " + FromUtf8(UnixPath(device.Home())));
    }
    WriteVerdict(path, device, player, options);
    return !difference;
}

} // namespace sim
