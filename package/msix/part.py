"""The content of a part, read piece by piece: the sizes in its headers are not trusted until then."""

import base64
import hashlib
import zlib

from . import blocks
from .problem import PackageError
from .zip_writer import STORED

_STEP = blocks.BLOCK


def _damaged(path, what):
    raise PackageError(path, what, "Make the package again")


def _stored(stream):
    for at in range(0, len(stream), _STEP):
        yield bytes(stream[at : at + _STEP])


def _inflated(stream):
    """The content of a deflated stream in pieces of bounded size. Raises zlib.error for anything else."""
    decompressor = zlib.decompressobj(-zlib.MAX_WBITS)
    for at in range(0, len(stream), _STEP):
        if decompressor.eof:
            raise zlib.error("there is more behind its end")
        waiting = stream[at : at + _STEP]
        while waiting and not decompressor.eof:
            yield decompressor.decompress(waiting, _STEP)
            waiting = decompressor.unconsumed_tail
    while not decompressor.eof:
        # The end may still wait behind the last byte of content.
        rest = decompressor.decompress(b"", _STEP)
        if not rest and not decompressor.eof:
            raise zlib.error("it has no end")
        yield rest
    if decompressor.unused_data:
        raise zlib.error("there is more behind its end")


def _checked(entry, path):
    """The content in pieces. Raises PackageError if its size or checksum differs from the header."""
    size, crc = 0, 0
    try:
        for piece in _stored(entry.stream) if entry.method == STORED else _inflated(entry.stream):
            size, crc = size + len(piece), zlib.crc32(piece, crc)
            if size > entry.size:
                break
            yield piece
    except zlib.error:
        size = -1
    if size != entry.size:
        _damaged(path, "its compressed data is damaged or has another size than its header says")
    if crc != entry.crc:
        _damaged(path, "its content has another checksum than its header says")


def content(entry, path, most):
    """The bytes of an entry of limited size. Raises PackageError."""
    if entry.size > most:
        _damaged(path, f"it has {entry.size} bytes; such a file is looked at up to {most}")
    return b"".join(_checked(entry, path))


def whole_digest(entry, path):
    """The digest of a whole entry, in the form of the blocks' digests. Raises PackageError."""
    digest = hashlib.sha256()
    for piece in _checked(entry, path):
        digest.update(piece)
    return base64.b64encode(digest.digest()).decode("ascii")


def digests(entry, path):
    """The digests of an entry's blocks. Raises PackageError."""
    found, waiting = [], bytearray()
    for piece in _checked(entry, path):
        waiting += piece
        while len(waiting) >= blocks.BLOCK:
            found.append(blocks.digest(waiting[: blocks.BLOCK]))
            del waiting[: blocks.BLOCK]
    return found + ([blocks.digest(waiting)] if waiting else [])
