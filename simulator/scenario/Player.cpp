#include "simulator/scenario/Player.h"

#include "simulator/base/Console.h"
#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"
#include "simulator/base/WordFile.h"
#include "simulator/client/DeviceCommands.h"
#include "simulator/package/Package.h"
#include "simulator/scenario/Expectations.h"
#include "simulator/scenario/Scenario.h"

namespace sim
{

namespace
{

class Player
{
  public:
    Player(Device const& device, Colour colour)
        : m_device(device), m_broker(FreshDevice(device)), m_timeline(WriteLine, colour),
          m_observer(*m_broker, m_helpers, m_timeline), m_expectations(m_device, m_observer)
    {
    }

    void Run(Step const& step)
    {
        auto const words = Substituted(step.words);
        if (words[0] == L"expect")
        {
            m_expectations.Check({words.begin() + 1, words.end()});
            return;
        }
        m_timeline.Add(Now(), Timeline::Source::Step, step.text);
        if (words[0] == L"register")
        {
            Register(words);
        }
        else if (words[0] == L"grow-log")
        {
            GrowLog(words);
        }
        else if (words[0] == L"helper" || (words[0] == L"kill" && words.size() > 1 && words[1] == L"helper"))
        {
            ActOnHelper(words);
        }
        else
        {
            Act(words);
        }
    }

    void CheckNothingIsLeft()
    {
        if (auto const running = m_helpers.Running(); !running.empty())
        {
            throw Difference{L"all helpers have ended", L"the helper " + running.front() + L" runs"};
        }
        m_broker->Ask(ShowStatus{}); // what the broker had to say has come before its answer
        m_expectations.CheckNothingIsLeft();
    }

    std::wstring Summary() const { return m_expectations.Summary(); }

    void End()
    {
        m_observer.Collect();
        m_timeline.ShowAll();
        m_broker->Stop();
    }

  private:
    static std::unique_ptr<BrokerClient> FreshDevice(Device const& device)
    {
        if (auto const running = BrokerClient::ConnectToRunning(device))
        {
            running->Stop();
        }
        device.Clear();
        return BrokerClient::Connect(device);
    }

    void Register(Words const& words)
    {
        auto layout = FullPath(PackageFolderFromEnvironment());
        if (words.size() == 3 && words[1] == L"without")
        {
            CopyFolder(layout, m_device.LayoutCopy());
            layout = m_device.LayoutCopy();
            Remove(layout + L"\\" + words[2]);
        }
        else if (words.size() != 1)
        {
            throw Error(L"register [without FILE]");
        }
        m_broker->Ask(RegisterPackage{layout});
        m_package = OpenPackage(layout);
        m_observer.WatchLog(LogFile::PathOn(m_device));
    }

    void GrowLog(Words const& words) const
    {
        auto const bytes = words.size() == 2 ? ParseNumber(words[1]) : std::nullopt;
        if (!bytes)
        {
            throw Error(L"grow-log BYTES");
        }
        LogFile(LogFile::PathOn(m_device)).GrowTo(*bytes);
    }

    // helper [@NAME] ARGUMENTS… · kill helper [@NAME]
    void ActOnHelper(Words const& words)
    {
        auto const isKill = words[0] == L"kill";
        auto const rest = HelperWords({words.begin() + (isKill ? 2 : 1), words.end()});
        isKill ? m_helpers.Kill(rest.name) : m_helpers.Start(rest.name, rest.words);
    }

    void Act(Words const& words)
    {
        for (auto const* known : {L"launch", L"protocol", L"suspend", L"page", L"kill", L"fault", L"push", L"clock",
                                  L"revoke-channel", L"cancel-tasks", L"access", L"battery", L"network"})
        {
            if (words[0] == known)
            {
                m_broker->Ask(RequestFor(words));
                return;
            }
        }
        throw Error(L"there is no step " + words[0]);
    }

    Words Substituted(Words words) const
    {
        auto const uri = ChannelUri();
        auto loggedUri = uri;
        Replace(loggedUri, L"%", L"%%");
        for (auto& word : words)
        {
            Replace(word, L"{home}", m_device.Home());
            Replace(word, L"{layout}", m_package.folder);
            Replace(word, L"{uri}", uri);
            Replace(word, L"{logged-uri}", loggedUri);
            Replace(word, L"{family}", m_package.folder.empty() ? L"" : m_package.FamilyName());
        }
        return words;
    }

    // Of the last channel that was opened, or empty.
    std::wstring ChannelUri() const
    {
        std::wstring uri;
        ReadWordFile(m_device.ChannelFile(), [&](Words const& words) { uri = words.empty() ? uri : words[0]; });
        return uri;
    }

    static void Replace(std::wstring& text, std::wstring_view name, std::wstring const& value)
    {
        for (std::size_t at = 0; (at = text.find(name, at)) != std::wstring::npos; at += value.size())
        {
            text.replace(at, name.size(), value);
        }
    }

    Device const& m_device;
    std::unique_ptr<BrokerClient> m_broker;
    Timeline m_timeline;
    Helpers m_helpers;
    Observer m_observer;
    Expectations m_expectations;
    Package m_package;
};

void Report(std::wstring const& where, Difference const& difference)
{
    WriteLine(L"\n" + where + L" differs");
    WriteLine(L"  expected: " + difference.expected);
    WriteLine(L"  found:    " + difference.found);
}

std::wstring Where(std::wstring const& path, Step const& step)
{
    return path + L":" + std::to_wstring(step.line) + L": " + step.text;
}

// False after a difference, which it has told.
bool RunSteps(Player& player, std::vector<Step> const& steps, std::wstring const& path)
{
    auto where = path;
    try
    {
        for (auto const& step : steps)
        {
            where = Where(path, step);
            player.Run(step);
        }
        where = path + L": end";
        player.CheckNothingIsLeft();
        player.End();
        return true;
    }
    catch (Difference const& difference)
    {
        player.End();
        Report(where, difference);
        return false;
    }
    catch (Error const& error)
    {
        player.End();
        throw Error(where + L": " + error.Message());
    }
}

} // namespace

bool PlayScenario(std::wstring const& path, Device const& device, Colour colour)
{
    auto const steps = ReadScenario(path);
    Player player(device, colour);
    auto const isAsExpected = RunSteps(player, steps, path);
    if (isAsExpected)
    {
        WriteLine(L"\n" + player.Summary());
    }
    else
    {
        WriteLine(L"  kept for a look: " + FromUtf8(UnixPath(device.Home())));
    }
    return isAsExpected;
}

} // namespace sim
