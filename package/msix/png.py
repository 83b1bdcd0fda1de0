"""PNG images: written from pixels, and read as far as the package's check needs."""

import struct
import zlib

_SIGNATURE = b"\x89PNG\r\n\x1a\n"


def _chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def write(side, pixel):
    """A square image; pixel(x, y) gives red, green, blue, alpha, each 0 to 255."""
    rows = b"".join(b"\0" + bytes(value for x in range(side) for value in pixel(x, y)) for y in range(side))
    bits, red_green_blue_alpha = 8, 6
    header = struct.pack(">IIBBBBB", side, side, bits, red_green_blue_alpha, 0, 0, 0)
    return _SIGNATURE + _chunk(b"IHDR", header) + _chunk(b"IDAT", zlib.compress(rows, 9)) + _chunk(b"IEND", b"")


def read_size(data):
    """Width and height. Raises ValueError for what is no whole PNG."""
    if not data.startswith(_SIGNATURE):
        raise ValueError("it is no PNG image")
    at, kinds, header = len(_SIGNATURE), [], b""
    while at < len(data):
        if at + 12 > len(data):
            raise ValueError("the image ends within a chunk")
        (size,) = struct.unpack_from(">I", data, at)
        end = at + 12 + size
        if end > len(data) or _chunk(data[at + 4 : at + 8], data[at + 8 : end - 4]) != data[at:end]:
            raise ValueError("a chunk of the image is cut or damaged")
        kinds.append(data[at + 4 : at + 8])
        if len(kinds) == 1:
            header = data[at + 8 : end - 4]
        at = end
    if not kinds or kinds[0] != b"IHDR" or kinds[-1] != b"IEND" or b"IDAT" not in kinds or len(header) != 13:
        raise ValueError("the image has no header, no pixels or no end")
    return struct.unpack_from(">II", header)
