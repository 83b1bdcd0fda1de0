"""What is wrong with a package, told so that the reader knows where to look and what to do."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Problem:
    where: str  # a part of the package, a file, or an element
    what: str  # a sentence without its full stop
    remedy: str  # likewise

    def __str__(self):
        return f"{self.where}: {self.what}. {self.remedy}."


class PackageError(Exception):
    """A problem after which there is nothing more to read or to write."""

    def __init__(self, where, what, remedy):
        self.problem = Problem(where, what, remedy)
        super().__init__(str(self.problem))
