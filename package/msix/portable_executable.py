"""Reads what this project checks of a Windows executable: header fields, imports, exports, resources, sections.

Every table is read up to a limit: a damaged file may contain cycles, or a few bytes that describe many."""

import struct
from dataclasses import dataclass

EXPORTS, IMPORTS, RESOURCES, RELOCATIONS, DOT_NET, DELAYED_IMPORTS = 0, 1, 2, 5, 14, 13
VERSION_RESOURCE, MANIFEST_RESOURCE = 16, 24

EXECUTABLE, WRITABLE = 0x20000000, 0x80000000

# Windows loads no more sections.
MOST_SECTIONS = 96
# No program of this project has more names than this, nor a longer one.
_MOST_NAMES = 65536
_LONGEST_NAME = 512

# The search for a text stops after so many others with the same end.
_MOST_TAILS = 10000

_PE32, _PE32_PLUS = 0x10B, 0x20B


@dataclass(frozen=True)
class Section:
    name: str
    size: int
    address: int
    raw_size: int
    raw: int
    flags: int

    @property
    def end(self):
        return self.address + max(self.size, self.raw_size)

    def holds(self, address):
        return self.address <= address < self.end


class PortableExecutable:
    """The bytes of a PE file. Raises ValueError for anything else, also if a table lies outside the file."""

    def __init__(self, data):
        self.data = data
        self._names_left = 0
        (header,) = self._unpack("<I", 0x3C)
        if data[:2] != b"MZ" or data[header : header + 4] != b"PE\0\0":
            raise ValueError("it is no Windows executable")
        self.machine, section_count, _, _, self.symbol_count, optional_size, self.flags = self._unpack(
            "<HHIIIHH", header + 4
        )
        optional = header + 24
        (magic,) = self._unpack("<H", optional)
        if magic not in (_PE32, _PE32_PLUS):
            raise ValueError("it is neither PE32 nor PE32+")
        self.is_64_bit = magic == _PE32_PLUS
        (self.entry_point,) = self._unpack("<I", optional + 16)
        (self.section_alignment,) = self._unpack("<I", optional + 32)
        self.subsystem_version = self._unpack("<HH", optional + 48)
        self.image_size, self.headers_size = self._unpack("<II", optional + 56)
        self.subsystem, self.characteristics = self._unpack("<HH", optional + 68)
        count_at = optional + (108 if self.is_64_bit else 92)
        (self._directory_count,) = self._unpack("<I", count_at)
        self._directories = count_at + 4
        if section_count > MOST_SECTIONS:
            raise ValueError(f"it has {section_count} sections; Windows loads {MOST_SECTIONS}")
        table = optional + optional_size
        self.sections = [self._section(table + 40 * i) for i in range(section_count)]
        # Otherwise a few bytes would be looked through many times.
        if sum(section.raw_size for section in self.sections) > len(data):
            raise ValueError("its sections have more bytes than the file: it is cut off, or they overlap")

    def _unpack(self, layout, at):
        if at < 0 or at + struct.calcsize(layout) > len(self.data):
            raise ValueError(f"it is cut off: a table leads to byte {at}")
        return struct.unpack_from(layout, self.data, at)

    def _section(self, at):
        name = self.data[at : at + 8].rstrip(b"\0").decode("latin-1")
        size, address, raw_size, raw = self._unpack("<IIII", at + 8)
        (flags,) = self._unpack("<I", at + 36)
        return Section(name, size, address, raw_size, raw, flags)

    def section_of(self, address):
        for section in self.sections:
            if section.holds(address):
                return section
        raise ValueError(f"its address {address:#x} lies in no section")

    def _offset(self, address):
        section = self.section_of(address)
        return address - section.address + section.raw

    def directory(self, index):
        """Address and size of a data directory; both zero when there is none."""
        return self._unpack("<II", self._directories + 8 * index) if index < self._directory_count else (0, 0)

    def _count_name(self):
        self._names_left -= 1
        if self._names_left < 0:
            raise ValueError("it has more names in its tables than a program has")

    def _text(self, address):
        self._count_name()
        start = self._offset(address)
        end = self.data.find(b"\0", start, start + _LONGEST_NAME)
        if end < 0:
            raise ValueError("a name in it has no end")
        return self.data[start:end].decode("latin-1")

    def _rows(self, layout, at):
        """The rows of a table that ends with a row of zeros. Each row has a name, of which there are not too many."""
        size = struct.calcsize(layout)
        while any(values := self._unpack(layout, at)):
            yield values
            at += size

    def _functions(self, table):
        """The names in a table of imported functions; those imported by number as #number."""
        layout, top = ("<Q", 63) if self.is_64_bit else ("<I", 31)
        for (value,) in self._rows(layout, self._offset(table)):
            if value >> top:
                self._count_name()
                yield f"#{value & 0xFFFF}"
            else:
                yield self._text((value & 0x7FFFFFFF) + 2)

    def imports(self):
        """DLL in lower case -> names of the functions, those loaded on first use included."""
        self._names_left = _MOST_NAMES
        found = {}
        for index, layout, names, dll in ((IMPORTS, "<5I", 0, 3), (DELAYED_IMPORTS, "<8I", 4, 1)):
            address, _ = self.directory(index)
            if address:
                for row in self._rows(layout, self._offset(address)):
                    # A table that was bound beforehand keeps its names in the second one only.
                    table = row[names] or row[4]
                    found.setdefault(self._text(row[dll]).lower(), []).extend(self._functions(table))
        return found

    def exports(self):
        """The names of the exported functions."""
        self._names_left = _MOST_NAMES
        address, _ = self.directory(EXPORTS)
        if not address:
            return []
        at = self._offset(address)
        (count,) = self._unpack("<I", at + 24)
        (names,) = self._unpack("<I", at + 32)
        if count > _MOST_NAMES:
            raise ValueError("it claims to export more functions than a program has")
        table = self._offset(names) if count else 0
        return [self._text(self._unpack("<I", table + 4 * i)[0]) for i in range(count)]

    def _resource_entries(self, at):
        named, numbered = self._unpack("<HH", at + 12)
        return [self._unpack("<II", at + 16 + 8 * i) for i in range(named + numbered)]

    def resource_types(self):
        """The numbers of the resource types in the program."""
        address, _ = self.directory(RESOURCES)
        return [number for number, _ in self._resource_entries(self._offset(address))] if address else []

    def resource(self, wanted):
        """The content of the first resource of a type, or None."""
        address, _ = self.directory(RESOURCES)
        if not address:
            return None
        root = self._offset(address)
        found = [place for number, place in self._resource_entries(root) if number == wanted]
        # Below the type come the name and the language; the highest bit marks a table.
        for _ in range(2):
            if not found or not found[0] >> 31:
                return None
            found = [place for _, place in self._resource_entries(root + (found[0] & 0x7FFFFFFF))]
        if not found or found[0] >> 31:
            return None
        data, size = self._unpack("<II", root + found[0])
        start = self._offset(data)
        return self.data[start : start + size]

    def has_text(self, text):
        """Whether a wide literal of exactly this text is in the data that the program only reads.

        A match behind two more wide characters is the tail of a longer literal. One character proves nothing: the end
        of a narrow literal looks the same."""
        resources, _ = self.directory(RESOURCES)
        return any(
            self._has_literal(text, section)
            for section in self.sections
            if not section.flags & (EXECUTABLE | WRITABLE) and not section.holds(resources)
        )

    def _has_literal(self, text, section):
        wanted = f"{text}\0".encode("utf-16-le")
        at, end = section.raw - 1, section.raw + section.raw_size
        for _ in range(_MOST_TAILS):
            at = self.data.find(wanted, at + 1, end)
            if at < 0:
                return False
            before = self.data[max(at - 4, section.raw) : at]
            if len(before) < 4 or before[1] or before[3] or not (before[0] and before[2]):
                return True
        return False
