"""The blocks of a file: 64 KiB each, hashed one by one, and deflated so that each can be read without the others."""

import base64
import hashlib
import zlib
from dataclasses import dataclass

BLOCK = 64 * 1024

# The end of a deflated stream of flushed blocks: an empty last block. It belongs to no block of the map.
END_OF_STREAM = b"\x03\x00"


@dataclass(frozen=True)
class Block:
    digest: str  # base64 of SHA-256 over the block before it was compressed
    size: int | None  # bytes that it takes in the archive; None in a file that is stored


def split(data):
    return [data[at : at + BLOCK] for at in range(0, len(data), BLOCK)]


def digest(block):
    return base64.b64encode(hashlib.sha256(block).digest()).decode("ascii")


def deflate(data):
    """The deflated stream of a file and its blocks."""
    compressor = zlib.compressobj(9, zlib.DEFLATED, -zlib.MAX_WBITS)
    stream, blocks = bytearray(), []
    for block in split(data):
        compressed = compressor.compress(block) + compressor.flush(zlib.Z_FULL_FLUSH)
        stream += compressed
        blocks.append(Block(digest(block), len(compressed)))
    return bytes(stream + compressor.flush(zlib.Z_FINISH)), blocks


def inflate_block(compressed):
    """The content of one block alone, or None when it cannot be read without the others, or not at all."""
    try:
        return zlib.decompressobj(-zlib.MAX_WBITS).decompress(compressed, BLOCK + 1)
    except zlib.error:
        return None
