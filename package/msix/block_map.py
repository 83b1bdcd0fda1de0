"""AppxBlockMap.xml: every file of the package with its size, its header's size and the hashes of its blocks."""

import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass

from . import xml_text
from .blocks import Block
from .part_names import BLOCK_MAP
from .problem import PackageError

NAMESPACE = "http://schemas.microsoft.com/appx/2010/blockmap"
HASH_METHOD = "http://www.w3.org/2001/04/xmlenc#sha256"


@dataclass(frozen=True)
class MappedFile:
    path: str  # with backslashes, not encoded
    size: int
    header_size: int  # of the local header in the archive, with the encoded name and extra fields
    blocks: list[Block]


def _tag(name):
    return f"{{{NAMESPACE}}}{name}"


def write(files):
    root = ElementTree.Element(_tag("BlockMap"), HashMethod=HASH_METHOD)
    for file in files:
        element = ElementTree.SubElement(
            root, _tag("File"), Name=file.path, Size=str(file.size), LfhSize=str(file.header_size)
        )
        for block in file.blocks:
            size = {} if block.size is None else {"Size": str(block.size)}
            ElementTree.SubElement(element, _tag("Block"), Hash=block.digest, **size)
    return xml_text.serialise(root, NAMESPACE)


def _fail(what):
    raise PackageError(BLOCK_MAP, what, "Make the package anew")


def _number(element, name, default=None):
    text = element.get(name, default)
    most_digits = 20
    if text is None or not (text.isascii() and text.isdigit() and len(text) <= most_digits):
        _fail(f"a <{xml_text.plain(element.tag)}> has no number as its {name}")
    return int(text)


def _read_file(element):
    if element.tag != _tag("File") or any(child.tag != _tag("Block") for child in element):
        _fail("it has elements that are no <File> with <Block>s")
    if not element.get("Name"):
        _fail("a <File> has no Name")
    blocks = [
        Block(child.get("Hash", ""), _number(child, "Size") if "Size" in child.attrib else None) for child in element
    ]
    return MappedFile(element.get("Name"), _number(element, "Size"), _number(element, "LfhSize"), blocks)


def read(data):
    """The files of a block map, in its order. Raises PackageError for what is none."""
    root = xml_text.parse(data, BLOCK_MAP)
    if root.tag != _tag("BlockMap"):
        _fail(f"its root is no <BlockMap> of {NAMESPACE}")
    if root.get("HashMethod") != HASH_METHOD:
        _fail(f"its HashMethod is not {HASH_METHOD}")
    return [_read_file(element) for element in root]
