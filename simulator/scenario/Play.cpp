#include "simulator/scenario/Play.h"

#include "console/Console.h"
#include "simulator/base/Error.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"
#include "simulator/scenario/Player.h"
#include "simulator/scenario/Scenario.h"

namespace sim
{

bool PlayScenario(std::wstring const& path, Device const& device, Colour colour)
{
    auto const steps = ReadScenario(path);
    Player player(device, colour);
    auto where = path;
    try
    {
        for (auto const& step : steps)
        {
            where = path + L":" + std::to_wstring(step.line) + L": " + step.text;
            player.Play(step.text, step.words);
        }
        where = path + L": end";
        player.CheckNothingIsLeft();
        player.End();
        console::WriteLine(L"\n" + player.Summary());
        return true;
    }
    catch (Difference const& difference)
    {
        player.End();
        console::WriteLine(difference.Text(where));
        console::WriteLine(L"  kept for a look: " + FromUtf8(UnixPath(device.Home())));
        return false;
    }
    catch (Error const& error)
    {
        player.End();
        throw Error(where + L": " + error.Message());
    }
}

} // namespace sim
