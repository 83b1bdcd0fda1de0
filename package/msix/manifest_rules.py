"""Checks a manifest against its schema and against the further rules of Windows."""

from . import part_names, xml_text
from .manifest import DESKTOP, FOUNDATION, RESTRICTED, UAP
from .manifest_schema import CATEGORY, ELEMENTS, EXTENSIONS, Element, matches
from .part_names import MANIFEST
from .problem import Problem, brief

# An element's name with its namespace.
_LONG_TAG = 160

_REMEDY = "Correct it in AppxManifest.xml"

# Deployment of this format begins with this version; what the app uses is older.
LEAST_VERSION = (10, 0, 17763, 0)

# At these a second one has the same meaning for Windows as the first, or contradicts it.
_UNIQUE = (
    (f"{UAP}Protocol", "Name"),
    (f"{UAP}AppService", "Name"),
    (f"{DESKTOP}ParameterGroup", "GroupId"),
    (f"{FOUNDATION}ActivatableClass", "ActivatableClassId"),
    (f"{FOUNDATION}Capability", "Name"),
    (f"{RESTRICTED}Capability", "Name"),
)


def _problem(what):
    return Problem(MANIFEST, what, _REMEDY)


def _attributes(element, rule):
    name = xml_text.plain(element.tag)
    for attribute, form in {**rule.required, **rule.optional}.items():
        value = element.get(attribute)
        if value is None:
            if attribute in rule.required:
                yield _problem(f"<{name}> has no {attribute}")
        elif not matches(form, value):
            yield _problem(f'<{name}> has {attribute}="{brief(value)}", which Windows does not take')
    for attribute in element.attrib:
        if attribute not in rule.required and attribute not in rule.optional:
            yield _problem(f"<{name}> has an attribute {brief(attribute)}, which is not known there")


def _text(element, rule):
    name, text = xml_text.plain(element.tag), element.text or ""
    if rule.text is None and xml_text.is_text(text) or any(xml_text.is_text(child.tail) for child in element):
        yield _problem(f"<{name}> has text")
    if rule.text is not None and not matches(rule.text, text):
        yield _problem(f'<{name}> has the text "{brief(text)}", which Windows does not take')


def _children(element, rule):
    name = xml_text.plain(element.tag)
    for tag, (least, most) in rule.children.items():
        count = len(element.findall(tag))
        if count < least:
            yield _problem(f"<{name}> has no <{xml_text.plain(tag)}>")
        elif most is not None and count > most:
            yield _problem(f"<{name}> has {count} <{xml_text.plain(tag)}> where {most} is allowed")
    if rule.ordered:
        found, order = [child.tag for child in element if child.tag in rule.children], list(rule.children)
        if found != sorted(found, key=order.index):
            names = ", ".join(map(xml_text.plain, order))
            yield _problem(f"<{name}> has its elements in another order than {names}")
    for child in element:
        if child.tag in rule.children:
            yield from _element(child, ELEMENTS.get(child.tag), element.tag)
        else:
            yield _problem(f"<{name}> has an element {brief(child.tag, _LONG_TAG)}, which is not known there")


def _extensions(element, parent):
    """<Extensions>, whose children are distinguished by their category."""
    if not len(element):
        yield _problem("<Extensions> is empty")
    yield from _attributes(element, Element())
    yield from _text(element, Element())
    for child in element:
        category = child.get("Category")
        rule = EXTENSIONS.get((parent, child.tag, category))
        if rule is None:
            what = f"<Extensions> has an element {brief(child.tag, _LONG_TAG)} with Category={category!r}"
            yield _problem(f"{what}, which is not known there")
        else:
            yield from _element(child, Element({"Category": CATEGORY, **rule.required}, rule.optional, rule.children))


def _element(element, rule, parent=None):
    if element.tag == f"{FOUNDATION}Extensions":
        yield from _extensions(element, parent)
        return
    yield from _attributes(element, rule)
    yield from _text(element, rule)
    yield from _children(element, rule)


def _schema(root):
    tag = f"{FOUNDATION}Package"
    if root.tag != tag:
        yield _problem(f"its root is {root.tag} instead of {tag}")
    else:
        yield from _element(root, ELEMENTS[tag])


def _languages(root):
    seen = set()
    for resource in root.iter(f"{FOUNDATION}Resource"):
        language = resource.get("Language", "").lower()
        if language in seen:
            yield _problem(f"there are two <Resource> of the language {brief(language)}")
        seen.add(language)


def _servers(manifest):
    seen = set()
    for path, _ in manifest.servers():
        if part_names.folded(path) in seen:
            yield _problem(f"there are two servers of the path {path}")
        seen.add(part_names.folded(path))


def _unique(root):
    for tag, attribute in _UNIQUE:
        seen = set()
        for element in root.iter(tag):
            value = element.get(attribute)
            if value is not None and value in seen:
                yield _problem(f'there are two <{xml_text.plain(tag)}> with {attribute}="{brief(value)}"')
            seen.add(value)
    categories = [element.get("Category") for element in root.iter(f"{DESKTOP}Extension")]
    if categories.count("windows.fullTrustProcess") > 1:
        yield _problem("there are two windows.fullTrustProcess extensions; an application has one at most")


def _versions(root):
    for family in root.iter(f"{FOUNDATION}TargetDeviceFamily"):
        texts = (family.get("MinVersion", ""), family.get("MaxVersionTested", ""))
        try:
            least, most = (tuple(int(part) for part in text.split(".")) for text in texts)
        except ValueError:
            continue  # its form is checked elsewhere
        if least < LEAST_VERSION:
            yield _problem(f"its MinVersion is below {'.'.join(map(str, LEAST_VERSION))}, where the app does not run")
        if most < least:
            yield _problem("its MaxVersionTested is below its MinVersion")


def _capabilities(root):
    tags = [element.tag for element in root.iterfind(f"{FOUNDATION}Capabilities/*")]
    general, restricted = f"{FOUNDATION}Capability", f"{RESTRICTED}Capability"
    # The schema fixes the order of the kinds.
    if restricted in tags and general in tags[tags.index(restricted) :]:
        yield _problem("a restricted capability stands before a general one")


def problems(manifest):
    """All problems of a manifest by itself."""
    for rule in (_schema, _unique, _languages, _versions, _capabilities):
        yield from rule(manifest.root)
    yield from _servers(manifest)
