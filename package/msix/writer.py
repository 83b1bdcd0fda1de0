"""Makes a package from its files."""

from . import block_map, blocks, content_types, part_names, zip_writer
from .part_names import BLOCK_MAP, CONTENT_TYPES, MANIFEST
from .problem import PackageError


def _check_names(paths):
    seen = {}
    for path in paths:
        objection = part_names.objection(path)
        if objection:
            raise PackageError(path, f"it cannot be in a package: {objection}", "Give the file another name")
        other = seen.setdefault(part_names.folded(path), path)
        if other != path:
            raise PackageError(path, f"for Windows it has the same name as {other}", "Give one of them another name")


def _pack(path, data):
    """The entry of a file in the archive and its blocks. An empty file is stored and has none."""
    name = part_names.encode(path)
    if not data:
        return zip_writer.stored(name, data), []
    stream, file_blocks = blocks.deflate(data)
    return zip_writer.deflated(name, data, stream), file_blocks


def write(files):
    """The bytes of the package of these files: path with backslashes -> content, the manifest among them."""
    _check_names(files)
    if MANIFEST not in files:
        raise PackageError(MANIFEST, "the package has no manifest", "Put it among the files")
    entries, mapped = [], []
    for path in sorted(files, key=part_names.order):
        entry, file_blocks = _pack(path, files[path])
        entries.append(entry)
        mapped.append(
            block_map.MappedFile(path, len(files[path]), zip_writer.header_size(entry.name), file_blocks)
        )
    entries.append(_pack(BLOCK_MAP, block_map.write(mapped))[0])
    types = content_types.write([*(file.path for file in mapped), BLOCK_MAP])
    # Stored, this part would be damaged by the tool that signs.
    entries.append(_pack(CONTENT_TYPES, types)[0])
    return zip_writer.write(entries)
