#!/usr/bin/env python3
"""The suites of a test file XTest.cpp are named X..., so that ./dev test X finds them."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

SUITE = re.compile(r"^\s*(?:TEST|TEST_F|TEST_P|TYPED_TEST|TYPED_TEST_P)\(\s*(\w+)", re.MULTILINE)


def violations(root=ROOT):
    for path in sorted((root / "tests").rglob("*.cpp")):
        suites = sorted(set(SUITE.findall(path.read_text(encoding="utf-8"))))
        name = path.stem.removesuffix("Test")
        if suites and name == path.stem:
            yield f"{path.relative_to(root)}: has tests, and is not named ...Test.cpp"
        else:
            yield from (f"{path.relative_to(root)}: the suite {suite} is not named {name}..." for suite in suites
                        if not suite.startswith(name))


if __name__ == "__main__":
    found = list(violations())
    print("\n".join(found), end="\n" if found else "")
    sys.exit(1 if found else 0)
