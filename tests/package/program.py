"""Makes small Windows executables whose headers and tables say what a test wants. They do not run."""

import struct

SECTION, RAW = 0x1000, 0x400
READABLE, WRITABLE, EXECUTABLE = 0x40000000, 0x80000000, 0x20000000
GOOD_CHARACTERISTICS = 0x1160  # APPCONTAINER, NX_COMPAT, DYNAMIC_BASE, HIGH_ENTROPY_VA
GOOD_IMPORTS = {"api-ms-win-core-file-l1-1-0.dll": ["CreateFileW", "WriteFile"]}
WINDOWS_10_MANIFEST = (
    b'<assembly xmlns="urn:schemas-microsoft-com:asm.v1"><compatibility><application>'
    b'<supportedOS Id="{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"/></application></compatibility></assembly>'
)


class _Section:
    """The content of the only section; what is added gets an address."""

    def __init__(self):
        self.data = bytearray()

    def add(self, data):
        self.data += b"\0" * (-len(self.data) % 8)
        address = SECTION + len(self.data)
        self.data += data
        return address


def _text(text):
    return text.encode("ascii") + b"\0"


def _imports(section, imports, delayed):
    rows = b""
    for dll, functions in imports.items():
        names = [section.add(b"\0\0" + _text(name)) for name in functions]
        table = section.add(struct.pack(f"<{len(names) + 1}Q", *names, 0))
        name = section.add(_text(dll))
        rows += struct.pack("<8I", 1, name, 0, table, table, 0, 0, 0) if delayed else struct.pack(
            "<5I", table, 0, 0, name, table
        )
    return section.add(rows + b"\0" * (32 if delayed else 20)) if imports else 0


def _exports(section, names):
    places = [section.add(_text(name)) for name in names]
    table = section.add(struct.pack(f"<{len(places)}I", *places))
    count = len(places)
    return section.add(struct.pack("<IIHHIIIIIII", 0, 0, 0, 0, 0, 1, count, count, table, table, table))


def _resources(section, found):
    """Type -> data, each of one name and one language."""
    section.add(b"")
    root_size = 16 + 8 * len(found)
    root, tables, entries = b"", b"", b""
    entries_at = root_size + 48 * len(found)
    data = {kind: section.add(content) for kind, content in found.items()}
    for index, (kind, content) in enumerate(sorted(found.items())):
        level = root_size + 48 * index
        root += struct.pack("<II", kind, 0x80000000 | level)
        tables += struct.pack("<IIHHHHII", 0, 0, 0, 0, 0, 1, 1, 0x80000000 | level + 24)
        tables += struct.pack("<IIHHHHII", 0, 0, 0, 0, 0, 1, 0x409, entries_at + 16 * index)
        entries += struct.pack("<IIII", data[kind], len(content), 0, 0)
    return section.add(struct.pack("<IIHHHH", 0, 0, 0, 0, 0, len(found)) + root + tables + entries)


def _version(numbers):
    major, minor, build, revision = numbers
    return struct.pack("<4I", 0xFEEF04BD, 0x10000, major << 16 | minor, build << 16 | revision)


def make_program(
    machine=0x8664,
    magic=0x20B,
    subsystem=2,
    subsystem_version=(10, 0),
    characteristics=GOOD_CHARACTERISTICS,
    alignment=4096,
    section_flags=READABLE,
    imports=GOOD_IMPORTS,
    delayed_imports=None,
    exports=(),
    strings=(),
    file_version=(1, 0, 0, 0),
    manifest=WINDOWS_10_MANIFEST,
):
    section = _Section()
    for text in strings:
        section.add(b"\0\0" + text.encode("utf-16-le") + b"\0\0")
    directories = [(0, 0)] * 16
    directories[0] = (_exports(section, exports), 40) if exports else (0, 0)
    directories[1] = (_imports(section, imports, False), 40)
    directories[13] = (_imports(section, delayed_imports or {}, True), 64)
    resources = {16: _version(file_version)} if file_version else {}
    resources |= {24: manifest} if manifest else {}
    directories[2] = (_resources(section, resources), 1) if resources else (0, 0)
    optional = struct.pack("<HBBIIIII", magic, 14, 0, 0, 0, 0, 0, 0)
    optional += struct.pack("<QIIHHHHHHI", 0x140000000, alignment, 512, 6, 0, 0, 0, *subsystem_version, 0)
    optional += struct.pack("<IIIHHQQQQII", 0x10000, RAW, 0, subsystem, characteristics, 0, 0, 0, 0, 0, 16)
    optional += b"".join(struct.pack("<II", *directory) for directory in directories)
    header = b"MZ" + b"\0" * 58 + struct.pack("<I", 64)
    header += b"PE\0\0" + struct.pack("<HHIIIHH", machine, 1, 0, 0, 0, len(optional), 0x22) + optional
    size = len(section.data)
    header += struct.pack("<8sIIIIIIHHI", b".rdata", size, SECTION, size, RAW, 0, 0, 0, 0, section_flags)
    return header.ljust(RAW, b"\0") + bytes(section.data)
