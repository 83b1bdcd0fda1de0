"""Writes the archive: the same entries give the same bytes."""

import struct
import zlib
from dataclasses import dataclass

from .problem import PackageError

STORED, DEFLATED = 0, 8

# ZIP64's version: the end of the archive is always written in that form, as Windows' own packer does.
VERSION = 45
# The earliest date that the format knows, 1 January 1980, 00:00, so that no build's time gets in.
DOS_DATE, DOS_TIME = 0x0021, 0

# Beyond these a header would need ZIP64's extra fields, which packages must not have in their central directory.
LARGEST_SIZE = 0xFFFFFFFE
MOST_ENTRIES = 0xFFFE

LOCAL_HEADER_SIZE = 30


@dataclass(frozen=True)
class Entry:
    name: str  # as it stands in the archive: ASCII, percent-encoded
    method: int
    size: int
    crc: int
    stream: bytes  # the content as the method has it


def header_size(name):
    """Bytes of an entry's local header; there are no extra fields."""
    return LOCAL_HEADER_SIZE + len(name)


def stored(name, data):
    return Entry(name, STORED, len(data), zlib.crc32(data), data)


def deflated(name, data, stream):
    return Entry(name, DEFLATED, len(data), zlib.crc32(data), stream)


def _common(entry):
    """The fields that the local header and the central directory share."""
    flags = 0
    return struct.pack(
        "<HHHHHIIIHH",
        VERSION, flags, entry.method, DOS_TIME, DOS_DATE, entry.crc, len(entry.stream), entry.size, len(entry.name), 0,
    )  # fmt: skip


def _local(entry):
    return b"PK\3\4" + _common(entry) + entry.name.encode("ascii") + entry.stream


def _central(entry, offset):
    comment, disk, internal, external = 0, 0, 0, 0
    return (
        b"PK\1\2"
        + struct.pack("<H", VERSION)
        + _common(entry)
        + struct.pack("<HHHII", comment, disk, internal, external, offset)
        + entry.name.encode("ascii")
    )


def _end(count, size, offset):
    """ZIP64's record and locator, then the old record, all of whose numbers say: see there."""
    record_size = 44  # of what follows it
    record = b"PK\6\6" + struct.pack("<QHHIIQQQQ", record_size, VERSION, VERSION, 0, 0, count, count, size, offset)
    locator = b"PK\6\7" + struct.pack("<IQI", 0, offset + size, 1)
    old = b"PK\5\6" + struct.pack("<HHHHIIH", 0, 0, 0xFFFF, 0xFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0)
    return record + locator + old


def write(entries):
    """The archive of the entries, in their order. Raises PackageError for what needs more than the format gives."""
    archive, directory = bytearray(), bytearray()
    for entry in entries:
        if max(entry.size, len(entry.stream), len(archive)) > LARGEST_SIZE or len(entries) > MOST_ENTRIES:
            raise PackageError(entry.name, "the package would have more than 4 GB", "Leave files out of it")
        directory += _central(entry, len(archive))
        archive += _local(entry)
    return bytes(archive + directory + _end(len(entries), len(directory), len(archive)))
