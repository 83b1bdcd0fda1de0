"""What Windows allows in a manifest, as far as this package uses it: elements, attributes, the form of their values."""

import re
from dataclasses import dataclass, field

from .manifest import DESKTOP, FOUNDATION, RESTRICTED, UAP

ONE, OPTIONAL, SOME = (1, 1), (0, 1), (1, None)


@dataclass(frozen=True)
class Element:
    required: dict = field(default_factory=dict)  # attribute -> the form of its value
    optional: dict = field(default_factory=dict)
    children: dict = field(default_factory=dict)  # tag -> least and most times
    text: str | None = None  # the form of its text; without one there is only white space


def _name(longest):
    """Text without blanks around it."""
    return rf"\S(.{{0,{longest - 2}}}\S)?"


_EXECUTABLE = r'[^<>:"|?*/]{1,252}\.[eE][xX][eE]'
_IMAGE = r'[^<>:"|?*/]{1,252}\.([pP][nN][gG]|[jJ][pP][eE]?[gG])'
_CLASS = r"[A-Za-z_]\w*(\.[A-Za-z_]\w*)*"
_PART_OF_VERSION = r"(0|[1-9]\d{0,3}|[1-5]\d{4}|6[0-4]\d{3}|65[0-4]\d\d|655[0-2]\d|6553[0-5])"
_VERSION = rf"{_PART_OF_VERSION}(\.{_PART_OF_VERSION}){{3}}"
# A distinguished name as Windows writes it: parts in the form KEY=value, ", " between them.
_VALUE = r'([^,+="<>#;]+|"[^"]+")'
_KEY = r"(CN|L|O|OU|E|C|S|STREET|T|G|I|SN|DC|SERIALNUMBER|(OID\.)?\d+(\.\d+)+)"
_PUBLISHER = rf"{_KEY}={_VALUE}(, {_KEY}={_VALUE})*"
_COLOUR = r"transparent|#[0-9A-Fa-f]{6}"
_PROTOCOL = r"[a-z0-9][-a-z0-9.+]{1,38}"
_SERVICE = r"[A-Za-z0-9][-_.A-Za-z0-9]{1,38}"

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
            "Name": r"[-.A-Za-z0-9]{3,50}",
            "Publisher": _PUBLISHER,
            "Version": _VERSION,
            "ProcessorArchitecture": "x64",
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
    f"{FOUNDATION}DisplayName": Element(text=_name(256)),
    f"{FOUNDATION}PublisherDisplayName": Element(text=_name(256)),
    f"{FOUNDATION}Description": Element(text=_name(2048)),
    f"{FOUNDATION}Logo": Element(text=_IMAGE),
    f"{FOUNDATION}Dependencies": Element(children={f"{FOUNDATION}TargetDeviceFamily": ONE}),
    f"{FOUNDATION}TargetDeviceFamily": Element(
        required={"Name": r"Windows\.Desktop", "MinVersion": _VERSION, "MaxVersionTested": _VERSION}
    ),
    f"{FOUNDATION}Resources": Element(children={f"{FOUNDATION}Resource": SOME}),
    f"{FOUNDATION}Resource": Element(required={"Language": r"[A-Za-z]{2,3}(-[A-Za-z0-9]{2,8})*"}),
    # Windows takes more than one application; this package, its service and its protocol are made for one.
    f"{FOUNDATION}Applications": Element(children={f"{FOUNDATION}Application": ONE}),
    f"{FOUNDATION}Application": Element(
        required={"Id": r"[A-Za-z][A-Za-z0-9]{0,63}", "Executable": _EXECUTABLE, "EntryPoint": _CLASS},
        children={f"{UAP}VisualElements": ONE, f"{FOUNDATION}Extensions": OPTIONAL},
    ),
    f"{UAP}VisualElements": Element(
        required={
            "DisplayName": _name(256),
            "Description": _name(2048),
            "BackgroundColor": _COLOUR,
            "Square150x150Logo": _IMAGE,
            "Square44x44Logo": _IMAGE,
        },
        optional={"AppListEntry": "default|none"},
    ),
    f"{UAP}Protocol": Element(required={"Name": _PROTOCOL}),
    # Served by the application itself: an EntryPoint on the extension would name a background task of its own.
    f"{UAP}AppService": Element(required={"Name": _SERVICE}),
    f"{DESKTOP}FullTrustProcess": Element(children={f"{DESKTOP}ParameterGroup": SOME}),
    f"{DESKTOP}ParameterGroup": Element(
        required={"GroupId": r"[A-Za-z0-9][-_.A-Za-z0-9]{0,254}", "Parameters": _name(32767)}
    ),
    f"{FOUNDATION}InProcessServer": Element(
        children={f"{FOUNDATION}Path": ONE, f"{FOUNDATION}ActivatableClass": SOME}
    ),
    f"{FOUNDATION}Path": Element(text=r'[^<>:"|?*/]{1,252}\.([eE][xX][eE]|[dD][lL][lL])'),
    f"{FOUNDATION}ActivatableClass": Element(
        required={"ActivatableClassId": _CLASS, "ThreadingModel": "both|STA|MTA"}
    ),
    f"{FOUNDATION}Capabilities": Element(
        children={f"{FOUNDATION}Capability": SOME, f"{RESTRICTED}Capability": SOME}
    ),
    f"{FOUNDATION}Capability": Element(required={"Name": "|".join(GENERAL_CAPABILITIES)}),
    f"{RESTRICTED}Capability": Element(required={"Name": "|".join(RESTRICTED_CAPABILITIES)}),
}

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
    return re.fullmatch(form, value) is not None
