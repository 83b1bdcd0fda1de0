"""The names of files in a package: with backslashes on Windows, percent-encoded with slashes in the archive."""

import re
from urllib.parse import quote, unquote_to_bytes

from .problem import PackageError

MANIFEST = "AppxManifest.xml"
BLOCK_MAP = "AppxBlockMap.xml"
CONTENT_TYPES = "[Content_Types].xml"
CODE_INTEGRITY = "AppxMetadata\\CodeIntegrity.cat"
SIGNATURE = "AppxSignature.p7x"

# The parts that follow the payload, in this order. Windows' own tools add the catalogue when they sign.
FOOTPRINT = (MANIFEST, BLOCK_MAP, CONTENT_TYPES, CODE_INTEGRITY, SIGNATURE)

# Parts that the block map does not list.
OUTSIDE_BLOCK_MAP = (BLOCK_MAP, CONTENT_TYPES, CODE_INTEGRITY, SIGNATURE)

LONGEST_PATH = 256
# One code unit of UTF-16 becomes three encoded bytes at most.
_LONGEST_NAME = 9 * LONGEST_PATH

_FORBIDDEN = re.compile(r'[\x00-\x1f<>:"|?*/]')
_DEVICE = re.compile(r"(con|prn|aux|nul|com[1-9]|lpt[1-9])(\..*)?", re.IGNORECASE)
_RESERVED = {name.upper() for name in (BLOCK_MAP, CONTENT_TYPES, SIGNATURE)}
_RESERVED_FOLDERS = ("APPXMETADATA\\", "MICROSOFT.SYSTEM.PACKAGE.METADATA\\")


def encode(path):
    """The name in the archive. All but letters, digits and -._~ is encoded; the content types' name alone stays."""
    return path if path == CONTENT_TYPES else quote(path.replace("\\", "/"), safe="/")


def decode(name):
    """The path of a part, from its name in the archive. Raises PackageError for a name that no path encodes to."""
    if name == CONTENT_TYPES:
        return name
    if len(name) > _LONGEST_NAME:
        raise PackageError(name, f"its name has more than {_LONGEST_NAME} characters", "Give it a shorter one")
    try:
        path = unquote_to_bytes(name).decode("utf-8").replace("/", "\\")
    except UnicodeDecodeError:
        path = None
    if path is None or encode(path) != name:
        raise PackageError(
            name, "the name of this part is not percent-encoded as package names are", "Make the package again"
        )
    return path


def utf16_length(text):
    """The length of a text as Windows counts it."""
    return len(text.encode("utf-16-le", "surrogatepass")) // 2


def folded(path):
    """The path as Windows compares it: each character in upper case by itself, none becoming two."""
    if path.isascii():
        return path.upper()
    return "".join(upper if len(upper := character.upper()) == 1 else character for character in path)


_DESCRIBING = {folded(path): path for path in FOOTPRINT}


def canonical(path):
    """The path; for a part that describes the package the name used here, without regard to case."""
    return _DESCRIBING.get(folded(path), path)


def order(path):
    """The sort key of parts: the payload by upper-cased path, then the manifest and what describes the package."""
    place = FOOTPRINT.index(path) + 1 if path in FOOTPRINT else 0
    # Windows compares code units of UTF-16.
    return place, folded(path).encode("utf-16-be", "surrogatepass")


def objection(path):
    """Why Windows refuses a payload file of this path, or None."""
    if utf16_length(path) > LONGEST_PATH:
        return f"its path has more than {LONGEST_PATH} characters"
    if folded(path) in _RESERVED or folded(path).startswith(_RESERVED_FOLDERS):
        return "this name is reserved for the package's own parts"
    for component in path.split("\\"):
        if not component or component.endswith((" ", ".")):
            return "a folder or file name is empty or ends with a blank or a full stop"
        if any("\ud800" <= character <= "\udfff" for character in component):
            return "its name is no text"
        if _FORBIDDEN.search(component):
            return "it has a character that Windows does not allow in names"
        if _DEVICE.fullmatch(component):
            return f"{component} is the name of a device on Windows"
    return None
