"""Checks a whole package for what Windows, or its certification kit, would refuse."""

import re

from . import block_map, blocks, certificate, content_types, executable_rules, manifest_rules, part, part_names, png
from . import zip_reader
from .manifest import Manifest
from .part_names import BLOCK_MAP, CONTENT_TYPES, MANIFEST, OUTSIDE_BLOCK_MAP, SIGNATURE
from .problem import PackageError, Problem
from .signature import Signature
from .zip_writer import DEFLATED, STORED

_ANEW = "Make the package anew"

# Windows' limit for the images that a manifest names.
LARGEST_IMAGE = 204800

_RESOURCE_ADDRESS = "ms-appx:///".encode("utf-16-le")


class _Verifier:
    def __init__(self, data, where):
        self.problems = []
        self._entries = {}
        self._contents = {}
        for entry in zip_reader.read(data, where):
            self._add(entry)
        self._order()

    def run(self):
        for name in (MANIFEST, BLOCK_MAP, CONTENT_TYPES):
            if name not in self._entries:
                self._report(name, "the package has no such part", _ANEW)
        for part, check in ((BLOCK_MAP, self._block_map), (CONTENT_TYPES, self._content_types), (MANIFEST, self._app)):
            if part in self._contents:
                self._attempt(check)

    def certificates(self, given):
        """`given` is the certificate that the package shall be installed with, as the bytes of its file, or None."""
        self._attempt(lambda: self._compare_publisher(given))

    def _report(self, where, what, remedy):
        self.problems.append(Problem(where, what, remedy))

    def _attempt(self, check):
        try:
            check()
        except PackageError as error:
            self.problems.append(error.problem)

    def _add(self, entry):
        try:
            path = part_names.decode(entry.name)
            if path.upper() in {other.upper() for other in self._entries}:
                raise PackageError(path, "there are two parts of this name; Windows ignores case", _ANEW)
            self._entries[path] = entry
            self._contents[path] = part.content(entry, path)
        except PackageError as error:
            self.problems.append(error.problem)
            return
        objection = None if path in part_names.FOOTPRINT else part_names.objection(path)
        if objection:
            self._report(path, objection, "Give the file another name and make the package anew")

    def _order(self):
        found = list(self._entries)
        for path, expected in zip(found, sorted(found, key=part_names.order)):
            if path != expected:
                self._report(path, f"it stands where {expected} must, in the order of packages", _ANEW)
                return

    def _block_map(self):
        mapped = block_map.read(self._contents[BLOCK_MAP])
        listed = [file.path for file in mapped]
        present = [path for path in self._entries if path not in OUTSIDE_BLOCK_MAP]
        for path in sorted(set(listed) - set(present)):
            self._report(path, "the block map lists it, but the package has no such file", _ANEW)
        for path in sorted(set(present) - set(listed)):
            self._report(path, "the package has this file, but the block map does not list it", _ANEW)
        if sorted(set(listed)) == sorted(present) and listed != present:
            self._report(BLOCK_MAP, "it lists the files in another order than the package, or one twice", _ANEW)
        for file in mapped:
            if file.path in self._contents:
                self._mapped_file(file, self._entries[file.path], self._contents[file.path])

    def _mapped_file(self, file, entry, data):
        if file.size != len(data):
            self._report(file.path, f"the block map says {file.size} bytes, the file has {len(data)}", _ANEW)
        if file.header_size != entry.header_size:
            what = f"the block map says that its local header has {file.header_size} bytes; it has {entry.header_size}"
            self._report(file.path, what, _ANEW)
        pieces = blocks.split(data)
        if len(pieces) != len(file.blocks):
            self._report(file.path, f"the block map has {len(file.blocks)} blocks of {len(pieces)}", _ANEW)
            return
        at = 0
        for number, (piece, block) in enumerate(zip(pieces, file.blocks), 1):
            if blocks.digest(piece) != block.digest:
                self._report(file.path, f"block {number} has another hash than the block map says", _ANEW)
            if (block.size is None) != (entry.method == STORED):
                self._report(file.path, f"block {number} has a size in the block map only if it is deflated", _ANEW)
            elif block.size is not None:
                if blocks.inflate_block(entry.stream[at : at + block.size]) != piece:
                    self._report(file.path, f"block {number} is not where the block map's sizes put it", _ANEW)
                at += block.size
        if entry.method == DEFLATED and entry.stream[at:] not in (b"", blocks.END_OF_STREAM):
            self._report(file.path, "there is more behind the last block of the block map", _ANEW)

    def _content_types(self):
        if self._entries[CONTENT_TYPES].method != DEFLATED:
            self._report(CONTENT_TYPES, "it is stored; tools that sign damage the package then", "Deflate it")
        paths = [path for path in self._entries if path != CONTENT_TYPES]
        self.problems.extend(content_types.problems(self._contents[CONTENT_TYPES], paths))

    def _app(self):
        manifest = Manifest(self._contents[MANIFEST])
        problems = list(manifest_rules.problems(manifest))
        self.problems.extend(problems)
        if problems:
            return  # what follows relies on a manifest in order
        for path, size in manifest.images().items():
            self._image(path, size)
        self._program(manifest.executable, lambda path, data: executable_rules.app_problems(path, data, manifest))
        for path, classes in manifest.servers().items():
            self._program(path, lambda path, data: executable_rules.server_problems(path, data, classes))
        if manifest.has_desktop_component:
            self._program(manifest.desktop_component, executable_rules.desktop_problems)
        self._resources(manifest.executable)

    def _file(self, path, user):
        """The content of a file that something needs; None, and reported, when there is none."""
        if path not in self._entries:
            self._report(path, f"{user} names this file, but the package does not have it", "Put it into the package")
        return self._contents.get(path)

    def _image(self, path, size):
        data = self._file(path, MANIFEST)
        if data is None:
            return
        try:
            found = png.read_size(data)
        except ValueError as error:
            self._report(path, str(error), "Draw it anew: package/command.py layout")
            return
        if found != (size, size):
            what = f"the image has {found[0]} x {found[1]} pixels; the manifest's use of it asks for {size} x {size}"
            self._report(path, what, f"Draw it with {size} x {size} pixels")
        if len(data) > LARGEST_IMAGE:
            self._report(path, f"the image has {len(data)} bytes; Windows takes {LARGEST_IMAGE}", "Make it smaller")

    def _program(self, path, rules):
        data = self._file(path, MANIFEST)
        if data is not None:
            self.problems.extend(rules(path, data))

    def _resources(self, executable):
        """The files that the executable loads from its package, by the addresses in its strings."""
        data = self._contents.get(executable, b"")
        for found in re.finditer(re.escape(_RESOURCE_ADDRESS) + rb"((?:[\x21-\x7e]\0)+)", data):
            self._file(found[1].decode("utf-16-le").replace("/", "\\"), executable)

    def _compare_publisher(self, given):
        if MANIFEST not in self._contents:
            return
        publisher = Manifest(self._contents[MANIFEST]).publisher
        if given is not None:
            subject = certificate.subject(given, "the certificate")
            if subject != publisher:
                self._report(MANIFEST, *_other_publisher(publisher, subject))
        if SIGNATURE in self._contents:
            signature = Signature(self._contents[SIGNATURE])
            if publisher not in signature.subjects:
                self._report(MANIFEST, *_other_publisher(publisher, " or ".join(signature.subjects) or "missing"))
            self.problems.extend(signature.problems(self._contents))


def _other_publisher(publisher, subject):
    return (
        f"its Publisher is {publisher}, the certificate's subject is {subject}",
        "Sign with a certificate whose subject is the Publisher, or change the manifest",
    )


def verify(data, where, given_certificate=None):
    """Everything that is wrong with a package (its bytes), as problems in the order in which they were found."""
    try:
        verifier = _Verifier(data, where)
    except PackageError as error:
        return [error.problem]
    verifier.run()
    verifier.certificates(given_certificate)
    return verifier.problems
