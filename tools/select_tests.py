#!/usr/bin/env python3
"""Which tests have a name that matches a regular expression, and which programs hold them.

Usage: select_tests.py programs BUILD NAME   the test programs to build, one a line: by their sources, which is quick
       select_tests.py filter NAME <LIST     GoogleTest's filter of what a program lists with --gtest_list_tests
"""

import pathlib
import re
import sys

TEST = re.compile(r"^(?:TYPED_)?TEST(?:_[FP])?\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.MULTILINE)
INSTANCE = re.compile(r"INSTANTIATE_TYPED_TEST_SUITE_P\(\s*(\w+)\s*,\s*(\w+)|INSTANTIATE_TEST_SUITE_P\(\s*(\w+)\s*,\s*(\w+)")


def names_in(source):
    """The tests of a source file. Those of an instance end with a slash: its number comes then."""
    text = source.read_text(encoding="utf-8")
    instances = [(found[1] or found[3], found[2] or found[4]) for found in INSTANCE.finditer(text)]
    for suite, test in TEST.findall(text):
        yield f"{suite}.{test}"
        yield from (f"{prefix}/{suite}.{test}/" for prefix, instance in instances if instance == suite)


def programs(build, name):
    # What is asked for may go on behind the slash.
    wanted = [re.compile(name), re.compile(re.sub(r"(?<=\w/)\d+\$?$", "", name))]
    for program in sorted((build / "test-programs").glob("*")):
        sources = [pathlib.Path(line) for line in program.read_text().splitlines()[1:]]
        names = [test for source in sources if source.exists() for test in names_in(source)]
        if name == program.name or any(expression.search(each) for expression in wanted for each in names):
            yield program.name


def listed(text):
    """What --gtest_list_tests shows: suite -> its tests, which are indented."""
    suites = {}
    for line in text.splitlines():
        words = line.partition("#")[0].rstrip()
        if line.startswith("  "):
            tests.append(words.strip())
        elif words.endswith("."):
            tests = suites.setdefault(words, [])
    return suites


def filter_of(suites, name):
    for suite, tests in suites.items():
        found = [test for test in tests if re.search(name, suite + test)]
        yield from [suite + "*"] if found == tests else [suite + test for test in found]


def main(kind, *arguments):
    if kind == "programs":
        print(*programs(pathlib.Path(arguments[0]), arguments[1]), sep="\n")
    else:
        print(*filter_of(listed(sys.stdin.read()), arguments[0]), sep=":")


if __name__ == "__main__":
    main(*sys.argv[1:])
