#!/usr/bin/env python3
"""refusals_test.py FOLDER COMPILER...: what the projection refuses to compile, and what its headers leave out, as the
official ones do. FOLDER holds the generated headers; the other words are the compiler and its options."""
import subprocess
import sys
import unittest
from pathlib import Path

HEADERS = ["winrt/base.h"] + sorted(f"winrt/{path.name}" for path in Path(sys.argv[1], "winrt").glob("*.h"))
COMPILER = sys.argv[2:]
SOURCE = Path(__file__).with_suffix(".cpp")

# The name of each piece of the source and a part of what the compiler says of it.
REFUSED = {
    "FactoryMadeWithAnArgument": "an activation factory is made without arguments",
    "FactoryItselfMadeWithAnArgument": "an activation factory is made without arguments",
    "ObjectOnTheStack": "objects_come_from_make",
    "ObjectFromNew": "objects_come_from_make",
    "FinalImplementation": "final",
    "NoImplementation": "D must derive from winrt::implements",
    "IdOfAnEnumeration": "has no id",
    "IdOfAnUnknownType": "include <unknwn.h> before any header of the projection",
    "StringFromNull": "nullptr_t",
    "StringComparedWithNull": "nullptr_t",
    "StringJoinedWithNull": "operator+",
    "StringFromAViewByItself": "hstring",
    "ArgumentFromNull": "nullptr_t",
    "CodeOfTheSystem": "S_OK",
    "IdOfTheSystem": "_GUID",
}


def run(options, source):
    return subprocess.run([*COMPILER, *options, "-x", "c++", "-"], input=source, capture_output=True, text=True,
                          encoding="utf-8", env={"LC_ALL": "C.UTF-8", "PATH": "/usr/bin:/bin"})


def including(*headers):
    return "".join(f"#include <{header}>\n" for header in headers)


class Refusals(unittest.TestCase):
    def test_all_pieces_are_in_the_source(self):
        names = {line.split()[1] for line in SOURCE.read_text(encoding="utf-8").splitlines()
                 if line.startswith("#ifdef")}
        self.assertEqual(names, set(REFUSED))

    def test_nothing_else_in_the_source_is_refused(self):
        result = run(["-fsyntax-only"], SOURCE.read_text(encoding="utf-8"))
        self.assertEqual(result.returncode, 0, result.stderr)


class Headers(unittest.TestCase):
    def test_include_none_of_the_system(self):
        self.assertGreater(len(HEADERS), 10)
        result = run(["-E", "-dM"], including(*HEADERS))
        self.assertEqual(result.returncode, 0, result.stderr)
        defined = {line.split()[1].split("(")[0] for line in result.stdout.splitlines()}
        self.assertIn("INT32_MAX", defined)
        self.assertEqual(set(), defined & {"_WINDOWS_", "_INC_WINDOWS", "_WINDEF_", "_WINNT_", "_WINBASE_", "GUID_DEFINED",
                                           "S_OK", "E_POINTER", "WINAPI", "TRUE", "ERROR_SUCCESS", "INFINITE"})

    def test_may_stand_before_and_after_those_of_the_system(self):
        system = ["windows.h", "unknwn.h", "roapi.h", "winstring.h"]
        for headers in (system + HEADERS, HEADERS + system):
            result = run(["-fsyntax-only"], including(*headers))
            self.assertEqual(result.returncode, 0, result.stderr)


def refused(name, words):
    def test(self):
        result = run(["-fsyntax-only", "-D" + name], SOURCE.read_text(encoding="utf-8"))
        self.assertNotEqual(result.returncode, 0, f"{name} compiles")
        self.assertIn(words, result.stderr)
    return test


for piece, said in REFUSED.items():
    setattr(Refusals, "test_" + piece, refused(piece, said))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
