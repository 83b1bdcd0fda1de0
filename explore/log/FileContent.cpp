#include "explore/log/FileContent.h"

#include <algorithm>

namespace explore
{

namespace
{

constexpr std::uint64_t beforeHole = 2;

} // namespace

// A position behind the hole, as one in m_bytes.
std::uint64_t FileContent::InBytes(std::uint64_t position) const noexcept
{
    return position > beforeHole ? position - std::min(m_hole, position - beforeHole) : position;
}

std::string FileContent::Read(std::uint64_t& position, std::size_t count) const
{
    auto const touchesHole = m_hole != 0 && position < beforeHole + m_hole && position + count > beforeHole;
    if (!touchesHole)
    {
        auto const from = std::min<std::uint64_t>(InBytes(position), m_bytes.size());
        auto read = m_bytes.substr(from, count);
        position += read.size();
        return read;
    }
    auto read = m_bytes.substr(std::min(position, beforeHole), beforeHole - std::min(position, beforeHole));
    read.resize(std::min<std::uint64_t>(count, read.size() + m_hole));
    position = beforeHole + m_hole;
    return read;
}

void FileContent::Write(std::uint64_t& position, std::string_view bytes)
{
    auto const from = InBytes(position);
    m_bytes.resize(std::max<std::size_t>(m_bytes.size(), from + bytes.size()));
    m_bytes.replace(from, bytes.size(), bytes);
    position += bytes.size();
}

void FileContent::Resize(std::uint64_t size)
{
    m_bytes.resize(InBytes(size));
    m_hole = size > beforeHole ? m_hole : 0;
}

} // namespace explore
