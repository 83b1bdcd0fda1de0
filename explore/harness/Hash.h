#pragma once
#include <cstdint>
#include <cstring>
#include <string_view>

namespace explore
{

// A hash of 64 bits of what is added to it, in order.
class Hash
{
  public:
    explicit Hash(std::uint64_t seed = 0) noexcept { Add(seed); }

    void Add(std::uint64_t value) noexcept
    {
        m_value = (m_value ^ value) * 0x9E3779B97F4A7C15;
        m_value ^= m_value >> 32;
    }

    void Add(std::string_view bytes) noexcept
    {
        Add(bytes.size());
        for (; bytes.size() >= sizeof(std::uint64_t); bytes.remove_prefix(sizeof(std::uint64_t)))
        {
            std::uint64_t word = 0;
            std::memcpy(&word, bytes.data(), sizeof word);
            Add(word);
        }
        std::uint64_t rest = 0;
        std::memcpy(&rest, bytes.data(), bytes.size());
        Add(rest);
    }

    void Add(std::wstring_view text) noexcept
    {
        Add(std::string_view(reinterpret_cast<char const*>(text.data()), text.size() * sizeof(wchar_t)));
    }

    std::uint64_t Value() const noexcept { return m_value; }

  private:
    std::uint64_t m_value = 0;
};

} // namespace explore
