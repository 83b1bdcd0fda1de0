"""The parts of a package in its archive, found by their paths without regard to case, as Windows does."""

from . import limits, part, part_names, zip_reader
from .problem import PackageError

_AGAIN = "Make the package again"


class PackageParts:
    """Reports to `report` what is wrong with a part by itself; it is then among the parts, but not to be read."""

    def __init__(self, data, where, report):
        """Raises PackageError for a file that is not an archive."""
        self._report = report
        self._entries = {}  # the folded path -> path, entry
        self._digests = {}  # the folded path -> digests of the blocks, for parts in order
        entries = zip_reader.read(data, where)
        together = sum(entry.size for entry in entries)
        if together > limits.CONTENT:
            what = f"its files would have {together} bytes; packages up to {limits.CONTENT} bytes are looked at"
            raise PackageError(where, what, "Leave files out of it")
        for entry in entries:
            report.attempt(lambda: self._add(entry))

    def _add(self, entry):
        path = part_names.canonical(part_names.decode(entry.name))
        key = part_names.folded(path)
        if key in self._entries:
            raise PackageError(path, "there are two parts of this name; Windows ignores case", _AGAIN)
        self._entries[key] = path, entry
        objection = None if path in part_names.FOOTPRINT else part_names.objection(path)
        if objection:
            self._report.add(path, objection, "Give the file another name and make the package again")
        self._digests[key] = part.digests(entry, path)

    def paths(self):
        """In the archive's order."""
        return [path for path, _ in self._entries.values()]

    def __contains__(self, path):
        return part_names.folded(path) in self._entries

    def readable(self, path):
        """Whether the part exists and its data is valid."""
        return part_names.folded(path) in self._digests

    def entry(self, path):
        return self._entries[part_names.folded(path)][1]

    def digests(self, path):
        return self._digests[part_names.folded(path)]

    def whole_digest(self, path):
        """The digest of a whole readable part."""
        return part.whole_digest(self.entry(path), path)

    def content(self, path, most):
        """The bytes of a readable part. Raises PackageError when it has more than `most`."""
        return part.content(self.entry(path), path, most)
