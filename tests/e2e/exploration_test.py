#!/usr/bin/env python3
"""What an exploration refuses. Usage: exploration_test.py BUILD"""

import pathlib
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]

BUILD = None


def explore(subject, *arguments):
    command = [ROOT / "cmake" / "wine-run", "--demand", "exploration", f"{BUILD}/prefix",
               f"{BUILD}/explore/{subject}/explore_{subject}.exe", *arguments]
    return subprocess.run(command, capture_output=True, text=True)


class Replay(unittest.TestCase):
    def test_of_a_call_that_the_process_does_not_make_is_refused_and_says_which_it_makes(self):
        refused = explore("kill", "--replay", "start:99999=kill")
        self.assertEqual(2, refused.returncode, refused.stdout + refused.stderr)
        self.assertRegex(refused.stderr, r"^explore kill: 99999=kill cannot be played; the last step of that play is \d+\n")


if __name__ == "__main__":
    BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
