#!/usr/bin/env python3
"""layout.py MANIFEST EXECUTABLE DESKTOP FOLDER [MARKUP...]: the package as a folder, as the simulator registers it.

DESKTOP is the program that takes the desktop component's place, MARKUP the pages' files."""

import sys

import contents
from msix.problem import PackageError

if __name__ == "__main__":
    manifest, executable, desktop, folder, *markup = sys.argv[1:]
    try:
        contents.to_folder(contents.from_build(manifest, executable, desktop, markup), folder)
    except PackageError as error:
        sys.exit(str(error))
