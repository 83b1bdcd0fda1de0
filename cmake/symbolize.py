#!/usr/bin/env python3
"""Turns a crash's places into functions and lines."""

import argparse
import pathlib
import re
import struct
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SYMBOLIZER = "llvm-symbolizer-19"
PLACE = re.compile(r"([\w.-]+)\+(0x[0-9A-Fa-f]+)")


def source(name):
    """A file of the .pdb: Windows slashes, and the way from the folder in which the compiler ran."""
    return re.sub(r"^(\.{1,2}/)+", "", name.replace("\\", "/"))


def size_in_memory(program):
    data = program.read_bytes()
    headers = struct.unpack_from("<I", data, 0x3C)[0]
    return struct.unpack_from("<I", data, headers + 0x50)[0]


def functions(program, offset):
    """Each function at the offset with its line, those that were inlined there first; none without an answer."""
    if int(offset, 16) >= size_in_memory(program):
        return  # the symbolizer would name the last function
    command = [SYMBOLIZER, f"--obj={program}", "--relative-address", offset]
    lines = subprocess.run(command, capture_output=True, text=True, check=True).stdout.split("\n")
    for name, place in zip(lines[::2], lines[1::2]):
        if name and name != "??":
            file, line, _ = place.rsplit(":", 2)
            yield f"{name} at {source(file)}:{line}" if file != "??" else name


def main():
    parser = argparse.ArgumentParser(
        prog="./dev symbolize", description=__doc__,
        epilog="example: ./dev symbolize VelmoNotificationClient.exe+0x1613, or the text of an app-crashed event")
    parser.add_argument("--in", dest="folder", type=pathlib.Path, default=ROOT / "build" / "product" / "app",
                        help="where the executable of the very build that crashed lies, its .pdb beside it (default: "
                        "build/product/app)")
    parser.add_argument("text", nargs="+", metavar="MODULE+OFFSET", help="a place, or a text with places in it")
    arguments = parser.parse_args()
    places = PLACE.findall(" ".join(arguments.text))
    if not places:
        parser.error("there is no MODULE+OFFSET (an offset begins with 0x) in the text")
    found = False
    for module, offset in places:
        program = arguments.folder / module
        lines = list(functions(program, offset)) if program.with_suffix(".pdb").exists() else []
        print("\n  in ".join([f"{module}+{offset}  {lines[0]}", *lines[1:]]) if lines else f"{module}+{offset}")
        found = found or bool(lines)
    if not found:
        sys.exit(f"./dev symbolize: no executable in {arguments.folder}, with its .pdb beside it, explains this")


if __name__ == "__main__":
    main()
