#!/usr/bin/env python3
"""Runs clang-tidy over C++ sources and shows how far it is. Sources go into one file (see unity.py) as long as it has
at most that many bytes: the headers they share, which are most of the work, are then looked at once.

Usage: tidy.py BUILD MOST_BYTES <SOURCES   (BUILD: a configured folder, for the compiler's options)
"""

import concurrent.futures
import dataclasses
import functools
import json
import os
import pathlib
import re
import subprocess
import sys

import unity

ROOT = pathlib.Path(__file__).resolve().parent.parent
OPTION = re.compile(r"-isystem \S+|\S+")
COMMAND = re.compile(r"(?P<options>.*) -o (?P<output>\S+) -c \S+$")
# The analyzer does not step into the standard library: that takes most of its time, and finds leaks in std::function.
ANALYZER = [f"--extra-arg={word}" for word in ("-Xclang", "-analyzer-config", "-Xclang", "c++-stdlib-inlining=false")]
LIBRARY = re.compile(r"^#include <(\w+)/", re.MULTILINE)
OWN_HEADER = re.compile(r'^#include "([^"]+)"', re.MULTILINE)
SHARED_HEADERS = re.compile(r" -Winvalid-pch| -Xclang -include(-pch)? -Xclang \S+")  # a source names what it uses


def options(build, tops):
    """All options with which sources of these top folders are compiled: each source then sees the headers it needs."""
    found = {}  # in the order in which they appear
    for entry in json.loads((build / "compile_commands.json").read_text()):
        command = COMMAND.match(entry["command"])  # resources are compiled otherwise
        if command and pathlib.Path(command["output"]).parts[0] in tops:
            found |= dict.fromkeys(OPTION.findall(SHARED_HEADERS.sub("", command["options"])))
    return " ".join(found)


@functools.cache
def libraries(path):
    """Those that a file uses, also by way of headers of its own project."""
    text = path.read_text(encoding="utf-8")
    headers = filter(pathlib.Path.exists, map(pathlib.Path, OWN_HEADER.findall(text)))
    return set(LIBRARY.findall(text)).union(*map(libraries, headers))


def by_libraries(sources):
    """Those that use the same libraries one after the other: a library is more work than all sources together."""
    return sorted(sources, key=lambda source: sorted(libraries(pathlib.Path(source))), reverse=True)


def grouped(sources, most_bytes):
    """As the build's larger units, but whatever namespaces are used: those who use some come behind those who do not. Names
    that an earlier one makes visible are at worst ambiguous, and clang-tidy says so."""
    read = [unity.read(path) for path in by_libraries(sources)]
    used = {source.path: len(source.directives) for source in read}
    groups = unity.grouped([dataclasses.replace(source, directives=frozenset()) for source in read], most_bytes)
    return [sorted((source.path for source in group), key=used.get) for group in groups]


class Unit:
    """Sources as one main file, since some checks look at nothing else: first what all of them include, which then sees
    no name of theirs, then the rest of each."""

    def __init__(self, path, sources):
        self.path = path
        included, rest = [], []  # (line, place)
        for source in sources:
            known = {line for line, _ in included}  # an include that an earlier source has would be a duplicate
            for number, line in enumerate(pathlib.Path(source).read_text(encoding="utf-8").splitlines(), 1):
                if not line.startswith("#include"):
                    rest.append((line, f"{source}:{number}"))
                elif line not in known:
                    included.append((line, f"{source}:{number}"))
        lines, self.places = zip(*(included + rest))
        path.write_text("\n".join(lines) + "\n", encoding="utf-8")

    def lint(self):
        """(exit code, what is to be told)"""
        done = subprocess.run(["clang-tidy-19", "-p", self.path.parent, "--quiet", "--warnings-as-errors=*", *ANALYZER, self.path],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        told = done.stdout or (done.stderr if done.returncode else "")
        here = re.compile(rf"{re.escape(str(self.path))}:(\d+)")
        return done.returncode, here.sub(lambda found: self.places[int(found[1]) - 1], told)


def write_units(sources, most_bytes, build, folder):
    """Writes the units, the largest first, and their compile_commands.json."""
    folder.mkdir(exist_ok=True)
    command = options(build, {pathlib.Path(source).parts[0] for source in sources})
    units = [Unit(folder / f"{number}.cpp", group) for number, group in enumerate(grouped(sources, most_bytes))]
    entries = [{"directory": str(folder), "file": str(unit.path), "command": f"{command} -c {unit.path}"} for unit in units]
    (folder / "compile_commands.json").write_text(json.dumps(entries, indent=1))
    return sorted(units, key=lambda unit: -len(unit.places))


def main(build, most_bytes, sources):
    units = write_units(sources, most_bytes, build, build / "tidy")
    failed = False
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        running = [pool.submit(unit.lint) for unit in units]
        for done, future in enumerate(concurrent.futures.as_completed(running), 1):
            code, told = future.result()
            print(f"{told}    clang-tidy: {done} of {len(units)}", flush=True)
            failed = failed or code != 0
    return failed


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2]), sys.stdin.read().split()))
