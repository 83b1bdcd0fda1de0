#include "simulator/protocol/Frames.h"

#include "simulator/base/Error.h"

#include <cstdint>
#include <cstring>

namespace sim
{

namespace
{

constexpr std::size_t sizeSize = sizeof(std::uint32_t);

} // namespace

std::string Framed(std::string_view message)
{
    auto const size = static_cast<std::uint32_t>(message.size());
    std::string frame(reinterpret_cast<char const*>(&size), sizeSize);
    return frame.append(message);
}

void FrameReader::Add(std::string_view bytes)
{
    // Removes the messages taken so far at once, so that a piece of many small messages is moved only once.
    m_bytes.erase(0, m_start);
    m_start = 0;
    m_bytes += bytes;
}

std::optional<std::string_view> FrameReader::Next()
{
    auto const rest = std::string_view(m_bytes).substr(m_start);
    if (rest.size() < sizeSize)
    {
        return std::nullopt;
    }
    std::uint32_t size = 0;
    std::memcpy(&size, rest.data(), sizeSize);
    if (size > largestMessage)
    {
        throw Error(L"a message is too large to be one");
    }
    if (rest.size() - sizeSize < size)
    {
        return std::nullopt;
    }
    m_start += sizeSize + size;
    return rest.substr(sizeSize, size);
}

} // namespace sim
