"""What the tests of the package share: the packer on the path, and a small package in order that they then spoil."""

import functools
import pathlib
import struct
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "package"))

from msix import logo, verifier, writer  # noqa: E402
from msix.manifest import Manifest  # noqa: E402
from program import make_program  # noqa: E402

EXECUTABLE = "VelmoNotificationClient.exe"
DESKTOP = "HOV\\Tessaline.exe"
MANIFEST = "AppxManifest.xml"
MARKUP = "MainPage.xaml"
STRINGS = (
    "VelmoNotificationClient.App",
    "VelmoNotificationClient.MainPage",
    "VelmoNotificationClient.VelmoNotificationClient_uwp_XamlTypeInfo.XamlMetaDataProvider",
    "LaunchHOV",
    "CURIUpdated",
    "NotificationReceived",
    f"ms-appx:///{MARKUP}",
)


def manifest_bytes():
    return (ROOT / "package" / "AppxManifest.xml").read_bytes()


def app_program(**changes):
    """The application's executable as the manifest describes it, but for the changes."""
    manifest = Manifest(manifest_bytes())
    wanted = {
        "exports": ["DllGetActivationFactory"],
        "strings": STRINGS,
        "version_texts": {"CompanyName": "Velmo", "AppService": manifest.app_service},
        "file_version": tuple(int(part) for part in manifest.version.split(".")),
    }
    return make_program(**(wanted | changes))


@functools.cache
def _images():
    return {path: logo.draw(size) for path, size in Manifest(manifest_bytes()).images().items()}


def files(**changes):
    """The files of a package in order. Changed are those whose name is given; None leaves one out."""
    found = {
        MANIFEST: manifest_bytes(),
        EXECUTABLE: app_program(),
        DESKTOP: make_program(characteristics=0x160),
        MARKUP: b"<Page/>",
        "Empty.txt": b"",
        "One block.bin": b"\x5a" * 65536,
        "One byte more.bin": b"\xa5" * 65537,
    }
    return {path: data for path, data in (found | _images() | changes).items() if data is not None}


def problems(package, certificate=None):
    """What the verifier says of the bytes of a package."""
    return [str(problem) for problem in verifier.verify(package, "sample.msix", certificate)]


def problems_of(changes):
    """What the verifier says of a package made of the sample's files with these changes."""
    return problems(writer.write(files(**changes)))


def problems_of_manifest(old, new):
    """What the verifier says when one text of the manifest is replaced."""
    before = manifest_bytes().decode("utf-8")
    assert old in before, f"the manifest has no {old}"
    return problems_of({MANIFEST: before.replace(old, new).encode("utf-8")})


def set_bytes(data, at, layout, value):
    """A copy with a number written over it."""
    changed = bytearray(data)
    struct.pack_into(layout, changed, at, value)
    return bytes(changed)
