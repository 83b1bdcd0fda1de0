#pragma once
#include "explore/log/Files.h"
#include "explore/log/Kernel.h"
#include "tests/support/WrappedSystem.h"

namespace explore
{

// The system's calls for files, made on files in memory.
class FileCalls
{
  public:
    FileCalls(Kernel& kernel, Files& files) : m_kernel(kernel), m_files(files) {}

  private:
    HANDLE Open(Files::Request const& request);
    BOOL Read(HANDLE handle, void* buffer, DWORD size, DWORD* read);
    BOOL Write(HANDLE handle, void const* bytes, DWORD size, DWORD* written);
    BOOL Seek(HANDLE handle, LARGE_INTEGER distance, LARGE_INTEGER* position, DWORD from);
    BOOL Resize(HANDLE handle);
    BOOL Size(HANDLE handle, LARGE_INTEGER* size);
    BOOL Inform(HANDLE handle, FILE_INFO_BY_HANDLE_CLASS kind, void* information);
    BOOL Dispose(HANDLE handle, FILE_INFO_BY_HANDLE_CLASS kind, void const* information);
    DWORD Attributes(wchar_t const* path);
    HANDLE FindFirst(wchar_t const* pattern, WIN32_FIND_DATAW* found);
    BOOL FindClose(HANDLE handle);
    BOOL FindNext(HANDLE handle, WIN32_FIND_DATAW* found);

    template <typename Effect>
    auto Call(char const* name, Effect effect)
    {
        return m_kernel.Call(name, std::move(effect));
    }

    template <typename Effect>
    BOOL CallOnFile(char const* name, HANDLE handle, Effect effect);

    // A call that has no more than an error.
    template <typename Operation>
    BOOL Do(char const* name, Operation operation)
    {
        return Call(name, [&] { return static_cast<BOOL>(m_kernel.Succeeds(operation())); });
    }

    Kernel& m_kernel;
    Files& m_files;

    test::CreateDirectoryCall m_createDirectory{[this](auto, wchar_t const* path, auto) {
        return Do("CreateDirectory", [&] { return m_files.CreateFolder(path); });
    }};
    test::CreateFileCall m_createFile{[this](auto, wchar_t const* path, DWORD access, DWORD share, auto,
                                             DWORD disposition, DWORD flags,
                                             auto) { return Open({path, access, share, disposition, flags}); }};
    test::DeleteFileCall m_deleteFile{
        [this](auto, wchar_t const* path) { return Do("DeleteFile", [&] { return m_files.Delete(path); }); }};
    test::FindCloseCall m_findClose{[this](auto, HANDLE handle) { return FindClose(handle); }};
    test::FindFirstFileCall m_findFirst{
        [this](auto, wchar_t const* pattern, WIN32_FIND_DATAW* found) { return FindFirst(pattern, found); }};
    test::FindNextFileCall m_findNext{
        [this](auto, HANDLE handle, WIN32_FIND_DATAW* found) { return FindNext(handle, found); }};
    test::GetFileAttributesCall m_getAttributes{[this](auto, wchar_t const* path) { return Attributes(path); }};
    test::GetFileInformationExCall m_getInformation{[this](auto, HANDLE handle, FILE_INFO_BY_HANDLE_CLASS kind,
                                                           void* information,
                                                           DWORD) { return Inform(handle, kind, information); }};
    test::GetFileSizeCall m_getSize{[this](auto, HANDLE handle, LARGE_INTEGER* size) { return Size(handle, size); }};
    // Always the same, so that no process can tell the order.
    test::GetTempPathCall m_getTempPath{[](auto, DWORD size, wchar_t* path) {
        constexpr std::wstring_view folder = Files::temporaryFolder;
        return size > folder.size() ? (path[folder.copy(path, size)] = L'\0', static_cast<DWORD>(folder.size())) : 0;
    }};
    test::MoveFileCall m_moveFile{[this](auto, wchar_t const* from, wchar_t const* to, DWORD) {
        return Do("MoveFile", [&] { return m_files.Move(from, to); });
    }};
    test::ReadFileCall m_readFile{[this](auto, HANDLE handle, void* buffer, DWORD size, DWORD* read, OVERLAPPED*) {
        return Read(handle, buffer, size, read);
    }};
    test::SetEndOfFileCall m_setEnd{[this](auto, HANDLE handle) { return Resize(handle); }};
    test::SetFileAttributesCall m_setAttributes{[this](auto, wchar_t const* path, DWORD attributes) {
        return Do("SetFileAttributes", [&] { return m_files.SetAttributes(path, attributes); });
    }};
    test::SetFileInformationCall m_setInformation{[this](auto, HANDLE handle, FILE_INFO_BY_HANDLE_CLASS kind,
                                                         void const* information,
                                                         DWORD) { return Dispose(handle, kind, information); }};
    test::SetFilePointerCall m_seek{[this](auto, HANDLE handle, LARGE_INTEGER distance, LARGE_INTEGER* position,
                                           DWORD from) { return Seek(handle, distance, position, from); }};
    test::WriteFileCall m_writeFile{[this](auto, HANDLE handle, void const* bytes, DWORD size, DWORD* written,
                                           OVERLAPPED*) { return Write(handle, bytes, size, written); }};
};

} // namespace explore
