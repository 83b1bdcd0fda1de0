"""cmake/coverage.py: what counts as reached, and which reasons are missing or left over."""

import json
import os
import subprocess
import sys
import unittest

import support

sys.path.insert(0, str(support.ROOT / "cmake"))
import coverage  # noqa: E402


def way(count, throw=False):
    return {"count": count, "fallthrough": False, "throw": throw}


def line(number, count, *ways, function="F"):
    return {"line_number": number, "count": count, "function_name": function, "branches": list(ways)}


def report(*lines, file="app/App.cpp"):
    names = {each["function_name"] for each in lines}
    functions = [{"name": name, "start_line": 1, "start_column": len(name)} for name in names]
    return {"files": [{"file": file, "lines": list(lines), "functions": functions}]}


def counts_of(*reports):
    return coverage.merged(reports, lambda path: path.removeprefix("/elsewhere") if path[0] != "/" else None)


class Coverage(unittest.TestCase):
    def test_a_line_is_reached_when_any_program_reaches_it(self):
        counts = counts_of(report(line(1, 0), line(2, 0)), report(line(1, 3), line(2, 0)))
        self.assertEqual(counts["app/App.cpp"].missed_lines(), [2])
        self.assertEqual(coverage.lines_and_branches(counts.values())[0], (1, 2))

    def test_a_branch_is_taken_when_any_program_takes_it(self):
        counts = counts_of(report(line(1, 1, way(1), way(0))), report(line(1, 1, way(0), way(2))))
        self.assertEqual(coverage.lines_and_branches(counts.values())[1], (2, 2))

    def test_each_way_out_of_a_condition_counts(self):
        counts = counts_of(report(line(1, 1, way(1), way(0), way(0), way(1))))
        self.assertEqual(counts["app/App.cpp"].missed_branches(), [(1, 1), (1, 2)])

    def test_branches_of_two_functions_in_a_line_are_four(self):
        counts = counts_of(report(line(1, 1, way(1), way(0), function="Outer"),
                                  line(1, 1, way(0), way(1), function="Lambda")))
        self.assertEqual(coverage.lines_and_branches(counts.values())[1], (2, 4))

    def test_a_branch_of_a_template_is_taken_when_one_instance_takes_it(self):
        counts = counts_of(report(line(1, 1, way(1), way(0), function="F<A>"),
                                  line(1, 1, way(0), way(1), function="F<B>")))
        self.assertEqual(coverage.lines_and_branches(counts.values())[1], (2, 2))

    def test_the_ways_of_exceptions_are_no_branches(self):
        counts = counts_of(report(line(1, 1, way(1), way(0, throw=True)), line(2, 1, way(1), way(0), way(0, True))))
        self.assertEqual(coverage.lines_and_branches(counts.values())[1], (1, 2))

    def test_only_the_product_counts(self):
        counts = counts_of(report(line(1, 0), file="tests/Test.cpp"), report(line(1, 0), file="/usr/include/vector"),
                           report(line(1, 1), file="utils/Event.h"))
        self.assertEqual(list(counts), ["utils/Event.h"])

    def unreached(self, counts, *entries, text="1 2 3 4 5 6 7 8 9".split()):
        named = [{"file": "app/App.cpp", "reason": "never", **entry} for entry in entries]
        return coverage.unreached(counts, named, lambda name, number: text[number - 1] if number else "")

    def test_a_line_that_is_not_reached_has_its_reason(self):
        missed, wrong = self.unreached(counts_of(report(line(1, 0), line(2, 0), line(3, 1))), {"line": "2"})
        self.assertEqual(missed, [("app/App.cpp", 1, None), ("app/App.cpp", 2, "never")])
        self.assertEqual(wrong, [])

    def test_a_reason_without_its_line_is_told(self):
        for entry in ({"line": "9"}, {"line": "1", "file": "app/Other.cpp"}, {"line": "1", "after": "9"}):
            _, wrong = self.unreached(counts_of(report(line(1, 0))), entry)
            self.assertEqual(wrong, [f"names a line that {entry.get('file', 'app/App.cpp')} no longer has: {entry['line']}"])

    def test_a_reason_of_a_line_that_is_reached_after_all_stays(self):
        _, wrong = self.unreached(counts_of(report(line(1, 1))), {"line": "1"})
        self.assertEqual(wrong, [])

    def test_a_reason_of_several_lines_is_told_and_is_none_of_theirs(self):
        missed, wrong = self.unreached(counts_of(report(line(1, 0), line(2, 1))), {"line": "}"}, text="} }".split())
        self.assertEqual(missed, [("app/App.cpp", 1, None)])
        self.assertEqual(wrong, ["names a line that app/App.cpp has several times: say after which line: }"])

    def test_of_several_lines_the_line_before_says_which(self):
        counts = counts_of(report(line(1, 0), line(2, 0), line(4, 0)))
        missed, wrong = self.unreached(counts, {"line": "}", "after": "b"}, text="} } b }".split())
        self.assertEqual([reason for _, _, reason in missed], [None, None, "never"])
        self.assertEqual(wrong, [])


class Command(support.ScriptTest):
    """With a stand-in for gcov, and a project of one file."""

    def setUp(self):
        super().setUp()
        (self.folder / "cmake").mkdir()
        support.copy_part("cmake/coverage.py", self.folder)
        (self.folder / "app").mkdir()
        (self.folder / "app" / "App.cpp").write_text("one\n" * 99 + "}\n")
        build = self.folder / "build"
        build.mkdir()
        (build / "a.gcda").touch()
        lines = [line(number, int(number < 100)) for number in range(1, 101)]
        (self.folder / "report").write_text(json.dumps(report(*lines, file="../app/App.cpp")))
        gcov = self.folder / coverage.GCOV
        gcov.write_text(f"#!/bin/sh\ncat {self.folder}/report\n")
        gcov.chmod(0o755)

    def cover(self, entries):
        """(exit code, errors)"""
        (self.folder / "cmake" / "unreached.toml").write_text(entries)
        done = subprocess.run([sys.executable, "-B", self.folder / "cmake" / "coverage.py", self.folder / "build"],
                              env=os.environ | {"PATH": f"{self.folder}:{os.environ['PATH']}"}, capture_output=True,
                              text=True, check=False)
        return done.returncode, done.stderr

    def test_a_line_that_is_left_without_a_reason_fails_and_is_named(self):
        told = "coverage: cmake/unreached.toml gives no reason for app/App.cpp:100: }\n"
        self.assertEqual((1, told), self.cover(""))

    def test_a_line_that_is_left_for_a_reason_is_allowed(self):
        self.assertEqual((0, ""), self.cover("[[unreached]]\nfile = 'app/App.cpp'\nline = '}'\nreason = 'never'\n"))


if __name__ == "__main__":
    unittest.main()
