#!/usr/bin/env python3
"""install.py PACKAGE FOLDER: what Windows does with a package, checks it and unpacks it. The simulator registers FOLDER."""

import pathlib
import sys

import contents
from msix import limits, part, part_names, verifier, zip_reader
from msix.part_names import CONTENT_TYPES
from msix.problem import PackageError


def unpack(data, where):
    """The files of a package that is in order: path with backslashes -> content."""
    parts = {part_names.decode(entry.name): entry for entry in zip_reader.read(data, where)}
    return {path: part.content(entry, path, limits.CONTENT) for path, entry in parts.items() if path != CONTENT_TYPES}


def main(package, folder):
    try:
        data = contents.read(package)
        problems = verifier.verify(data, pathlib.Path(package).name)
        if problems:
            return "\n".join(map(str, problems))
        contents.to_folder(unpack(data, package), folder)
        return 0
    except PackageError as error:
        return str(error)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
