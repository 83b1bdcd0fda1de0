"""Reads the version resource of a program: its version, and its texts by name."""

import struct

from .portable_executable import VERSION_RESOURCE

_SIGNATURE = 0xFEEF04BD
_HEADER = struct.Struct("<HHH")  # size of the whole, of the value, and whether that is text
# More than the texts of any program.
_LARGEST = 65536
# The resource, the table of texts, a language's part of it, a text.
_DEPTH = 4


def _node(data, at, end):
    """Key, value, and where its children lie, of the node at a place."""
    size, value_size, is_text = _HEADER.unpack_from(data, at)
    end = min(end, at + size)
    key_at = at + _HEADER.size
    key_end = key_at
    while key_end + 2 <= end and data[key_end : key_end + 2] != b"\0\0":
        key_end += 2
    value_at = _aligned(key_end + 2)
    value_end = min(end, value_at + value_size * (2 if is_text else 1))
    key = data[key_at:key_end].decode("utf-16-le", "replace")
    return key, data[value_at:value_end], _aligned(value_end), end


def _aligned(at):
    return (at + 3) & ~3


def _walk(data, at, end, depth):
    """(key, value) of every node, those below it included."""
    while depth and at + _HEADER.size <= end:
        size = _HEADER.unpack_from(data, at)[0]
        if size < _HEADER.size:
            return
        key, value, children, children_end = _node(data, at, end)
        yield key, value
        yield from _walk(data, children, children_end, depth - 1)
        at = _aligned(at + size)


def _read(program):
    data = (program.resource(VERSION_RESOURCE) or b"")[:_LARGEST]
    return _walk(data, 0, len(data), _DEPTH)


def file_version(program):
    """The version as 1.2.3.4, or None. Raises ValueError if a table of the program lies outside the file."""
    _, value = next(_read(program), ("", b""))
    if len(value) < 16 or value[:4] != struct.pack("<I", _SIGNATURE):
        return None
    high, low = struct.unpack_from("<II", value, 8)
    return f"{high >> 16}.{high & 0xFFFF}.{low >> 16}.{low & 0xFFFF}"


def text(program, name):
    """The text of that name, or None. Raises ValueError likewise."""
    for key, value in _read(program):
        if key == name:
            return value.decode("utf-16-le", "replace").rstrip("\0")
    return None
