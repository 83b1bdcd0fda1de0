"""doctor/timeline/page/assemble.py: the page as C++ source."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SCRIPT = ROOT / "doctor" / "timeline" / "page" / "assemble.py"
LIBRARY = LICENCE = None


class Assemble(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.source, self.notice = self.folder / "PageTemplate.cpp", self.folder / "NOTICE.txt"

    def assemble(self, library=None, licence=None):
        return subprocess.run(
            [sys.executable, "-B", SCRIPT, self.source, self.notice, library or LIBRARY, licence or LICENCE],
            capture_output=True, text=True, check=False,
        )  # fmt: skip

    def assert_refused(self, result, *words):
        self.assertEqual(1, result.returncode)
        self.assertEqual(1, len(result.stderr.splitlines()), result.stderr)
        for word in words:
            self.assertIn(word, result.stderr)
        self.assertEqual([], [each for each in (self.source, self.notice) if each.exists()])

    def test_the_same_sources_give_the_same_bytes(self):
        self.assertEqual(0, self.assemble().returncode)
        first = self.source.read_bytes()
        self.assertEqual(0, self.assemble().returncode)
        self.assertEqual(first, self.source.read_bytes())
        self.assertNotIn(str(ROOT).encode(), first)

    def test_a_missing_library_is_named_with_its_package(self):
        missing = self.folder / "d3.min.js"
        self.assert_refused(self.assemble(library=missing), f"{missing} is missing", "node-d3", "./dev build installs")

    def test_a_missing_licence_is_named_with_its_package(self):
        missing = self.folder / "copyright"
        self.assert_refused(self.assemble(licence=missing), f"{missing} is missing", "node-d3")

    def test_another_library_than_the_pinned_one_is_refused(self):
        other = self.folder / "d3.min.js"
        other.write_bytes(pathlib.Path(LIBRARY).read_bytes() + b"\n")
        self.assert_refused(self.assemble(library=other), f"{other} is not D3 5.16.0", "SHA-256")

    def test_the_notice_is_the_licence(self):
        self.assertEqual(0, self.assemble().returncode)
        notice = self.notice.read_text(encoding="utf-8")
        self.assertTrue(notice.startswith("Timelines are drawn by D3 5.16.0"))
        self.assertTrue(notice.endswith(pathlib.Path(LICENCE).read_text(encoding="utf-8")))

    def test_nothing_is_left_to_fill_in_but_the_data(self):
        self.assertEqual(0, self.assemble().returncode)
        for name in ("policy", "style", "licence", "library", "script", "data"):
            self.assertNotIn("{{" + name, self.source.read_text(encoding="utf-8"))


if __name__ == "__main__":
    LIBRARY, LICENCE = sys.argv[1:3]
    del sys.argv[1:3]
    unittest.main()
