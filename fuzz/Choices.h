#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace fuzz
{

// Reads an input as a row of choices. Past its end each choice is the first one, so that every input means something.
class Choices
{
  public:
    explicit Choices(std::span<std::uint8_t const> bytes) : m_rest(bytes) {}

    bool AtEnd() const noexcept { return m_rest.empty(); }

    std::uint8_t Byte() noexcept
    {
        if (m_rest.empty())
        {
            return 0;
        }
        auto const byte = m_rest.front();
        m_rest = m_rest.subspan(1);
        return byte;
    }

    bool Flag() noexcept { return (Byte() & 1) != 0; }

    std::uint32_t Number() noexcept
    {
        std::uint32_t number = 0;
        for (int byte = 0; byte < 4; ++byte)
        {
            number = number << 8 | Byte();
        }
        return number;
    }

    // 0 to count - 1.
    std::uint32_t Below(std::uint32_t count) noexcept { return (count <= 256 ? Byte() : Number()) % count; }

    template <typename Item, std::size_t count>
    Item const& OneOf(std::array<Item, count> const& items) noexcept
    {
        return items[Below(count)];
    }

    // A string of characters of an alphabet.
    std::wstring Text(std::uint32_t most, std::wstring_view alphabet)
    {
        std::wstring text(Below(most + 1), L' ');
        for (auto& character : text)
        {
            character = alphabet[Below(static_cast<std::uint32_t>(alphabet.size()))];
        }
        return text;
    }

    // A string of any UTF-16 code units, most of them ASCII.
    std::wstring Units(std::uint32_t most)
    {
        std::wstring text(Below(most + 1), L' ');
        for (auto& unit : text)
        {
            auto const byte = Byte();
            unit = static_cast<wchar_t>(byte < 0x80 ? byte : byte << 8 | Byte());
        }
        return text;
    }

    std::span<std::uint8_t const> Rest() const noexcept { return m_rest; }

  private:
    std::span<std::uint8_t const> m_rest;
};

} // namespace fuzz
