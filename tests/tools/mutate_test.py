"""./dev mutate on a small program of its own: what it changes, what it finds caught and what survives."""

import json
import os
import pathlib
import random
import re
import signal
import subprocess
import sys
import textwrap
import unittest

import support

sys.path.insert(0, str(support.ROOT / "tools" / "mutate"))

import builds  # noqa: E402
import change  # noqa: E402
import equivalents  # noqa: E402
import processes  # noqa: E402
import session  # noqa: E402
import syntax  # noqa: E402
import trial  # noqa: E402

SOURCE = """\
#include "utils/Limit.h"
namespace sample
{
int Limited(int number, int most)
{
    if (number > most)
    {
        return most;
    }
    return number;
}
int Doubled(int number)
{
    int unused = 3;
    unused += number;
    return number * 2;
}
}
"""

HEADER = "namespace sample\n{\nint Limited(int number, int most);\nint Doubled(int number);\n}\n"

# Stands in for a program of GoogleTest's: its two tests, their times when asked for, those of a filter.
TESTS = """\
#include "utils/Limit.h"
#include <cstdio>
#include <cstring>
#include <unistd.h>
int main(int count, char** words)
{
    for (int n = 1; n < count; ++n)
    {
        if (char const* file = std::strstr(words[n], "json:"))
        {
            std::FILE* report = std::fopen(file + 5, "w");
            std::fputs(R"({"testsuites": [{"name": "Limit", "testsuite": [
                {"name": "IsKept", "result": "COMPLETED", "time": "0.001s"}]}]})", report);
            std::fclose(report);
        }
    }
    if (sample::Limited(7, 5) != 5)
    {
        std::puts("[  FAILED  ] Limit.IsKept (0 ms)");
        return 1;
    }
    return sample::Doubled(1) < 2; // does not look closely
}
"""

CMAKE = """\
cmake_minimum_required(VERSION 3.25)
project(Sample LANGUAGES CXX)
set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
include_directories(${PROJECT_SOURCE_DIR})
add_compile_options(-O1)
add_library(sample STATIC utils/Limit.cpp)
add_executable(limit_test tests/LimitTest.cpp)
target_link_libraries(limit_test sample)
file(WRITE ${PROJECT_BINARY_DIR}/test-programs/limit_test
    "${PROJECT_BINARY_DIR}/limit_test\\n${PROJECT_SOURCE_DIR}/tests/LimitTest.cpp\\n")
"""


class Sample(support.ScriptTest):
    """A small clone, built once for each test."""

    def setUp(self):
        super().setUp()
        self.root = self.folder / "clone"
        support.copy_part("tools", self.folder)
        for name, text in (("utils/Limit.cpp", SOURCE), ("utils/Limit.h", HEADER), ("tests/LimitTest.cpp", TESTS),
                           ("CMakeLists.txt", CMAKE), ("tools/mutate/equivalents.toml", "")):
            self.write(name, text)
        self.build("cmake", "-S", self.root, "-B", self.root / "build/product", "-G", "Ninja",
                   "-DCMAKE_CXX_COMPILER=clang++-19")
        self.build("ninja", "-C", self.root / "build/product")

    def write(self, name, text):
        file = self.root / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)

    def build(self, *words):
        subprocess.run([str(word) for word in words], check=True, stdout=subprocess.DEVNULL)

    def start_mutate(self, *words):
        call = ("import pathlib, sys, command; root = pathlib.Path(sys.argv[1]); "
                "sys.exit(command.main(root, sys.argv[2:], root))")
        return self.start("/usr/bin/python3", "-B", "-c", call, self.root, *words, cwd=support.ROOT / "tools" / "mutate")

    def mutate(self, *words):
        """(exit code, output)"""
        process = self.start_mutate(*words)
        output = process.stdout.read()
        return process.wait(support.LIMIT), output


class Whole(Sample):
    def test_a_change_that_a_test_notices_is_caught_and_one_that_none_notices_is_listed(self):
        code, output = self.mutate("utils/Limit.cpp", "--seed", "1")
        self.assertEqual(1, code, output)
        self.assertRegex(output, r"caught +\w+ utils/Limit.cpp:6 drop, .* limit_test: Limit.IsKept")
        survived = re.search(r"utils/Limit.cpp:16 in sample::Doubled: constant\n +- +return number \* 2;\n"
                             r" +\+ +return number \* 3;\n +play it again: ./dev mutate --replay (\w+)\n", output)
        self.assertTrue(survived, output)
        self.assertRegex(output, r"same program +\w+ utils/Limit.cpp:15 drop")
        self.assertRegex(output, r"not compiled +\w+ utils/Limit.cpp:16 drop")
        self.assertRegex(output, r"mutants tried: \d+, caught: \d+ \([\d.]+ %\), survived: \d+\n")

        code, output = self.mutate("--replay", survived[1])
        self.assertEqual(1, code, output)
        self.assertIn("mutants tried: 1, caught: 0 (0.0 %), survived: 1\n", output)

        entry = re.search(r"( +\[\[equivalent\]\].*?reason = )\"\"", output, re.DOTALL)[1]
        self.write("tools/mutate/equivalents.toml", textwrap.dedent(entry) + '"nobody looks closely"')
        self.write("utils/Limit.cpp", "\n" + SOURCE)  # on another line
        self.build("ninja", "-C", self.root / "build/product")
        _, output = self.mutate("utils/Limit.cpp", "--seed", "1")
        self.assertNotIn("return number * 3", output)
        self.assertIn("1 named equivalent", output)

        self.write("utils/Limit.cpp", SOURCE.replace("number * 2", "2 * number"))
        self.build("ninja", "-C", self.root / "build/product")
        code, output = self.mutate("utils/Limit.cpp", "--sample", "1", "--seed", "1")
        self.assertEqual(1, code, output)
        self.assertIn("named equivalent, but no longer there: utils/Limit.cpp, sample::Doubled: return number * 2;", output)

    def test_the_same_seed_draws_the_same_sample_and_the_sources_stay(self):
        tried = []
        for _ in range(2):
            _, output = self.mutate("--sample", "3", "--seed", "7")
            tried.append(sorted(re.findall(r"(?:caught|survived|same program|not compiled) +(\w+) utils", output)))
        self.assertEqual(tried[0], tried[1])
        self.assertEqual(3, len(re.findall(r"(?:caught|survived) +\w+ utils", output)), output)
        self.assertEqual(SOURCE, (self.root / "utils/Limit.cpp").read_text())

    def test_a_change_that_hangs_is_caught(self):
        steps = "int volatile left = number;\nwhile (left > most)\n{\nleft = left - 1;\n}\nreturn left;\n"
        self.write("utils/Limit.cpp", re.sub(r"if \(number.*?return number;\n", steps, SOURCE, count=1, flags=re.DOTALL))
        self.build("ninja", "-C", self.root / "build/product")
        _, output = self.mutate("utils/Limit.cpp", "--seed", "1")
        self.assertRegex(output, r"caught .* limit_test: still running after 15 s")

    def test_a_change_that_does_not_link_is_not_counted(self):
        chosen = "int Nowhere();\nint Chosen()\n{\nif constexpr (true)\nreturn 1;\nelse\nreturn Nowhere();\n}\n"
        self.write("utils/Limit.cpp", SOURCE + chosen)
        self.build("ninja", "-C", self.root / "build/product")
        _, output = self.mutate("utils/Limit.cpp", "--seed", "1")
        self.assertRegex(output, r"not compiled +\w+ utils/Limit.cpp:\d+ turn, ")
        self.assertNotRegex(output, r"caught +\w+ utils/Limit.cpp:\d+ turn, .*exit code 1")

    def test_a_source_that_is_compiled_in_a_larger_unit_is_changed_there(self):
        self.write("CMakeLists.txt", CMAKE + "set_target_properties(sample PROPERTIES UNITY_BUILD ON)\n")
        self.build("ninja", "-C", self.root / "build/product")
        self.assertTrue(list(self.root.glob("build/product/CMakeFiles/sample.dir/Unity/*.o")))
        _, output = self.mutate("utils/Limit.cpp", "--seed", "1")
        self.assertRegex(output, r"caught +\w+ utils/Limit.cpp:6 drop, .* limit_test: Limit.IsKept")

    def test_tests_that_fail_without_a_change_are_told_and_nothing_is_tried(self):
        self.write("tests/LimitTest.cpp", TESTS.replace("!= 5", "!= 6"))
        self.build("ninja", "-C", self.root / "build/product")
        code, output = self.mutate("--sample", "1")
        self.assertEqual(1, code, output)
        self.assertIn("limit_test fails without a change", output)
        self.assertNotIn("mutants tried", output)

    def test_a_program_that_no_change_needs_is_neither_linked_nor_run(self):
        self.write("tests/OtherTest.cpp", "int main()\n{\n    return 1;\n}\n")
        self.write("CMakeLists.txt", CMAKE + textwrap.dedent("""\
            foreach(name unlike like)
                add_executable(${name} tests/OtherTest.cpp)
                file(WRITE ${PROJECT_BINARY_DIR}/test-programs/${name} "${PROJECT_BINARY_DIR}/${name}\\n")
            endforeach()
            target_link_libraries(like sample)
            """))
        self.build("ninja", "-C", self.root / "build/product")
        (self.root / "build/product/CMakeFiles/unlike.dir/tests/OtherTest.cpp.o").unlink()
        _, output = self.mutate("--sample", "1")
        self.assertIn("mutants tried: 1", output)

    def test_what_is_no_source_of_the_product_and_an_id_that_is_not_there_are_refused(self):
        for words, said in ((["tests/LimitTest.cpp"], "is no source of the product"), (["--replay", "0"], "no change 0")):
            code, output = self.mutate(*words)
            self.assertEqual(1, code)
            self.assertIn(said, output)


class Signals(Sample):
    def test_one_ends_it_at_once_while_it_reads_the_sources(self):
        header = self.root / "utils/Limit.h"
        header.unlink()
        os.mkfifo(header)
        process = self.start_mutate("--sample", "1")
        with header.open("w"):  # when the reader has come, which now waits for the text
            process.send_signal(signal.SIGTERM)
            self.assertEqual(-signal.SIGTERM, process.wait(support.LIMIT))


class Changes(support.ScriptTest):
    def found(self, body, before=""):
        path = self.folder / "Some.cpp"
        path.write_text(f"{before}void Some(int a, int b)\n{{\n{body}\n}}\n")
        found = syntax.changes_in(path, "Some.cpp", path, ["clang++-19", "-std=c++20"])
        return [(each.kind, change.one_line(each.old), change.one_line(each.new)) for each in change.numbered(found)]

    def test_statements_are_dropped_and_neighbours_swapped(self):
        calls = "void First(); void Second();\n"
        self.assertEqual([("drop", "First();", ";"), ("swap", "First(); Second();", "Second(); First();"),
                          ("drop", "Second();", ";")], self.found("First(); Second();", calls))

    def test_blocks_are_dropped_and_their_conditions_turned(self):
        self.assertEqual([("drop", "if (a == b) { return; }", "{}"), ("turn", "a == b", "!(a == b)"),
                          ("turn", "==", "!="), ("drop", "return;", ";")], self.found("if (a == b) { return; }"))

    def test_the_condition_of_a_declaration_is_turned_behind_it(self):
        self.assertIn(("turn", "int c = a", "int c = a; !c"), self.found("if (int c = a) { ++b; }"))

    def test_a_declaration_is_dropped_only_where_its_name_is_not_used(self):
        guard = "struct Guard { explicit Guard(int); ~Guard(); };\n"
        self.assertIn(("drop", "Guard const guard(a);", ";"), self.found("Guard const guard(a);", guard))
        self.assertEqual([], [each for each in self.found("int c; c = a;") if each[:2] == ("drop", "int c;")])

    def test_arguments_are_taken_away_and_swapped(self):
        self.assertEqual([("argument", "a", "{}"), ("arguments swapped", "a, b", "b, a"), ("argument", "b", "{}")],
                         [each for each in self.found("Some(a, b);") if each[0].startswith("argument")])

    def test_orders_are_turned_and_brackets_of_templates_are_not(self):
        templates = "template <int> int Of();\n"
        self.assertEqual([("turn", "<", "<="), ("turn", "&&", "||"), ("turn", ">=", ">")],
                         [each for each in self.found("b = a < b && Of<3>() >= a;", templates) if each[0] == "turn"])

    def test_numbers_are_one_off(self):
        for number, changed in (("7", ["8", "6"]), ("1'000u", ["1001u", "999u"]), ("0xFF", ["0x100", "0xFE"]), ("0", ["1"]),
                                ("0b10", ["0b11", "0b1"]), ("017", ["020", "016"]), ("1.5", [])):
            with self.subTest(number):
                self.assertEqual(changed, syntax.off_by_one(number))

    def test_each_number_is_changed_both_ways(self):
        self.assertEqual([("constant", "3", "2"), ("constant", "3", "4")],
                         [each for each in self.found("a = 3;") if each[0] == "constant"])

    def test_one_letter_of_a_text_is_another(self):
        for text, changed in (('"size"', '"siye"'), ('"some"', '"sone"'), ('L"x"', 'L"y"'), ("'z'", "'y'"),
                              ('"%d"', '"%e"'),
                              ('"\\xFF\\xFE"', None), ('"\\r\\n"', None), ('""', None)):
            with self.subTest(text):
                self.assertEqual([changed] if changed else [], syntax.misspelt(text))

    def test_those_told_by_the_same_words_have_ids_of_their_own(self):
        path = self.folder / "Some.cpp"
        path.write_text("int Some()\n{\n    int a = 1 + 1;\n    return a;\n}\n")
        found = change.numbered(syntax.changes_in(path, "Some.cpp", path, ["clang++-19"]))
        constants = [each for each in found if each.kind == "constant"]
        self.assertEqual([1, 1, 2, 2], [each.nth for each in constants])
        self.assertEqual(4, len({each.id for each in constants}))


class Compiled(support.ScriptTest):
    def compiles(self, text):
        path = self.folder / "Some.cpp"
        path.write_text(text)
        words = builds.plain(["clang++-19", "-std=c++20", "-Wall", "-Werror", "-g", "-fsyntax-only", str(path)])
        return subprocess.run(words, stderr=subprocess.DEVNULL).returncode == 0

    def test_is_what_the_compiler_only_warns_of(self):
        self.assertTrue(self.compiles("void Some() { int unused; }"))

    def test_is_not_what_the_build_would_refuse(self):
        self.assertFalse(self.compiles("struct Call { bool flag; }; Call Some(long time) { return {time}; }"))
        self.assertFalse(self.compiles("int Some() {}"))


class Named(support.ScriptTest):
    def test_the_repository_s_equivalents_have_reasons(self):
        self.assertTrue(all(each.reason for each in
                            equivalents.read(support.ROOT / "tools" / "mutate" / "equivalents.toml")))

    def test_one_without_a_reason_is_refused(self):
        file = self.folder / "equivalents.toml"
        file.write_text('[[equivalent]]\nfile = "a"\nfunction = "b"\nline = "c"\nchange = "d"\nreason = " "\n')
        with self.assertRaises(ValueError):
            equivalents.read(file)


class Outcomes(unittest.TestCase):
    def test_name_the_test_that_failed_or_in_which_the_program_ended(self):
        for output, name in (("[  FAILED  ] Limit.IsKept (0 ms)\n", "Limit.IsKept"),
                             ("exception 0xC0000005 at 00000001: crashed in Limit.IsKept\n", "Limit.IsKept"),
                             ("watchdog: still running after 15 s in All/Limits.Hold/3\n", "All/Limits.Hold/3"),
                             ("Segmentation fault\n", None)):
            with self.subTest(output):
                self.assertEqual(name, trial.failed_test(output))


class Steady:
    """A trial whose outcomes depend on the change alone."""

    def run(self, each):
        return trial.Outcome("not compiled" if each % 3 == 0 else "caught")


class Sessions(unittest.TestCase):
    def run_session(self, workers, wanted):
        played = session.Session([Steady()] * workers, wanted, float("inf"), lambda *_: None)
        played.run(range(100))
        return sorted(each for each, _ in played.outcomes)

    def test_goes_on_until_so_many_count(self):
        self.assertEqual([0, 1, 2, 3, 4, 5], self.run_session(1, 4))

    def test_tries_the_same_with_several_workers(self):
        self.assertEqual(self.run_session(1, 10), self.run_session(4, 10))

    def test_begins_none_after_its_time(self):
        played = session.Session([Steady()], 10, 0, lambda *_: None)
        played.run(range(100))
        self.assertEqual([], played.outcomes)

    def test_an_error_of_the_tool_is_no_outcome(self):
        class Broken:
            def run(self, each):
                raise OSError("the disk is full")

        with self.assertRaises(OSError):
            session.Session([Broken()], 10, float("inf"), lambda *_: None).run(range(100))


if __name__ == "__main__":
    unittest.main()
