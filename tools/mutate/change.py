"""One change of a source, and how it is found again: by what stands there, not by where."""

import difflib
import hashlib
from dataclasses import dataclass


def one_line(text):
    return " ".join(text.split())


@dataclass(frozen=True)
class Change:
    file: str  # below the root
    function: str  # empty outside of functions
    kind: str
    start: int  # bytes of the file
    end: int
    old: str
    new: str
    line: int
    line_text: str
    nth: int = 1  # among those that are told by the same words

    @property
    def words(self):
        return f"{self.kind}: {one_line(self.old)} -> {one_line(self.new)}"

    @property
    def key(self):
        return self.file, self.function, self.line_text, self.words, self.nth

    @property
    def id(self):
        return hashlib.sha256("\n".join(map(str, self.key)).encode()).hexdigest()[:8]

    def applied(self, text):
        """The bytes of the file, changed."""
        return text[: self.start] + self.new.encode() + text[self.end :]

    def diff(self, text):
        """The lines that differ, with - and + before them."""
        before, after = (each.decode().splitlines() for each in (text, self.applied(text)))
        shown = difflib.unified_diff(before, after, n=0, lineterm="")
        return [line for line in shown if not line.startswith(("---", "+++", "@@"))]


def numbered(changes):
    """In order, those told by the same words numbered."""
    seen = {}
    found = []
    for each in sorted(set(changes), key=lambda found: (found.file, found.start, found.end, found.kind, found.new)):
        same = each.key[:-1]
        seen[same] = seen.get(same, 0) + 1
        found.append(Change(**{**each.__dict__, "nth": seen[same]}))
    return found
