"""What lies in the package: the files as they come from the build, and the desktop component of the suite."""

import pathlib

from msix import logo
from msix.files import read, refuse, remove, write
from msix.manifest import Manifest
from msix.part_names import MANIFEST
from msix.problem import PackageError

STAND_IN = "Its desktop component is a stand-in for development."

def _files_below(folder):
    try:
        return [file for file in sorted(folder.rglob("*")) if file.is_file()]
    except OSError as error:
        refuse(folder, "it cannot be read", error, "Give a folder that can be read")


def from_build(manifest_file, executable, desktop, markup):
    """The files of the package: path with backslashes -> content. The images are drawn here."""
    manifest = Manifest(read(manifest_file), manifest_file)
    files = {
        MANIFEST: read(manifest_file),
        manifest.executable: read(executable),
        manifest.desktop_component: read(desktop),
    }
    files |= {pathlib.Path(file).name: read(file) for file in markup}
    files |= {path: logo.draw(side) for path, side in manifest.images().items()}
    return files


def from_folder(folder):
    root = pathlib.Path(folder)
    files = {str(file.relative_to(root)).replace("/", "\\"): read(file) for file in _files_below(root)}
    if MANIFEST not in files:
        raise PackageError(folder, f"there is no {MANIFEST} in it", "Build the package's folder with ./dev build")
    return files


def to_folder(files, folder):
    """Makes the folder contain exactly these files; a file that is up to date is not written."""
    root = pathlib.Path(folder)
    wanted = {root / path.replace("\\", "/"): data for path, data in files.items()}
    for file in _files_below(root):
        if file not in wanted:
            remove(file)
    for file, data in wanted.items():
        if not file.is_file() or read(file) != data:
            write(file, data)


def with_stand_in_told(files):
    """The files with a manifest whose description says that the desktop component is not the suite's."""
    end = b"</Description>"
    if files[MANIFEST].count(end) != 1:
        raise PackageError(MANIFEST, "its Properties have no Description, or it has several", "Write one there")
    return files | {MANIFEST: files[MANIFEST].replace(end, b" " + STAND_IN.encode("ascii") + end)}


def with_desktop_component(files, path):
    """The files with the suite's desktop component: a program, or a folder that holds it and what it needs."""
    component = Manifest(files[MANIFEST]).desktop_component
    folder, _, program = component.rpartition("\\")
    given = pathlib.Path(path)
    if given.is_file():
        return files | {component: read(given)}
    if not (given / program).is_file():
        raise PackageError(path, f"there is no {program} in it", f"Give the path of {program}, or of its folder")
    rest = {name: data for name, data in files.items() if name != component}
    own = {str(file.relative_to(given)): read(file) for file in _files_below(given)}
    return rest | {f"{folder}\\{name}".lstrip("\\").replace("/", "\\"): data for name, data in own.items()}
