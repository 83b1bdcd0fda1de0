"""Reading and writing the XML parts."""

import xml.etree.ElementTree as ElementTree

from .problem import PackageError


def parse(data, where):
    """The root element of a part. Raises PackageError for what is no well-formed UTF-8 without document types."""
    # Entities that a document type declares can grow without bound; none of the parts may have one.
    if b"<!DOCTYPE" in data:
        raise PackageError(where, "it has a document type, which Windows refuses", "Remove the document type")
    try:
        return ElementTree.fromstring(data.decode("utf-8-sig"))
    except UnicodeDecodeError as error:
        raise PackageError(
            where, f"it is not UTF-8 (byte {error.start})", "Save it as UTF-8"
        ) from error
    except (ElementTree.ParseError, ValueError) as error:
        raise PackageError(where, f"it is not well-formed XML: {error}", "Correct it there") from error


def plain(tag):
    """{namespace}Name without the namespace, for messages."""
    return tag.rpartition("}")[2]


def serialise(root, namespace):
    """An element of one namespace as the bytes of a part."""
    ElementTree.register_namespace("", namespace)
    return ElementTree.tostring(root, encoding="utf-8", xml_declaration=True)
