"""cmake/coverage.py: what counts as reached, and which reasons are missing or left over."""

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

    def test_a_line_that_is_not_reached_has_its_reason(self):
        reasons = [{"file": "app/App.cpp", "line": "text 2", "reason": "never"}]
        missed, stale = coverage.unreached(counts_of(report(line(1, 0), line(2, 0), line(3, 1))), reasons,
                                           lambda name, number: f"text {number}")
        self.assertEqual(missed, [("app/App.cpp", 1, None), ("app/App.cpp", 2, "never")])
        self.assertEqual(stale, [])

    def test_a_reason_without_its_line_is_told(self):
        reasons = [{"file": "app/App.cpp", "line": "text 9", "reason": "never"}]
        _, stale = coverage.unreached(counts_of(report(line(1, 1))), reasons, lambda name, number: f"text {number}")
        self.assertEqual(stale, [("app/App.cpp", "text 9")])

    def test_a_reason_of_a_line_that_is_reached_after_all_stays(self):
        reasons = [{"file": "app/App.cpp", "line": "text 1", "reason": "by chance"}]
        _, stale = coverage.unreached(counts_of(report(line(1, 1))), reasons, lambda name, number: f"text {number}")
        self.assertEqual(stale, [])


if __name__ == "__main__":
    unittest.main()
