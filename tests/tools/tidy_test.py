"""cmake/tidy.py: what is linted together, and what of it is told. With a stand-in for clang-tidy."""

import json
import os
import subprocess
import sys
import unittest

import support

SCRIPT = support.ROOT / "cmake" / "tidy.py"

# Objects to every line with the word "bad".
CLANG_TIDY = """#!/usr/bin/env python3
import pathlib, sys
path = pathlib.Path(sys.argv[-1])
bad = [number for number, line in enumerate(path.read_text().splitlines(), 1) if "bad" in line]
for number in bad:
    print(f"{path}:{number}:1: error: bad [check]")
sys.exit(bool(bad))
"""


class Tidy(support.ScriptTest):
    def setUp(self):
        super().setUp()
        clang_tidy = self.folder / "clang-tidy-19"
        clang_tidy.write_text(CLANG_TIDY)
        clang_tidy.chmod(0o755)
        self.build = self.folder / "build"
        self.build.mkdir()
        commands = [f"clang++ -O3 -o {top}/a.obj -c /{top}/a.cpp" for top in ("app", "utils")]
        commands += ["clang++ -O3 -Iprojection -isystem json -o utils/b.obj -c /utils/b.cpp", "windres app/a.rc app/a.res",
                     "clang++ -O3 -isystem test -o tests/c.obj -c /tests/c.cpp"]
        (self.build / "compile_commands.json").write_text(json.dumps([{"command": command} for command in commands]))

    def tidy(self, sources, most_bytes=1000):
        """(exit code, output)"""
        for name, text in sources.items():
            (self.folder / name).parent.mkdir(exist_ok=True)
            (self.folder / name).write_text(text)
        process = subprocess.run([sys.executable, "-B", SCRIPT, self.build, str(most_bytes)], input="\n".join(name for name in sources if name.endswith(".cpp")), cwd=self.folder,
                                 env=os.environ | {"PATH": f"{self.folder}:{os.environ['PATH']}"},
                                 capture_output=True, text=True, check=False)
        return process.returncode, process.stdout + process.stderr

    def test_sources_are_linted_together(self):
        code, output = self.tidy({"app/one.cpp": "int one;\n", "utils/two.cpp": "int two;\n"})
        self.assertEqual((0, "    clang-tidy: 1 of 1\n"), (code, output))
        self.assertEqual("int one;\nint two;\n", (self.build / "tidy" / "0.cpp").read_text())

    def test_no_more_than_fit(self):
        code, output = self.tidy({"app/one.cpp": "int one;\n", "app/two.cpp": "int two;\n"}, most_bytes=0)
        self.assertEqual((0, "    clang-tidy: 1 of 2\n    clang-tidy: 2 of 2\n"), (code, output))

    def test_sources_with_the_same_libraries_go_together(self):
        plain, library = "int plain;\n", "#include <winrt/x.h>\n#include <json/json.h>\nint library;\n"
        sources = {"app/1.cpp": plain, "app/2.cpp": library, "app/3.cpp": plain, "app/4.cpp": library}
        self.assertEqual(0, self.tidy(sources, most_bytes=2 * len(library))[0])
        units = sorted(path.read_text().count("library") for path in (self.build / "tidy").glob("*.cpp"))
        self.assertEqual([0, 2], units)

    def test_a_library_is_also_used_by_way_of_a_header(self):
        plain, library = "int plain;\n", '#include "app/outer.h"\nint library;\n'
        sources = {"app/outer.h": '#include "app/inner.h"\n', "app/inner.h": "#include <json/json.h>\n",
                   "app/1.cpp": plain, "app/2.cpp": library, "app/3.cpp": plain, "app/4.cpp": library}
        self.assertEqual(0, self.tidy(sources, most_bytes=50)[0])
        units = sorted(path.read_text().count("library") for path in (self.build / "tidy").glob("*.cpp"))
        self.assertEqual([0, 2], units)

    def test_sources_go_together_whatever_namespaces_they_use_those_without_first(self):
        sources = {"app/1.cpp": "using namespace one;\n", "app/2.cpp": "using namespace two;\n", "app/3.cpp": "int plain;\n"}
        self.assertEqual((0, "    clang-tidy: 1 of 1\n"), self.tidy(sources))
        self.assertEqual("int plain;\nusing namespace one;\nusing namespace two;\n",
                         (self.build / "tidy" / "0.cpp").read_text())

    def test_what_is_found_names_its_own_source_and_line(self):
        code, output = self.tidy({"app/one.cpp": "int one;\n\n", "app/two.cpp": "int two;\nint bad;\n"})
        self.assertEqual(1, code)
        self.assertIn("app/two.cpp:2:1: error: bad [check]\n", output)

    def test_an_include_of_an_earlier_source_is_no_duplicate_and_one_of_its_own_is(self):
        self.tidy({"app/one.cpp": "#include <a>\n#include <b>\n", "app/two.cpp": "#include <a>\n#include <c>\n#include <c>\n"})
        self.assertEqual("#include <a>\n#include <b>\n#include <c>\n#include <c>\n",
                         (self.build / "tidy" / "0.cpp").read_text())

    def test_a_header_sees_no_name_of_a_source(self):
        code, output = self.tidy({"app/one.cpp": "#include <a>\nint one;\n", "app/two.cpp": "#include <b>\nint bad;\n"})
        self.assertEqual("#include <a>\n#include <b>\nint one;\nint bad;\n", (self.build / "tidy" / "0.cpp").read_text())
        self.assertIn("app/two.cpp:2:1: error: bad [check]\n", output)

    def test_a_unit_is_compiled_with_all_options_of_the_folders_that_are_linted(self):
        self.tidy({"app/one.cpp": "int one;\n", "utils/two.cpp": "int two;\n"})
        entries = json.loads((self.build / "tidy" / "compile_commands.json").read_text())
        self.assertEqual([f"clang++ -O3 -Iprojection -isystem json -c {self.build}/tidy/0.cpp"],
                         [entry["command"] for entry in entries])

    def test_a_clang_tidy_that_cannot_run_fails_and_says_why(self):
        self.tidy({"app/one.cpp": "int one;\n"})
        (self.folder / "clang-tidy-19").write_text("#!/bin/sh\necho 'no such option' >&2\nexit 1\n")
        code, output = self.tidy({"app/one.cpp": "int one;\n"})
        self.assertEqual(1, code)
        self.assertIn("no such option", output)


if __name__ == "__main__":
    unittest.main()
