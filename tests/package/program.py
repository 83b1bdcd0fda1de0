"""Makes small Windows executables whose headers and tables say what a test wants. They do not run."""

import struct

PAGE, SECTION, RAW = 0x1000, 0x1000, 0x400
READABLE, WRITABLE, EXECUTABLE = 0x40000000, 0x80000000, 0x20000000
GOOD_CHARACTERISTICS = 0x1160  # APPCONTAINER, NX_COMPAT, DYNAMIC_BASE, HIGH_ENTROPY_VA
GOOD_IMPORTS = {"api-ms-win-core-file-l1-1-0.dll": ["CreateFileW", "WriteFile"]}
WINDOWS_10_MANIFEST = (
    b'<assembly xmlns="urn:schemas-microsoft-com:asm.v1"><compatibility><application>'
    b'<supportedOS Id="{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"/></application></compatibility></assembly>'
)


class _Section:
    """The content of a section; what is added gets an address."""

    def __init__(self, address=SECTION):
        self.address = address
        self.data = bytearray()

    def add(self, data):
        self.data += b"\0" * (-len(self.data) % 8)
        address = self.address + len(self.data)
        self.data += data
        return address


def _text(text):
    return text.encode("ascii") + b"\0"


def _imports(section, imports, delayed, is_64_bit):
    rows = b""
    for dll, functions in imports.items():
        names = [section.add(b"\0\0" + _text(name)) for name in functions]
        table = section.add(struct.pack(f"<{len(names) + 1}{'Q' if is_64_bit else 'I'}", *names, 0))
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


def _aligned(data, size):
    return data + b"\0" * (-len(data) % size)


def _version_node(key, value, children=b"", is_text=0):
    size = len(value) // 2 if is_text else len(value)
    head = _aligned(struct.pack("<HHH", 0, size, is_text) + f"{key}\0".encode("utf-16-le"), 4)
    node = _aligned(head + value, 4) + children
    return struct.pack("<H", len(node)) + node[2:]


def _version(numbers, texts):
    """A version resource with these numbers and texts by their names."""
    major, minor, build, revision = numbers
    value = struct.pack("<4I", 0xFEEF04BD, 0x10000, major << 16 | minor, build << 16 | revision).ljust(52, b"\0")
    texts = b"".join(_version_node(key, f"{text}\0".encode("utf-16-le"), is_text=1) for key, text in texts.items())
    table = _version_node("StringFileInfo", b"", _version_node("040904B0", b"", texts))
    return _version_node("VS_VERSION_INFO", value, table)


def make_program(
    machine=None,
    is_64_bit=True,
    magic=None,
    subsystem=2,
    subsystem_version=(10, 0),
    characteristics=GOOD_CHARACTERISTICS,
    file_flags=0x22,
    alignment=4096,
    section_flags=READABLE,
    raw_size=None,
    entry=None,
    image_size=None,
    code_at=None,
    relocations=True,
    dot_net=False,
    imports=GOOD_IMPORTS,
    delayed_imports=None,
    exports=(),
    strings=(),
    file_version=(1, 0, 0, 0),
    version_texts=None,
    manifest=WINDOWS_10_MANIFEST,
):
    """A program whose first section has the tables, its second a piece of code. Without an entry it begins there."""
    section = _Section()
    for text in strings:
        section.add(b"\0\0" + text.encode("utf-16-le") + b"\0\0")
    directories = [(0, 0)] * 16
    directories[0] = (_exports(section, exports), 40) if exports else (0, 0)
    directories[1] = (_imports(section, imports, False, is_64_bit), 40)
    directories[5] = (section.add(struct.pack("<II", SECTION, 8)), 8) if relocations else (0, 0)
    directories[13] = (_imports(section, delayed_imports or {}, True, is_64_bit), 64)
    directories[14] = (section.add(bytes(72)), 72) if dot_net else (0, 0)
    resources = {16: _version(file_version, version_texts or {})} if file_version else {}
    resources |= {24: manifest} if manifest else {}
    # Resources have a section of their own, in which the program's strings are not looked for.
    resource_at = SECTION + len(_aligned(bytes(section.data), PAGE))
    held = _Section(resource_at)
    directories[2] = (_resources(held, resources), 1) if resources else (0, 0)
    behind = resource_at + len(_aligned(bytes(held.data), PAGE)) if resources else resource_at
    code_at = behind if code_at is None else code_at
    contents = [(b".rdata", SECTION, bytes(section.data), section_flags)]
    contents += [(b".rsrc", resource_at, bytes(held.data), READABLE)] if resources else []
    contents += [(b".text", code_at, b"\xc3" * 16, READABLE | EXECUTABLE)]
    entry = code_at if entry is None else entry
    image_size = code_at + PAGE if image_size is None else image_size

    magic = magic or (0x20B if is_64_bit else 0x10B)
    optional = struct.pack("<HBBIIIII", magic, 14, 0, 0, 0, 0, entry, 0)
    optional += struct.pack("<Q", 0x140000000) if is_64_bit else struct.pack("<II", 0, 0x400000)
    optional += struct.pack("<IIHHHHHHI", alignment, 512, 6, 0, 0, 0, *subsystem_version, 0)
    optional += struct.pack("<IIIHH", image_size, RAW, 0, subsystem, characteristics)
    optional += struct.pack("<QQQQII" if is_64_bit else "<IIIIII", 0, 0, 0, 0, 0, 16)
    optional += b"".join(struct.pack("<II", *directory) for directory in directories)
    machine = machine or (0x8664 if is_64_bit else 0x14C)
    header = b"MZ" + b"\0" * 58 + struct.pack("<I", 64)
    header += b"PE\0\0" + struct.pack("<HHIIIHH", machine, len(contents), 0, 0, 0, len(optional), file_flags) + optional
    at, data = RAW, b""
    for name, address, content, flags in contents:
        size = len(content)
        header += struct.pack("<8sIIIIIIHHI", name, size, address, raw_size or size, at, 0, 0, 0, 0, flags)
        at, data = at + size, data + content
    return header.ljust(RAW, b"\0") + data
