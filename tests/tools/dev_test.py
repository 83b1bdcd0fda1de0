"""./dev: what it refuses, whom it lets wait, what it ends. In a copy of the scripts, with stand-ins for the build tools."""

import os
import re
import shutil
import signal
import subprocess
import unittest

import support

COMMANDS = ["run", "test", "build", "package", "bench", "explore", "fuzz", "mutate", "check", "coverage", "sim",
            "helper", "doctor", "symbolize", "clean"]

WRONG_CALLS = [
    *("nothing", "run it", "test --all", "test A B", "build release", "build product gcc", "bench walk"),
    *("bench line start", "bench --json", "bench --against nowhere", "bench --json dev --against dev", "bench --long"),
    *("explore", "explore nothing", "explore --short", "explore stresses"),
    *("mutate --sample 0", "mutate --replay", "mutate --replay 12 --sample 3", "mutate --all"),
    *("fuzz long", "fuzz line 0", "fuzz line 1 2", "fuzz --seed 1", "fuzz line 1 --seed x"),
    *("check --mend", "coverage all", "clean --dry", "package --all"),
    *("symbolize main", "help it"),
]

# What stands in for cmake: configures a folder, and builds as the test says in build-step.
CMAKE = """#!/usr/bin/env bash
set -euo pipefail
cd {clone}
case $1 in
--preset)
    echo "configured $2" >>calls
    mkdir -p build/$2
    printf 'CMAKE_HOME_DIRECTORY:INTERNAL=%s\\n' "$PWD" >build/$2/CMakeCache.txt
    : >build/$2/build.ninja
    ;;
--build)
    echo "built $3" >>calls
    . ./build-step
    ;;
esac
"""

CTEST = """#!/usr/bin/env bash
case " $* " in
*" --show-only "*) echo "Total Tests: 0" ;;
*) exit 1 ;;
esac
"""

# What stands in for Wine.
WINE_RUN = """#!/usr/bin/env bash
echo "wine-run ${@:2}"
"""


class DevTest(support.ScriptTest):
    def setUp(self):
        super().setUp()
        self.clone = self.folder / "clone"
        self.tools = self.folder / "bin"
        self.tools.mkdir()
        self.make_clone(self.clone)
        self.environment = os.environ | {"PATH": f"{self.tools}:{os.environ['PATH']}"}

    def make_clone(self, clone):
        clone.mkdir()
        for part in ("dev", "tools", "cmake", "bench", "package"):
            support.copy_part(part, clone)
        self.script(clone / "build-step", "")
        self.script(clone / "cmake" / "wine-run", WINE_RUN)
        self.script(self.tools / "cmake", CMAKE.format(clone=clone))
        self.script(self.tools / "ctest", CTEST)

    def script(self, path, text):
        path.write_text(text)
        path.chmod(0o755)

    def build_step(self, text):
        (self.clone / "build-step").write_text(text)

    def make_gate(self):
        """The command that waits until the test opens the gate: once for each that waits, in any order."""
        gate = self.folder / "gate"
        os.mkfifo(gate)
        # Open for both, the pipe has neither an end for who reads nor a wait for who writes.
        self.gate = os.open(gate, os.O_RDWR)
        self.addCleanup(os.close, self.gate)
        return f"read -r -n 1 <{gate}"

    def open_gate(self):
        os.write(self.gate, b".")

    def calls(self):
        calls = self.clone / "calls"
        return calls.read_text().splitlines() if calls.exists() else []

    def start_dev(self, *arguments):
        return self.start(self.clone / "dev", *arguments, env=self.environment)

    def dev(self, *arguments):
        """(exit code, output)"""
        process = self.start_dev(*arguments)
        output = process.stdout.read()
        return process.wait(support.LIMIT), output


class Calls(DevTest):
    def test_every_command_has_help_and_does_nothing_else_for_it(self):
        for name in COMMANDS:
            with self.subTest(name):
                code, output = self.dev(name, "--help")
                self.assertEqual(0, code, output)
                self.assertRegex(output, rf"^  {name} ")
                self.assertFalse((self.clone / "build").exists())

    def test_the_table_lists_every_command(self):
        code, output = self.dev()
        self.assertEqual(0, code)
        self.assertEqual(COMMANDS, re.findall(r"^  ([a-z]+) ", output, re.MULTILINE))

    def test_what_is_not_known_is_refused_with_a_sentence_and_nothing_is_done(self):
        for wrong in WRONG_CALLS:
            with self.subTest(wrong):
                code, output = self.dev(*wrong.split())
                self.assertEqual(2, code, output)
                self.assertIn("./dev", output)
                self.assertEqual([], self.calls())

    def test_a_name_that_no_test_has_is_told(self):
        code, output = self.dev("test", "Nonsense")
        self.assertEqual(1, code, output)
        self.assertIn("there is no test whose name matches 'Nonsense'", output)

    def test_an_exploration_is_built_and_given_its_arguments(self):
        for subject, play in (("log", "line-x-line:0=full"), ("faults", "protocol:1=never"), ("kill", "line:150=kill"),
                              ("stress", "full-9")):
            with self.subTest(subject):
                code, output = self.dev("explore", subject, "--replay", play)
                self.assertEqual(0, code, output)
                self.assertIn(f"build/product/explore/{subject}/explore_{subject}.exe --replay {play}\n", output)
                self.assertEqual(["built product"], [call for call in self.calls() if call.startswith("built")])
                (self.clone / "calls").unlink()

    def test_programs_by_hand_are_built_before_they_run_without_a_word(self):
        for name, program in (("sim", "simulator/sim.exe"), ("helper", "helper/helper.exe"),
                              ("doctor", "doctor/doctor.exe")):
            with self.subTest(name):
                expected = f"wine-run {self.clone}/build/product/{program} help\n"
                self.assertEqual((0, expected), self.dev(name, "help"))
                self.assertEqual("built product", self.calls()[-1])
                (self.clone / "calls").unlink()

    def test_the_doctor_looks_at_the_log_of_the_device_by_hand(self):
        log = r"C:\device\Packages\Velmo.NotificationClient_m7dy57p66fpam\AC\Temp\Tessaline\HOV\KZEB.log"
        for command in ("live", "log", "show"):
            with self.subTest(command):
                doctor = f"wine-run {self.clone}/build/product/doctor/doctor.exe {command}"
                self.assertEqual((0, f"{doctor} --json --log {log}\n"), self.dev("doctor", command, "--json"))
                self.assertEqual((0, f"{doctor} --log other.log\n"), self.dev("doctor", command, "--log", "other.log"))

    def shown_on_a_terminal(self, *arguments, **environment):
        terminal, output = os.openpty()
        self.addCleanup(os.close, terminal)
        with os.fdopen(output, "w") as output:
            subprocess.run([self.clone / "dev", *arguments], env=self.environment | environment, check=True,
                           stdin=subprocess.DEVNULL, stdout=output)
        return os.read(terminal, 10000).decode()

    def test_logs_have_colours_on_a_terminal_unless_no_color_is_set(self):
        for command in (("sim", "log"), ("doctor", "log"), ("doctor", "show")):
            with self.subTest(command):
                self.assertIn("--colour", self.shown_on_a_terminal(*command, NO_COLOR=""))
                self.assertNotIn("--colour", self.shown_on_a_terminal(*command, NO_COLOR="1"))
                self.assertNotIn("--colour", self.dev(*command)[1])

    def test_programs_by_hand_run_in_the_caller_s_folder(self):
        self.script(self.clone / "cmake" / "wine-run", "#!/usr/bin/env bash\npwd\n")
        for name, argument in (("sim", "play"), ("sim", "stop"), ("helper", "help")):
            with self.subTest(f"{name} {argument}"):
                called = subprocess.run([self.clone / "dev", name, argument], cwd=self.folder, env=self.environment,
                                        stdin=subprocess.DEVNULL, capture_output=True, text=True)
                self.assertEqual((0, f"{self.folder}\n"), (called.returncode, called.stdout))

    def test_one_that_cannot_be_built_is_not_run_and_the_reason_is_told(self):
        self.build_step("echo 'error: no such thing'; exit 1")
        code, output = self.dev("sim", "help")
        self.assertEqual(1, code)
        self.assertIn("error: no such thing", output)
        self.assertNotIn("wine-run", output)


class OneTest(DevTest):
    """Of a build with one program of tests and one test that is none."""

    def setUp(self):
        super().setUp()
        programs = self.clone / "build" / "product" / "test-programs"
        programs.mkdir(parents=True)
        (programs.parent / "build.ninja").touch()
        source = self.folder / "LineTest.cpp"
        source.write_text("TEST(Line, IsShort)\nTEST(Line, IsLong)\n")
        (programs / "line_test").write_text(f"line_test.exe\n{source}\n")
        self.build_step('echo "of $*" >>calls')
        self.script(self.clone / "cmake" / "wine-run",
                    "#!/usr/bin/env bash\n[[ $* != *line_test.exe* ]] || printf 'Line.\\n  IsShort\\n  IsLong\\n'\n")
        self.script(
            self.tools / "ctest",
            "#!/usr/bin/env bash\n"
            "name=${*: -1}\n"
            "case $* in\n"
            "*--show-only*) for test in line_test Scenario.line; do [[ ! $test =~ $name ]] || echo \"  Test #1: $test\"; done ;;\n"
            f"*) echo \"ran $name with '${{GTEST_FILTER-}}'\" >>{self.clone}/calls ;;\n"
            "esac\n",
        )

    def test_of_a_program_builds_and_runs_only_that(self):
        code, output = self.dev("test", "IsShort")
        self.assertEqual(0, code, output)
        self.assertEqual(["built product", "of --build --preset product --target line_test",
                          "ran ^(line_test)$ with 'Line.IsShort'"], self.calls())

    def test_that_is_no_program_is_run_after_a_whole_build(self):
        code, output = self.dev("test", "Scenario.line")
        self.assertEqual(0, code, output)
        self.assertEqual(["built product", "of --build --preset product", r"ran ^(Scenario\.line)$ with ''"], self.calls())

    def test_both_kinds_run_when_both_match(self):
        code, output = self.dev("test", "[lL]ine")
        self.assertEqual(0, code, output)
        self.assertEqual(["built product", "of --build --preset product", "ran ^(line_test)$ with 'Line.*'",
                          r"ran ^(Scenario\.line)$ with ''"], self.calls())

    def test_the_program_s_own_name_runs_all_of_it(self):
        self.assertEqual(0, self.dev("test", "line_test")[0])
        self.assertEqual("ran ^(line_test)$ with '*'", self.calls()[-1])

    def test_one_that_fails_makes_the_command_fail(self):
        self.script(self.tools / "ctest", "#!/usr/bin/env bash\n[[ $* == *--show-only* ]]\n")
        self.assertEqual(1, self.dev("test", "IsShort")[0])


class Lock(DevTest):
    """A build that waits until the test lets it go on."""

    def setUp(self):
        super().setUp()
        self.build_step(f"echo begins; {self.make_gate()}; echo ends >>calls")

    def test_a_second_one_says_whom_it_waits_for_and_then_works(self):
        first = self.start_dev("build")
        support.wait_until(lambda: "built product" in self.calls(), "the first builds")
        second = self.start_dev("build", "product")
        self.read_until(second, f"build/product is in use by ./dev build (process {first.pid}); waiting for its end")
        self.open_gate()
        self.assertEqual(0, first.wait(support.LIMIT))
        support.wait_until(lambda: self.calls().count("built product") == 2, "the second builds")
        self.open_gate()
        self.assertEqual(0, second.wait(support.LIMIT))
        self.assertEqual(["configured product", *["built product", "ends"] * 2], self.calls())

    def test_other_folders_are_free(self):
        first = self.start_dev("build")
        support.wait_until(lambda: "built product" in self.calls(), "the first builds")
        second = self.start_dev("build", "gcc")
        support.wait_until(lambda: "built gcc" in self.calls(), "the second builds")
        self.open_gate()
        self.open_gate()
        self.assertEqual([0, 0], [process.wait(support.LIMIT) for process in (first, second)])

    def test_clean_waits_for_the_end_of_what_works_on_the_folder(self):
        first = self.start_dev("build")
        support.wait_until(lambda: "built product" in self.calls(), "the first builds")
        cleaning = self.start_dev("clean")
        self.read_until(cleaning, "build/product is in use by ./dev build")
        self.assertTrue((self.clone / "build" / "product" / "build.ninja").exists())
        self.open_gate()
        self.assertEqual([0, 0], [process.wait(support.LIMIT) for process in (first, cleaning)])
        self.assertFalse((self.clone / "build").exists())

    def test_one_that_waits_ends_by_a_signal(self):
        first = self.start_dev("build")
        support.wait_until(lambda: "built product" in self.calls(), "the first builds")
        mark = f"VELMO_TEST_MARK={self.folder}"
        self.environment |= dict([mark.split("=")])
        second = self.start_dev("build")
        self.read_until(second, "waiting")
        second.send_signal(signal.SIGTERM)  # about when what waits for the lock is started
        self.assertEqual(-signal.SIGTERM, second.wait(support.LIMIT))
        self.assertEqual([], support.processes_with(mark))
        self.open_gate()
        self.assertEqual(0, first.wait(support.LIMIT))


class Folders(DevTest):
    def test_a_build_folder_that_came_with_a_copy_is_made_anew(self):
        self.assertEqual(0, self.dev("build")[0])
        (self.clone / "build" / "product" / "stale").touch()
        copy = self.folder / "copy"
        shutil.copytree(self.clone, copy)
        original, self.clone = self.clone, copy
        self.script(self.tools / "cmake", CMAKE.format(clone=copy))
        (copy / "calls").unlink()
        code, output = self.dev("build")
        self.assertEqual(0, code)
        self.assertIn(f"removing build/product, which builds {original}", output)
        self.assertEqual(["configured product", "built product"], self.calls())
        self.assertFalse((copy / "build" / "product" / "stale").exists())
        self.assertTrue((original / "build" / "product" / "stale").exists())

    def test_one_s_own_is_kept(self):
        self.dev("build")
        code, output = self.dev("build")
        self.assertEqual((0, "configured product"), (code, self.calls()[0]))
        self.assertEqual(["built product"] * 2, self.calls()[1:], output)

    def test_clean_ends_what_runs_on_what_it_removes(self):
        prefix = self.clone / "build" / "product" / "prefix-by-hand"
        (prefix / "dosdevices").mkdir(parents=True)
        subprocess.run(["wineserver", "-p"], env=os.environ | {"WINEPREFIX": str(prefix)}, check=True)
        self.addCleanup(support.stop_wine, prefix)
        self.assertEqual(1, len(support.servers_of(prefix)))
        code, output = self.dev("clean")
        self.assertEqual(0, code, output)
        support.wait_until(lambda: not support.servers_of(prefix), "the server has ended")
        self.assertFalse((self.clone / "build").exists())


class Watched(DevTest):
    def setUp(self):
        super().setUp()
        self.environment["VELMO_PROGRESS_SECONDS"] = "0.05"

    def test_without_a_terminal_a_long_build_shows_how_far_it_is(self):
        self.build_step(f"echo '[3/70] Building it'; {self.make_gate()}")
        process = self.start_dev("build")
        self.read_until(process, "3/70 steps, ")
        self.open_gate()
        self.assertIn("done in", process.stdout.read())

    def test_so_do_long_tests(self):
        self.script(
            self.tools / "ctest",
            "#!/usr/bin/env bash\n"
            "case $* in *--show-only*) echo '  Test  #4: One.OfThem'; exit ;; esac\n"
            "echo '  4/9 Test  #4: One.OfThem ...   Passed    0.10 sec'\n"
            f"{self.make_gate()}\n"
            "echo '100% tests passed, 0 tests failed out of 9'\n",
        )
        process = self.start_dev("test", "OfThem")
        self.read_until(process, "4/9 tests, ")
        self.open_gate()
        self.assertIn("100% tests passed", process.stdout.read())

    def test_a_signal_ends_what_runs_and_what_that_has_started(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number):
                mark = f"VELMO_TEST_MARK={self.folder}{number}"
                self.build_step("sleep 1000 & : >started; wait")
                self.environment |= dict([mark.split("=")])
                process = self.start_dev("build")
                started = self.clone / "started"
                support.wait_until(started.exists, "the build runs")
                started.unlink()
                process.send_signal(number)
                self.assertEqual(-number, process.wait(support.LIMIT))
                self.assertEqual([], support.processes_with(mark))

    def test_what_a_signal_ends_may_tidy_up_first(self):
        self.build_step("trap 'sleep 0.3; echo tidied >>calls; exit' TERM; sleep 1000 & : >started; wait")
        process = self.start_dev("build")
        support.wait_until((self.clone / "started").exists, "the build runs")
        process.send_signal(signal.SIGTERM)
        self.assertEqual(-signal.SIGTERM, process.wait(support.LIMIT))
        self.assertEqual("tidied", self.calls()[-1])

    def test_a_failed_build_shows_its_end_and_fails(self):
        self.build_step("echo 'error: this line'; exit 1")
        code, output = self.dev("build")
        self.assertEqual(1, code)
        self.assertIn("error: this line", output)


class Documents(unittest.TestCase):
    def test_the_readme_s_table_and_ci_know_every_command(self):
        readme = (support.ROOT / "README.md").read_text(encoding="utf-8")
        played = (support.ROOT / "tools" / "every-command").read_text() + (support.ROOT / ".ci" / "run").read_text()
        for name in COMMANDS:
            with self.subTest(name):
                self.assertRegex(readme, rf"(?m)^\|.*`\./dev {name}\b")
                self.assertRegex(played, rf"(?m)^(play[ _]|attend \./dev ){name}\b")


if __name__ == "__main__":
    unittest.main()
