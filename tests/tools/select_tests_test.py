"""tools/select_tests.py: the tests of a name, and the programs that hold them."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

import support

SCRIPT = support.ROOT / "tools" / "select_tests.py"
SOURCES = {
    "LineTest.cpp": "TEST(Line, IsShort)\n{\n}\nTEST_F(LineFlow, IsLong)\n",
    "SizeTest.cpp": "TEST_P(Sizes, Fit)\n{\n}\nINSTANTIATE_TEST_SUITE_P(Small, Sizes, testing::Range(0, 3));\n",
}
LIST = """Line.
  IsShort
  IsLong
Small/Sizes.
  Fit/0  # GetParam() = 0
  Fit/1  # GetParam() = 1
"""


class SelectTests(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.build = pathlib.Path(folder.name)
        (self.build / "test-programs").mkdir()
        for name, text in SOURCES.items():
            (self.build / name).write_text(text)
        self.program("line_test", "LineTest.cpp")
        self.program("all_test", "LineTest.cpp", "SizeTest.cpp", "NotGenerated.cpp")

    def program(self, name, *sources):
        lines = [f"tests/{name}.exe", *(str(self.build / source) for source in sources)]
        (self.build / "test-programs" / name).write_text("\n".join(lines) + "\n")

    def select(self, *arguments, text=""):
        done = subprocess.run([sys.executable, "-B", SCRIPT, *map(str, arguments)], input=text, capture_output=True,
                              text=True, check=True)
        return done.stdout.split()

    def programs(self, name):
        return self.select("programs", self.build, name)

    def filter(self, name):
        return self.select("filter", name, text=LIST)

    def test_a_program_is_found_by_a_part_of_a_test_s_full_name(self):
        for name in ("Line.IsShort", "IsLong", "^LineFlow", r"Line\.IsShort$", "Lin.*Short"):
            with self.subTest(name):
                self.assertEqual(["all_test", "line_test"], self.programs(name))

    def test_a_program_is_found_by_its_own_name_whole(self):
        self.assertEqual(["line_test"], self.programs("line_test"))
        self.assertEqual([], self.programs("line_tes"))

    def test_instances_are_found_with_their_prefix_and_their_number(self):
        for name in ("Sizes", "Small/Sizes.Fit", "Small/Sizes.Fit/1", "Fit/2$"):
            with self.subTest(name):
                self.assertEqual(["all_test"], self.programs(name))

    def test_a_name_that_no_test_has_finds_nothing(self):
        self.assertEqual([], self.programs("Nonsense"))

    def test_the_filter_names_the_tests_that_match(self):
        self.assertEqual(["Line.IsShort"], self.filter("IsShort"))
        self.assertEqual(["Small/Sizes.Fit/1"], self.filter("Fit/1"))
        self.assertEqual(["Line.IsLong:Small/Sizes.*"], self.filter("IsLong|Sizes"))

    def test_the_filter_of_nothing_is_empty(self):
        self.assertEqual([], self.filter("Nonsense"))

    def test_a_whole_suite_is_named_as_one(self):
        self.assertEqual(["Line.*"], self.filter(r"^Line\."))


if __name__ == "__main__":
    unittest.main()
