"""The programs of tests: what each holds, its tests and how long they take unchanged."""

import json
import pathlib
import re
import sys
import threading
import time

import processes

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
import select_tests

OBJECT = re.compile(r"[^\s:()]+\.o(?:bj)?\b")
LIMIT = 900  # seconds for a program that is not changed
SCENARIO_LIMIT = 6  # seconds: longer ones, which wait for the product's limits, are not played


class BaselineFails(Exception):
    pass


class Program:
    """What is learned by running it unchanged is learned when a change needs it."""

    def __init__(self, build, name, path, sources, baseline):
        self.build = build
        self.name = name
        self.path = path  # below the build folder
        self.sources = sources
        self.baseline = baseline

    def holds(self, made):
        """From an archive only what the linker needs of it is in the program."""
        if self.build.links_object(self.path, made):
            return True
        return self.build.links_archive(self.path, made) and (
            pathlib.PurePath(made.path).name in self.baseline.members(self.build, self.name, self.path))

    def seconds(self, runner):
        """test -> how long it takes"""
        return self.baseline.seconds(self.build, self.name, self.path, runner)

    def named_among(self, tests, file):
        """The tests in sources that are called as the file is, or include its header."""
        stem, header = pathlib.PurePath(file).stem, f'"{pathlib.PurePath(file).with_suffix(".h")}"'
        suites = set()
        for source in self.sources:
            if source.suffix == ".cpp" and (stem in source.stem or header in source.read_text(encoding="utf-8")):
                suites |= {name.split(".")[0].split("/")[-1] for name in select_tests.names_in(source)}
        return [name for name in tests if set(name.split(".")[0].split("/")) & suites]


class App(Program):
    """The executable that ships, with what it does in scenarios."""

    def __init__(self, build, path, package, scenarios, baseline):
        super().__init__(build, "app", path, [], baseline)
        self.package = package
        self.scenarios = scenarios

    def played(self, runner):
        """scenario -> its seconds, without those that take long"""
        found = {file: self.baseline.playing(self.build, file, self.package, runner) for file in self.scenarios}
        return {file: seconds for file, seconds in found.items() if seconds is not None}


def linked_members(build, path, output):
    """What of objects and archives is in the program, by the map of another link of it."""
    shown = output.with_suffix(".map")
    words = build.link(path, output, {}, [f"-Wl,-Map={shown}"])
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
    """Runs each program unchanged when it is asked for, and keeps what it learned until the program is another."""

    def __init__(self, kept):
        self.kept = kept
        self.lock = threading.Lock()
        self.locks = {}
        kept.mkdir(parents=True, exist_ok=True)

    def _known(self, kind, program, find):
        with self.lock:
            lock = self.locks.setdefault(kind, threading.Lock())
        with lock:  # who else needs the same waits for it
            stamp = f"{program.stat().st_mtime_ns} {program.stat().st_size}"
            kept = self.kept / f"{kind}.json"
            known = json.loads(kept.read_text()) if kept.exists() else {}
            if known.get("stamp") != stamp:
                known = {"stamp": stamp, "found": find()}
                kept.write_text(json.dumps(known))
            return known["found"]

    def members(self, build, name, path):
        return self._known(f"members-{name}", build.folder / path,
                           lambda: linked_members(build, path, self.kept / f"{name}.linked"))

    def seconds(self, build, name, path, runner):
        return self._known(f"seconds-{name}", build.folder / path,
                           lambda: self._measure(build.folder / path, name, runner))

    def playing(self, build, scenario, package, runner):
        """The seconds of a scenario, or nothing for one that takes long."""
        return self._known(f"scenario-{scenario.stem}", build.folder / "package/installed/AppxBlockMap.xml",
                           lambda: self._time(scenario, package, runner))

    def _time(self, scenario, package, runner):
        started = time.monotonic()
        code, output = runner.play(scenario, package, SCENARIO_LIMIT)
        if code not in (0, None):
            raise BaselineFails(f"the scenario {scenario.stem} fails without a change:\n{output[-2000:]}")
        return None if code is None else time.monotonic() - started

    def _measure(self, program, name, runner):
        report = self.kept / f"{name}.tests.json"
        report.unlink(missing_ok=True)
        code, output = runner.run_tests(program, [f"--gtest_output=json:{named_for(program.name, report)}"], LIMIT)
        if code != 0:
            raise BaselineFails(f"{name} fails without a change:\n{output[-2000:]}")
        return times_in(report)


def read_programs(build, baseline):
    """The programs of tests. Those of tests/e2e start what is built, not what is changed: scenarios take their place."""
    for file in sorted((build.folder / "test-programs").glob("*")):
        path, *own = file.read_text().splitlines()
        path = str(pathlib.Path(path).resolve().relative_to(build.folder))
        if not path.startswith("tests/e2e/") and (build.folder / path).exists():
            own = [each for each in map(pathlib.Path, own) if each.exists()]
            yield Program(build, file.name, path, own, baseline)
