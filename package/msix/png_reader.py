"""Reads PNG images as far as the package's check needs: their size, and whether all pixels are there."""

import math
import struct
import zlib

from .png import SIGNATURE, chunk

# Colour type -> values of a pixel, and the bits that each may have.
_GREY, _COLOUR, _PALETTE, _GREY_ALPHA, _COLOUR_ALPHA = 0, 2, 3, 4, 6
_VALUES = {
    _GREY: (1, (1, 2, 4, 8, 16)), _COLOUR: (3, (8, 16)), _PALETTE: (1, (1, 2, 4, 8)), _GREY_ALPHA: (2, (8, 16)),
    _COLOUR_ALPHA: (4, (8, 16)),
}  # fmt: skip

# Of each pass of an interlaced image the first pixel and the steps to the next: across, down.
_PASSES = ((0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2))

_MOST_PIXELS = 1 << 24
_HIGHEST_FILTER = 4


class Png:
    """The bytes of a PNG. Raises ValueError for an incomplete or different file."""

    def __init__(self, data):
        chunks = list(_chunks(data))
        kinds = [kind for kind, _ in chunks]
        header = chunks[0][1] if kinds else b""
        if kinds[:1] != [b"IHDR"] or kinds[-1] != b"IEND" or b"IDAT" not in kinds or len(header) != 13:
            raise ValueError("the image has no header, no pixels or no end")
        self.width, self.height, self._bits, self._colour, *rest = struct.unpack(">IIBBBBB", header)
        values, bits = _VALUES.get(self._colour, (0, ()))
        if self._bits not in bits or rest[:2] != [0, 0] or rest[2] > 1:
            raise ValueError("the image's header has a combination that the format does not know")
        if not 0 < self.width * self.height <= _MOST_PIXELS:
            raise ValueError(f"the image would have {self.width} x {self.height} pixels")
        if self._colour == _PALETTE and b"PLTE" not in kinds[: kinds.index(b"IDAT")]:
            raise ValueError("the image has no palette")
        self._pixel_bits = values * self._bits
        self._interlaced = bool(rest[2])
        self._stream = b"".join(content for kind, content in chunks if kind == b"IDAT")

    def check_pixels(self):
        """Raises ValueError unless the data of the pixels is that of an image of this size."""
        rows = list(self._row_sizes())
        data = _inflate(self._stream, sum(rows))
        at = 0
        for size in rows:
            if data[at] > _HIGHEST_FILTER:
                raise ValueError("the image's pixels are no pixels")
            at += size

    def _row_sizes(self):
        """Bytes of each row, its filter byte included."""
        for left, top, across, down in _PASSES if self._interlaced else ((0, 0, 1, 1),):
            columns = math.ceil((self.width - left) / across)
            for _ in range(top, self.height, down) if columns > 0 else ():
                yield 1 + math.ceil(columns * self._pixel_bits / 8)


def _chunks(data):
    if not data.startswith(SIGNATURE):
        raise ValueError("it is no PNG image")
    at = len(SIGNATURE)
    while at < len(data):
        if at + 12 > len(data):
            raise ValueError("the image ends within a chunk")
        (size,) = struct.unpack_from(">I", data, at)
        end = at + 12 + size
        kind, content = data[at + 4 : at + 8], data[at + 8 : end - 4]
        if end > len(data) or chunk(kind, content) != data[at:end]:
            raise ValueError("a chunk of the image is cut or damaged")
        yield kind, content
        at = end


def _inflate(stream, size):
    decompressor = zlib.decompressobj()
    try:
        # One byte more, so that the end is reached, or too much is seen.
        data = decompressor.decompress(stream, size + 1)
    except zlib.error:
        data = b""
    if len(data) != size or not decompressor.eof:
        raise ValueError("the image's pixels cannot be read, or are not as many as its header says")
    return data
