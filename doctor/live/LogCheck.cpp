#include "doctor/live/LogCheck.h"

#include "doctor/base/SystemText.h"
#include "doctor/live/MakeFinding.h"
#include "utils/Links.h"
#include "utils/ParentPath.h"
#include "utils/UniqueHandle.h"

#include <optional>

namespace doctor
{

namespace
{

namespace fs = std::filesystem;

Finding LogFailed(std::string const& what, std::string const& cause, std::string const& advice)
{
    return Failed(Stage::StartUp, what, cause, advice);
}

Finding CannotTell(std::string const& what, DWORD error)
{
    return CannotBeTold(Stage::StartUp, what + ": " + SystemText(error) + ".",
                        "Run the doctor as the user who runs the app.");
}

bool IsMissing(DWORD error)
{
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

Finding Missing(std::string const& what, bool hasRun)
{
    auto finding = LogFailed("There is no " + what + ".", "The app has not run for this user since it was installed.",
                             "Start the app, or ask it for the channel, and look again.");
    if (hasRun)
    {
        finding.cause =
            "The app has run, but began no log, or the log was removed: the app may not write there, or somebody cleaned up.";
        finding.advice = "See who may write to that folder and to those above it.";
    }
    else
    {
        finding.result = Result::NotSeen;
    }
    return finding;
}

// The part of the path that is a link.
std::optional<fs::path> LinkIn(fs::path const& log)
{
    auto part = log.native();
    do
    {
        if (zant::CheckLinks(part, false) == zant::LinkCheck::IsLink)
        {
            return part;
        }
    } while (zant::RemoveLastComponent(part) && !part.empty());
    return std::nullopt;
}

Finding LinkFound(fs::path const& link)
{
    return LogFailed("A link is in the log's path: " + PathText(link) + ".",
                     "Somebody moved the folder to another drive, or misleads the app: it writes no log there.",
                     "Put a folder, or nothing, in the link's place; fsutil reparsepoint query shows what it is.");
}

zant::UniqueHandle OpenShared(fs::path const& path, DWORD access, DWORD flags = 0)
{
    constexpr DWORD all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return zant::UniqueHandle(CreateFileW(path.c_str(), access, all, nullptr, OPEN_EXISTING, flags, nullptr));
}

// cause: where no other program is it.
Finding NotOpened(std::string const& what, fs::path const& path, DWORD error, std::string const& cause)
{
    return LogFailed(what + ": " + FailureText(path, error) + ".",
                     error == ERROR_SHARING_VIOLATION
                         ? "Another program has it open and shares it with nobody: an editor, a backup, a scanner."
                         : cause,
                     error == ERROR_SHARING_VIOLATION ? "End that program; the Resource Monitor names it."
                                                      : "Look at the file's attributes and access rights.");
}

Finding NotWritable(fs::path const& path, DWORD error)
{
    return NotOpened("The log cannot be written", path, error,
                     "The file is read-only, or its access rights were changed.");
}

Finding NotReadable(fs::path const& path, DWORD error)
{
    return NotOpened("The log can be written, but not read", path, error,
                     "Its access rights were changed: the app cannot copy the log when that is full, and the doctor "
                     "reads no line.");
}

Finding FolderNotWritable(fs::path const& folder, DWORD error)
{
    return LogFailed("No file can be made in the log's folder: " + PathText(folder) + ": " + SystemText(error) + ".",
                     "Its access rights were changed: the app can no longer set its log aside when that is full.",
                     "Look at the folder's access rights.");
}

Finding FileFinding(fs::path const& log, bool hasRun)
{
    auto const file = OpenShared(log, FILE_APPEND_DATA | FILE_READ_ATTRIBUTES);
    if (!file)
    {
        auto const error = GetLastError();
        return IsMissing(error) ? Missing("log: " + PathText(log), hasRun) : NotWritable(log, error);
    }
    if (!OpenShared(log, GENERIC_READ))
    {
        return NotReadable(log, GetLastError());
    }
    BY_HANDLE_FILE_INFORMATION information;
    if (!GetFileInformationByHandle(file.Get(), &information))
    {
        return CannotTell("How many names the log has cannot be told", GetLastError());
    }
    if (information.nNumberOfLinks > 1)
    {
        return LogFailed("The log has another hard link: " + PathText(log) + ".",
                         "Somebody gave the file a second name; the app opens no such log and writes no line.",
                         "Remove the other name; fsutil hardlink list shows it.");
    }
    return Worked(Stage::StartUp, "The log is there and can be written: " + PathText(log) + ".");
}

} // namespace

fs::path LogPathOf(std::wstring const& family)
{
    wchar_t folder[MAX_PATH];
    auto const length = GetEnvironmentVariableW(L"LOCALAPPDATA", folder, MAX_PATH);
    return length == 0 || length >= MAX_PATH
               ? fs::path()
               : fs::path(folder) / L"Packages" / family / L"AC\\Temp\\Tessaline\\HOV\\KZEB.log";
}

Finding LogFinding(fs::path const& log, bool hasRun)
{
    if (log.empty())
    {
        return CannotTell("Where the log is cannot be told", ERROR_ENVVAR_NOT_FOUND);
    }
    if (auto const link = LinkIn(log))
    {
        return LinkFound(*link);
    }
    auto const folder = OpenShared(log.parent_path(), FILE_ADD_FILE, FILE_FLAG_BACKUP_SEMANTICS);
    if (!folder)
    {
        auto const error = GetLastError();
        return IsMissing(error) ? Missing("folder for the log: " + PathText(log.parent_path()), hasRun)
                                : FolderNotWritable(log.parent_path(), error);
    }
    return FileFinding(log, hasRun);
}

} // namespace doctor
