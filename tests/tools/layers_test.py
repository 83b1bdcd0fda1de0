"""cmake/layers.py: what it lets pass, and each thing that it reports. On small trees, each with a table of its own."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest
from unittest import mock

import support

sys.path.insert(0, str(support.ROOT / "cmake"))
import layers  # noqa: E402


def includes(*names):
    return "".join(f'#include "{name}"\n' for name in names)


class LayersTest(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.root)

    def found(self, files, table, exceptions=frozenset()):
        for name, text in files.items():
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            (self.root / name).write_text(text)
        return list(layers.violations(self.root, table, set(exceptions)))

    def test_nothing_is_reported_of_what_the_table_allows(self):
        files = {
            "high/A.cpp": includes("high/A.h", "A.h", "low/B.h", "low/inner/C.h") + "#include <vector>\n",
            "high/A.h": "",
            "high/deep/D.h": includes("low/B.h"),
            "low/B.h": includes("low/inner/C.h"),
            "low/inner/C.h": "",
            "build/E.cpp": includes("high/A.h"),
        }
        self.assertEqual([], self.found(files, {"low/inner": [], "low": ["low/inner"], "high": ["low", "low/inner"]}))

    def test_an_include_that_runs_upward(self):
        files = {"high/A.h": "", "low/B.cpp": includes("high/A.h")}
        self.assertEqual(["low/B.cpp includes high/A.h, which low may not"],
                         self.found(files, {"low": [], "high": ["low"]}))

    def test_one_of_a_nested_row_upward(self):
        files = {"all/high/A.h": "", "all/low/deep/B.cpp": "  #  include \"all/high/A.h\"\n"}
        self.assertEqual(["all/low/deep/B.cpp includes all/high/A.h, which all/low may not"],
                         self.found(files, {"all/low": [], "all/high": ["all/low"]}))

    def test_a_header_of_the_projection_where_it_is_not_allowed(self):
        files = {"low/B.cpp": "#include <winrt/Windows.Foundation.h>\n", "projection/winrt/base.h": ""}
        self.assertEqual(["low/B.cpp includes projection/winrt/Windows.Foundation.h, which low may not"],
                         self.found(files, {"low": [], "projection": []}))

    def test_another_header_of_a_folder_than_the_one_allowed(self):
        files = {"low/A.h": "", "low/B.h": "", "high/C.cpp": includes("low/A.h", "low/B.h")}
        self.assertEqual(["high/C.cpp includes low/B.h, which high may not"],
                         self.found(files, {"low": [], "high": ["low/A.h"]}))

    def test_a_folder_without_a_row(self):
        files = {"low/A.h": "", "unknown/deep/B.cpp": ""}
        self.assertEqual(["unknown/deep/B.cpp: its folder has no row in the table of cmake/layers.py"],
                         self.found(files, {"low": []}))

    def test_an_include_of_a_folder_without_a_row(self):
        self.assertEqual(["low/A.h includes gone/B.h, which low may not"],
                         self.found({"low/A.h": includes("gone/B.h")}, {"low": []}))

    def test_a_row_without_sources(self):
        self.assertEqual(["gone has a row in the table and no sources"],
                         self.found({"low/A.h": ""}, {"low": [], "gone": []}))

    def test_an_entry_that_names_nothing(self):
        self.assertEqual(["low may include gone/A.h, which does not exist"],
                         self.found({"low/A.h": ""}, {"low": ["gone/A.h"]})[:1])

    def test_two_folders_that_the_table_lets_include_each_other(self):
        files = {"one/A.h": includes("two/B.h"), "two/B.h": "", "two/C.h": includes("one/A.h")}
        found = self.found(files, {"one": ["two"], "two": ["one/A.h"]})
        self.assertEqual(1, len(found), found)
        self.assertRegex(found[0], "^the table lets folders include each other: (one -> two -> one|two -> one -> two)$")

    def test_a_longer_ring_of_folders(self):
        files = {"one/A.h": "", "two/B.h": "", "three/C.h": ""}
        found = self.found(files, {"one": ["two"], "two": ["three"], "three": ["one"]})
        self.assertEqual(1, len(found), found)
        self.assertRegex(found[0], "^the table lets folders include each other: "
                         "(one -> two -> three -> one|two -> three -> one -> two|three -> one -> two -> three)$")

    def test_files_of_one_folder_that_include_each_other(self):
        files = {"low/A.h": includes("B.h"), "low/B.h": includes("low/C.h"), "low/C.h": includes("low/A.h")}
        found = self.found(files, {"low": []})
        self.assertEqual(1, len(found), found)
        self.assertRegex(found[0], "^files include each other: low/(A.h -> low/B.h|B.h -> low/C.h|C.h -> low/A.h) -> ")

    def test_scripts_that_import_upward_and_each_other(self):
        files = {
            "package/command.py": "import contents\nimport sys\nfrom msix import blocks\n",
            "package/contents.py": "",
            "package/msix/__init__.py": "",
            "package/msix/blocks.py": "from .files import read\nfrom . import limits\n",
            "package/msix/files.py": "import contents\n",
            "package/msix/limits.py": "from . import blocks\n",
        }
        found = self.found(files, {"package/msix": [], "package": ["package/msix"]})
        self.assertEqual("package/msix/files.py includes package/contents.py, which package/msix may not", found[0])
        self.assertRegex(found[1], "^files include each other: package/msix/(blocks|limits).py -> ")
        self.assertEqual(2, len(found), found)

    def test_an_exception_passes_as_long_as_it_is_needed(self):
        files = {"high/A.h": "", "low/B.cpp": includes("high/A.h")}
        table = {"low": [], "high": ["low"]}
        known = {("low/B.cpp", "high/A.h")}
        self.assertEqual([], self.found(files, table, known))
        self.assertEqual(["low/B.cpp no longer includes high/A.h: remove the exception"],
                         self.found({"low/B.cpp": ""}, table, known))

    def test_what_is_built_is_not_looked_into(self):
        """Tests at work there remove folders at any moment."""
        with mock.patch("os.scandir", side_effect=os.scandir) as looked_into:
            self.assertEqual([], self.found({"low/A.h": "", "build/product/prefix/B.h": "", ".git/C.h": ""}, {"low": []}))
        folders = {pathlib.Path(call.args[0]) for call in looked_into.call_args_list}
        self.assertEqual({self.root, self.root / "low"}, folders)

    def test_the_command_prints_what_it_finds_in_its_own_tree_and_fails(self):
        support.copy_part("cmake", self.root)
        (self.root / "utils").mkdir()
        (self.root / "utils" / "A.cpp").write_text(includes("app/App.h"))
        run = subprocess.run([sys.executable, "-B", self.root / "cmake" / "layers.py"], capture_output=True, text=True,
                             timeout=support.LIMIT, check=False)
        self.assertEqual(1, run.returncode, run.stderr)
        self.assertIn("utils/A.cpp includes app/App.h, which utils may not\n", run.stdout)


if __name__ == "__main__":
    unittest.main()
