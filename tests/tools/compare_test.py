"""bench/compare.py: what it says of two runs."""

import json
import subprocess
import sys
import unittest

import support

SCRIPT = support.ROOT / "bench" / "compare.py"


def row(name, low, median, high):
    return {"bench": "line", "table": "A line", "row": name, "unit": "ratio", "low": low, "median": median,
            "high": high, "limit": 0, "verdict": ""}


class Compare(support.ScriptTest):
    def compare(self, before, after):
        paths = [self.folder / "before", self.folder / "after"]
        for path, rows in zip(paths, (before, after)):
            path.write_text("".join(json.dumps(one) + "\n" for one in rows))
        return subprocess.run([sys.executable, "-B", SCRIPT, *paths], capture_output=True, text=True, check=True).stdout

    def test_intervals_that_touch_show_no_change(self):
        self.assertIn("no change seen", self.compare([row("ours", 1.0, 1.1, 1.2)], [row("ours", 1.2, 1.3, 1.4)]))

    def test_intervals_apart_show_a_change_by_their_medians(self):
        self.assertIn("more by 10.0 %", self.compare([row("ours", 0.99, 1.0, 1.01)], [row("ours", 1.09, 1.1, 1.11)]))
        self.assertIn("less by 50.0 %", self.compare([row("ours", 1.9, 2.0, 2.1)], [row("ours", 0.9, 1.0, 1.1)]))

    def test_a_change_from_nothing_is_no_percentage(self):
        self.assertIn("more by 2\n", self.compare([row("wake-ups", 0, 0, 0)], [row("wake-ups", 1, 2, 3)]))

    def test_a_file_of_two_runs_is_refused(self):
        with self.assertRaises(subprocess.CalledProcessError) as refused:
            self.compare([row("ours", 1, 1, 1)], [row("ours", 1, 1, 1), row("ours", 2, 2, 2)])
        self.assertIn("two rows 'line, A line, ours'", refused.exception.stderr)

    def test_rows_of_one_run_alone_are_named(self):
        output = self.compare([row("old", 1, 1, 1)], [row("new", 1, 1, 1)])
        self.assertRegex(output, r"new .* ratio: is new")
        self.assertIn("not in the later run: line, A line, old", output)

    def test_a_table_is_named_once(self):
        rows = [row("a", 1, 1, 1), row("b", 1, 1, 1)]
        self.assertEqual(self.compare(rows, rows).count("line: A line\n"), 1)


if __name__ == "__main__":
    unittest.main()
