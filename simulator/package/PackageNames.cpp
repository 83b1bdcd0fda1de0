#include "simulator/package/PackageNames.h"

#include "simulator/base/Error.h"

#include <algorithm>
#include <array>
#include <span>
#include <windows.h>

#include <bcrypt.h>

namespace sim
{

namespace
{

using Digest = std::array<UCHAR, 32>;

// By value: BCryptHash declares its input writable.
Digest Sha256(std::wstring text)
{
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    Digest digest{};
    auto opened = BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0);
    if (!BCRYPT_SUCCESS(opened))
    {
        throw Error(L"the system offers no SHA-256");
    }
    auto* const data = reinterpret_cast<PUCHAR>(text.data());
    auto const hashed = BCryptHash(algorithm, nullptr, 0, data, static_cast<ULONG>(text.size() * sizeof(wchar_t)),
                                   digest.data(), static_cast<ULONG>(digest.size()));
    BCryptCloseAlgorithmProvider(algorithm, 0);
    if (!BCRYPT_SUCCESS(hashed))
    {
        throw Error(L"the system's SHA-256 failed");
    }
    return digest;
}

// Five bits for each character; the last ones are padded with zero bits.
std::wstring Base32(std::span<UCHAR const> bytes)
{
    auto const at = [&](std::size_t index) { return index < bytes.size() ? unsigned{bytes[index]} : 0u; };
    std::wstring text;
    for (std::size_t bit = 0; bit < bytes.size() * 8; bit += 5)
    {
        auto const two = at(bit / 8) << 8 | at(bit / 8 + 1);
        text += L"0123456789abcdefghjkmnpqrstvwxyz"[two >> (11 - bit % 8) & 31];
    }
    return text;
}

} // namespace

std::wstring PublisherId(std::wstring_view publisher)
{
    auto const digest = Sha256(std::wstring(publisher));
    return Base32(std::span(digest).first(8));
}

std::wstring PackageFamilyName(std::wstring_view name, std::wstring_view publisher)
{
    return std::wstring(name) + L"_" + PublisherId(publisher);
}

std::wstring ServerName(std::wstring_view familyName, std::wstring_view applicationId)
{
    auto const digest = Sha256(std::wstring(familyName) + L"!" + std::wstring(applicationId));
    return std::wstring(applicationId) + L".AppX" + Base32(std::span(digest).first(20)) + L".mca";
}

} // namespace sim
