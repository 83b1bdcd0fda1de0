"""The programs of tests: what each holds, its tests and how long they take unchanged."""

import json
import pathlib
import re
import sys
import time
from dataclasses import dataclass

import processes

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
import select_tests

OBJECT = re.compile(r"[^\s:()]+\.o(?:bj)?\b")
SLOW = 0.25  # seconds of a test that others come before
LIMIT = 900  # seconds for a program that is not changed


class BaselineFails(Exception):
    pass


@dataclass
class Program:
    build: object
    name: str
    path: str  # below the build folder
    sources: list
    members: set  # the objects that are linked; from archives, by their names alone
    seconds: dict  # test -> how long it takes; none in a program that has nothing of the product

    def holds(self, made):
        return made.path in self.members or (pathlib.PurePath(made.path).name in self.members and
                                             self.build.links_archive(self.path, f"lib{made.library}.a"))

    @property
    def slow(self):
        return [name for name, seconds in self.seconds.items() if seconds >= SLOW]

    def total(self, names=None):
        return sum(self.seconds[name] for name in (self.seconds if names is None else names))

    def named_tests(self, file):
        """The tests in sources that are called as the file is, or include its header."""
        stem, header = pathlib.PurePath(file).stem, f'"{pathlib.PurePath(file).with_suffix(".h")}"'
        suites = set()
        for source in self.sources:
            if source.suffix == ".cpp" and (stem in source.stem or header in source.read_text(encoding="utf-8")):
                suites |= {name.split(".")[0].split("/")[-1] for name in select_tests.names_in(source)}
        return [name for name in self.seconds if set(name.split(".")[0].split("/")) & suites]


def linked_members(build, path, folder):
    """What of objects and archives is in the program, by the map of another link of it."""
    shown = folder / "map"
    words = build.link(path, folder / "mapped", {}, [f"-Wl,-Map={shown}"])
    code, output = processes.run(words, LIMIT, cwd=build.folder)
    if code != 0:
        raise BaselineFails(f"{path} cannot be linked:\n{output}")
    return sorted(set(OBJECT.findall(shown.read_text(errors="replace"))))


def named_for(program, path):
    """The path as the program takes it."""
    return "Z:" + str(path).replace("/", "\\") if program.endswith(".exe") else str(path)


def times_in(path):
    times = {}
    for suite in json.loads(path.read_text())["testsuites"]:
        for test in suite["testsuite"]:
            if test["result"] == "COMPLETED":
                times[f"{suite['name']}.{test['name']}"] = float(test["time"].rstrip("s"))
    return times


class Baseline:
    """Runs each program unchanged, and keeps what it learned until the program is another."""

    def __init__(self, kept, runner):
        self.kept = kept
        self.runner = runner
        kept.mkdir(parents=True, exist_ok=True)

    def _known(self, kind, program, find):
        stamp = f"{program.stat().st_mtime_ns} {program.stat().st_size}"
        kept = self.kept / f"{kind}.json"
        known = json.loads(kept.read_text()) if kept.exists() else {}
        if known.get("stamp") != stamp:
            known = {"stamp": stamp, "found": find()}
            kept.write_text(json.dumps(known))
        return known["found"]

    def members(self, build, name, path):
        return set(self._known(f"members-{name}", build.folder / path, lambda: linked_members(build, path, self.kept)))

    def seconds(self, build, name, path):
        return self._known(f"seconds-{name}", build.folder / path, lambda: self._measure(build, name, path))

    def playing(self, build, scenario, play):
        """The seconds of a scenario, or nothing for one that takes long."""
        return self._known(f"scenario-{scenario.stem}", build.folder / "package/installed/AppxBlockMap.xml",
                           lambda: self._time(scenario.stem, play))

    def _time(self, name, play):
        started = time.monotonic()
        code, output = play()
        if code not in (0, None):
            raise BaselineFails(f"the scenario {name} fails without a change:\n{output[-2000:]}")
        return None if code is None else time.monotonic() - started

    def _measure(self, build, name, path):
        report = self.kept / "tests.json"
        report.unlink(missing_ok=True)
        code, output = self.runner.run_tests(build.folder / path, [f"--gtest_output=json:{named_for(path, report)}"], LIMIT)
        if code != 0:
            raise BaselineFails(f"{name} fails without a change:\n{output[-2000:]}")
        return times_in(report)


def read_programs(build, baseline, is_of_product, sources):
    """The programs of tests that hold something of the product, and something that reads one of the sources. Those of
    tests/e2e start what is built, not what is changed: scenarios take their place."""
    changed = set(map(str, sources))
    for file in sorted((build.folder / "test-programs").glob("*")):
        path, *own = file.read_text().splitlines()
        path = str(pathlib.Path(path).resolve().relative_to(build.folder))
        if path.startswith("tests/e2e/") or not (build.folder / path).exists():
            continue
        members = baseline.members(build, file.name, path)
        own = [each for each in map(pathlib.Path, own) if each.exists()]
        program = Program(build, file.name, path, own, members, {})
        held = [made for made in build.objects.values() if program.holds(made)]
        if any(is_of_product(build, made) for made in held) and any(changed & made.read for made in held):
            program.seconds = baseline.seconds(build, file.name, path)
            yield program
