"""cmake/suites.py: what it lets pass, and what it reports."""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

import support

sys.path.insert(0, str(support.ROOT / "cmake"))
import suites  # noqa: E402


class SuitesTest(unittest.TestCase):
    def found(self, name, text):
        root = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, root)
        (root / name).parent.mkdir(parents=True)
        (root / name).write_text(text)
        return list(suites.violations(root))

    def test_suites_that_begin_with_the_name_of_their_file(self):
        text = "TEST(Rotation, A)\n{\n}\nTEST_F(RotationTest, B)\nTEST_P(RotationOfCopies, C)\n// TEST(Other, D)\n"
        self.assertEqual([], self.found("tests/unit/RotationTest.cpp", text))

    def test_a_suite_of_another_name_in_each_kind_of_test(self):
        for kind in ("TEST", "TEST_F", "TEST_P", "TYPED_TEST"):
            with self.subTest(kind):
                self.assertEqual(["tests/flow/RotationTest.cpp: the suite Copies is not named Rotation..."],
                                 self.found("tests/flow/RotationTest.cpp", f"TEST(Rotation, A)\n{kind}(Copies, B)\n"))

    def test_tests_in_a_file_that_is_not_named_so(self):
        self.assertEqual(["tests/flow/Rotation.cpp: has tests, and is not named ...Test.cpp"],
                         self.found("tests/flow/Rotation.cpp", "TEST(Rotation, A)\n"))

    def test_the_command_prints_what_it_finds_in_its_own_tree_and_fails(self):
        root = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, root)
        support.copy_part("cmake", root)
        (root / "tests").mkdir()
        (root / "tests" / "ATest.cpp").write_text("TEST(B, C)\n")
        run = subprocess.run([sys.executable, "-B", root / "cmake" / "suites.py"], capture_output=True, text=True,
                             timeout=support.LIMIT, check=False)
        self.assertEqual((1, "tests/ATest.cpp: the suite B is not named A...\n"), (run.returncode, run.stdout))


if __name__ == "__main__":
    unittest.main()
