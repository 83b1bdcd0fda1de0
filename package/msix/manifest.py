"""Reads AppxManifest.xml, for what is built from it and checked against it."""

import hashlib

from . import xml_text
from .part_names import MANIFEST
from .problem import PackageError

FOUNDATION = "{http://schemas.microsoft.com/appx/manifest/foundation/windows10}"
UAP = "{http://schemas.microsoft.com/appx/manifest/uap/windows10}"
DESKTOP = "{http://schemas.microsoft.com/appx/manifest/desktop/windows10}"
RESTRICTED = "{http://schemas.microsoft.com/appx/manifest/foundation/windows10/restrictedcapabilities}"

_FULL_TRUST = f".//{DESKTOP}Extension[@Category='windows.fullTrustProcess']"

# The side in pixels of each image that a manifest names, at 100 % scale.
LOGO_SIZE = 50
VISUAL_SIZES = {"Square150x150Logo": 150, "Square44x44Logo": 44}


def publisher_id(publisher):
    """64 bits of a SHA-256 over the name in UTF-16, in Crockford's base 32: five bits a character, one zero added."""
    digest = hashlib.sha256(publisher.encode("utf-16-le")).digest()
    number = int.from_bytes(digest[:8], "big") << 1
    digits = "0123456789abcdefghjkmnpqrstvwxyz"
    return "".join(digits[number >> shift & 31] for shift in range(60, -1, -5))


class Manifest:
    """Its properties raise PackageError for values that the manifest lacks."""

    def __init__(self, data, where=MANIFEST):
        self.root = xml_text.parse(data, where)
        self._where = where

    def _element(self, path):
        found = self.root.find(path)
        if found is None:
            raise PackageError(self._where, f"it has no <{xml_text.plain(path)}>", "Declare it there")
        return found

    def _attribute(self, path, name):
        value = self._element(path).get(name)
        if not value:
            raise PackageError(self._where, f"<{xml_text.plain(path)}> has no {name}", "Declare it there")
        return value

    @property
    def publisher(self):
        return self._attribute(f"{FOUNDATION}Identity", "Publisher")

    @property
    def version(self):
        return self._attribute(f"{FOUNDATION}Identity", "Version")

    @property
    def architecture(self):
        return self._attribute(f"{FOUNDATION}Identity", "ProcessorArchitecture")

    @property
    def family_name(self):
        return f"{self._attribute(f'{FOUNDATION}Identity', 'Name')}_{publisher_id(self.publisher)}"

    @property
    def executable(self):
        return self._attribute(f".//{FOUNDATION}Application", "Executable")

    @property
    def entry_point(self):
        return self._attribute(f".//{FOUNDATION}Application", "EntryPoint")

    @property
    def app_service(self):
        return self._attribute(f".//{UAP}AppService", "Name")

    @property
    def has_app_service(self):
        return self.root.find(f".//{UAP}AppService") is not None

    @property
    def description(self):
        return self._element(f"{FOUNDATION}Properties/{FOUNDATION}Description").text or ""

    @property
    def has_desktop_component(self):
        return self.root.find(_FULL_TRUST) is not None

    @property
    def desktop_component(self):
        """The path of the full-trust executable."""
        return self._attribute(_FULL_TRUST, "Executable")

    def parameter_groups(self):
        """The ids of the full-trust executable's groups of parameters."""
        return [group.get("GroupId") for group in self.root.iterfind(f"{_FULL_TRUST}//{DESKTOP}ParameterGroup")]

    def servers(self):
        """The in-process servers of runtime classes: (path, names of its classes) of each."""
        for server in self.root.iter(f"{FOUNDATION}InProcessServer"):
            classes = server.findall(f"{FOUNDATION}ActivatableClass")
            yield server.findtext(f"{FOUNDATION}Path", ""), [item.get("ActivatableClassId", "") for item in classes]

    def images(self):
        """The images that the package must have: path -> side in pixels."""
        found = {self._element(f"{FOUNDATION}Properties/{FOUNDATION}Logo").text or "": LOGO_SIZE}
        for name, size in VISUAL_SIZES.items():
            found[self._attribute(f".//{UAP}VisualElements", name)] = size
        return found
