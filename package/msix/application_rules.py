"""Checks the files that the manifest names: that they exist, and suit their purpose."""

import itertools
import re

from . import executable_rules, limits
from .part_names import MANIFEST
from .png_reader import Png
from .problem import Problem

# Windows' limit for the images that a manifest names.
LARGEST_IMAGE = 204800

# The addresses in the executable's strings of files that it loads from its package.
_MOST_RESOURCES = 1000
_RESOURCE = re.compile(re.escape("ms-appx:///".encode("utf-16-le")) + rb"((?:[\x21-\x7e]\0){1,255})")


def check(manifest, parts, report):
    """Raises PackageError for a manifest that lacks a value that its rules need."""
    _Application(manifest, parts, report).check()


class _Application:
    def __init__(self, manifest, parts, report):
        self._manifest = manifest
        self._parts = parts
        self._report = report

    def check(self):
        manifest = self._manifest
        for path, size in manifest.images().items():
            self._file(path, MANIFEST, limits.IMAGE, lambda data: _image_problems(path, data, size))
        own = manifest.executable
        self._program(own, lambda data: executable_rules.app_problems(own, data, manifest))
        for path, classes in manifest.servers():
            self._program(path, lambda data: executable_rules.server_problems(path, data, classes))
        if manifest.has_desktop_component:
            component = manifest.desktop_component
            self._program(component, lambda data: executable_rules.desktop_problems(component, data))
        self._program(own, self._loaded_files)

    def _file(self, path, user, most, rules):
        """Reports that there is no such file, or what the rules find in its content."""
        if path not in self._parts:
            what = f"{user} names this file, but the package does not have it"
            self._report.add(path, what, "Put it into the package")
        elif rules and self._parts.readable(path):
            self._report.attempt(lambda: self._report.extend(rules(self._parts.content(path, most))))

    def _program(self, path, rules):
        self._file(path, MANIFEST, limits.PROGRAM, rules)

    def _loaded_files(self, data):
        first = itertools.islice(_RESOURCE.finditer(data), _MOST_RESOURCES)
        found = {match[1].decode("utf-16-le").replace("/", "\\") for match in first}
        for path in sorted(found):
            self._file(path, self._manifest.executable, 0, None)
        return ()


def _image_problems(path, data, size):
    if len(data) > LARGEST_IMAGE:
        yield Problem(path, f"the image has {len(data)} bytes; Windows takes {LARGEST_IMAGE}", "Make it smaller")
    try:
        image = Png(data)
        if (image.width, image.height) != (size, size):
            what = f"the image has {image.width} x {image.height} pixels; the manifest's use of it asks for"
            yield Problem(path, f"{what} {size} x {size}", f"Draw it with {size} x {size} pixels")
            return
        image.check_pixels()
    except ValueError as error:
        yield Problem(path, str(error), "Draw it again: package/command.py layout")
