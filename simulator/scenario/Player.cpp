#include "simulator/scenario/Player.h"

#include "console/Console.h"
#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/WordFile.h"
#include "simulator/base/Words.h"
#include "simulator/client/DeviceCommands.h"
#include "simulator/log/AppLog.h"

#include <algorithm>

namespace sim
{

namespace
{

std::unique_ptr<BrokerClient> FreshDevice(Device const& device)
{
    BrokerClient::StopRunning(device);
    device.Clear();
    return BrokerClient::Connect(device);
}

// Changes an attribute of the package's identity.
void ChangeIdentity(std::wstring const& manifest, std::wstring const& attribute, std::wstring const& value)
{
    auto text = ReadText(manifest);
    auto const start = text.find(L" " + attribute + L"=\"", text.find(L"<Identity")) + attribute.size() + 3;
    text.replace(start, text.find(L'"', start) - start, value);
    WriteBytes(manifest, ToUtf8(text));
}

} // namespace

std::span<Player::Step const> Player::Steps()
{
    static constexpr Step steps[] = {
        {L"expect", L"WHAT …", L"checks what comes next", L"", 1, anyNumber, &Player::Expect},
        {L"register", L"[--force] [without FILE] [version VERSION] [name NAME]",
         L"registers the package, or a changed copy", L"", 0, 7, &Player::Install<RegisterPackage>},
        {L"update", L"[--force] [without FILE] [version VERSION] [name NAME]", L"the same, also while the app runs",
         L"", 0, 7, &Player::Install<UpdatePackage>},
        {L"refused", L"REASON STEP …", L"a step that is refused for a reason in which REASON stands", L"", 2, anyNumber,
         &Player::Refuse},
        {L"restart", L"", L"switches the device off and on again", L"", 0, 0, &Player::Restart},
        {L"helper", L"[@NAME] ARGUMENTS …", L"starts a desktop helper; several at a time have names", L"", 0, anyNumber,
         &Player::StartHelper},
        {L"kill", L"[helper [@NAME]]", L"ends the app's process, or a helper, from outside", L"", 0, 2, &Player::Kill},
        {L"grow-log", L"BYTES", L"makes the app's log so long, as long use would", L"", 1, 1, &Player::GrowLog},
    };
    return steps;
}

std::span<std::wstring_view const> Player::NameList()
{
    static constexpr std::wstring_view names[] = {L"{logged-uri}", L"{uri}", L"{layout}", L"{home}", L"{family}"};
    return names;
}

std::wstring Player::Help()
{
    constexpr std::size_t width = 60;
    std::wstring text = L"Steps:\n";
    for (auto const& step : Steps())
    {
        text += step.ListLine(L"", width) + L"\n";
    }
    for (auto const& check : Expectations::All())
    {
        text += check.ListLine(L"expect ", width) + L"\n";
    }
    return text + L"  and each command of a device, as sim help lists them";
}

Player::Player(Device const& device, Colour colour)
    : m_device(device), m_broker(FreshDevice(device)),
      m_timeline([](std::wstring_view line) { console::WriteLine(line); }, colour), m_helpers(device),
      m_observer(*m_broker, m_helpers, m_timeline), m_expectations(m_device, m_observer)
{
}

void Player::Play(std::wstring const& text, Words const& words)
{
    auto const names = AllNames();
    auto replaced = words;
    for (auto& word : replaced)
    {
        for (auto const& [name, value] : names)
        {
            ReplaceAll(word, name, value);
        }
    }
    if (words[0] != L"expect")
    {
        m_timeline.Add({Now(), Timeline::Source::Step, text});
    }
    Run(replaced);
}

void Player::CheckNothingIsLeft()
{
    if (auto const running = m_helpers.Running(); !running.empty())
    {
        throw Difference{L"all helpers have ended", L"the helper " + running.front() + L" runs"};
    }
    m_broker->Ask(ShowStatus{}); // earlier events arrive before its answer
    m_expectations.CheckNothingIsLeft();
}

void Player::End()
{
    m_observer.Collect();
    m_timeline.ShowAll();
    m_broker->Stop();
}

Player::Names Player::AllNames() const
{
    auto const uri = ChannelUri();
    auto loggedUri = uri;
    ReplaceAll(loggedUri, L"%", L"%%");
    std::wstring const values[] = {loggedUri, uri, m_package.folder, m_device.Home(),
                                   m_package.folder.empty() ? L"" : m_package.FamilyName()};
    Names names;
    std::ranges::transform(NameList(), values, std::back_inserter(names),
                           [](auto const name, auto const& value) { return std::pair(name, value); });
    return names;
}

void Player::Run(Words const& words)
{
    if (auto const* const step = FindCommand(Steps(), words))
    {
        (this->*step->run)(step->ArgumentsOf(words));
        return;
    }
    if (FindCommand(DeviceCommands(), words) == nullptr)
    {
        throw Error(L"there is no step " + words[0]);
    }
    m_broker->Ask(RequestFor(words));
}

template <typename Request>
void Player::Install(Words const& words)
{
    auto options = words;
    auto const isForced = TakeOption(options, L"--force");
    auto const folder = PackageFolder(options);
    m_broker->Ask(Request{folder, isForced});
    m_package = OpenPackage(folder);
    m_observer.FollowLog(AppLogOn(m_device));
}

void Player::Refuse(Words const& words)
{
    try
    {
        Run({words.begin() + 1, words.end()});
    }
    catch (UsageError const&)
    {
        throw;
    }
    catch (Error const& error)
    {
        if (error.Message().find(words[0]) == std::wstring::npos)
        {
            throw Difference{L"a refusal with " + words[0], error.Message()};
        }
        return;
    }
    throw Difference{L"a refusal with " + words[0], L"it was done"};
}

void Player::Restart(Words const&)
{
    if (m_observer.IsAppRunning())
    {
        throw Error(L"the app runs: its end comes first");
    }
    m_broker->Ask(ShowStatus{}); // earlier events arrive before its answer
    m_observer.Collect();
    m_broker->Stop();
    m_broker = BrokerClient::Connect(m_device);
    m_observer.Follow(*m_broker);
}

void Player::StartHelper(Words const& words)
{
    auto arguments = words;
    auto const name = TakeHelperName(arguments);
    m_helpers.Start(name, arguments);
    m_observer.HelperStarted(name, Joined(arguments));
}

void Player::Kill(Words const& words)
{
    if (words.empty())
    {
        m_broker->Ask(KillApp{});
        return;
    }
    Words rest(words.begin() + 1, words.end());
    auto const name = TakeHelperName(rest);
    if (words[0] != L"helper" || !rest.empty())
    {
        throw UsageError(L"usage: kill [helper [@NAME]]");
    }
    m_helpers.Kill(name);
}

void Player::GrowLog(Words const& words)
{
    auto const bytes = ParseNumber(words[0]);
    if (!bytes)
    {
        throw Error(words[0] + L" is no number of bytes");
    }
    GrowLogTo(AppLogOn(m_device), *bytes);
}

// The package's folder, or a copy of it with the changes of the options.
std::wstring Player::PackageFolder(Words const& options)
{
    auto package = FullPath(PackageFolderFromEnvironment());
    if (options.empty())
    {
        return package;
    }
    auto copy = m_device.LayoutCopy() + L"\\" + std::to_wstring(++m_copies);
    auto const within = copy + L"\\";
    CopyFolder(package, copy);
    for (std::size_t i = 0; i < options.size(); i += 2)
    {
        auto const& option = options[i];
        auto const value = i + 1 < options.size() ? options[i + 1] : std::wstring();
        if (value.empty() || (option != L"without" && option != L"version" && option != L"name"))
        {
            throw UsageError(L"expected [without FILE] [version VERSION] [name NAME]");
        }
        option == L"without"
            ? Remove(within + value)
            : ChangeIdentity(within + L"AppxManifest.xml", option == L"version" ? L"Version" : L"Name", value);
    }
    return copy;
}

// Empty while the app has no channel.
std::wstring Player::ChannelUri() const
{
    std::wstring uri;
    if (!m_package.folder.empty())
    {
        ReadWordFile(m_device.ChannelFile(m_package.FamilyName()),
                     [&](Words const& words) { uri = words.empty() ? uri : words[0]; });
    }
    return uri;
}

} // namespace sim
