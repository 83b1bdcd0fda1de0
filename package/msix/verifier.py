"""Checks a whole package for what Windows, or its certification kit, would refuse."""

from . import application_rules, block_map, block_map_rules, certificate, content_types, limits, manifest_rules
from . import package_parts, part_names, signature
from .manifest import Manifest
from .part_names import BLOCK_MAP, CONTENT_TYPES, MANIFEST, SIGNATURE
from .problem import Enough, PackageError, Problem, Report
from .zip_writer import DEFLATED

_AGAIN = "Make the package again"


class _Verifier:
    def __init__(self, data, where, report):
        self._report = report
        self._parts = package_parts.PackageParts(data, where, report)

    def run(self, given):
        """`given` is the certificate that the package shall be installed with, as the bytes of its file, or None."""
        self._order()
        for name in (MANIFEST, BLOCK_MAP, CONTENT_TYPES):
            if name not in self._parts:
                self._report.add(name, "the package has no such part", _AGAIN)
        checks = (BLOCK_MAP, self._block_map), (CONTENT_TYPES, self._content_types), (MANIFEST, self._app)
        for name, check in checks:
            if self._parts.readable(name):
                self._report.attempt(check)
        if self._parts.readable(MANIFEST):
            self._report.attempt(lambda: self._certificates(given))

    def _content(self, name):
        return self._parts.content(name, limits.XML)

    def _order(self):
        found = self._parts.paths()
        for path, expected in zip(found, sorted(found, key=part_names.order)):
            if path != expected:
                self._report.add(path, f"it stands where {expected} must, in the order of packages", _AGAIN)
                return

    def _block_map(self):
        mapped = block_map.read(self._content(BLOCK_MAP))
        self._report.extend(block_map_rules.problems(mapped, self._parts))

    def _content_types(self):
        if self._parts.entry(CONTENT_TYPES).method != DEFLATED:
            self._report.add(CONTENT_TYPES, "it is stored; tools that sign damage the package then", "Deflate it")
        paths = [path for path in self._parts.paths() if path != CONTENT_TYPES]
        self._report.extend(content_types.problems(self._content(CONTENT_TYPES), paths))

    def _app(self):
        manifest = Manifest(self._content(MANIFEST))
        before = len(self._report.problems)
        self._report.extend(manifest_rules.problems(manifest))
        # The other checks of the application rely on a valid manifest.
        if len(self._report.problems) == before:
            application_rules.check(manifest, self._parts, self._report)

    def _certificates(self, given):
        publisher = Manifest(self._content(MANIFEST)).publisher
        if given is not None:
            subject = certificate.subject(given, "the certificate")
            if subject != publisher:
                self._report.add(MANIFEST, *_other_publisher(publisher, subject))
        if self._parts.readable(SIGNATURE):
            self._signature(publisher)

    def _signature(self, publisher):
        signed = signature.Signature(self._parts.content(SIGNATURE, signature.LARGEST))
        if publisher not in signed.subjects:
            self._report.add(MANIFEST, *_other_publisher(publisher, " or ".join(signed.subjects) or "missing"))
        parts = (name for name in signature.PARTS if self._parts.readable(name))
        self._report.extend(signed.problems({name: self._content(name) for name in parts}))


def _other_publisher(publisher, subject):
    return (
        f"its Publisher is {publisher}, the certificate's subject is {subject}",
        "Sign with a certificate whose subject is the Publisher, or change the manifest",
    )


def verify(data, where, given_certificate=None):
    """All problems of a package (its bytes), in the order in which they were found."""
    report = Report()
    try:
        _Verifier(data, where, report).run(given_certificate)
    except PackageError as error:
        return [*report.problems, error.problem]
    except Enough:
        return [*report.problems, Problem(where, "it has more problems than these", "Mend them first")]
    return report.problems
