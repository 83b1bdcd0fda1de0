"""Names of files in the package, and their encoding in the archive."""

import unittest

import support
from msix import part_names, writer
from msix.problem import PackageError

ENCODED = {
    "plain-name_1.2~.txt": "plain-name_1.2~.txt",
    "Assets\\Logo.png": "Assets/Logo.png",
    "two words.txt": "two%20words.txt",
    "100% (a+b) & [c]{d};e=f,g@h!#$'.txt": "100%25%20%28a%2Bb%29%20%26%20%5Bc%5D%7Bd%7D%3Be%3Df%2Cg%40h%21%23%24%27.txt",
    "Grüße\\日本.txt": "Gr%C3%BC%C3%9Fe/%E6%97%A5%E6%9C%AC.txt",
    "😀.txt": "%F0%9F%98%80.txt",
    "%41.txt": "%2541.txt",
}


class PartNames(unittest.TestCase):
    def test_all_but_letters_digits_and_four_marks_are_encoded_as_utf_8(self):
        for path, name in ENCODED.items():
            self.assertEqual(part_names.encode(path), name)

    def test_decoding_gives_the_path_back(self):
        for path, name in ENCODED.items():
            self.assertEqual(part_names.decode(name), path)

    def test_the_content_types_keep_their_brackets(self):
        self.assertEqual(part_names.encode("[Content_Types].xml"), "[Content_Types].xml")
        self.assertEqual(part_names.decode("[Content_Types].xml"), "[Content_Types].xml")

    def test_names_encoded_in_another_way_are_refused(self):
        for name in ("two words.txt", "%c3%bc.txt", "%FF.txt", "%41.txt", "a%2.txt", "a\\b.txt", "[x].xml"):
            with self.subTest(name=name), self.assertRaisesRegex(PackageError, "percent-encoded"):
                part_names.decode(name)

    def test_a_package_with_such_names_is_accepted(self):
        paths = [path for path in ENCODED if part_names.objection(path) is None]
        self.assertEqual(len(paths), len(ENCODED))
        self.assertEqual(support.problems_of({path: path.encode("utf-8") for path in paths}), [])

    def test_names_that_windows_has_not_are_refused_when_packing(self):
        for path in (
            "a:b", "a*", "a?b", 'a"b', "a|b", "<a>", "a\nb", "con", "Nul.txt", "x\\LPT1.log", "a.", "a ", "x \\a", "a\\\\b",
            "\udcff.txt", "AppxSignature.p7x", "appxblockmap.xml", "AppxMetadata\\x.cat", "a" * 257,
        ):  # fmt: skip
            with self.subTest(path=path), self.assertRaises(PackageError):
                writer.write(support.files(**{path: b"x"}))

    def test_names_that_only_resemble_those_are_taken(self):
        for path in ("console.txt", "com.txt", "com10", "a.b.c", " a", "x\\AppxSignature.p7x", "a" * 256):
            with self.subTest(path=path):
                self.assertIsNone(part_names.objection(path))


if __name__ == "__main__":
    unittest.main()
