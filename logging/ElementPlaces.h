#pragma once
#include "logging/Utf16.h"

#include <array>
#include <cstdint>
#include <span>

namespace zant
{

// The content of an element: from behind its "<key>" to its "</key>". Either tag may be missing, and the closing one
// may come first.
struct ElementContent
{
    std::size_t begin = Utf16View::npos;
    std::size_t end = Utf16View::npos;

    // Whether both tags are there and are not adjacent.
    bool Exists() const noexcept { return begin != Utf16View::npos && end != Utf16View::npos && begin != end; }
};

// The contents of the first elements of several keys in a string, the letters A to Z in the string matching in either
// case: for each key its first "<key>" and, independently, its first "</key>". One pass over the string serves all
// keys, and no memory is allocated.
class ElementPlaces
{
  public:
    static constexpr std::size_t mostKeys = 9;

    // The keys are of at least four units, the letters a to z and hyphens.
    ElementPlaces(std::span<Utf16String const> keys, Utf16View text) noexcept;

    // Of the keys with any tag in the string, in the order of their first tags.
    std::span<ElementContent const> Contents() const noexcept { return {m_contents.data(), m_count}; }

  private:
    void Note(std::size_t at, std::size_t name) noexcept;
    ElementContent& ContentOf(std::size_t key) noexcept;

    std::span<Utf16String const> m_keys;
    Utf16View m_text;
    std::array<ElementContent, mostKeys> m_contents;
    std::array<std::uint8_t, mostKeys> m_places{}; // of a key's content, counted from 1; 0: it has none
    std::size_t m_count = 0;
};

} // namespace zant
