#!/usr/bin/env python3
"""Includes run downward only: app -> service -> logging -> utils; nothing of the product knows what stands beside it."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# Folder -> the folders of this project that its files may include (themselves always).
ALLOWED = {
    "utils": {"logging/AbstractLogger.h"},  # the outlet that the utilities log through
    "logging": {"utils"},
    "service": {"logging", "utils"},
    "app": {"service", "logging", "utils"},
    "projection": {"winrt"},  # its own headers, by the names that programs include
}

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def violations():
    for folder, allowed in ALLOWED.items():
        for path in sorted((ROOT / folder).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            for included in INCLUDE.findall(path.read_text(encoding="utf-8")):
                if "/" not in included:
                    continue  # beside the file itself
                top = included.split("/")[0]
                if top != folder and top not in allowed and included not in allowed:
                    yield f"{path.relative_to(ROOT)} includes {included}"


if __name__ == "__main__":
    found = list(violations())
    print("\n".join(found), end="\n" if found else "")
    sys.exit(1 if found else 0)
