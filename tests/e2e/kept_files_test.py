#!/usr/bin/env python3
"""What a failed test leaves is found by the path that it names, and one that ends its program is named. Usage:
kept_files_test.py BUILD"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCENARIO = "register\nexpect event package-unregistered\n"

BUILD = None


def run(program, *arguments, demand=(), **environment):
    command = [ROOT / "cmake" / "wine-run", *demand, f"{BUILD}/prefix", f"{BUILD}/{program}", *arguments]
    return subprocess.run(command, capture_output=True, text=True, env={**os.environ, **environment})


class KeptFiles(unittest.TestCase):
    def kept(self, output):
        folder = pathlib.Path(re.search(r"kept for a look: (.*)", output)[1])
        self.assertTrue(folder.is_absolute(), folder)
        self.addCleanup(shutil.rmtree, folder)
        return folder

    def test_of_a_test_lie_where_it_says_and_its_log_is_shown(self):
        failed = run("tests/e2e/failing_test.exe")
        self.assertEqual(failed.returncode, 1)
        folder = self.kept(failed.stdout)
        self.assertEqual([file.name for file in folder.iterdir()], ["some.log"])
        for path in (folder, folder / "some.log"):
            shown = run("simulator/sim.exe", "log", path)
            self.assertEqual(shown.stdout, "2024-01-05 09:30:12.045 INFO  7     d          what was logged\n", shown.stderr)

    def test_of_a_scenario_lie_where_it_says(self):
        home = r"C:\devices\kept-files"
        with tempfile.NamedTemporaryFile("w", suffix=".scenario") as scenario:
            scenario.write(SCENARIO)
            scenario.flush()
            failed = run("simulator/sim.exe", "play", scenario.name, VELMO_SIM_HOME=home,
                         VELMO_SIM_PACKAGE=f"Z:{BUILD}/package/installed")
        self.assertEqual(failed.returncode, 1)
        self.assertTrue((self.kept(failed.stdout) / "events.log").exists())


class EndOfTheProgram(unittest.TestCase):
    def check_named(self, test, words, **environment):
        ended = run("tests/e2e/failing_test.exe", "--gtest_brief=1", "--gtest_also_run_disabled_tests",
                    f"--gtest_filter=Failing.DISABLED_{test}", demand=("--demand", "test"), **environment)
        self.assertNotEqual(0, ended.returncode)
        self.assertIn(f"{words} in Failing.DISABLED_{test}", ended.stderr)

    def test_by_a_crash_names_the_test(self):
        self.check_named("Crashes", "crashed")

    def test_by_an_exception_that_nobody_catches_names_the_test(self):
        self.check_named("Terminates", "aborted")

    def test_by_an_exit_in_its_middle_names_the_test(self):
        self.check_named("Exits", "exited")

    def test_by_its_limit_names_the_test(self):
        self.check_named("Hangs", "watchdog: still running after 2 s", VELMO_TEST_SECONDS="2")


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main()
