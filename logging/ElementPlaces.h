#pragma once
#include "logging/Utf16.h"

#include <cstdint>
#include <vector>

namespace zant
{

// The places in a string where the first element of each of several keys opens and closes: "<key>" and "</key>", the
// letters A to Z in the string matching in either case. One pass over the string serves all keys.
class ElementPlaces
{
  public:
    static constexpr auto nowhere = Utf16View::npos;

    // The places of "<" in both. They are independent: the closing element may precede the opening one.
    struct Element
    {
        std::size_t open = nowhere;
        std::size_t close = nowhere;
    };

    // The keys are in lower case and not empty; they must outlive this object.
    ElementPlaces(std::vector<Utf16String> const& keys, Utf16View text);

    // The places for the key with this index. Meaningful only if the element both opens and closes.
    Element const& operator[](std::size_t key) const noexcept { return m_elements[key]; }

    // Updates the places of all keys after that index for a change of `text`: it is unchanged up to `end`, contains no
    // element from there on, and continues at `newStart` with what was at `start`.
    void Follow(std::size_t key, Utf16View text, std::size_t end, std::size_t start, std::size_t newStart) noexcept;

  private:
    void Find(Utf16View text, std::size_t from) noexcept;

    std::vector<Utf16String> const& m_keys;
    std::vector<Element> m_elements;
    // One bit for each key: rules out most other names by a single test.
    std::uint32_t m_firstUnits = 0;
    std::uint32_t m_secondUnits = 0;
};

} // namespace zant
