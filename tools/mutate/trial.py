"""Tries one change: compiles what it is in, links the programs of tests that hold that, runs them until one fails."""

import json
import pathlib
import re
import shutil
import time
from dataclasses import dataclass

import processes
from catalogue import is_product
from runner import limit

FAILED = re.compile(r"^\[  FAILED  \] ([\w./]+)|(?:watchdog: .*|crashed|aborted|exited) in ([\w./]+)$", re.MULTILINE)
COMPILE_LIMIT = 300  # seconds
SLOW = 0.25  # seconds of a test that others come before


class NotLinked(Exception):
    """The changed objects make no program."""


@dataclass
class Outcome:
    kind: str  # caught, survived, not compiled, same program
    by: str = ""
    seconds: float = 0.0


@dataclass
class Test:
    seconds: float
    name: str
    run: object  # () -> (exit code or None, output)


def failed_test(output):
    """The test that failed, or in which the program ended, as it says itself."""
    found = FAILED.search(output)
    return found and (found[1] or found[2])


def overlay(path, content):
    """What shows the compiler another content of a file."""
    return {"version": 0, "case-sensitive": "true", "use-external-names": False,
            "roots": [{"name": str(path.parent), "type": "directory",
                       "contents": [{"name": path.name, "type": "file", "external-contents": str(content)}]}]}


def held_by(program, made):
    """Of the changed objects those in the program."""
    return {path: file for path, file in made.get(program.build, {}).items()
            if program.holds(program.build.objects[path])}


def in_time(tests):
    return sorted(filter(None, tests), key=lambda test: test.seconds)


class Trial:
    """A worker: its folder and its runner. The sources and the builds stay as they are."""

    def __init__(self, root, builds, programs, app, folder, runner, unchanged):
        self.root = root
        self.builds = builds
        self.programs = programs
        self.app = app  # the executable that ships, for scenarios; or None
        self.folder = folder
        self.runner = runner
        self.unchanged = unchanged
        folder.mkdir(parents=True, exist_ok=True)

    def run(self, change):
        started = time.monotonic()
        outcome = self._run(change)
        outcome.seconds = time.monotonic() - started
        return outcome

    def _run(self, change):
        path = self.root / change.file
        text = path.read_bytes()
        if text[change.start : change.end] != change.old.encode():
            raise OSError(f"{path} has been edited meanwhile; begin again")
        made = {}
        for build in self.builds:
            for each in self._affected(build, path, change.file):
                compiled = self.compile(build, each, path, change.applied(text))
                if compiled is None:
                    return Outcome("not compiled")
                if compiled.read_bytes() != self.unchanged.object(build, each, path, text, self):
                    made.setdefault(build, {})[each.path] = compiled
        if not made:
            return Outcome("same program")
        try:
            return self._judge(self._tests(change, made))
        except NotLinked:
            return Outcome("not compiled")

    @staticmethod
    def _judge(tests):
        for test in tests:
            code, output = test.run()
            if code is None:
                return Outcome("caught", f"{test.name}: still running after {limit(test.seconds):.0f} s")
            if code != 0:
                return Outcome("caught", f"{test.name}: {failed_test(output) or f'exit code {code}'}")
        return Outcome("survived")

    def _affected(self, build, path, name):
        """The product's objects, and of the tests those that include it by its name: what they take from a header is
        changed there, too."""
        line = f'#include "{name}"'.encode()
        tests = f"{self.root}/tests/"
        for made in build.compiled_from(path):
            of_tests = (pathlib.Path(each) for each in made.read if each.startswith(tests))
            if is_product(build, made) or any(line in each.read_bytes() for each in of_tests):
                yield made

    def compile(self, build, made, path, content, output=None):
        changed = self.folder / f"changed{path.suffix}"
        changed.write_bytes(content)
        shown = self.folder / "overlay.json"
        shown.write_text(json.dumps(overlay(path, changed)))
        output = output or self.folder / f"{build.folder.name}-{made.path.replace('/', '-')}"
        output.unlink(missing_ok=True)
        code, _ = processes.run(build.compile(made, output, shown), COMPILE_LIMIT, cwd=build.folder)
        return output if code == 0 and output.exists() else None

    def link(self, build, program, objects):
        # Where it stands, since tests start programs that lie beside theirs.
        folder = self.folder / build.folder.name / program
        folder.mkdir(parents=True, exist_ok=True)
        beside = (build.folder / program).parent
        for each in beside.glob("*.exe"):
            link = folder / each.name
            if not link.exists():
                link.symlink_to(each)
        output = folder / (build.folder / program).name
        output.unlink(missing_ok=True)
        code, _ = processes.run(build.link(program, output, objects), COMPILE_LIMIT, cwd=build.folder)
        if code != 0:
            raise NotLinked
        return output

    def _tests(self, change, made):
        """All that can see it, the likely and the quick ones first; what is not come to is not measured either."""
        linked = [Linked(self, program, objects) for program in self.programs
                  if (objects := held_by(program, made))]
        yield from in_time(each.tests(each.program.named_among(each.quick, change.file)) for each in linked)
        yield from in_time(each.tests(each.quick, leave_out=each.slow) for each in linked)
        slow = [each.tests(each.slow) for each in linked]
        if self.app and (objects := held_by(self.app, made)):
            slow += self._scenarios(objects)
        yield from in_time(slow)

    def _scenarios(self, objects):
        package = self.folder / "package"

        def played(scenario, seconds):
            program = self.link(self.app.build, self.app.path, objects)
            shutil.copy(program, package / program.name)
            return self.runner.play(scenario, package, limit(seconds))

        if not package.exists():
            shutil.copytree(self.app.package, package)
        for scenario, seconds in self.app.played(self.runner).items():
            yield Test(seconds, f"Scenario.{scenario.stem}",
                       lambda scenario=scenario, seconds=seconds: played(scenario, seconds))


class Linked:
    """A program with the change, linked when its first test runs."""

    def __init__(self, trial, program, objects):
        self.trial = trial
        self.program = program
        self.objects = objects
        self.file = None
        self.seconds = program.seconds(trial.runner)
        self.slow = [name for name, seconds in self.seconds.items() if seconds >= SLOW]
        self.quick = [name for name in self.seconds if name not in self.slow]

    def tests(self, names, leave_out=()):
        """All of these as one; nothing of none."""
        if not names:
            return None
        chosen = "-" + ":".join(leave_out) if leave_out else ":".join(names)
        seconds = [self.seconds[name] for name in names]
        return Test(sum(seconds), self.program.name, lambda: self._run(chosen, limit(sum(seconds)), limit(max(seconds))))

    def _run(self, chosen, *limits):
        if self.file is None:
            self.file = self.trial.link(self.program.build, self.program.path, self.objects)
        options = ["--gtest_brief=1", "--gtest_fail_fast", f"--gtest_filter={chosen}"]
        return self.trial.runner.run_tests(self.file, options, *limits)
