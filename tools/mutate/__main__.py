#!/usr/bin/python3
"""./dev mutate; the builds are there already. Debian's own Python runs it, which has Debian's libclang."""

import os
import pathlib
import sys

import command

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent

if __name__ == "__main__":
    sys.exit(command.main(ROOT, sys.argv[1:], pathlib.Path(os.environ.get("VELMO_CALLED_FROM", "."))))
