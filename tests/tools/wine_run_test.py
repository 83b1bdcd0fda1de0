"""cmake/wine-run: nothing that was cut off counts as passed, and nothing that it starts outlives it.

Arguments: the build folder, whose programs are run in a prefix of this test's own."""

import os
import signal
import subprocess
import sys
import unittest

import support

WINE_RUN = support.ROOT / "cmake" / "wine-run"
BUILD = None
PREFIX = None
TEMPORARY = None
CUT_OFF = 97


class WineRunTest(support.ScriptTest):
    @classmethod
    def tearDownClass(cls):
        support.stop_wine(PREFIX)

    def setUp(self):
        super().setUp()
        self.environment = dict(os.environ)

    def start_program(self, *arguments):
        return self.start(WINE_RUN, *arguments, env=self.environment)

    def run_program(self, *arguments):
        """(exit code, output)"""
        process = self.start_program(*arguments)
        output = process.stdout.read()
        return process.wait(support.LIMIT), output

    def shell(self, text, *options):
        return self.run_program(*options, PREFIX, "cmd", "/c", text)

    def flow_test(self, *arguments):
        return [BUILD / "tests" / "flow" / "flow_test.exe", *arguments]

    def interruptible(self, *arguments):
        """Without death tests: a process that one has just started outlives its parent and its server."""
        return self.flow_test("--gtest_filter=-*DeathTest*", *arguments)

    def cut_off(self, process, line):
        """Ends the server once the program has written a line; returns the exit code and the rest of the output."""
        self.read_until(process, line)
        support.end_server(PREFIX)
        output = process.stdout.read()
        return process.wait(support.LIMIT), output


class CutOff(WineRunTest):
    def check_red(self, code, output, sentence):
        """A server that ends may also end a program with a code of its own, or kill it (128 and the signal)."""
        self.assertNotEqual(0, code, output)
        if code == CUT_OFF:
            self.assertIn(sentence, output)

    def test_a_test_program_whose_server_ends_in_the_middle_is_red(self):
        process = self.start_program("--demand", "test", PREFIX, *self.interruptible())
        code, output = self.cut_off(process, "[       OK ]")
        self.check_red(code, output, "flow_test.exe ended with 0, but did not say that it was through")

    def test_so_is_a_program_of_which_no_closing_line_is_demanded(self):
        process = self.start_program(PREFIX, *self.interruptible())
        code, output = self.cut_off(process, "[       OK ]")
        self.check_red(code, output, "flow_test.exe ended with 0, and so did its Wine server")

    def test_so_is_a_scenario(self):
        self.environment |= {
            "VELMO_SIM_HOME": r"C:\cut-off",
            "VELMO_SIM_PACKAGE": f"Z:{BUILD}/package/installed",
            "VELMO_SIM_HELPER": f"Z:{BUILD}/helper/helper.exe",
        }
        story = support.ROOT / "simulator" / "scenarios" / "story.scenario"
        process = self.start_program("--demand", "scenario", PREFIX, BUILD / "simulator" / "sim.exe", "play", story)
        code, output = self.cut_off(process, "app-started")
        self.assertNotEqual(0, code, output)
        self.assertNotIn("checked:", output)


class ClosingLine(WineRunTest):
    def test_a_program_that_ends_with_0_and_does_not_say_that_it_is_through_is_red(self):
        for kind in ("test", "scenario", "bench", "exploration"):
            with self.subTest(kind):
                code, output = self.shell("echo half of it", "--demand", kind)
                self.assertEqual(CUT_OFF, code, output)
                self.assertIn("half of it", output)

    def test_one_that_says_so_is_green(self):
        for kind, line in (
            ("test", "[  PASSED  ] 1 test."),
            ("test", "[  PASSED  ] 12 tests."),
            ("scenario", "checked: 3 events, 2 log lines; nothing else happened"),
            ("bench", "bench line: its limits hold"),
            ("exploration", "explore log: 12 plays"),
        ):
            with self.subTest(line):
                self.assertEqual((0, line + "\n"), self.shell(f"echo {line}", "--demand", kind))

    def test_its_exit_code_counts_besides(self):
        code, output = self.shell("echo bench line: its limits hold&exit 3", "--demand", "bench")
        self.assertEqual(3, code, output)

    def test_it_is_not_waited_for_when_something_that_was_left_behind_holds_the_output(self):
        tools = self.folder / "bin"
        tools.mkdir()
        (tools / "wine").write_text("#!/usr/bin/env bash\nsleep 1000 2>/dev/null &\necho half of it\n")
        (tools / "wine").chmod(0o755)
        mark = f"VELMO_TEST_MARK={self.folder}"
        self.environment |= {"PATH": f"{tools}:{os.environ['PATH']}"} | dict([mark.split("=")])
        code, output = self.shell("exit 0", "--demand", "test")
        self.assertEqual(CUT_OFF, code, output)
        for process in support.processes_with(mark):
            os.kill(process, signal.SIGKILL)

    def test_a_run_of_no_test_is_red(self):
        code, output = self.run_program("--demand", "test", PREFIX, *self.flow_test("--gtest_filter=Nothing"))
        self.assertEqual(CUT_OFF, code, output)

    def test_a_list_of_tests_says_that_it_is_complete(self):
        code, output = self.run_program("--demand", "test", PREFIX, *self.flow_test("--gtest_list_tests"))
        self.assertEqual(0, code, output)
        self.assertTrue(output.endswith("The list of tests is complete.\n"), output)

    def test_without_a_demand_the_exit_code_is_the_program_s(self):
        for wanted in (0, 5):
            self.assertEqual((wanted, ""), self.shell(f"exit {wanted}"))


class Calls(WineRunTest):
    def test_help_says_how_it_is_called_and_makes_no_prefix(self):
        for word in ("--help", "-h"):
            process = self.start(WINE_RUN, word, cwd=self.folder)
            self.assertTrue(process.stdout.read().startswith("wine-run [--demand "))
            self.assertEqual(0, process.wait(support.LIMIT))
            self.assertEqual([], list(self.folder.iterdir()))

    def test_one_without_a_prefix_or_a_program_is_refused(self):
        for words in ((), (PREFIX,), ("--help-me", "cmd"), ("--demand",), ("--demand", "test", PREFIX), ("--demand", "x", PREFIX, "cmd")):
            with self.subTest(words):
                code, output = self.run_program(*words)
                self.assertEqual(2, code)
                self.assertRegex(output, r"^wine-run: .*; wine-run --help tells how it is called\n$")


class Interrupted(WineRunTest):
    def test_a_prefix_that_was_not_made_to_its_end_is_made_from_the_beginning(self):
        prefix = self.folder / "prefix"
        left = prefix / "drive_c" / "left"
        left.mkdir(parents=True)
        self.addCleanup(support.stop_wine, prefix)
        self.assertEqual((0, ""), self.run_program(prefix, "cmd", "/c", "exit 0"))
        self.assertFalse(left.exists())


class Ended(WineRunTest):
    def test_a_signal_ends_the_program_and_leaves_no_file(self):
        self.shell("exit 0")  # so that prefix and server are there, which stay
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(number):
                mark = f"VELMO_TEST_MARK={self.folder}{number}"
                self.environment |= dict([mark.split("=")])
                files = set(TEMPORARY.iterdir())
                process = self.start_program("--demand", "test", PREFIX, *self.interruptible("--gtest_repeat=-1"))
                self.read_until(process, "[       OK ]")
                process.send_signal(number)
                process.stdout.read()
                self.assertEqual(-number, process.wait(support.LIMIT))
                support.wait_until(lambda: not support.processes_with(mark), "what was started has ended")
                self.assertEqual(files, set(TEMPORARY.iterdir()))

    def test_the_server_that_stays_does_not_keep_a_lock_of_the_caller(self):
        support.end_server(PREFIX)
        lock = self.folder / "lock"
        held = f'exec 9>"{lock}"; flock 9; "{WINE_RUN}" "{PREFIX}" cmd /c exit 0'
        self.assertEqual(0, subprocess.run(["bash", "-c", held], check=False).returncode)
        self.assertNotEqual([], support.servers_of(PREFIX))
        self.assertEqual(0, subprocess.run(["flock", "--nonblock", lock, "true"], check=False).returncode)


if __name__ == "__main__":
    BUILD = support.pathlib.Path(sys.argv.pop(1)).resolve()
    PREFIX = BUILD / "prefix-of-tools"
    TEMPORARY = BUILD / "temporary-of-tools"  # Wine's server is found by it, too
    TEMPORARY.mkdir(exist_ok=True)
    os.environ["TMPDIR"] = str(TEMPORARY)
    unittest.main()
