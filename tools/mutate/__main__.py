#!/usr/bin/python3
"""./dev mutate; the builds are there already. Debian's own Python runs it, which has Debian's libclang."""

import os
import pathlib
import signal
import sys

import command
import processes

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent

if __name__ == "__main__":
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda *_: processes.stop())
    sys.exit(command.main(ROOT, sys.argv[1:], pathlib.Path(os.environ.get("VELMO_CALLED_FROM", "."))))
