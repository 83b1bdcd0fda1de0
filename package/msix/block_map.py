"""AppxBlockMap.xml: every file of the package with its size, its header's size and the hashes of its blocks."""

import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass

from . import xml_text
from .blocks import Block
from .part_names import BLOCK_MAP, utf16_length
from .problem import PackageError

NAMESPACE = "http://schemas.microsoft.com/appx/2010/blockmap"
_FILE_HASH = "{http://schemas.microsoft.com/appx/2021/blockmap}FileHash"
LONGEST_NAME = 260
HASH_METHOD = "http://www.w3.org/2001/04/xmlenc#sha256"


@dataclass(frozen=True)
class MappedFile:
    path: str  # with backslashes, not encoded
    size: int
    header_size: int  # of the local header in the archive, with the encoded name and extra fields
    blocks: list[Block]
    digest: str | None = None  # of the whole file; later packers of Windows give it besides


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
    raise PackageError(BLOCK_MAP, what, "Make the package again")


def _number(element, name):
    text = element.get(name)
    most_digits = 20
    if not (text.isascii() and text.isdigit() and len(text) <= most_digits):
        _fail(f"a <{xml_text.plain(element.tag)}> has no number as its {name}")
    return int(text)


def _only(element, required, optional=()):
    """Fails for an element with other attributes than these, or with text."""
    name, found = xml_text.plain(element.tag), set(element.attrib)
    if not found >= set(required) or not found <= {*required, *optional}:
        _fail(f"a <{name}> has other attributes than {', '.join((*required, *optional))}")
    if any(map(xml_text.is_text, (element.text, *(child.tail for child in element)))):
        _fail(f"a <{name}> has text")


def _read_block(element):
    _only(element, ("Hash",), ("Size",))
    if len(element):
        _fail("a <Block> has elements")
    return Block(element.get("Hash"), _number(element, "Size") if "Size" in element.attrib else None)


def _read_file(element):
    if element.tag != _tag("File") or any(child.tag not in (_tag("Block"), _FILE_HASH) for child in element):
        _fail("it has elements that are no <File> with <Block>s")
    _only(element, ("Name", "Size", "LfhSize"))
    if not 0 < utf16_length(element.get("Name")) <= LONGEST_NAME:
        _fail("a <File> has no Name, or one that is too long")
    blocks = [_read_block(child) for child in element.iterfind(_tag("Block"))]
    hashes = []
    for child in element.iterfind(_FILE_HASH):
        _only(child, ("Hash",))
        hashes.append(child.get("Hash"))
    if len(hashes) > 1 or hashes and element[0].tag != _FILE_HASH and element[-1].tag != _FILE_HASH:
        _fail("a <File> has several <FileHash>, or one between its blocks")
    digest = hashes[0] if hashes else None
    return MappedFile(element.get("Name"), _number(element, "Size"), _number(element, "LfhSize"), blocks, digest)


def read(data):
    """The files of a block map, in its order. Raises PackageError for anything else."""
    root = xml_text.parse(data, BLOCK_MAP)
    if root.tag != _tag("BlockMap"):
        _fail(f"its root is no <BlockMap> of {NAMESPACE}")
    _only(root, ("HashMethod",), ("IgnorableNamespaces",))
    if root.get("HashMethod") != HASH_METHOD:
        _fail(f"its HashMethod is not {HASH_METHOD}")
    return [_read_file(element) for element in root]
