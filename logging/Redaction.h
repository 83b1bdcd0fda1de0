#pragma once
#include "logging/Utf16.h"
#include "utils/LogLevel.h"

#include <vector>

// What keeps access tokens and proxy credentials out of the log. Only messages are looked at, not the other fields of a
// line, and only for what these rules name; docs/log.md lists what they leave.
//
// Any units may come in, in any number; nothing is shared between calls. Throws std::bad_alloc only; a text that would
// become longer than any string can be ends in std::length_error.
namespace zant
{

// The names of the elements whose content is masked, in the order in which they are.
std::vector<Utf16String> CredentialKeys();

// Whether a signed web token is in a message: its header and its payload are objects of JSON in Base64, which begins
// with "eyJ", and a dot stands between them.
bool ContainsToken(Utf16View message) noexcept;

// Masks in `output`, a copy of `message`, the content of the first element of each key; upper-case letters A to Z of
// the message count as the lower-case ones. The first opening and the first closing element count wherever they stand:
// where the closing one comes first, the text from it on is repeated behind the mask. An empty element stays.
// The keys are names of elements in lower case, none twice, not empty, without angle brackets and slashes.
void MaskCredentials(std::vector<Utf16String> const& maskedKeys, Utf16View message, Utf16String& output);

// Puts four asterisks in the place of what stands between an opening element, given by its start and length, and the
// start of a closing one. Both are within the text.
void MaskRange(Utf16String& text, std::size_t openStart, std::size_t openLength, std::size_t closeStart);

// The message as its line may show it: a notice in the place of one with a token, which is shown at the level WARN
// whatever `printedLevel` was; else with its credentials masked. The result may be kept in `changed`, which then keeps
// its memory for the next one.
Utf16View Redact(Utf16View message, Utf16String& changed, LogLevel& printedLevel,
                 std::vector<Utf16String> const& maskedKeys);

} // namespace zant
