"""Problems of a package: what is wrong, where, and what to do."""

from dataclasses import dataclass

from . import limits

_LONGEST_FIELD = 400


def brief(text, longest=60):
    """A text from a package for a message: on one line and of limited length, for any text."""
    line = "".join(character if character.isprintable() else f"\\u{ord(character):04x}" for character in text[:longest])
    return line if len(text) <= longest else line + "…"


@dataclass(frozen=True)
class Problem:
    where: str  # a part of the package, a file, or an element
    what: str  # a sentence without its full stop
    remedy: str  # likewise

    def __str__(self):
        where, what, remedy = (brief(str(text), _LONGEST_FIELD) for text in (self.where, self.what, self.remedy))
        return f"{where}: {what}. {remedy}."


class PackageError(Exception):
    """A problem after which there is nothing more to read or to write."""

    def __init__(self, where, what, remedy):
        self.problem = Problem(where, what, remedy)
        super().__init__(str(self.problem))


class Enough(Exception):
    """More problems were found than are reported."""


class Report:
    """Collects what is wrong with a package."""

    def __init__(self):
        self.problems = []

    def add(self, where, what, remedy):
        self.extend([Problem(where, what, remedy)])

    def extend(self, problems):
        """Raises Enough once there are too many."""
        for problem in problems:
            if len(self.problems) == limits.PROBLEMS:
                raise Enough
            self.problems.append(problem)

    def attempt(self, check):
        """Runs a check of which an error is one problem more."""
        try:
            check()
        except PackageError as error:
            self.extend([error.problem])
