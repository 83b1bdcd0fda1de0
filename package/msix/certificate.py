"""Reads the subject of a certificate, and no more than that takes."""

import base64
import binascii
import re

from . import der
from .problem import PackageError

# More than any certificate has, also one that comes with its issuers'.
LARGEST = 1 << 20

_MOST_PARTS = 64
_BIG_ENDIAN_TEXT = 0x1E
_BEGIN, _END = b"-----BEGIN CERTIFICATE-----", b"-----END CERTIFICATE-----"

# The names that Windows gives the kinds of a distinguished name's parts.
_KINDS = {
    "2.5.4.3": "CN", "2.5.4.4": "SN", "2.5.4.5": "SERIALNUMBER", "2.5.4.6": "C", "2.5.4.7": "L", "2.5.4.8": "S",
    "2.5.4.9": "STREET", "2.5.4.10": "O", "2.5.4.11": "OU", "2.5.4.12": "T", "2.5.4.42": "G", "2.5.4.43": "I",
    "1.2.840.113549.1.9.1": "E", "0.9.2342.19200300.100.1.25": "DC",
}  # fmt: skip


def _part(data):
    """KEY=value of one part, quoted as Windows quotes."""
    (kind, object_id), (tag, content) = der.items(data)
    if kind != der.OBJECT_ID:
        raise ValueError("a part of its subject has no kind")
    key = der.object_id(object_id)
    value = content.decode("utf-16-be" if tag == _BIG_ENDIAN_TEXT else "utf-8")
    if re.search(r'[,+="<>#;\n]|^\s|\s$', value):
        value = '"' + value.replace('"', '""') + '"'
    return f"{_KINDS.get(key, f'OID.{key}')}={value}"


def name_of(body):
    """The subject in the content of a certificate's sequence, the last part first, as Windows shows it."""
    # Of the sequences in the signed part the subject is the fourth: after the algorithm, the issuer, the validity.
    name = der.child(der.child(body, der.SEQUENCE), der.SEQUENCE, 3)
    parts = []
    for _, group in der.items(name):
        for _, part in der.items(group):
            parts.append(_part(part))
            if len(parts) > _MOST_PARTS:
                raise ValueError("its subject has too many parts")
    return ", ".join(reversed(parts))


def _armoured(data):
    """The text between the first armour lines of a PEM file; None without armour."""
    begin = data.find(_BEGIN)
    end = data.find(_END, begin)
    return data[begin + len(_BEGIN) : end] if 0 <= begin < end else None


def _read(data, where):
    """Of the first certificate in a file its DER and its subject."""
    try:
        if len(data) > LARGEST:
            raise ValueError("it is too large")
        armoured = _armoured(data)
        encoded = data if armoured is None else base64.b64decode(armoured)
        return encoded, name_of(der.child(encoded, der.SEQUENCE))
    except (ValueError, IndexError, binascii.Error) as error:
        raise PackageError(
            where, "there is no certificate in it that can be read", "Give a certificate in PEM or DER form"
        ) from error


def subject(data, where):
    """The subject of the first certificate in a file, PEM or DER. Raises PackageError."""
    return _read(data, where)[1]


def armour(data, where):
    """A certificate file in PEM form, which may hold the issuers' certificates as well. Raises PackageError."""
    encoded, _ = _read(data, where)
    return data if _armoured(data) else _BEGIN + b"\n" + base64.encodebytes(encoded) + _END + b"\n"
