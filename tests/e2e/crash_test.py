#!/usr/bin/env python3
"""A crash of the app names its place, and ./dev symbolize turns that into function and line. Usage: crash_test.py BUILD"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOURCE = "tests/e2e/CrashingApp.cpp"
SCENARIO = """register
expect event package-registered
launch
expect event app-started
expect crash
expect event activation-lost
"""

BUILD = None


def line_of(text):
    lines = (ROOT / SOURCE).read_text().splitlines()
    return next(number for number, line in enumerate(lines, 1) if line.endswith(text))


def symbolize(*arguments):
    return subprocess.run([sys.executable, ROOT / "cmake" / "symbolize.py", *arguments], capture_output=True, text=True)


class ACrash(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.package = pathlib.Path(folder.name) / "package"
        shutil.copytree(f"{BUILD}/package/installed", self.package)
        shutil.copy(f"{BUILD}/tests/e2e/CrashingApp.exe", self.package)
        manifest = self.package / "AppxManifest.xml"
        manifest.write_text(manifest.read_text().replace('<Application Id="App" Executable="VelmoNotificationClient.exe"',
                                                         '<Application Id="App" Executable="CrashingApp.exe"'))
        self.scenario = pathlib.Path(folder.name) / "crash.scenario"
        self.scenario.write_text(SCENARIO)

    def crash(self, way):
        """The event."""
        environment = dict(os.environ, VELMO_CRASH=way, VELMO_SIM_PACKAGE=f"Z:{self.package}",
                           VELMO_SIM_HOME=f"C:\\devices\\crash-{way}")
        command = [ROOT / "cmake" / "wine-run", f"{BUILD}/prefix", f"{BUILD}/simulator/sim.exe", "play", self.scenario]
        played = subprocess.run(command, capture_output=True, text=True, env=environment)
        self.assertEqual(played.returncode, 0, played.stdout + played.stderr)
        return re.search("app-crashed .*", played.stdout)[0]

    def explained(self, event):
        result = symbolize("--in", f"{BUILD}/tests/e2e", event)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout.splitlines()

    def assertNames(self, line, function, place):
        self.assertRegex(line, rf"CrashingApp\.exe\+0x\w+  .*{function}.* at {SOURCE}:{line_of(place)}$")

    def test_at_an_instruction_names_its_function_and_line_and_those_of_the_caller(self):
        event = self.crash("write")
        self.assertRegex(event, r" code=0xC0000005 at=CrashingApp\.exe\+0x\w+ callers='CrashingApp\.exe\+0x")
        lines = self.explained(event)
        self.assertNames(lines[0], "WriteToNowhere", "// the write")
        self.assertNames(lines[1], "main", "        WriteToNowhere();")

    def test_by_a_call_of_no_function_names_the_caller(self):
        event = self.crash("call")
        self.assertRegex(event, r" code=0xC0000005 at=unknown callers=")
        self.assertNames(self.explained(event)[0], "CallNowhere", "// the call")

    def test_by_an_exception_that_nobody_catches_names_the_throw(self):
        event = self.crash("throw")
        self.assertRegex(event, r" code=0xC0000602 at=CrashingApp\.exe\+")
        lines = self.explained(event)
        self.assertNames(lines[0], "__verbose_terminate_handler",
                         "RaiseFailFastException(nullptr, nullptr, FAIL_FAST_GENERATE_EXCEPTION_ADDRESS);")
        thrown = next(index for index, line in enumerate(lines) if line.endswith("__cxa_throw"))
        self.assertNames(lines[thrown + 1], "ThrowUncaught", "// the throw")

    def test_that_nothing_explains_is_an_error(self):
        for words, code, reason in (([], 2, "required: MODULE+OFFSET"), (["somewhere"], 2, "no MODULE+OFFSET"),
                                    (["Other.exe+0x10"], 1, "no executable"),
                                    (["CrashingApp.exe+0x7FFFFFFF"], 1, "no executable")):
            result = symbolize("--in", f"{BUILD}/tests/e2e", *words)
            self.assertEqual((result.returncode, reason in result.stderr), (code, True), result)


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main()
