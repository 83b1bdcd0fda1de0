#!/usr/bin/env python3
"""Line coverage of the product's code, from the counters that its tests left in a build folder.

Usage: coverage.py BUILD_FOLDER [--missed]   (--missed: the numbers of the lines that no test reaches)
"""

import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
GCOV = "x86_64-w64-mingw32-gcov-posix"
PRODUCT = ("app", "service", "logging", "utils")


def counted_lines(build):
    """Product file -> line -> how often it ran, summed over all programs that contain it."""
    lines = {}
    for counters in sorted(build.rglob("*.gcda")):
        answer = subprocess.run([GCOV, "--json-format", "--stdout", counters], capture_output=True, cwd=build, check=True)
        for text in answer.stdout.splitlines():
            for file in json.loads(text)["files"]:
                path = (build / file["file"]).resolve()
                if ROOT not in path.parents or path.relative_to(ROOT).parts[0] not in PRODUCT:
                    continue
                counts = lines.setdefault(str(path.relative_to(ROOT)), {})
                for line in file["lines"]:
                    counts[line["line_number"]] = counts.get(line["line_number"], 0) + line["count"]
    return {name: counts for name, counts in lines.items() if counts}


def main(build, show_missed):
    lines = counted_lines(build)
    if not lines:
        sys.exit(f"coverage: no counters of product code in {build}; run its tests first")
    total = reached = 0
    for name, counts in sorted(lines.items()):
        missed = [number for number, count in sorted(counts.items()) if count == 0]
        total += len(counts)
        reached += len(counts) - len(missed)
        print(f"{100 * (len(counts) - len(missed)) / len(counts):6.1f} %  {name}")
        if show_missed and missed:
            print(f"            missed: {', '.join(map(str, missed))}")
    print(f"{100 * reached / total:6.1f} %  {reached} of {total} lines")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]).resolve(), "--missed" in sys.argv)
