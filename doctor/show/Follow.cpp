#include "doctor/show/Follow.h"

#include "doctor/log/InputFile.h"

#include <vector>

namespace doctor
{

void Follower::TakeNew(TakeEntry const& take)
{
    constexpr std::size_t blockBytes = std::size_t{64} * 1024;
    auto file = InputFile::IfThere(m_path);
    if (!file || file->Size() < m_position)
    {
        BeginAgain();
    }
    if (!file)
    {
        return;
    }
    file->Seek(m_position);
    std::vector<char> buffer(blockBytes);
    for (auto bytes = file->Read(buffer); !bytes.empty(); bytes = file->Read(buffer))
    {
        m_position += bytes.size();
        m_reader.Add(bytes, [&](RawLine const& raw) { TakeSplit(raw, take); });
    }
}

void Follower::BeginAgain()
{
    m_position = 0;
    m_reader = {};
}

} // namespace doctor
