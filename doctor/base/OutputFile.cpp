#include "doctor/base/OutputFile.h"

#include "doctor/base/SystemText.h"

namespace doctor
{

OutputFile::OutputFile(std::filesystem::path const& path)
    : m_path(path), m_file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                       FILE_ATTRIBUTE_NORMAL, nullptr))
{
    if (!m_file)
    {
        ThrowLastError(m_path);
    }
}

void OutputFile::Write(std::string_view bytes) const
{
    DWORD written = 0;
    if (!WriteFile(m_file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
    {
        ThrowLastError(m_path);
    }
}

} // namespace doctor
