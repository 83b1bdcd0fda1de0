// SHA-1 in constant expressions: the ids of parameterised interfaces are name-based (RFC 4122, version 5).
#pragma once
#include "winrt/base/platform.h"

namespace winrt::impl
{

using sha1_digest = std::array<uint32_t, 5>;

constexpr void sha1_block(sha1_digest& digest, std::array<uint8_t, 64> const& block) noexcept
{
    uint32_t words[80] = {};
    for (size_t i = 0; i < 16; ++i)
    {
        words[i] = static_cast<uint32_t>(block[i * 4]) << 24 | static_cast<uint32_t>(block[i * 4 + 1]) << 16 |
                   static_cast<uint32_t>(block[i * 4 + 2]) << 8 | block[i * 4 + 3];
    }
    for (size_t i = 16; i < 80; ++i)
    {
        words[i] = std::rotl(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);
    }
    auto [a, b, c, d, e] = digest;
    for (size_t i = 0; i < 80; ++i)
    {
        auto const choice = i < 20   ? ((b & c) | (~b & d)) + 0x5A827999
                            : i < 40 ? (b ^ c ^ d) + 0x6ED9EBA1
                            : i < 60 ? ((b & c) | (b & d) | (c & d)) + 0x8F1BBCDC
                                     : (b ^ c ^ d) + 0xCA62C1D6;
        auto const next = std::rotl(a, 5) + choice + e + words[i];
        e = d;
        d = c;
        c = std::rotl(b, 30);
        b = a;
        a = next;
    }
    digest[0] += a;
    digest[1] += b;
    digest[2] += c;
    digest[3] += d;
    digest[4] += e;
}

template <size_t Size>
constexpr sha1_digest sha1(std::array<uint8_t, Size> const& message) noexcept
{
    sha1_digest digest = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
    std::array<uint8_t, 64> block{};
    size_t used = 0;
    auto const append = [&](uint8_t octet) {
        block[used++] = octet;
        if (used == block.size())
        {
            sha1_block(digest, block);
            used = 0;
        }
    };
    for (auto const octet : message)
    {
        append(octet);
    }
    append(0x80);
    while (used != 56)
    {
        append(0);
    }
    for (int shift = 56; shift >= 0; shift -= 8)
    {
        append(static_cast<uint8_t>(static_cast<uint64_t>(Size) * 8 >> shift));
    }
    return digest;
}

} // namespace winrt::impl
