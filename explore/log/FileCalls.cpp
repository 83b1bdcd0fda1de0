#include "explore/log/FileCalls.h"

#include <algorithm>

namespace explore
{

namespace
{

class FileHandle : public KernelObject
{
  public:
    FileHandle(Files& files, std::shared_ptr<OpenFile> opened) : m_files(files), m_opened(std::move(opened)) {}
    FileHandle(FileHandle const&) = delete;
    FileHandle& operator=(FileHandle const&) = delete;
    ~FileHandle() override { m_files.Close(*m_opened); }

    OpenFile& Opened() const noexcept { return *m_opened; }

  private:
    Files& m_files;
    std::shared_ptr<OpenFile> m_opened;
};

// A search lists the names as they were at its start.
class SearchHandle : public KernelObject
{
  public:
    explicit SearchHandle(std::vector<std::wstring> names) : m_names(std::move(names)) {}

    // Nothing behind the last one.
    std::optional<std::wstring> Next()
    {
        return m_next < m_names.size() ? std::optional(m_names[m_next++]) : std::nullopt;
    }

  private:
    std::vector<std::wstring> m_names;
    std::size_t m_next = 0;
};

LARGE_INTEGER LargeInteger(std::uint64_t value)
{
    LARGE_INTEGER result;
    result.QuadPart = static_cast<LONGLONG>(value);
    return result;
}

// Where a seek counts from.
LONGLONG PlaceOf(DWORD from, OpenFile const& opened)
{
    switch (from)
    {
    case FILE_END:
        return static_cast<LONGLONG>(opened.file->content.Size());
    case FILE_CURRENT:
        return static_cast<LONGLONG>(opened.position);
    default:
        return 0;
    }
}

} // namespace

HANDLE FileCalls::Open(Files::Request const& request)
{
    return Call("CreateFile", [&] {
        std::shared_ptr<OpenFile> opened;
        return m_kernel.Succeeds(m_files.Open(request, opened))
                   ? m_kernel.Add(std::make_shared<FileHandle>(m_files, std::move(opened)))
                   : INVALID_HANDLE_VALUE;
    });
}

// Of a handle that is no file's the call fails, with the last error that says so.
template <typename Effect>
BOOL FileCalls::CallOnFile(char const* name, HANDLE handle, Effect effect)
{
    return Call(name, [&]() -> BOOL {
        auto const* const file = m_kernel.Find<FileHandle>(handle);
        return file != nullptr ? effect(file->Opened()) : FALSE;
    });
}

BOOL FileCalls::Read(HANDLE handle, void* buffer, DWORD size, DWORD* read)
{
    return CallOnFile("ReadFile", handle, [&](OpenFile& opened) -> BOOL {
        if ((opened.access & GENERIC_READ) == 0)
        {
            return m_kernel.Succeeds(ERROR_ACCESS_DENIED);
        }
        auto const bytes = opened.file->content.Read(opened.position, size);
        std::ranges::copy(bytes, static_cast<char*>(buffer));
        *read = static_cast<DWORD>(bytes.size());
        m_kernel.Note(std::string_view(bytes));
        return m_kernel.Succeeds(ERROR_SUCCESS);
    });
}

BOOL FileCalls::Write(HANDLE handle, void const* bytes, DWORD size, DWORD* written)
{
    return CallOnFile("WriteFile", handle, [&](OpenFile& opened) -> BOOL {
        auto const error = m_files.Write(opened, {static_cast<char const*>(bytes), size}, *written);
        m_kernel.Note(*written);
        return m_kernel.Succeeds(error);
    });
}

BOOL FileCalls::Seek(HANDLE handle, LARGE_INTEGER distance, LARGE_INTEGER* position, DWORD from)
{
    return CallOnFile("SetFilePointer", handle, [&](OpenFile& opened) -> BOOL {
        auto const place = PlaceOf(from, opened) + distance.QuadPart;
        if (place < 0)
        {
            return m_kernel.Succeeds(ERROR_NEGATIVE_SEEK);
        }
        opened.position = static_cast<std::uint64_t>(place);
        if (position != nullptr)
        {
            *position = LargeInteger(opened.position);
            m_kernel.Note(opened.position);
        }
        return m_kernel.Succeeds(ERROR_SUCCESS);
    });
}

BOOL FileCalls::Resize(HANDLE handle)
{
    return CallOnFile("SetEndOfFile", handle, [&](OpenFile& opened) -> BOOL {
        opened.file->content.Resize(opened.position);
        return m_kernel.Succeeds(ERROR_SUCCESS);
    });
}

BOOL FileCalls::Size(HANDLE handle, LARGE_INTEGER* size)
{
    return CallOnFile("GetFileSize", handle, [&](OpenFile& opened) -> BOOL {
        *size = LargeInteger(opened.file->content.Size());
        m_kernel.Note(opened.file->content.Size());
        return m_kernel.Succeeds(ERROR_SUCCESS);
    });
}

BOOL FileCalls::Inform(HANDLE handle, FILE_INFO_BY_HANDLE_CLASS kind, void* information)
{
    return CallOnFile("GetFileInformation", handle, [&](OpenFile& opened) -> BOOL {
        if (kind != FileStandardInfo)
        {
            return m_kernel.Succeeds(ERROR_INVALID_PARAMETER);
        }
        auto const& held = *opened.file;
        auto& result = *static_cast<FILE_STANDARD_INFO*>(information);
        result = {};
        result.EndOfFile = LargeInteger(held.content.Size());
        result.NumberOfLinks = held.names;
        result.DeletePending = held.isDeletedOnClose ? TRUE : FALSE;
        m_kernel.Note(held.content.Size());
        m_kernel.Note(held.names);
        return m_kernel.Succeeds(ERROR_SUCCESS);
    });
}

BOOL FileCalls::Dispose(HANDLE handle, FILE_INFO_BY_HANDLE_CLASS kind, void const* information)
{
    return CallOnFile("SetFileInformation", handle, [&](OpenFile& opened) -> BOOL {
        if (kind != FileDispositionInfo)
        {
            return m_kernel.Succeeds(ERROR_INVALID_PARAMETER);
        }
        auto const isDeleted = static_cast<FILE_DISPOSITION_INFO const*>(information)->DeleteFile != FALSE;
        return m_kernel.Succeeds(m_files.DeleteOnClose(opened, isDeleted));
    });
}

DWORD FileCalls::Attributes(wchar_t const* path)
{
    return Call("GetFileAttributes", [&] {
        auto attributes = INVALID_FILE_ATTRIBUTES;
        m_kernel.Succeeds(m_files.Attributes(path, attributes));
        m_kernel.Note(attributes);
        return attributes;
    });
}

namespace
{

// False, with the last error set, when the search is at its end.
bool Show(Kernel& kernel, SearchHandle& search, WIN32_FIND_DATAW* found, DWORD errorAtEnd)
{
    auto const name = search.Next();
    if (!name)
    {
        return kernel.Succeeds(errorAtEnd);
    }
    *found = {};
    name->copy(found->cFileName, std::size(found->cFileName) - 1);
    for (auto const character : *name)
    {
        kernel.Note(character);
    }
    return kernel.Succeeds(ERROR_SUCCESS);
}

} // namespace

HANDLE FileCalls::FindFirst(wchar_t const* pattern, WIN32_FIND_DATAW* found)
{
    return Call("FindFirstFile", [&] {
        auto const search = std::make_shared<SearchHandle>(m_files.Matching(pattern));
        return Show(m_kernel, *search, found, ERROR_FILE_NOT_FOUND) ? m_kernel.Add(search) : INVALID_HANDLE_VALUE;
    });
}

BOOL FileCalls::FindNext(HANDLE handle, WIN32_FIND_DATAW* found)
{
    return Call("FindNextFile", [&]() -> BOOL {
        auto* const search = m_kernel.Find<SearchHandle>(handle);
        return search != nullptr && Show(m_kernel, *search, found, ERROR_NO_MORE_FILES);
    });
}

BOOL FileCalls::FindClose(HANDLE handle)
{
    return Call("FindClose", [&] { return static_cast<BOOL>(m_kernel.Close(handle)); });
}

} // namespace explore
