#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "tests/e2e/SimulatorDevice.h"

namespace
{

// The doctor as a program, on the simulator's device.
class DoctorLive : public test::SimulatorDevice
{
  protected:
    // Looks, and keeps what it says of each stage: "worked channel".
    void Look(DWORD exitCode, std::wstring const& options = L"")
    {
        auto const outcome = RunDoctor(L"live --log " + m_log + options);
        EXPECT_EQ(outcome.exitCode, exitCode);
        m_output = sim::ToUtf8(outcome.output);
    }

    // The line of that result and stage in which the text stands.
    bool Says(std::string const& result, std::string const& stage, std::string const& text) const
    {
        std::string_view rest = m_output;
        while (!rest.empty())
        {
            auto const line = rest.substr(0, rest.find('\n'));
            rest.remove_prefix(std::min(rest.size(), line.size() + 1));
            if (line.starts_with(result) && line.find(" " + stage + " ") < 20 && line.find(text) != line.npos)
            {
                return true;
            }
        }
        return false;
    }

    std::wstring LogFolder() const { return m_device + L"\\Packages\\" PACKAGE_FAMILY L"\\AC\\Temp\\Tessaline\\HOV"; }

    std::wstring const m_log = LogFolder() + L"\\KZEB.log";
    std::string m_output;
};

constexpr wchar_t channelCall[] =
    L"fault PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync ";

} // namespace

TEST_F(DoctorLive, FindsThatAllIsWell)
{
    Run(L"register");
    Look(0);
    EXPECT_TRUE(Says("worked", "package", "its app service opens")) << m_output;
    EXPECT_TRUE(Says("worked", "start-up", "The app's process runs")) << m_output;
    EXPECT_TRUE(Says("worked", "start-up", "The log is there and can be written: " + sim::ToUtf8(m_log))) << m_output;
    EXPECT_TRUE(Says("worked", "start-up", "The log's mutex is free")) << m_output;
    EXPECT_TRUE(Says("worked", "service", "opens")) << m_output;
    EXPECT_TRUE(Says("worked", "channel", "The channel arrived in ")) << m_output;
    EXPECT_TRUE(Says("worked", "URI stored", "https://")) << m_output;
    EXPECT_TRUE(Says("cannot be told", "desktop component", "the package's folder is not known")) << m_output;
    EXPECT_NE(m_output.find("\nBy the log: Nothing failed.\n"), std::string::npos) << m_output;
    EXPECT_EQ(m_output.find("%3d%3d"), std::string::npos) << m_output; // the end of each URI
}

TEST_F(DoctorLive, FindsThatThePackageIsNotInstalled)
{
    Run(L"status");
    Look(3);
    EXPECT_TRUE(Says("failed", "package", "not installed for this user")) << m_output;
    EXPECT_TRUE(Says("failed", "service", "AppServiceConnectionStatus.AppNotInstalled, 1")) << m_output;
    EXPECT_TRUE(Says("not seen", "start-up", "There is no folder for the log")) << m_output;
    EXPECT_FALSE(sim::FolderExists(LogFolder()));
}

TEST_F(DoctorLive, FindsThatTheServiceIsRefused)
{
    auto const folder = m_folder / L"package";
    sim::CopyFolder(PACKAGE, folder);
    auto const manifest = folder + L"\\AppxManifest.xml";
    auto text = sim::ToUtf8(sim::ReadText(manifest));
    text.replace(text.find("com.velmo.notification"), 3, "org");
    sim::WriteBytes(manifest, text);
    Run(L"register " + folder);
    Look(3);
    EXPECT_TRUE(Says("failed", "service", "AppServiceConnectionStatus.AppServiceUnavailable, 3")) << m_output;
}

TEST_F(DoctorLive, FindsThatTheChannelIsRefused)
{
    Run(L"register");
    Run(std::wstring(channelCall) + L"now 0x803E0105");
    Look(3);
    EXPECT_TRUE(Says("worked", "service", "opens")) << m_output;
    EXPECT_TRUE(Says("failed", "channel", "without a channel URI")) << m_output;
    Run(L"fault clear");
    Run(std::wstring(channelCall) + L"completion 0x803E0105");
    Look(3);
    EXPECT_TRUE(Says("failed", "channel", "sent no message")) << m_output;
}

TEST_F(DoctorLive, FindsThatTheChannelNeverArrives)
{
    Run(L"register");
    Run(std::wstring(channelCall) + L"never");
    Look(3, L" --timeout 3");
    EXPECT_TRUE(Says("failed", "channel", "did not arrive within 3 s")) << m_output;
}

TEST_F(DoctorLive, FindsThatTheLogCannotBeWritten)
{
    Run(L"register");
    sim::MakeFolder(m_log); // in the file's place
    Look(3);
    EXPECT_TRUE(Says("failed", "start-up", "The log cannot be written: " + sim::ToUtf8(m_log))) << m_output;
    EXPECT_TRUE(Says("worked", "channel", "arrived")) << m_output;
}

TEST_F(DoctorLive, FindsThatTheLogsFolderIsMissing)
{
    Run(L"register");
    auto const elsewhere = m_folder / L"elsewhere";
    auto const outcome = RunDoctor(L"live --log " + elsewhere + L"\\KZEB.log");
    m_output = sim::ToUtf8(outcome.output);
    EXPECT_EQ(outcome.exitCode, 3u);
    EXPECT_TRUE(Says("failed", "start-up", "There is no folder for the log: " + sim::ToUtf8(elsewhere))) << m_output;
    EXPECT_FALSE(sim::FolderExists(elsewhere));
}
