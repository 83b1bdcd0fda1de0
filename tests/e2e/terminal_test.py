#!/usr/bin/env python3
"""What a terminal shows of the programs that run under Wine: their own bytes. Usage: terminal_test.py BUILD"""

import fcntl
import os
import pathlib
import pty
import re
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
WINE_RUN = ROOT / "cmake" / "wine-run"
PROTOCOL = ROOT / "simulator" / "scenarios" / "protocol.scenario"
WIDTH = 40  # columns: less than the lines have

BUILD = None


class Terminal:
    """A program with a terminal as its input and output."""

    def __init__(self, command, environment):
        self.pid, self.screen = pty.fork()
        if self.pid == 0:
            signal.signal(signal.SIGINT, signal.SIG_DFL)  # a caller in the background ignores it
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", 24, WIDTH, 0, 0))
            os.execve(command[0], command, environment)
        self.shown = b""

    def read(self):
        """Whether more came; the terminal's end is an error on Linux."""
        try:
            data = os.read(self.screen, 65536)
        except OSError:
            data = b""
        self.shown += data
        return bool(data)

    def read_until(self, text):
        while text not in self.shown and self.read():
            pass
        return text in self.shown

    def press(self, key):
        os.write(self.screen, key)

    def settings(self):
        return termios.tcgetattr(self.screen)

    def end(self):
        """All that was shown, and the exit code."""
        while self.read():
            pass
        os.close(self.screen)
        return self.shown, os.waitstatus_to_exitcode(os.waitpid(self.pid, 0)[1])


class OnATerminal(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.environment = dict(
            os.environ,
            VELMO_SIM_HOME=f"C:\\devices\\terminal-{os.getpid()}",
            VELMO_SIM_PACKAGE=f"Z:{BUILD}/package/installed",
        )
        self.scenario = pathlib.Path(folder.name) / "waiting.scenario"

    def command(self, program, *arguments):
        return [str(WINE_RUN), f"{BUILD}/prefix", f"{BUILD}/{program}", *map(str, arguments)]

    def sim(self, *arguments):
        return self.command("simulator/sim.exe", *arguments)

    def terminal(self, command):
        return Terminal(command, self.environment)

    def through_pipe(self, command):
        return subprocess.run(command, env=self.environment, capture_output=True, stdin=subprocess.DEVNULL)

    def test_text_is_what_a_pipe_gets_however_wide_the_terminal_is(self):
        for command in (self.sim("help", "fault"), self.command("helper/helper.exe", "help")):
            piped = self.through_pipe(command).stdout
            self.assertGreater(max(map(len, piped.splitlines())), WIDTH)
            shown, code = self.terminal(command).end()
            self.assertEqual(shown, piped.replace(b"\n", b"\r\n"))
            self.assertEqual(code, 0)
        self.assertIn("KEY=VALUE …".encode(), shown)

    def test_an_error_is_shown_and_the_exit_code_passed_on(self):
        shown, code = self.terminal(self.sim("launch…ö")).end()
        self.assertEqual(shown, "sim: there is no command launch…ö; sim help lists them\r\n".encode())
        self.assertEqual(code, 2)

    def test_colours_are_the_only_control_sequences(self):
        self.addCleanup(self.through_pipe, self.sim("stop"))
        shown, code = self.terminal(self.sim("play", "--colour", PROTOCOL)).end()
        self.assertEqual(code, 0, shown)
        self.assertEqual(set(re.findall(rb"\x1b\[[^a-zA-Z]*[a-zA-Z]", shown)),
                         {b"\x1b[0m", b"\x1b[1m", b"\x1b[32m", b"\x1b[36m"})
        self.assertEqual(shown.count(b"\r"), shown.count(b"\r\n"))

    def test_a_log_that_is_followed_is_shown_from_before_its_folder_is_there(self):
        self.addCleanup(self.through_pipe, self.sim("stop"))
        self.assertEqual(self.through_pipe(self.sim("register")).returncode, 0)
        terminal = self.terminal(self.sim("log", "--follow"))
        self.assertEqual(self.through_pipe(self.sim("protocol", "velmo-notification:x")).returncode, 0)
        self.assertTrue(terminal.read_until(b"Inside OnActivated App activated by URI protocol"), terminal.shown)
        terminal.press(b"\x03")
        shown, code = terminal.end()
        self.assertEqual(code, -signal.SIGINT, shown)

    def test_each_line_is_shown_as_it_comes_and_control_c_ends_the_program(self):
        self.addCleanup(self.through_pipe, self.sim("stop"))
        self.scenario.write_text("register\nexpect event package-registered\nexpect event package-registered\n")
        terminal = self.terminal(self.sim("play", self.scenario))
        before = terminal.settings()
        self.assertTrue(terminal.read_until(b"platform  package-registered"), terminal.shown)
        self.assertEqual(terminal.settings(), before)
        terminal.press(b"\x03")
        shown, code = terminal.end()
        self.assertEqual(code, -signal.SIGINT, shown)


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main()
