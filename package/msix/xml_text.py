"""Reading and writing the XML parts."""

import re
import xml.etree.ElementTree as ElementTree

from . import limits
from .problem import PackageError

# White space in XML; Python's own definition is wider.
_BLANKS = " \t\r\n"

# A parser keeps many times the bytes of an element, and repeats the name of its namespace in each: both are bounded.
_MOST_ELEMENTS = 300_000
_MOST_ATTRIBUTES = 600_000
_LONG_NAMESPACE = re.compile(r"""xmlns([^"'<>]{100}|[^"'<>]{0,99}("[^"]{200}|'[^']{200}))""")

_DECLARATION = re.compile(r"""<\?xml\s[^>]*?\sencoding\s*=\s*["']([^"']{0,99})""")


def _fail(where, what, remedy):
    raise PackageError(where, what, remedy)


def _decode(data, where):
    try:
        text = data.decode("utf-8-sig")
    except UnicodeDecodeError as error:
        raise PackageError(where, f"it is not UTF-8 (byte {error.start})", "Save it as UTF-8") from error
    declared = _DECLARATION.match(text)
    if declared and declared[1].lower() != "utf-8":
        _fail(where, f"it says that its encoding is {declared[1]}; Windows takes UTF-8", "Save it as UTF-8")
    return text


def _bound(text, where):
    """Refuses what would take unlimited memory or time of a parser."""
    # Entities that a document type declares can grow without bound; none of the parts may have one.
    if "<!DOCTYPE" in text:
        _fail(where, "it has a document type, which Windows refuses", "Remove the document type")
    if text.count("<") > _MOST_ELEMENTS or text.count("=") > _MOST_ATTRIBUTES:
        _fail(where, "it has more elements or attributes than any package needs", "Make it smaller")
    if _LONG_NAMESPACE.search(text):
        what = "it has a namespace of 200 characters, or one whose prefix has 100"
        _fail(where, what, "Use the namespaces of packages")


def parse(data, where):
    """The root element of a part. Raises PackageError for anything but well-formed UTF-8 without document types."""
    if len(data) > limits.XML:
        _fail(where, f"it has {len(data)} bytes; it is looked at up to {limits.XML}", "Make it smaller")
    text = _decode(data, where)
    _bound(text, where)
    try:
        return ElementTree.fromstring(text)
    except (ElementTree.ParseError, ValueError) as error:
        raise PackageError(where, f"it is not well-formed XML: {error}", "Correct it there") from error


def is_text(text):
    """Whether there is more than white space in what stands between tags."""
    return bool((text or "").strip(_BLANKS))


def plain(tag):
    """{namespace}Name without the namespace, for messages."""
    return tag.rpartition("}")[2]


def serialise(root, namespace):
    """An element of one namespace as the bytes of a part."""
    ElementTree.register_namespace("", namespace)
    return ElementTree.tostring(root, encoding="utf-8", xml_declaration=True)
