"""Reads what this project checks of a Windows executable: header fields, imports, exports, resources, sections."""

import struct
from dataclasses import dataclass

EXPORTS, IMPORTS, RESOURCES, DELAYED_IMPORTS = 0, 1, 2, 13
VERSION_RESOURCE, MANIFEST_RESOURCE = 16, 24

# More of a table than this is no program that the project makes, but a file that leads its reader in circles.
LONGEST_TABLE = 65536


@dataclass(frozen=True)
class Section:
    name: str
    size: int
    address: int
    raw_size: int
    raw: int
    flags: int

    def holds(self, address):
        return self.address <= address < self.address + max(self.size, self.raw_size)


class PortableExecutable:
    """The bytes of a PE32+ file. Raises ValueError for anything else, also where a table leads out of the file."""

    def __init__(self, data):
        self.data = data
        (header,) = self._unpack("<I", 0x3C)
        if data[:2] != b"MZ" or data[header : header + 4] != b"PE\0\0":
            raise ValueError("it is no Windows executable")
        optional = header + 24
        (magic,) = self._unpack("<H", optional)
        if magic != 0x20B:
            raise ValueError("it is not PE32+ (64-bit)")
        (self.machine, section_count) = self._unpack("<HH", header + 4)
        (self.symbol_count,) = self._unpack("<I", header + 16)
        (optional_size,) = self._unpack("<H", header + 20)
        (self.section_alignment,) = self._unpack("<I", optional + 32)
        self.subsystem_version = self._unpack("<HH", optional + 48)
        (self.subsystem, self.characteristics) = self._unpack("<HH", optional + 68)
        (self._directory_count,) = self._unpack("<I", optional + 108)
        self._directories = optional + 112
        table = optional + optional_size
        self.sections = [self._section(table + 40 * i) for i in range(section_count)]

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

    def _text(self, address):
        start = self._offset(address)
        end = self.data.find(b"\0", start)
        if end < 0:
            raise ValueError("a name in it has no end")
        return self.data[start:end].decode("latin-1")

    def _rows(self, layout, at):
        """The rows of a table that ends with a row of zeros."""
        for row in range(LONGEST_TABLE):
            values = self._unpack(layout, at + row * struct.calcsize(layout))
            if not any(values):
                return
            yield values
        raise ValueError("a table in it has no end")

    def _functions(self, table):
        """The names in a table of imported functions; those imported by number as #number."""
        for (value,) in self._rows("<Q", self._offset(table)):
            yield f"#{value & 0xFFFF}" if value >> 63 else self._text((value & 0x7FFFFFFF) + 2)

    def imports(self):
        """DLL in lower case -> names of the functions, those loaded on first use included."""
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
        address, _ = self.directory(EXPORTS)
        if not address:
            return []
        at = self._offset(address)
        (count,) = self._unpack("<I", at + 24)
        (names,) = self._unpack("<I", at + 32)
        if count > LONGEST_TABLE:
            raise ValueError("it claims to export more functions than a program has")
        return [self._text(self._unpack("<I", self._offset(names) + 4 * i)[0]) for i in range(count)]

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

    def file_version(self):
        """The version in the version resource as 1.2.3.4, or None."""
        resource = self.resource(VERSION_RESOURCE) or b""
        at = resource.find(struct.pack("<I", 0xFEEF04BD))
        if at < 0 or at + 16 > len(resource):
            return None
        high, low = struct.unpack_from("<II", resource, at + 8)
        return f"{high >> 16}.{high & 0xFFFF}.{low >> 16}.{low & 0xFFFF}"
