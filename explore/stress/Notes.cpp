#include "explore/stress/Notes.h"

#include "logging/Folders.h"
#include "simulator/base/Error.h"

namespace explore::stress
{

namespace
{

sim::Handle NamedEvent(std::wstring const& name, bool stays)
{
    return sim::Handle(CreateEventW(nullptr, stays ? TRUE : FALSE, FALSE, name.c_str()));
}

} // namespace

Notes::Notes(std::wstring const& name)
    : m_ready(NamedEvent(name + L".ready", false)), m_go(NamedEvent(name + L".go", true)),
      m_memory(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, most * sizeof(Note),
                                  (name + L".notes").c_str())),
      m_notes(static_cast<Note*>(MapViewOfFile(m_memory.Get(), FILE_MAP_WRITE, 0, 0, 0)))
{
    if (!m_ready || !m_go || m_notes == nullptr)
    {
        throw sim::Error(L"the processes' memory cannot be shared");
    }
}

Notes::~Notes()
{
    UnmapViewOfFile(m_notes);
}

std::wstring FolderOfRun(std::wstring const& name)
{
    auto const temporary = zant::TemporaryFolderPath();
    return temporary ? *temporary + name : throw sim::Error(L"there is no temporary folder");
}

std::wstring LogOfRun(std::wstring const& name)
{
    return FolderOfRun(name) + L"\\" + name + L".log";
}

} // namespace explore::stress
