#!/usr/bin/env python3
"""Line and branch coverage of the product's code, from the counters that its tests left in a build folder. It fails
below its limits, for a line that no test reaches and unreached.toml does not name, and for an entry there that belongs to
no line any more, or to several.

A branch is a way out of a condition of the source. The ways that an exception takes out of each call are left out. A
template's branch is taken when one of its instances takes it.

Usage: coverage.py BUILD_FOLDER [--missed]   (--missed: which lines and branches no test reaches)
"""

import json
import pathlib
import subprocess
import sys
import tomllib
from dataclasses import dataclass, field

ROOT = pathlib.Path(__file__).resolve().parent.parent
GCOV = "x86_64-w64-mingw32-gcov-posix"
PRODUCT = ("app", "service", "logging", "utils")
LEAST_LINES, LEAST_BRANCHES = 97.0, 90.0  # per cent


@dataclass
class Counts:
    """Of one file, summed over all programs that contain it."""
    lines: dict = field(default_factory=dict)  # number -> how often it ran
    branches: dict = field(default_factory=dict)  # (line, its function's place, number in the line) -> how often taken

    def add(self, line, place_of):
        number = line["line_number"]
        self.lines[number] = self.lines.get(number, 0) + line["count"]
        ways = [way for way in line["branches"] if not way["throw"]]
        # One way that is no exception's is no condition.
        for nth, way in enumerate(ways if len(ways) > 1 else []):
            key = number, place_of.get(line.get("function_name")), nth
            self.branches[key] = self.branches.get(key, 0) + way["count"]

    def missed_lines(self):
        return [number for number, count in sorted(self.lines.items()) if count == 0]

    def missed_branches(self):
        """(line, number in the line) of each."""
        return sorted((line, nth) for (line, _, nth), count in self.branches.items() if count == 0)


def merged(reports, relative):
    """Product file -> Counts. reports: what gcov says of each program's objects; relative: a path's name within the
    project, or None."""
    counts = {}
    for report in reports:
        for file in report["files"]:
            name = relative(file["file"])
            if name and name.split("/")[0] in PRODUCT:
                # All instances of a template stand at the same place.
                place_of = {each["name"]: (each["start_line"], each["start_column"]) for each in file["functions"]}
                for line in file["lines"]:
                    counts.setdefault(name, Counts()).add(line, place_of)
    return counts


def reports_of(build):
    for counters in sorted(build.rglob("*.gcda")):
        answer = subprocess.run([GCOV, "--json-format", "--branch-probabilities", "--stdout", counters],
                                capture_output=True, cwd=build, check=True)
        for text in answer.stdout.splitlines():
            yield json.loads(text)


def share(reached, total):
    return 100 * reached / total if total else 100.0


def lines_and_branches(counts):
    """((lines reached, lines), (branches taken, branches)) of these files."""
    lines = sum(len(each.lines) for each in counts)
    branches = sum(len(each.branches) for each in counts)
    return ((lines - sum(len(each.missed_lines()) for each in counts), lines),
            (branches - sum(len(each.missed_branches()) for each in counts), branches))


def places_of(entry, counts, text_of):
    """The numbers of the lines that an entry names. text_of(file, line): what stands there."""
    name, before = entry["file"], entry.get("after")
    return [number for number in sorted(counts[name].lines if name in counts else ())
            if text_of(name, number) == entry["line"] and before in (None, text_of(name, number - 1))]


def unreached(counts, entries, text_of):
    """([(file, line, its reason or None) of each line that no test reaches], what is wrong with the entries)."""
    reasons, wrong = {}, []
    for entry in entries:
        places = places_of(entry, counts, text_of)
        if len(places) == 1:
            reasons[entry["file"], places[0]] = entry["reason"]
        else:
            has = "has several times: say after which line" if places else "no longer has"
            wrong.append(f"names a line that {entry['file']} {has}: {entry['line']}")
    return [(name, number, reasons.get((name, number))) for name, each in sorted(counts.items())
            for number in each.missed_lines()], wrong


def text_of(name, number):
    lines = (ROOT / name).read_text(encoding="utf-8").splitlines()
    return lines[number - 1].strip() if number > 0 else ""


def relative_to_root(build):
    def relative(path):
        full = (build / path).resolve()
        return str(full.relative_to(ROOT)) if ROOT in full.parents else None
    return relative


def show(counts):
    for name, each in sorted(counts.items()):
        lines, branches = lines_and_branches([each])
        print(f"{share(*lines):6.1f} % {share(*branches):6.1f} %  {name}")


def show_missed(counts, missed):
    print("\nno test reaches these lines:")
    for name, number, reason in missed:
        print(f"    {name}:{number}: {text_of(name, number)}\n        {reason or 'no reason is named'}")
    print("no test takes these branches (line, and which of its ways):")
    for name, each in sorted(counts.items()):
        ways = [f"{number} ({nth + 1})" for number, nth in each.missed_branches()]
        if ways:
            print(f"    {name}: {', '.join(ways)}")


def main(build, show_all):
    counts = merged(reports_of(build), relative_to_root(build))
    if not counts:
        sys.exit(f"coverage: no counters of product code in {build}; run its tests first")
    entries = tomllib.loads((ROOT / "cmake" / "unreached.toml").read_text(encoding="utf-8")).get("unreached", [])
    missed, wrong = unreached(counts, entries, text_of)
    wrong += [f"gives no reason for {name}:{number}: {text_of(name, number)}" for name, number, reason in missed if not reason]
    print(" lines  branches  file")
    show(counts)
    if show_all:
        show_missed(counts, missed)
    lines, branches = lines_and_branches(counts.values())
    print(f"\nlines:    {share(*lines):5.1f} %, {lines[0]} of {lines[1]}; the least is {LEAST_LINES:.0f} %\n"
          f"branches: {share(*branches):5.1f} %, {branches[0]} of {branches[1]}; the least is {LEAST_BRANCHES:.0f} %")
    for each in wrong:
        print(f"coverage: cmake/unreached.toml {each}", file=sys.stderr)
    return 1 if wrong or share(*lines) < LEAST_LINES or share(*branches) < LEAST_BRANCHES else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve(), "--missed" in sys.argv))
