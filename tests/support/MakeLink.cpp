#include "tests/support/MakeLink.h"

#include "tests/support/Files.h"

#include <bit>
#include <gtest/gtest.h>
#include <windows.h>

namespace test
{

namespace
{

// Wine's own function; null on Windows.
using ToUnixPath = char*(CDECL*)(wchar_t const*);

ToUnixPath FindToUnixPath()
{
    return std::bit_cast<ToUnixPath>(GetProcAddress(GetModuleHandleW(L"kernel32"), "wine_get_unix_file_name"));
}

std::wstring UnixPath(ToUnixPath convert, std::wstring const& path)
{
    auto* const text = convert(path.c_str());
    std::string const narrow = text ? text : "";
    HeapFree(GetProcessHeap(), 0, text);
    return std::wstring(narrow.begin(), narrow.end()); // a test's folder has a plain name
}

// Wine returns no handle to a Linux process, so this function waits until the link exists.
void RunUntilThere(std::wstring commandLine, std::wstring const& link)
{
    auto const folder = link.substr(0, link.rfind(L'\\'));
    auto* const change =
        FindFirstChangeNotificationW(folder.c_str(), FALSE, FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    EXPECT_TRUE(CreateProcessW(L"Z:\\bin\\ln", commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                               &startup, &process));
    while (!FileExists(link) && WaitForSingleObject(change, 30'000) == WAIT_OBJECT_0)
    {
        FindNextChangeNotification(change);
    }
    FindCloseChangeNotification(change);
}

} // namespace

void MakeLink(std::wstring const& link, std::wstring const& target)
{
    if (auto const convert = FindToUnixPath())
    {
        auto const folder = UnixPath(convert, link.substr(0, link.rfind(L'\\')));
        RunUntilThere(L"ln -s \"" + UnixPath(convert, target) + L"\" \"" + folder + L"/" +
                          link.substr(link.rfind(L'\\') + 1) + L"\"",
                      link);
    }
    else
    {
        auto const attributes = GetFileAttributesW(target.c_str());
        CreateSymbolicLinkW(link.c_str(), target.c_str(),
                            (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0);
    }
    ASSERT_TRUE(FileExists(link)) << testing::PrintToString(link);
}

} // namespace test
