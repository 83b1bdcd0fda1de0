#include "explore/log/LogFiles.h"

#include "explore/log/Story.h"

#include <algorithm>
#include <cstring>

namespace explore
{

namespace
{

constexpr std::string_view mark = "\xFF\xFE";

std::wstring TextOf(std::string_view bytes)
{
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    return text;
}

// A hole is copied as zeros.
std::wstring WithoutZeros(std::wstring text)
{
    text.erase(0, text.find_first_not_of(L'\0'));
    return text;
}

} // namespace

bool LogFile::IsCopy() const
{
    return path != logPath;
}

LogFile ReadLogFile(std::wstring const& path, std::string const& bytes)
{
    LogFile file{path, bytes, bytes.starts_with(mark)};
    if (!file.hasMark)
    {
        return file;
    }
    constexpr std::wstring_view lineEnd = L"\r\n";
    file.rest = WithoutZeros(TextOf(std::string_view(bytes).substr(mark.size())));
    for (auto end = file.rest.find(lineEnd); end != file.rest.npos; end = file.rest.find(lineEnd))
    {
        file.lines.push_back(file.rest.substr(0, end));
        file.rest.erase(0, end + lineEnd.size());
    }
    return file;
}

std::vector<LogFile> ReadLogFiles(Files const& files)
{
    std::vector<LogFile> read;
    files.ForEach([&](std::wstring const& path, File const& file) {
        if (path.starts_with(logFolder) && (file.attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
        {
            read.push_back(ReadLogFile(path, file.content.Bytes()));
        }
    });
    return read;
}

} // namespace explore
