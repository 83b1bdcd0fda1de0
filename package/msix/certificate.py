"""Whom a certificate names: as much of its encoding (DER) as that takes."""

import base64
import binascii
import re

from .problem import PackageError

SEQUENCE, SET, OBJECT_ID, EXPLICIT_0 = 0x30, 0x31, 0x06, 0xA0
_BIG_ENDIAN_TEXT = 0x1E

# The names that Windows gives the kinds of a distinguished name's parts.
_KINDS = {
    "2.5.4.3": "CN", "2.5.4.4": "SN", "2.5.4.5": "SERIALNUMBER", "2.5.4.6": "C", "2.5.4.7": "L", "2.5.4.8": "S",
    "2.5.4.9": "STREET", "2.5.4.10": "O", "2.5.4.11": "OU", "2.5.4.12": "T", "2.5.4.42": "G", "2.5.4.43": "I",
    "1.2.840.113549.1.9.1": "E", "0.9.2342.19200300.100.1.25": "DC",
}  # fmt: skip


def _items(data):
    """The (tag, content) pairs that follow each other in the content of a value. Raises ValueError."""
    at = 0
    while at < len(data):
        if at + 2 > len(data):
            raise ValueError("it is cut off")
        tag, length, start = data[at], data[at + 1], at + 2
        if length & 0x80:
            digits = length & 0x7F
            length, start = int.from_bytes(data[start : start + digits], "big"), start + digits
        if start + length > len(data):
            raise ValueError("it is cut off")
        yield tag, data[start : start + length]
        at = start + length


def _child(data, tag, number=0):
    """The content of the number-th child of that tag."""
    found = [content for kind, content in _items(data) if kind == tag]
    if number >= len(found):
        raise ValueError("it has not the structure of a certificate")
    return found[number]


def _object_id(data):
    numbers, value = [], 0
    for byte in data:
        value = value << 7 | byte & 0x7F
        if not byte & 0x80:
            numbers.append(value)
            value = 0
    first = min(numbers[0] // 40, 2)
    return ".".join(map(str, [first, numbers[0] - 40 * first, *numbers[1:]]))


def _part(data):
    """KEY=value of one part, quoted as Windows quotes."""
    kind = _object_id(_child(data, OBJECT_ID))
    *_, (tag, content) = _items(data)
    value = content.decode("utf-16-be" if tag == _BIG_ENDIAN_TEXT else "utf-8")
    if re.search(r'[,+="<>#;\n]|^\s|\s$', value):
        value = '"' + value.replace('"', '""') + '"'
    return f"{_KINDS.get(kind, f'OID.{kind}')}={value}"


def _subject(certificate):
    """The subject of a certificate's DER, the last part first, as Windows shows it."""
    body = _child(_child(certificate, SEQUENCE), SEQUENCE)
    # Of the sequences in the body the subject is the fourth: after the algorithm, the issuer and the validity.
    parts = [_part(part) for _, group in _items(_child(body, SEQUENCE, 3)) for _, part in _items(group)]
    return ", ".join(reversed(parts))


def subject(data, where):
    """The subject of the first certificate in a file, PEM or DER. Raises PackageError."""
    armoured = re.search(rb"-----BEGIN CERTIFICATE-----(.*?)-----END CERTIFICATE-----", data, re.DOTALL)
    try:
        return _subject(base64.b64decode(armoured[1]) if armoured else data)
    except (ValueError, IndexError, binascii.Error) as error:
        raise PackageError(
            where, "there is no certificate in it that can be read", "Give a certificate in PEM or DER form"
        ) from error


def signature_subjects(data, where):
    """The subjects of the certificates in a package's signature part. Raises PackageError."""
    magic = b"PKCX"
    try:
        if not data.startswith(magic):
            raise ValueError("it does not begin as a signature part does")
        signed = _child(_child(_child(data[len(magic) :], SEQUENCE), EXPLICIT_0), SEQUENCE)
        # The certificates stand one after the other in their own tag.
        certificates = _child(signed, EXPLICIT_0)
        return [_subject(_encoded(content)) for tag, content in _items(certificates) if tag == SEQUENCE]
    except (ValueError, IndexError) as error:
        raise PackageError(where, f"the signature cannot be read: {error}", "Sign the package anew") from error


def _encoded(content):
    """A sequence's content with its tag and length again."""
    digits = (len(content).bit_length() + 7) // 8
    return bytes([SEQUENCE, 0x80 | digits]) + len(content).to_bytes(digits, "big") + content
