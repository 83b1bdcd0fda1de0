"""Reads an archive strictly: no data between, before or after the parts, and equal headers of each entry.

Windows' own packer leaves the sizes of an entry to a descriptor behind its data, and gives ZIP64's fields also where
the sizes are small: both are read."""

import struct
from dataclasses import dataclass

from . import limits
from .problem import PackageError
from .zip_writer import DEFLATED, LOCAL_HEADER_SIZE, STORED

CENTRAL_HEADER_SIZE = 46
END_SIZE, LOCATOR_SIZE, ZIP64_END_SIZE = 22, 20, 56

# The versions of the format that Windows takes as needed: plain, and with ZIP64.
VERSIONS = (20, 45)

_DESCRIPTOR = 0x0008  # the flag of an entry whose checksum and sizes stand behind its data
_ZIP64_FIELD = 1
_UNSET = 0xFFFFFFFF


@dataclass(frozen=True)
class ReadEntry:
    name: str  # as it stands in the archive
    method: int
    size: int
    crc: int
    header_size: int  # of the local header, with name and extra fields
    stream: memoryview


@dataclass(frozen=True)
class _Header:
    """What the two headers of an entry share."""

    version: int
    flags: int
    method: int
    time: int
    date: int
    crc: int
    compressed: int
    size: int
    name_size: int
    extra_size: int


def _damaged(where, what):
    raise PackageError(where, what, "The file is damaged or was not made as a package: get or make it again")


class _Reader:
    def __init__(self, data, where):
        self._data = memoryview(data)
        self._where = where

    def entries(self):
        count, size, offset, end = self._directory()
        if count > limits.ENTRIES:
            _damaged(self._where, f"it has {count} files; {limits.ENTRIES} are looked at")
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

    def _begins(self, magic, at):
        return at >= 0 and self._data[at : at + 4] == magic

    def _directory(self):
        """Number of entries, size and offset of the central directory, and where the records of its end begin."""
        end = len(self._data) - END_SIZE
        if not self._begins(b"PK\5\6", end):
            _damaged(self._where, "it does not end as a ZIP archive without a comment does")
        disk, start_disk, here, count, size, offset, comment = self._unpack("<HHHHIIH", end + 4, "its end record")
        if disk or start_disk or comment or here != count:
            _damaged(self._where, "its end record tells of several disks or of a comment")
        locator = end - LOCATOR_SIZE
        if self._begins(b"PK\6\7", locator):
            return self._zip64_directory(locator, (count, size, offset))
        return count, size, offset, end

    def _zip64_directory(self, locator, old):
        disk, at, disks = self._unpack("<IQI", locator + 4, "its ZIP64 locator")
        if disk or disks != 1 or at + ZIP64_END_SIZE != locator or not self._begins(b"PK\6\6", at):
            _damaged(self._where, "its ZIP64 end record is not where the locator says")
        fields = self._unpack("<QHHIIQQQQ", at + 4, "its ZIP64 end record")
        record_size, _, needed, disk, start_disk, here, count, size, offset = fields
        if record_size != ZIP64_END_SIZE - 12 or needed not in VERSIONS or disk or start_disk or here != count:
            _damaged(self._where, "its ZIP64 end record contradicts itself")
        for value, short, unset in zip((count, size, offset), old, (0xFFFF, _UNSET, _UNSET)):
            if short not in (unset, value):
                _damaged(self._where, "its two end records differ")
        return count, size, offset, at

    def _entry(self, at, place, end):
        """The entry at `at` of the directory, whose data must be at `place`; and both places of the next one."""
        if at + CENTRAL_HEADER_SIZE > end or not self._begins(b"PK\1\2", at):
            _damaged(self._where, "its central directory has fewer entries than its end record says")
        shared = _Header(*self._unpack("<HHHHHIIIHH", at + 6, "its central directory"))
        comment, disk, _, _, offset = self._unpack("<HHHII", at + 32, "its central directory")
        name_at = at + CENTRAL_HEADER_SIZE
        extra_at = name_at + shared.name_size
        next_at = extra_at + shared.extra_size
        if next_at > end:
            _damaged(self._where, "it ends within its central directory")
        name = self._name(name_at, shared.name_size)
        if comment or disk:
            _damaged(name, "its entry in the central directory has a comment or is on another disk")
        size, compressed, offset = self._wide(
            name, extra_at, shared.extra_size, (shared.size, shared.compressed, offset)
        )
        if offset != place:
            _damaged(name, f"its data begins at byte {offset} instead of right behind the entry before, at {place}")
        entry, next_place = self._local(name, shared, (shared.crc, compressed, size), offset)
        return entry, next_at, next_place

    def _wide(self, name, at, length, short):
        """Size, compressed size and offset of an entry; those that are unset in its header are in ZIP64's field."""
        if not length:
            return short
        kind, field_size = self._unpack("<HH", at, "its central directory") if length >= 4 else (0, 0)
        if kind != _ZIP64_FIELD or field_size + 4 != length or field_size not in (8, 16, 24):
            _damaged(name, "its entry in the central directory has an extra field that is not ZIP64's")
        values = list(self._unpack(f"<{field_size // 8}Q", at + 4, "its central directory"))
        if _UNSET not in short:
            # The header contains all of it already.
            if values != list(short[: len(values)]):
                _damaged(name, "its ZIP64 field contradicts its header")
            return short
        if len(values) != short.count(_UNSET):
            _damaged(name, "its ZIP64 field has other values than those that its header leaves to it")
        return tuple(values.pop(0) if value == _UNSET else value for value in short)

    def _name(self, at, size):
        try:
            return bytes(self._data[at : at + size]).decode("ascii")
        except UnicodeDecodeError:
            _damaged(self._where, "an entry has a name that is not ASCII")

    def _local(self, name, central, told, at):
        """The entry whose local header is at `at`, and what follows it. `told`: checksum, compressed size, size."""
        if not self._begins(b"PK\3\4", at):
            _damaged(name, f"there is no local header at byte {at}")
        local = _Header(*self._unpack("<HHHHHIIIHH", at + 4, f"the local header of {name}"))
        self._compare(name, local, central, told)
        if self._name(at + LOCAL_HEADER_SIZE, local.name_size) != name:
            _damaged(name, "its local header has another name")
        header_size = LOCAL_HEADER_SIZE + local.name_size + local.extra_size
        crc, compressed, size = told
        start = at + header_size
        end = start + compressed
        if end > len(self._data):
            _damaged(name, "the file ends within it")
        entry = ReadEntry(name, local.method, size, crc, header_size, self._data[start:end])
        return entry, end + self._descriptor_size(name, local, told, end)

    def _compare(self, name, local, central, told):
        same = ("version", "flags", "method", "time", "date", "name_size")
        if any(getattr(local, field) != getattr(central, field) for field in same):
            _damaged(name, "its local header and its entry in the central directory differ")
        if local.version not in VERSIONS:
            _damaged(name, f"it needs version {local.version} of the format; Windows takes 20 and 45")
        if local.flags & ~_DESCRIPTOR:
            _damaged(name, f"its flags are {local.flags:#06x}; packages have none but {_DESCRIPTOR:#06x}")
        if local.method not in (STORED, DEFLATED):
            _damaged(name, f"its compression method is {local.method}, and neither stored nor deflated")
        here = (local.crc, local.compressed, local.size)
        left_open = ((0, 0, 0), (0, _UNSET, _UNSET)) if local.flags else ()
        if here != told and here not in left_open:
            _damaged(name, "its local header and its entry in the central directory differ")

    def _descriptor_size(self, name, local, told, at):
        """Bytes of the descriptor at `at`, which repeats the central directory."""
        if not local.flags:
            return 0
        for layout in ("<IQQ", "<III"):
            size = 4 + struct.calcsize(layout)
            fits = self._begins(b"PK\7\x08", at) and at + size <= len(self._data)
            if fits and struct.unpack_from(layout, self._data, at + 4) == told:
                return size
        _damaged(name, "the descriptor behind its data is missing or contradicts its entry in the central directory")


def read(data, where):
    """The entries of an archive in their order. `where` names it in messages. Raises PackageError."""
    return _Reader(data, where).entries()
