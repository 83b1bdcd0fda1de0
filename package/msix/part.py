"""What a part of a package holds."""

import zlib

from . import blocks
from .problem import PackageError
from .zip_writer import STORED


def content(entry, path):
    """The bytes of an entry. Raises PackageError when they are not what they were when it was written."""
    data = entry.stream if entry.method == STORED else blocks.inflate(entry.stream, entry.size)
    if data is None or len(data) != entry.size:
        what = "its compressed data is damaged or has another size than its header says"
    elif zlib.crc32(data) != entry.crc:
        what = "its content has another checksum than its header says"
    else:
        return data
    raise PackageError(path, what, "Make the package anew")
