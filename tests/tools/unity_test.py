"""cmake/unity.py: which sources share a compilation unit."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

import support

sys.path.insert(0, str(support.ROOT / "cmake"))
import unity  # noqa: E402


class Unity(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, name, text):
        path = self.folder / name
        path.write_text(text)
        return str(path)

    def groups(self, *texts, most_bytes=10_000):
        sources = [unity.read(self.write(f"{number}.cpp", text)) for number, text in enumerate(texts)]
        return [[int(pathlib.Path(each.path).stem) for each in group] for group in unity.grouped(sources, most_bytes)]

    def assert_apart(self, one, other):
        self.assertEqual([[0], [1]], self.groups(one, other))
        self.assertEqual([[0], [1]], self.groups(other, one))

    def assert_together(self, one, other):
        self.assertEqual([[0, 1]], self.groups(one, other))

    def test_sources_whose_names_do_not_meet_share_a_unit(self):
        self.assert_together("namespace\n{\nint One() { return 1; }\n}\n", "namespace\n{\nint Two() { return 2; }\n}\n")

    def test_equal_names_of_unnamed_namespaces_keep_sources_apart(self):
        for declaration in ("int Twice(int) { return 2; }", "constexpr int Twice = 2;", "int const Twice[] = {2};",
                            "int const Twice{2};", "struct Twice { };", "enum class Twice { two };",
                            "std::vector<int> const Twice = {2};", "auto const Twice = Of(L\"a\", 'b');"):
            with self.subTest(declaration):
                self.assert_apart(f"namespace\n{{\n{declaration}\n}}\n", "namespace a\n{\nvoid F(int Twice) {}\n}\n")

    def test_unnamed_namespaces_within_others_count(self):
        self.assert_apart("namespace a\n{\nnamespace\n{\nint x = 1;\n}\n}\n", "void F() { int x = 2; }\n")

    def test_constants_and_static_functions_count_wherever_they_stand(self):
        self.assert_apart("namespace a\n{\nconstexpr int limit = 1;\n}\n", "int Other(int limit);\n")
        self.assert_apart("static int Limit() { return 1; }\n", "int Other() { return Limit; }\n")

    def test_two_programs_do_not_meet(self):
        self.assert_apart("int main()\n{\n}\n", "int main()\n{\n}\n")
        self.assert_apart("int wmain(int count, wchar_t** arguments);\n", "int wmain(int count, wchar_t** arguments);\n")

    def test_two_wrappers_of_a_function_do_not_meet(self):
        self.assert_apart("WRAP(Wait, WaitForSingleObject);\n", "WRAP(WaitCall, WaitForSingleObject);\n")
        self.assert_together("WRAP(Wait, WaitForSingleObject);\n", "void F() { WaitForSingleObject(); }\n")

    def test_macros_count(self):
        self.assert_apart("#define LIMIT 1\n", "enum class Level { LIMIT };\n")

    def test_aliases_may_be_shared_if_they_say_the_same(self):
        self.assert_together("using Lines = int;\n", "using Lines = int;\n")
        self.assert_apart("using Lines = int;\n", "using Lines = long;\n")
        self.assert_apart("using a::Lines;\n", "using b::Lines;\n")

    def test_names_that_are_reached_through_others_do_not_meet(self):
        self.assert_together("namespace\n{\nint sent = 1;\n}\n", "int F(A& a, A* b) { return a.sent + b->sent + C::sent; }\n")

    def test_comments_and_strings_declare_and_mention_nothing(self):
        self.assert_together("namespace\n{\nint sent = 1;\n}\n", '// sent\n/* sent */ auto text = "sent { ";\n')

    def test_locals_members_and_parameters_stay_in_their_braces(self):
        self.assert_together("namespace\n{\nint F(int sent) { int done = sent; return done; }\nclass A { int last; };\n}\n",
                             "int G(int sent, int done, int last);\n")

    def test_a_namespace_that_a_source_uses_is_used_by_no_earlier_one(self):
        self.assertEqual([[1, 0]], self.groups("using namespace std;\n", "int F();\n"))
        self.assert_apart("using namespace a;\n", "using namespace b;\n")

    def test_a_unit_is_no_larger_than_asked_for(self):
        self.assertEqual([[0, 1], [2]], self.groups("int a;", "int b;", "int c;", most_bytes=12))

    def test_what_goes_into_different_programs_stays_apart(self):
        one, both = self.write("one.cpp", "int a;"), self.write("both.cpp", "int b;")
        lines = f"folder\tfirst\t{one}\nfolder\tfirst\t{both}\nfolder\tsecond\t{both}\n"
        script = support.ROOT / "cmake" / "unity.py"
        printed = subprocess.run([sys.executable, "-B", script, "1000"], input=lines, capture_output=True, text=True, check=True)
        groups = [line.split()[-1] for line in printed.stdout.splitlines()]
        self.assertEqual(2, len(set(groups)), printed.stdout)


if __name__ == "__main__":
    unittest.main()
