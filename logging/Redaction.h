#pragma once
#include "logging/Utf16.h"
#include "utils/LogLevel.h"

#include <vector>

// Keeps access tokens and proxy credentials out of the log. Applies to messages only, not to the other fields of a
// line, and only to what these rules name; docs/log.md lists what they leave.
//
// Accepts any sequence of code units of any length; calls share no state. Throws std::bad_alloc only, and
// std::length_error for a result beyond the maximum size of a string.
namespace zant
{

// The names of the elements whose content is masked, in the order of masking.
std::vector<Utf16String> CredentialKeys();

// Whether a message contains a signed web token: header and payload are JSON objects in Base64, which begins with
// "eyJ", with a dot between them.
bool ContainsToken(Utf16View message) noexcept;

// Masks in `output` the content of the first element of each key in `message`, of which it holds a copy or anything
// else; the letters A to Z in the message match in either case. False when there is nothing to mask: `output` is
// unchanged then. The first opening and the first closing element count, wherever they are: if the closing one comes
// first, the string from it on is repeated after the mask. An empty element stays. Keys are distinct element names of
// at least four units, the letters a to z and hyphens; there are at most ElementPlaces::mostKeys.
bool MaskCredentials(std::vector<Utf16String> const& maskedKeys, Utf16View message, Utf16String& output);

// Replaces by four asterisks what is between an opening element, given by its start and length, and the start of a
// closing one. Both are within the string.
void MaskRange(Utf16String& text, std::size_t openStart, std::size_t openLength, std::size_t closeStart);

// The message as its line may show it. A message with a token is replaced by a notice, and `printedLevel` becomes WARN;
// in any other message the credentials are masked. The view may point into `changed`, which keeps its memory for the
// next call.
Utf16View Redact(Utf16View message, Utf16String& changed, LogLevel& printedLevel,
                 std::vector<Utf16String> const& maskedKeys);

} // namespace zant
