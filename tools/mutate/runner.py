"""Runs tests on Linux, and under Wine in a prefix of its own."""

import os
import pathlib
import subprocess

import processes

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
HANGS = 99  # what a program ends with that its watchdog ended
CUT_OFF = 97  # what wine-run ends with where the program's server was ended


def limit(seconds):
    """What takes so much longer than without the change hangs, on a busy machine too."""
    return 15 + 4 * seconds


class Runner:
    def __init__(self, prefix, simulator):
        self.prefix = prefix
        self.simulator = simulator

    def prepare(self):
        if self.simulator.exists():
            code, output = processes.run([ROOT / "cmake/wine-run", self.prefix, self.simulator, "install"], 300)
            if code != 0:
                raise OSError(f"the prefix {self.prefix} cannot be prepared:\n{output}")

    def close(self):
        if self.prefix.exists():
            subprocess.run(["bash", "-c", '. "$0"; stop_wine "$1"', ROOT / "tools/wine.sh", self.prefix], check=False)

    def run_tests(self, program, arguments, seconds, of_a_test=None):
        """(exit code or None, output) of a program of tests, which has so many seconds, and each of its tests so many"""
        if program.suffix != ".exe":
            return processes.run([program, *arguments], seconds, cwd=program.parent)
        return self._under_wine("test", program, arguments, seconds,
                                {"VELMO_TEST_SECONDS": f"{of_a_test or seconds:.0f}"})

    def play(self, scenario, package, seconds):
        places = {"VELMO_SIM_HOME": f"C:/devices/{scenario.stem}", "VELMO_SIM_PACKAGE": f"Z:{package}"}
        return self._under_wine("scenario", self.simulator, ["play", scenario], seconds, places)

    def _under_wine(self, kind, program, arguments, seconds, variables):
        words = [ROOT / "cmake/wine-run", "--demand", kind, self.prefix, program, *arguments]
        for _ in range(2):  # a server that ends says nothing of the change, unless it does so again
            code, output = processes.run(words, seconds, cwd=program.parent, env=os.environ | variables)
            if code in (None, HANGS, CUT_OFF):
                self.close()  # and with it what hangs
            if code != CUT_OFF:
                break
        return code, output
