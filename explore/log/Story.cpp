#include "explore/log/Story.h"

namespace explore
{

namespace
{

void MakeFolders(Files& files)
{
    for (auto const* const folder : {L"C:\\Temp", L"C:\\Temp\\Tessaline", L"C:\\Temp\\Tessaline\\HOV"})
    {
        files.CreateFolder(folder);
    }
}

void MakeTemporaryFolder(Files& files)
{
    files.CreateFolder(L"C:\\Temp");
}

void MakeOtherEncoding(Files& files)
{
    MakeFolders(files);
    files.Put(L"C:\\Temp\\Tessaline\\HOV\\KZEB.log", FileContent(std::string(otherEncoding)));
}

FileContent CopyOf(std::wstring const& date)
{
    auto const line = L"copied " + date + L"\r\n";
    return FileContent("\xFF\xFE" +
                       std::string(reinterpret_cast<char const*>(line.data()), line.size() * sizeof(wchar_t)));
}

void MakeOldCopies(Files& files)
{
    MakeFolders(files);
    for (auto const* const copy : {L"2023-12-31 08-00-00", L"2024-1-5 01-00-00", L"2024-1-5 02-00-00",
                                   L"2024-1-5 03-00-00", L"2024-1-5 04-00-00", L"2024-1-5 05-00-00"})
    {
        files.Put(std::wstring(L"C:\\Temp\\Tessaline\\HOV\\KZEB ") + copy + L".log", CopyOf(copy));
    }
}

void MakeLink(Files& files)
{
    MakeFolders(files);
    files.Put(L"C:\\Temp\\target", FileContent("not a log"));
    files.PutLink(L"C:\\Temp\\Tessaline\\HOV\\KZEB.log", L"C:\\Temp\\target");
}

constexpr auto start = Act::Start;
constexpr auto line = Act::Line;
constexpr auto due = Act::MakeCheckDue;
constexpr auto fill = Act::FillLog;
constexpr auto second = Act::WaitSecond;

} // namespace

std::vector<Story> const& Stories()
{
    static std::vector<Story> const stories = {
        {"start-x-start", {{{}, {start, line}}, {{}, {start, line}}}, MakeTemporaryFolder},
        {"line-x-line", {{{start}, {line, line}}, {{start}, {line, line}}}, MakeFolders},
        {"line-x-rotation", {{{start}, {line, line}}, {{start, due}, {line, line}}}, MakeFolders, true},
        // Where the log is filled again, the other process rotates it, too.
        {"rotation-x-rotation", {{{start, due}, {line, second, fill}}, {{start, due}, {line}}}, MakeFolders, true},
        {"rotations-in-a-second", {{{start, due}, {line, fill}}, {{start, due}, {line}}}, MakeFolders, true},
        {"start-x-rotation", {{{}, {start, line}}, {{start, due}, {line, second, fill}}}, MakeFolders, true},
        {"set-aside-x-start", {{{}, {start, line}}, {{}, {start, line}}}, MakeOtherEncoding},
        {"cleaning-x-line", {{{start}, {line, line}}, {{start, due}, {line}}}, MakeOldCopies, true},
        {"cleaning-x-cleaning", {{{start, due}, {line, second, fill}}, {{start, due}, {line}}}, MakeOldCopies, true},
        {"link-x-start", {{{}, {start, line}}, {{}, {start, line}}}, MakeLink},
        {"three-lines", {{{start}, {line}}, {{start}, {line}}, {{start}, {line}}}, MakeFolders, false, false},
        {"three-starts", {{{}, {start}}, {{}, {start}}, {{}, {start, line}}}, MakeFolders, false, false},
        {"line-x-line-x-rotation",
         {{{start}, {line}}, {{start}, {line}}, {{start, due}, {line}}},
         MakeFolders,
         true,
         false},
    };
    return stories;
}

} // namespace explore
