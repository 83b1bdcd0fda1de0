#pragma once
#include "explore/log/FileContent.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>
#include <windows.h>

namespace explore
{

struct OpenFile;

// A file or folder, whatever names it has.
struct File
{
    DWORD attributes = FILE_ATTRIBUTE_ARCHIVE;
    FileContent content = {};
    std::wstring linkTarget = {}; // of a link
    DWORD names = 0;
    bool isDeletedOnClose = false;
    std::vector<OpenFile const*> openings = {};
};

// What happens to a file.
enum class FileChange
{
    Begin, // is opened to be written from its beginning
    Empty,
    Delete,
    Cut // a write to it does not fit
};

// One opening of a file.
struct OpenFile
{
    std::shared_ptr<File> file;
    std::wstring path; // by which it was opened
    DWORD access;
    DWORD share;
    std::uint64_t position = 0;
};

// Files in memory. The results are error codes of Windows; paths are whole, and case does not matter.
class Files
{
  public:
    // Has the root "C:" alone.
    Files();

    struct Request
    {
        std::wstring_view path;
        DWORD access;
        DWORD share;
        DWORD disposition;
        DWORD flags;
    };

    DWORD Open(Request const& request, std::shared_ptr<OpenFile>& opened);
    void Close(OpenFile& opened);
    DWORD Write(OpenFile& opened, std::string_view bytes, DWORD& written);
    DWORD DeleteOnClose(OpenFile& opened, bool isDeleted);

    DWORD CreateFolder(std::wstring_view path);
    DWORD Delete(std::wstring_view path);
    DWORD Move(std::wstring_view from, std::wstring_view to);
    DWORD Attributes(std::wstring_view path, DWORD& attributes) const;
    DWORD SetAttributes(std::wstring_view path, DWORD attributes);
    DWORD AddHardLink(std::wstring_view path, std::wstring_view existing);

    // The names in a folder that match a pattern such as "C:\logs\KZEB*", with an asterisk at its end or none.
    std::vector<std::wstring> Matching(std::wstring_view pattern) const;

    // What is prepared or looked at beside the calls.
    File& Put(std::wstring_view path, FileContent content);
    void PutLink(std::wstring_view path, std::wstring_view target);
    File const* Find(std::wstring_view path) const;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): the entries of an object that is not const are not, either
    File* Find(std::wstring_view path) { return const_cast<File*>(std::as_const(*this).Find(path)); }

    // Told of each change right before it, with the path in lower case.
    std::function<void(FileChange, std::wstring const& path, File const&)> onChange;

    // How many bytes still fit on the disk. What is freed is used by others at once.
    std::uint64_t room = unlimited;

    static constexpr std::wstring_view temporaryFolder = L"C:\\Temp\\";
    static constexpr std::uint64_t unlimited = ~std::uint64_t{0};

    bool IsFull() const noexcept { return room != unlimited; }

    template <typename Function>
    void ForEach(Function function) const // (path in lower case, File const&)
    {
        for (auto const& [path, entry] : m_entries)
        {
            function(path, *entry.file);
        }
    }

    std::uint64_t StateHash() const;

  private:
    struct Entry
    {
        std::wstring name; // as it was created
        std::shared_ptr<File> file;
    };

    using Entries = std::map<std::wstring, Entry>; // by the lower-case path

    Entry const* EntryOf(std::wstring_view path) const;
    DWORD Missing(std::wstring const& key) const;
    void Tell(FileChange change, std::wstring const& key, File const& file) const;
    File& Add(std::wstring_view path, std::shared_ptr<File> file);
    void Remove(std::wstring const& key);

    Entries m_entries;
};

} // namespace explore
