#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace explore
{

// The bytes of a file. A file can have a hole of zeros behind its first two bytes, so that it is large and takes no
// room. One read passes the whole of it, unlike on a real disk: a log at its limit is copied in a few blocks rather
// than in 3,840.
class FileContent
{
  public:
    FileContent() = default;

    // `hole`: its length; 0: there is none.
    explicit FileContent(std::string bytes, std::uint64_t hole = 0) : m_bytes(std::move(bytes)), m_hole(hole) {}

    std::uint64_t Size() const noexcept { return m_bytes.size() + m_hole; }

    // All but the hole.
    std::string const& Bytes() const noexcept { return m_bytes; }

    // At most `count` bytes from `position` on, which moves behind them.
    std::string Read(std::uint64_t& position, std::size_t count) const;

    // Overwrites and extends; not within the hole. `position` moves behind the bytes.
    void Write(std::uint64_t& position, std::string_view bytes);

    // Not within the hole.
    void Resize(std::uint64_t size);

  private:
    std::uint64_t InBytes(std::uint64_t position) const noexcept;

    std::string m_bytes;
    std::uint64_t m_hole = 0;
};

} // namespace explore
