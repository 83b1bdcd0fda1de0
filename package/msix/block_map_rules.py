"""Checks the block map against the files that it lists."""

from . import blocks, part_names
from .part_names import BLOCK_MAP, OUTSIDE_BLOCK_MAP
from .problem import Problem
from .zip_writer import DEFLATED, STORED

_AGAIN = "Make the package again"


def problems(mapped, parts):
    """What is wrong with a block map's files in a package of these parts."""
    present = {part_names.folded(path): path for path in parts.paths() if path not in OUTSIDE_BLOCK_MAP}
    listed = {}
    for file in mapped:
        if listed.setdefault(part_names.folded(file.path), file) is not file:
            yield Problem(file.path, "the block map lists it twice", _AGAIN)
    for key in sorted(listed.keys() - present.keys()):
        yield Problem(listed[key].path, "the block map lists it, but the package has no such file", _AGAIN)
    for key in sorted(present.keys() - listed.keys()):
        yield Problem(present[key], "the package has this file, but the block map does not list it", _AGAIN)
    if listed.keys() == present.keys() and list(listed) != list(present):
        yield Problem(BLOCK_MAP, "it lists the files in another order than the package", _AGAIN)
    for file in listed.values():
        if parts.readable(file.path):
            if file.digest is not None and parts.whole_digest(file.path) != file.digest:
                yield Problem(file.path, "it has another hash than the block map says of the whole file", _AGAIN)
            yield from _file_problems(file, parts.entry(file.path), parts.digests(file.path))


def _file_problems(file, entry, digests):
    if file.size != entry.size:
        yield Problem(file.path, f"the block map says {file.size} bytes, the file has {entry.size}", _AGAIN)
    if file.header_size != entry.header_size:
        what = f"the block map says that its local header has {file.header_size} bytes; it has {entry.header_size}"
        yield Problem(file.path, what, _AGAIN)
    if len(digests) != len(file.blocks):
        yield Problem(file.path, f"the block map has {len(file.blocks)} blocks of {len(digests)}", _AGAIN)
        return
    for number, (digest, block) in enumerate(zip(digests, file.blocks), 1):
        if digest != block.digest:
            yield Problem(file.path, f"block {number} has another hash than the block map says", _AGAIN)
        if (block.size is None) != (entry.method == STORED):
            yield Problem(file.path, f"block {number} has a size in the block map only if it is deflated", _AGAIN)
    if entry.method == DEFLATED and all(block.size is not None for block in file.blocks):
        yield from _place_problems(file, entry.stream, digests)


def _place_problems(file, stream, digests):
    """Whether each deflated block is where the sizes before it put it, and can be read alone."""
    at = 0
    for number, (digest, block) in enumerate(zip(digests, file.blocks), 1):
        end = at + block.size
        if end > len(stream):
            yield Problem(file.path, f"block {number} ends behind the file's data, by its size in the block map", _AGAIN)
            return
        content = blocks.inflate_block(stream[at:end])
        if content is None or blocks.digest(content) != digest:
            yield Problem(file.path, f"block {number} is not where the block map's sizes put it", _AGAIN)
        at = end
    if bytes(stream[at : at + len(blocks.END_OF_STREAM) + 1]) not in (b"", blocks.END_OF_STREAM):
        yield Problem(file.path, "there is more behind the last block of the block map", _AGAIN)
