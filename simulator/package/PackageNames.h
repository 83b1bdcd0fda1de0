#pragma once
#include <string>
#include <string_view>

namespace sim
{

// The first 64 bits of SHA-256 over the publisher in UTF-16LE, in lower-case Crockford base32 (13 characters):
// documented for package identities.
std::wstring PublisherId(std::wstring_view publisher);

// Name_PublisherId.
std::wstring PackageFamilyName(std::wstring_view name, std::wstring_view publisher);

// <application id>.AppX<hash>.mca, as seen on command lines. How the platform makes the hash is not known; here it is
// one of the family name, which keeps what matters: the same for an app at each start, another one for another app.
std::wstring ServerName(std::wstring_view familyName, std::wstring_view applicationId);

} // namespace sim
