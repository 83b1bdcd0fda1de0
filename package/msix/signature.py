"""The signature part: whose certificates it carries and which package it was made for.

What it says is read here; that it says so with a certificate's key is for the tool that signs to check."""

import hashlib

from . import certificate, der
from .part_names import BLOCK_MAP, CONTENT_TYPES, SIGNATURE
from .problem import PackageError, Problem

# Ten times what a signature with a time stamp and all its certificates has.
LARGEST = 1 << 20

_MAGIC = b"PKCX"
_DIGESTS = b"APPX"
_KEY_SIZE = 4
_DIGEST_SIZE = hashlib.sha256().digest_size

# The parts whose content is hashed. The block map represents all files that it lists.
_KEYS = {BLOCK_MAP: b"AXBM", CONTENT_TYPES: b"AXCT"}
PARTS = tuple(_KEYS)


class Signature:
    """Raises PackageError for data that is not a signature part."""

    def __init__(self, data):
        try:
            if not data.startswith(_MAGIC) or len(data) > LARGEST:
                raise ValueError("it does not begin as one does, or is too large")
            self._signed = der.child(
                der.child(der.child(data[len(_MAGIC) :], der.SEQUENCE), der.EXPLICIT_0), der.SEQUENCE
            )
            self.subjects = self._read_subjects()
            self._digests = self._read_digests()
        except (ValueError, IndexError) as error:
            raise PackageError(SIGNATURE, f"the signature cannot be read: {error}", "Sign the package again") from error

    def _read_subjects(self):
        # The certificates stand one after the other in their own tag.
        found = der.items(der.child(self._signed, der.EXPLICIT_0))
        return [certificate.name_of(content) for tag, content in found if tag == der.SEQUENCE]

    def _read_digests(self):
        """Four letters -> the digest of that name."""
        told = der.child(der.child(der.child(self._signed, der.SEQUENCE), der.EXPLICIT_0), der.SEQUENCE)
        data = der.child(der.child(told, der.SEQUENCE, 1), der.OCTETS)
        step = _KEY_SIZE + _DIGEST_SIZE
        if not data.startswith(_DIGESTS) or (len(data) - len(_DIGESTS)) % step:
            raise ValueError("it does not say which package it is of")
        places = range(len(_DIGESTS), len(data), step)
        return {data[at : at + _KEY_SIZE]: data[at + _KEY_SIZE : at + step] for at in places}

    def problems(self, contents):
        """The mismatches with the content of the package's parts: name -> bytes."""
        for part, content in contents.items():
            if self._digests.get(_KEYS[part]) != hashlib.sha256(content).digest():
                yield Problem(SIGNATURE, f"it was made for a package with another {part}", "Sign the package again")
