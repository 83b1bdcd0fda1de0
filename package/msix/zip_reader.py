"""Reads an archive strictly: nothing between, before or behind what packages have, both headers of an entry alike."""

import struct
from dataclasses import dataclass

from .problem import PackageError
from .zip_writer import DEFLATED, LOCAL_HEADER_SIZE, STORED, VERSION

CENTRAL_HEADER_SIZE = 46
END_SIZE, LOCATOR_SIZE, ZIP64_END_SIZE = 22, 20, 56


@dataclass(frozen=True)
class ReadEntry:
    name: str  # as it stands in the archive
    method: int
    size: int
    crc: int
    header_size: int  # of the local header, with name and extra fields
    stream: bytes


def _damaged(where, what):
    raise PackageError(where, what, "The file is damaged or was not made as a package: get or make it anew")


class _Reader:
    def __init__(self, data, where):
        self._data = data
        self._where = where

    def entries(self):
        count, size, offset, end = self._directory()
        if offset + size != end:
            _damaged(self._where, "its central directory does not end where the end record begins")
        found, at, place = [], offset, 0
        for _ in range(count):
            entry, at, place = self._entry(at, place, end)
            found.append(entry)
        if at != end:
            _damaged(self._where, "its central directory has more bytes than its entries")
        if place != offset:
            _damaged(self._where, f"bytes {place} to {offset} belong to no entry")
        return found

    def _unpack(self, layout, at, what):
        if at < 0 or at + struct.calcsize(layout) > len(self._data):
            _damaged(self._where, f"it ends within {what}")
        return struct.unpack_from(layout, self._data, at)

    def _directory(self):
        """Number of entries, size and offset of the central directory, and where the records of its end begin."""
        end = len(self._data) - END_SIZE
        if end < 0 or self._data[end : end + 4] != b"PK\5\6":
            _damaged(self._where, "it does not end as a ZIP archive without a comment does")
        disk, start_disk, here, count, size, offset, comment = self._unpack("<HHHHIIH", end + 4, "its end record")
        if disk or start_disk or comment or here != count:
            _damaged(self._where, "its end record tells of several disks or of a comment")
        locator = end - LOCATOR_SIZE
        if locator >= 0 and self._data[locator : locator + 4] == b"PK\6\7":
            return self._zip64_directory(locator, (count, size, offset))
        return count, size, offset, end

    def _zip64_directory(self, locator, old):
        disk, at, disks = self._unpack("<IQI", locator + 4, "its ZIP64 locator")
        if disk or disks != 1 or at + ZIP64_END_SIZE != locator or self._data[at : at + 4] != b"PK\6\6":
            _damaged(self._where, "its ZIP64 end record is not where the locator says")
        fields = self._unpack("<QHHIIQQQQ", at + 4, "its ZIP64 end record")
        here, count, size, offset = fields[5:]
        if fields[:5] != (ZIP64_END_SIZE - 12, VERSION, VERSION, 0, 0) or here != count:
            _damaged(self._where, "its ZIP64 end record contradicts itself")
        for value, short, unset in zip((count, size, offset), old, (0xFFFF, 0xFFFFFFFF, 0xFFFFFFFF)):
            if short not in (unset, value):
                _damaged(self._where, "its two end records differ")
        return count, size, offset, at

    def _entry(self, at, place, end):
        """The entry at `at` of the directory, whose data must be at `place`; and both places of the next one."""
        if at + CENTRAL_HEADER_SIZE > end or self._data[at : at + 4] != b"PK\1\2":
            _damaged(self._where, "its central directory has fewer entries than its end record says")
        shared = self._unpack("<HHHHHIIIHH", at + 6, "its central directory")
        comment, disk, _, _, offset = self._unpack("<HHHII", at + 32, "its central directory")
        name_size, extra = shared[-2:]
        next_at = at + CENTRAL_HEADER_SIZE + name_size
        name = self._name(at + CENTRAL_HEADER_SIZE, name_size)
        if extra or comment or disk:
            _damaged(name, "its entry in the central directory has an extra field or a comment")
        if offset != place:
            _damaged(name, f"its data begins at byte {offset} instead of right behind the entry before, at {place}")
        entry, next_place = self._local(name, shared, offset)
        return entry, next_at, next_place

    def _name(self, at, size):
        try:
            return self._data[at : at + size].decode("ascii")
        except UnicodeDecodeError:
            _damaged(self._where, "an entry has a name that is not ASCII")

    def _local(self, name, central, at):
        if self._data[at : at + 4] != b"PK\3\4":
            _damaged(name, f"there is no local header at byte {at}")
        local = self._unpack("<HHHHHIIIHH", at + 4, f"the local header of {name}")
        if local[:-1] != central[:-1]:
            _damaged(name, "its local header and its entry in the central directory differ")
        _, flags, method, _, _, crc, compressed, size, name_size, extra = local
        if flags:
            _damaged(name, f"its flags are {flags:#06x}; packages here have none")
        if method not in (STORED, DEFLATED):
            _damaged(name, f"its compression method is {method}, and neither stored nor deflated")
        if self._name(at + LOCAL_HEADER_SIZE, name_size) != name:
            _damaged(name, "its local header has another name")
        header_size = LOCAL_HEADER_SIZE + name_size + extra
        start = at + header_size
        if start + compressed > len(self._data):
            _damaged(name, "the file ends within it")
        stream = self._data[start : start + compressed]
        return ReadEntry(name, method, size, crc, header_size, stream), start + compressed


def read(data, where):
    """The entries of an archive in their order. `where` is what messages call it. Raises PackageError."""
    return _Reader(data, where).entries()
