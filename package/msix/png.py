"""Writes PNG images from pixels."""

import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"


def chunk(kind, data):
    """A piece of an image's file."""
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def write(side, pixel):
    """A square image; pixel(x, y) gives red, green, blue, alpha, each 0 to 255."""
    rows = b"".join(b"\0" + bytes(value for x in range(side) for value in pixel(x, y)) for y in range(side))
    bits, red_green_blue_alpha = 8, 6
    header = struct.pack(">IIBBBBB", side, side, bits, red_green_blue_alpha, 0, 0, 0)
    return SIGNATURE + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b"")
