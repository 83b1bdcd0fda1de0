"""What Windows allows in a manifest, as far as this package uses it: elements, attributes, the form of their values."""

import re
from dataclasses import dataclass, field

from .manifest import DESKTOP, FOUNDATION, RESTRICTED, UAP
from .part_names import utf16_length

ONE, OPTIONAL, SOME = (1, 1), (0, 1), (1, None)

# Windows takes more; each is looked for in its server, and this package's has two.
MOST_CLASSES = 100


@dataclass(frozen=True)
class Form:
    """What a value looks like: its pattern, of which digits and letters are ASCII's, and its length in UTF-16."""

    pattern: str
    longest: int


@dataclass(frozen=True)
class Element:
    required: dict = field(default_factory=dict)  # attribute -> the form of its value
    optional: dict = field(default_factory=dict)
    children: dict = field(default_factory=dict)  # tag -> least and most times
    text: Form | None = None  # the form of its text; without one there is only white space
    ordered: bool = False  # whether the children stand in the order of `children`


def _token(pattern):
    """A form whose pattern bounds its length."""
    return Form(pattern, 32767)


def _text(longest):
    """One line without blanks around it."""
    return Form(r"[^ \t\r\n]([^\r\n]*[^ \t\r\n])?", longest)


def _path(extension):
    """A file of the package, without blanks around it or a folder without a name."""
    name = r'[^\\<>:"|?*/\x00-\x1f]+'
    return Form(rf"(?! ){name}(\\{name})*\.{extension}", 256)


_EXECUTABLE = _path("[eE][xX][eE]")
_SERVER = _path("([eE][xX][eE]|[dD][lL][lL])")
_IMAGE = _path("(png|jpg|jpeg)")
_CLASS = Form(r"[A-Za-z_][A-Za-z0-9_]*(\.[A-Za-z_][A-Za-z0-9_]*)*", 256)

_RESERVED = "(con|prn|aux|nul|com[1-9]|lpt[1-9])"
_IDENTITY = _token(rf"(?!(?i:{_RESERVED}(\.|$)|xn--|.*\.xn--))[-.A-Za-z0-9]{{2,49}}[-A-Za-z0-9]")

_PART_OF_VERSION = "(0|[1-9][0-9]{0,3}|[1-5][0-9]{4}|6[0-4][0-9]{3}|65[0-4][0-9]{2}|655[0-2][0-9]|6553[0-5])"
_VERSION = _token(rf"{_PART_OF_VERSION}(\.{_PART_OF_VERSION}){{3}}")

# A distinguished name as Windows writes it: parts in the form KEY=value, ", " between them.
_KEY = (
    "(CN|L|O|OU|E|C|S|STREET|T|G|I|SN|DC|SERIALNUMBER|Description|PostalCode|POBox|Phone|X21Address|dnQualifier"
    r"|OID\.(0|[1-9][0-9]*)(\.(0|[1-9][0-9]*))+)"
)
_PLAIN, _END = r'[^,+="<>#;\r\n]', r'[^,+="<>#;\r\n \t]'
_PART = rf'{_KEY}=({_END}({_PLAIN}*{_END})?|"([^"\r\n]|"")+")'
_PUBLISHER = Form(rf"{_PART}(, {_PART})*", 8192)

_COLOUR = _token("transparent|#[0-9A-Fa-f]{6}")
_PROTOCOL = _token("[a-z][-a-z0-9.+]{1,38}")
_SERVICE = _token("[-A-Za-z0-9][-.A-Za-z0-9]{1,38}")

# What an app of this kind may ask for; a name that Windows does not know is refused when the package is installed.
GENERAL_CAPABILITIES = ("internetClient", "internetClientServer", "privateNetworkClientServer")
RESTRICTED_CAPABILITIES = ("runFullTrust",)

ELEMENTS = {
    f"{FOUNDATION}Package": Element(
        children={
            f"{FOUNDATION}Identity": ONE,
            f"{FOUNDATION}Properties": ONE,
            f"{FOUNDATION}Dependencies": ONE,
            f"{FOUNDATION}Resources": ONE,
            f"{FOUNDATION}Applications": ONE,
            f"{FOUNDATION}Capabilities": ONE,
            f"{FOUNDATION}Extensions": OPTIONAL,
        }
    ),
    f"{FOUNDATION}Identity": Element(
        required={
            "Name": _IDENTITY,
            "Publisher": _PUBLISHER,
            "Version": _VERSION,
            "ProcessorArchitecture": _token("x64"),
        }
    ),
    f"{FOUNDATION}Properties": Element(
        children={
            f"{FOUNDATION}DisplayName": ONE,
            f"{FOUNDATION}PublisherDisplayName": ONE,
            f"{FOUNDATION}Description": OPTIONAL,
            f"{FOUNDATION}Logo": ONE,
        }
    ),
    f"{FOUNDATION}DisplayName": Element(text=_text(256)),
    f"{FOUNDATION}PublisherDisplayName": Element(text=_text(256)),
    f"{FOUNDATION}Description": Element(text=_text(2048)),
    f"{FOUNDATION}Logo": Element(text=_IMAGE),
    f"{FOUNDATION}Dependencies": Element(children={f"{FOUNDATION}TargetDeviceFamily": ONE}),
    f"{FOUNDATION}TargetDeviceFamily": Element(
        required={"Name": _token(r"Windows\.Desktop"), "MinVersion": _VERSION, "MaxVersionTested": _VERSION}
    ),
    f"{FOUNDATION}Resources": Element(children={f"{FOUNDATION}Resource": SOME}),
    f"{FOUNDATION}Resource": Element(required={"Language": _token("[A-Za-z]{2,3}(-[A-Za-z0-9]{1,8}){0,20}")}),
    # Windows takes more than one application; this package, its service and its protocol are made for one.
    f"{FOUNDATION}Applications": Element(children={f"{FOUNDATION}Application": ONE}),
    f"{FOUNDATION}Application": Element(
        required={"Id": _token("[A-Za-z][A-Za-z0-9]{0,63}"), "Executable": _EXECUTABLE, "EntryPoint": _CLASS},
        children={f"{UAP}VisualElements": ONE, f"{FOUNDATION}Extensions": OPTIONAL},
    ),
    f"{UAP}VisualElements": Element(
        required={
            "DisplayName": _text(256),
            "Description": _text(2048),
            "BackgroundColor": _COLOUR,
            "Square150x150Logo": _IMAGE,
            "Square44x44Logo": _IMAGE,
        },
        optional={"AppListEntry": _token("default|none")},
    ),
    f"{UAP}Protocol": Element(required={"Name": _PROTOCOL}),
    # Served by the application itself: an EntryPoint on the extension would name a background task of its own.
    f"{UAP}AppService": Element(required={"Name": _SERVICE}),
    f"{DESKTOP}FullTrustProcess": Element(children={f"{DESKTOP}ParameterGroup": SOME}),
    f"{DESKTOP}ParameterGroup": Element(
        required={"GroupId": _text(32767), "Parameters": _text(32767)}
    ),
    f"{FOUNDATION}InProcessServer": Element(
        children={f"{FOUNDATION}Path": ONE, f"{FOUNDATION}ActivatableClass": (1, MOST_CLASSES)}, ordered=True
    ),
    f"{FOUNDATION}Path": Element(text=_SERVER),
    f"{FOUNDATION}ActivatableClass": Element(
        required={"ActivatableClassId": _CLASS, "ThreadingModel": _token("both|STA|MTA")}
    ),
    f"{FOUNDATION}Capabilities": Element(
        children={f"{FOUNDATION}Capability": SOME, f"{RESTRICTED}Capability": SOME}
    ),
    f"{FOUNDATION}Capability": Element(required={"Name": _token("|".join(GENERAL_CAPABILITIES))}),
    f"{RESTRICTED}Capability": Element(required={"Name": _token("|".join(RESTRICTED_CAPABILITIES))}),
}

CATEGORY = _token(r"windows\.[A-Za-z.]+")

# Extensions differ by their category: the parent that they stand in, their tag and category -> what they look like.
_APPLICATION, _PACKAGE = f"{FOUNDATION}Application", f"{FOUNDATION}Package"
EXTENSIONS = {
    (_APPLICATION, f"{UAP}Extension", "windows.protocol"): Element(children={f"{UAP}Protocol": ONE}),
    (_APPLICATION, f"{UAP}Extension", "windows.appService"): Element(children={f"{UAP}AppService": ONE}),
    (_APPLICATION, f"{DESKTOP}Extension", "windows.fullTrustProcess"): Element(
        required={"Executable": _EXECUTABLE}, children={f"{DESKTOP}FullTrustProcess": OPTIONAL}
    ),
    (_PACKAGE, f"{FOUNDATION}Extension", "windows.activatableClass.inProcessServer"): Element(
        children={f"{FOUNDATION}InProcessServer": ONE}
    ),
}


def matches(form, value):
    return utf16_length(value) <= form.longest and re.fullmatch(form.pattern, value) is not None
