"""[Content_Types].xml: the type of every part, by extension or by name."""

import xml.etree.ElementTree as ElementTree

from . import xml_text
from .part_names import BLOCK_MAP, CONTENT_TYPES, MANIFEST, SIGNATURE, encode
from .problem import PackageError, Problem

NAMESPACE = "http://schemas.openxmlformats.org/package/2006/content-types"

# By the part's name, whatever its extension.
REQUIRED = {
    MANIFEST: "application/vnd.ms-appx.manifest+xml",
    BLOCK_MAP: "application/vnd.ms-appx.blockmap+xml",
    SIGNATURE: "application/vnd.ms-appx.signature",
}

# Windows starts and loads only what has this type.
PROGRAM = "application/x-msdownload"

BY_EXTENSION = {
    "dll": PROGRAM,
    "exe": PROGRAM,
    "jpg": "image/jpeg",
    "png": "image/png",
    "txt": "text/plain",
    "xaml": "application/xaml+xml",
    "xml": "application/xml",
}
UNKNOWN = "application/octet-stream"


def _extension(path):
    name = path.rpartition("\\")[2]
    return name.rpartition(".")[2].lower() if "." in name else ""


def _by_name(path):
    """Whether a default cannot tell the type: without an extension, or with one that is no plain word."""
    extension = _extension(path)
    return path in REQUIRED or not (extension.isascii() and extension.isalnum())


def write(paths):
    """The part for a package of these paths (the content types themselves not among them)."""
    root = ElementTree.Element(f"{{{NAMESPACE}}}Types")
    for extension in sorted({_extension(path) for path in paths if not _by_name(path)}):
        content_type = BY_EXTENSION.get(extension, UNKNOWN)
        ElementTree.SubElement(root, f"{{{NAMESPACE}}}Default", Extension=extension, ContentType=content_type)
    for path in paths:
        if _by_name(path):
            content_type = REQUIRED.get(path, UNKNOWN)
            ElementTree.SubElement(
                root, f"{{{NAMESPACE}}}Override", PartName=f"/{encode(path)}", ContentType=content_type
            )
    return xml_text.serialise(root, NAMESPACE)


def _fail(what):
    raise PackageError(CONTENT_TYPES, what, "Make the package anew")


def read(data):
    """Types by extension (lower case) and by encoded part name (with its leading slash, upper case)."""
    root = xml_text.parse(data, CONTENT_TYPES)
    if root.tag != f"{{{NAMESPACE}}}Types":
        _fail(f"its root is no <Types> of {NAMESPACE}")
    defaults, overrides = {}, {}
    for element in root:
        kind = xml_text.plain(element.tag)
        table, key = (defaults, "Extension") if kind == "Default" else (overrides, "PartName")
        if kind not in ("Default", "Override") or not element.get(key) or not element.get("ContentType"):
            _fail("it has an element that is no <Default> with Extension or <Override> with PartName, and ContentType")
        name = element.get(key).lower() if kind == "Default" else element.get(key).upper()
        if name in table:
            _fail(f"it tells the type of {element.get(key)} twice")
        table[name] = element.get("ContentType")
    return defaults, overrides


def problems(data, paths):
    """What is wrong with the types that the part gives these paths."""
    defaults, overrides = read(data)
    for path in paths:
        found = overrides.get(f"/{encode(path)}".upper(), defaults.get(_extension(path)))
        wanted = REQUIRED.get(path, PROGRAM if _extension(path) in ("exe", "dll") else None)
        if found is None:
            yield Problem(CONTENT_TYPES, f"it tells no type for {path}", "Make the package anew")
        elif wanted and found != wanted:
            what = f"it gives {path} the type {found} instead of {wanted}"
            yield Problem(CONTENT_TYPES, what, "Make the package anew")
