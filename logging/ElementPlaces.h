#pragma once
#include "logging/Utf16.h"

#include <cstdint>
#include <vector>

namespace zant
{

// Where the first elements of some keys open and close in a text: "<key>" and "</key>", upper-case letters A to Z of
// the text counting as lower-case ones. The text is walked through once for all keys.
class ElementPlaces
{
  public:
    static constexpr auto nowhere = Utf16View::npos;

    // The places of "<" in both; each for itself, the closing one may stand before the opening one.
    struct Element
    {
        std::size_t open = nowhere;
        std::size_t close = nowhere;
    };

    // The keys are lower-case and not empty; they must outlive this object.
    ElementPlaces(std::vector<Utf16String> const& keys, Utf16View text);

    // Of the key of that number: exact where the element both opens and closes somewhere.
    Element const& operator[](std::size_t key) const noexcept { return m_elements[key]; }

    // Brings the places of all keys behind that number up to date when `text` has become what it was up to `end`,
    // something without elements, and then, from `newStart` on, what it was from `start` on.
    void Follow(std::size_t key, Utf16View text, std::size_t end, std::size_t start, std::size_t newStart) noexcept;

  private:
    void Find(Utf16View text, std::size_t from) noexcept;

    std::vector<Utf16String> const& m_keys;
    std::vector<Element> m_elements;
    // Of all keys, a bit for each: they tell most other names from the keys at one look.
    std::uint32_t m_firstUnits = 0;
    std::uint32_t m_secondUnits = 0;
};

} // namespace zant
