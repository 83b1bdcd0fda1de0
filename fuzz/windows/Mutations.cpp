#include "fuzz/windows/Mutations.h"

#include <algorithm>
#include <iterator>

namespace fuzz
{

namespace
{

using Place = Input::difference_type;

struct Range
{
    Place start;
    Place size;
};

Place SomePlace(Noise& noise, Input const& input)
{
    return static_cast<Place>(noise.Below(input.size() + 1));
}

// Mostly a short one.
Range SomeRange(Noise& noise, Input const& input)
{
    auto const start = SomePlace(noise, input);
    auto const most = input.size() - static_cast<std::size_t>(start);
    auto const size = noise.Below((noise.Below(4) == 0 ? most : std::min<std::size_t>(most, 8)) + 1);
    return {start, static_cast<Place>(size)};
}

void Erase(Noise& noise, Input& input)
{
    auto const [start, size] = SomeRange(noise, input);
    input.erase(input.begin() + start, input.begin() + start + size);
}

void InsertPart(Noise& noise, Input& input, Input const& from)
{
    auto const [start, size] = SomeRange(noise, from);
    Input const part(from.begin() + start, from.begin() + start + size);
    input.insert(input.begin() + SomePlace(noise, input), part.begin(), part.end());
}

void InsertNoise(Noise& noise, Input& input)
{
    Input part(noise.Below(8) + 1);
    std::ranges::generate(part, [&] { return static_cast<std::uint8_t>(noise.Below(256)); });
    input.insert(input.begin() + SomePlace(noise, input), part.begin(), part.end());
}

void ChangeByte(Noise& noise, Input& input)
{
    constexpr std::uint8_t edges[] = {0, 1, 0x20, 0x7F, 0x80, 0xFF};
    if (input.empty())
    {
        return;
    }
    auto& byte = input[noise.Below(input.size())];
    switch (noise.Below(4))
    {
    case 0:
        byte = static_cast<std::uint8_t>(byte ^ 1u << noise.Below(8));
        break;
    case 1:
        byte = edges[noise.Below(std::size(edges))];
        break;
    case 2:
        byte = static_cast<std::uint8_t>(byte + noise.Below(9) - 4);
        break;
    default:
        byte = static_cast<std::uint8_t>(noise.Below(256));
    }
}

} // namespace

Input Mutated(Noise& noise, Input const& base, Input const& other, std::size_t longest)
{
    auto input = base;
    for (auto changes = noise.Below(5) + 1; changes > 0; --changes)
    {
        switch (noise.Below(6))
        {
        case 0:
            Erase(noise, input);
            break;
        case 1:
            InsertPart(noise, input, Input(input));
            break;
        case 2:
            InsertPart(noise, input, other);
            break;
        case 3:
            InsertNoise(noise, input);
            break;
        default:
            ChangeByte(noise, input);
        }
    }
    input.resize(std::min(input.size(), longest));
    return input;
}

} // namespace fuzz
