"""Reads what this project checks of a Windows executable: header fields, imports, resources, sections."""

import struct

DATA_DIRECTORY_IMPORTS = 1
DATA_DIRECTORY_RESOURCES = 2


class PortableExecutable:
    """A PE32+ file, read whole. Raises ValueError for anything else."""

    def __init__(self, path):
        with open(path, "rb") as file:
            self.data = file.read()
        (self._header,) = self._unpack("<I", 0x3C)
        if self.data[:2] != b"MZ" or self.data[self._header : self._header + 4] != b"PE\0\0":
            raise ValueError(f"{path} is no Windows executable")
        self._optional = self._header + 24
        (magic,) = self._unpack("<H", self._optional)
        if magic != 0x20B:
            raise ValueError(f"{path} is not PE32+ (64-bit)")
        (self.machine, section_count) = self._unpack("<HH", self._header + 4)
        (optional_size,) = self._unpack("<H", self._header + 20)
        (self.subsystem, self.characteristics) = self._unpack("<HH", self._optional + 68)
        self.subsystem_version = self._unpack("<HH", self._optional + 48)
        table = self._optional + optional_size
        self.sections = [self._section(table + 40 * i) for i in range(section_count)]
        self.symbol_count = self._unpack("<I", self._header + 16)[0]

    def _unpack(self, layout, offset):
        return struct.unpack_from(layout, self.data, offset)

    def _section(self, at):
        name = self.data[at : at + 8].rstrip(b"\0").decode()
        size, address, raw_size, raw = self._unpack("<IIII", at + 8)
        (flags,) = self._unpack("<I", at + 36)
        return {"name": name, "size": size, "address": address, "raw": raw, "raw_size": raw_size, "flags": flags}

    def _offset(self, address):
        for section in self.sections:
            if section["address"] <= address < section["address"] + max(section["size"], section["raw_size"]):
                return address - section["address"] + section["raw"]
        raise ValueError(f"address {address:#x} lies in no section")

    def _directory(self, index):
        return self._unpack("<II", self._optional + 112 + 8 * index)

    def imported_dlls(self):
        """The names of the DLLs that the loader loads with the program, in lower case."""
        address, _ = self._directory(DATA_DIRECTORY_IMPORTS)
        at, names = self._offset(address), []
        while True:
            name_address = self._unpack("<5I", at)[3]
            if name_address == 0:
                return names
            start = self._offset(name_address)
            names.append(self.data[start : self.data.index(b"\0", start)].decode().lower())
            at += 20

    def resource_types(self):
        """The numbers of the resource types in the program (16: version, 24: manifest)."""
        address, size = self._directory(DATA_DIRECTORY_RESOURCES)
        if size == 0:
            return []
        root = self._offset(address)
        named, numbered = self._unpack("<HH", root + 12)
        return [self._unpack("<I", root + 16 + 8 * (named + i))[0] for i in range(numbered)]
