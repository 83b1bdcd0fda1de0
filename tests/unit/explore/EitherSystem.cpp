#include "tests/unit/explore/EitherSystem.h"

#include <thread>

namespace test
{

void PrintTo(Where where, std::ostream* out)
{
    *out << (where == Where::System ? "System" : "Memory");
}

EitherSystem::EitherSystem()
{
    if (GetParam() == Where::System)
    {
        m_temporary.emplace();
        m_folder = m_temporary->Path();
        return;
    }
    m_memory.emplace();
    m_folder = L"C:\\folder";
    m_memory->files.CreateFolder(m_folder);
}

void EitherSystem::AsAnotherProcess(std::function<void()> const& body)
{
    if (!m_memory)
    {
        std::thread(body).join(); // a thread owns its mutexes as a process does
        return;
    }
    constexpr explore::ProcessNumber other = 1;
    m_memory->kernel.Switch(other);
    body();
    m_memory->End(other);
    m_memory->kernel.Switch(0);
}

void EitherSystem::MakeHardLink(std::wstring const& path, std::wstring const& existing)
{
    if (m_memory)
    {
        EXPECT_EQ(m_memory->files.AddHardLink(path, existing), DWORD{ERROR_SUCCESS});
    }
    else
    {
        EXPECT_TRUE(CreateHardLinkW(path.c_str(), existing.c_str(), nullptr));
    }
}

HANDLE EitherSystem::OpenOnFullDisk()
{
    auto path = Path(L"log");
    if (m_memory)
    {
        MakeFile(path);
        m_memory->files.room = 0;
    }
    else
    {
        path = L"Z:\\dev\\full"; // Linux's
    }
    return CreateFileW(path.c_str(), GENERIC_WRITE, shareAll, nullptr, OPEN_EXISTING, 0, nullptr);
}

void Opened::Close()
{
    if (*this)
    {
        CloseHandle(std::exchange(m_handle, INVALID_HANDLE_VALUE));
    }
}

bool Opened::Write(std::string_view bytes) const
{
    DWORD written = 0;
    return WriteFile(m_handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE &&
           written == bytes.size();
}

std::string Opened::Read(DWORD count) const
{
    std::string bytes(count, '?');
    DWORD read = 0;
    EXPECT_TRUE(ReadFile(m_handle, bytes.data(), count, &read, nullptr));
    bytes.resize(read);
    return bytes;
}

bool Opened::Seek(LONGLONG place, DWORD from) const
{
    LARGE_INTEGER distance;
    distance.QuadPart = place;
    return SetFilePointerEx(m_handle, distance, nullptr, from) != FALSE;
}

LONGLONG Opened::Size() const
{
    LARGE_INTEGER size = {};
    EXPECT_TRUE(GetFileSizeEx(m_handle, &size));
    return size.QuadPart;
}

void MakeFile(std::wstring const& path, std::string_view bytes)
{
    Opened const file(path, GENERIC_WRITE, shareNone, CREATE_NEW);
    EXPECT_TRUE(file.Write(bytes));
}

std::string ContentOf(std::wstring const& path)
{
    return Opened(path, GENERIC_READ, shareAll).Read(100);
}

bool IsThere(std::wstring const& path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

} // namespace test
