"""[Content_Types].xml: the type of every part, by extension or by name."""

import re
import xml.etree.ElementTree as ElementTree
from urllib.parse import unquote

from . import xml_text
from .part_names import BLOCK_MAP, CODE_INTEGRITY, CONTENT_TYPES, MANIFEST, SIGNATURE, encode, folded
from .problem import PackageError, Problem, brief

NAMESPACE = "http://schemas.openxmlformats.org/package/2006/content-types"

# By the name of the part, without regard to its extension.
REQUIRED = {
    MANIFEST: "application/vnd.ms-appx.manifest+xml",
    BLOCK_MAP: "application/vnd.ms-appx.blockmap+xml",
    CODE_INTEGRITY: "application/vnd.ms-pkiseccat",
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
# What the standard of such parts allows: its characters of a segment, and tokens with parameters behind them.
_SEGMENT = r"(%[0-9A-Fa-f]{2}|[-A-Za-z0-9._~!$&'()*+,;=:@])+"
_FORMS = {"Extension": r"(%[0-9A-Fa-f]{2}|[-A-Za-z0-9_~!$&'()*+,:=@])+", "PartName": rf"(/{_SEGMENT})+"}
_TOKEN = r"[-A-Za-z0-9!#$%&'*+.^_`|~]+"
_MEDIA_TYPE = rf'{_TOKEN}/{_TOKEN}([ \t]*;[ \t]*{_TOKEN}=({_TOKEN}|"[^"\r\n]*"))*'

_LONGEST = 4096

UNKNOWN = "application/octet-stream"


def _extension(path):
    name = path.rpartition("\\")[2]
    return name.rpartition(".")[2].lower() if "." in name else ""


def _by_name(path):
    """Whether a default cannot give the type: the path has no extension, or one that is not a plain word."""
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
    raise PackageError(CONTENT_TYPES, what, "Make the package again")


def _checked(element, key):
    """The two attributes of an element that has nothing else. Raises PackageError."""
    name = xml_text.plain(element.tag)
    if set(element.attrib) != {key, "ContentType"} or len(element) or xml_text.is_text(element.text):
        _fail(f"a <{name}> has something else than {key} and ContentType")
    value, content_type = element.get(key), element.get("ContentType")
    if len(value) + len(content_type) > _LONGEST:
        _fail(f"a <{name}> has a {key} or a ContentType that is too long")
    if not re.fullmatch(_FORMS[key], value):
        _fail(f'a <{name}> has {key}="{brief(value)}", which Windows does not take')
    if not re.fullmatch(_MEDIA_TYPE, content_type):
        _fail(f'a <{name}> has ContentType="{brief(content_type)}", which is no media type')
    return value, content_type


def read(data):
    """Types by extension (lower case) and by path (as Windows compares it)."""
    root = xml_text.parse(data, CONTENT_TYPES)
    if root.tag != f"{{{NAMESPACE}}}Types":
        _fail(f"its root is no <Types> of {NAMESPACE}")
    if root.attrib or xml_text.is_text(root.text) or any(xml_text.is_text(element.tail) for element in root):
        _fail("its root has attributes or text")
    defaults, overrides = {}, {}
    for element in root:
        if element.tag not in (f"{{{NAMESPACE}}}Default", f"{{{NAMESPACE}}}Override"):
            name = brief(element.tag, 160)
            _fail(f"it has an element {name}, which is no <Default> and no <Override> of {NAMESPACE}")
        is_default = xml_text.plain(element.tag) == "Default"
        value, content_type = _checked(element, "Extension" if is_default else "PartName")
        table, key = (defaults, value.lower()) if is_default else (overrides, _key(value))
        if key in table:
            _fail(f"it tells the type of {brief(value)} twice")
        table[key] = content_type
    return defaults, overrides


def _key(part_name):
    return folded(unquote(part_name[1:]).replace("/", "\\"))


def problems(data, paths):
    """The problems of the types that the part gives these paths."""
    defaults, overrides = read(data)
    for path in paths:
        found = overrides.get(folded(path), defaults.get(_extension(path)))
        wanted = REQUIRED.get(path, PROGRAM if _extension(path) in ("exe", "dll") else None)
        if found is None:
            yield Problem(CONTENT_TYPES, f"it tells no type for {path}", "Make the package again")
        elif wanted and found != wanted:
            what = f"it gives {path} the type {found} instead of {wanted}"
            yield Problem(CONTENT_TYPES, what, "Make the package again")
