#!/usr/bin/env python3
"""What a failed test leaves is found by the path that it names. Usage: kept_files_test.py BUILD"""

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


def run(program, *arguments, **environment):
    command = [ROOT / "cmake" / "wine-run", f"{BUILD}/prefix", f"{BUILD}/{program}", *arguments]
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
            self.assertEqual(shown.stdout, "09:30:12.045 INFO  d          what was logged\n", shown.stderr)

    def test_of_a_scenario_lie_where_it_says(self):
        home = r"C:\devices\kept-files"
        with tempfile.NamedTemporaryFile("w", suffix=".scenario") as scenario:
            scenario.write(SCENARIO)
            scenario.flush()
            failed = run("simulator/sim.exe", "play", scenario.name, VELMO_SIM_HOME=home,
                         VELMO_SIM_PACKAGE=f"Z:{BUILD}/package/installed")
        self.assertEqual(failed.returncode, 1)
        self.assertTrue((self.kept(failed.stdout) / "events.log").exists())


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main()
