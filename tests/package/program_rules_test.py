"""What is asked of the programs in the package."""

import random
import struct
import unittest

import support
from msix import app_functions
from msix.portable_executable import PortableExecutable
from program import EXECUTABLE, GOOD_CHARACTERISTICS, READABLE, WRITABLE, make_program

# Changes of the application's executable, and words of the message that they must lead to.
REFUSED = {
    "no APPCONTAINER": ({"characteristics": GOOD_CHARACTERISTICS & ~0x1000}, "APPCONTAINER"),
    "executable data": ({"characteristics": GOOD_CHARACTERISTICS & ~0x100}, "NX_COMPAT"),
    "a fixed address": ({"characteristics": GOOD_CHARACTERISTICS & ~0x40}, "DYNAMIC_BASE"),
    "32-bit addresses": ({"characteristics": GOOD_CHARACTERISTICS & ~0x20}, "HIGH_ENTROPY_VA"),
    "control flow guard": ({"characteristics": GOOD_CHARACTERISTICS | 0x4000}, "Control Flow Guard"),
    "another architecture": ({"machine": 0xAA64}, "machine 0xaa64"),
    "32 bits": ({"magic": 0x10B}, "not PE32+"),
    "a console": ({"subsystem": 3}, "subsystem is 3"),
    "an older subsystem": ({"subsystem_version": (6, 2)}, "version 6.2"),
    "small alignment": ({"alignment": 512}, "aligned to 512"),
    "a section writable and executable": (
        {"section_flags": READABLE | WRITABLE | EXECUTABLE}, "both writable and executable"),
    "imports in code": ({"section_flags": READABLE | EXECUTABLE}, "import table lies in an executable section"),
    "the old runtime": ({"imports": {"msvcrt.dll": ["printf"]}}, "msvcrt.dll, the old C runtime"),
    "the old runtime, loaded on first use": ({"delayed_imports": {"MSVCRT.dll": ["printf"]}}, "msvcrt.dll, the old C runtime"),
    "a library that app containers have not": (
        {"imports": {"user32.dll": ["MessageBoxW"]}}, "imports user32.dll, which app containers do not have"),
    "a function that apps may not call": (
        {"imports": {"api-ms-win-core-file-l1-1-0.dll": ["CreateFileW", "StealFileW"]}}, "StealFileW"),
    "a helper that is none": ({"imports": {"api-ms-win-crt-private-l1-1-0.dll": ["_o_system"]}}, "_o_system"),
    "another version": ({"file_version": (1, 0, 0, 1)}, "says 1.0.0.1, the manifest 1.0.0.0"),
    "no version": ({"file_version": None}, "says None"),
    "no manifest": ({"manifest": None}, "no manifest embedded"),
    "a manifest without Windows 10": ({"manifest": b"<assembly/>"}, "does not name Windows 10"),
    "a manifest that is none": ({"manifest": b"<assembly>"}, "embedded manifest: it is not well-formed"),
    "no class factories": ({"exports": ["Other"]}, "DllGetActivationFactory"),
}  # fmt: skip


class App(unittest.TestCase):
    def test_refuses(self):
        for what, (changes, words) in REFUSED.items():
            with self.subTest(what):
                found = support.problems_of({support.EXECUTABLE: support.app_program(**changes)})
                self.assertTrue(any(support.EXECUTABLE in text and words in text for text in found), found)

    def test_takes_imports_from_the_sets_that_apps_have(self):
        imports = {
            "api-ms-win-core-file-l1-1-0.dll": ["CreateFileW"],
            "api-ms-win-crt-private-l1-1-0.dll": ["memcpy", "longjmp"],
            "api-ms-win-crt-heap-l1-1-0.dll": ["malloc"],
        }
        self.assertEqual(support.problems_of({support.EXECUTABLE: support.app_program(imports=imports)}), [])

    def test_what_is_no_program_is_refused(self):
        for data in (b"MZ", b"#!/bin/sh\n" * 20, bytes(1000), b"MZ" + bytes(58) + b"\xff\xff\xff\x7f" + bytes(200)):
            found = support.problems_of({support.EXECUTABLE: data})
            self.assertTrue(any(text.startswith(support.EXECUTABLE + ": it is") for text in found), found)


class Desktop(unittest.TestCase):
    def refused(self, data, words):
        found = support.problems_of({support.DESKTOP: data})
        self.assertTrue(any(support.DESKTOP in text and words in text for text in found), found)

    def test_must_not_run_in_an_app_container(self):
        self.refused(make_program(), "APPCONTAINER")

    def test_must_be_for_this_processor(self):
        self.refused(make_program(machine=0xAA64, characteristics=0), "machine 0xaa64")

    def test_must_be_a_program(self):
        self.refused(b"not a program", "it is")

    def test_may_be_of_32_bits(self):
        self.assertEqual(support.problems_of({support.DESKTOP: make_program(machine=0x14C, magic=0x10B)}), [])


class Reader(unittest.TestCase):
    def test_reads_what_a_program_says(self):
        program = PortableExecutable(
            make_program(
                imports={"One.dll": ["a", "b"]}, delayed_imports={"Two.dll": ["c"]}, exports=["d", "e"],
                file_version=(1, 2, 3, 65535), manifest=b"<m/>",
            )  # fmt: skip
        )
        self.assertEqual(program.imports(), {"one.dll": ["a", "b"], "two.dll": ["c"]})
        self.assertEqual(program.exports(), ["d", "e"])
        self.assertEqual(program.file_version(), "1.2.3.65535")
        self.assertEqual(program.resource(24), b"<m/>")
        self.assertEqual(program.resource_types(), [16, 24])

    def test_a_program_without_tables_has_nothing_in_them(self):
        program = PortableExecutable(make_program(imports={}, file_version=None, manifest=None))
        self.assertEqual((program.imports(), program.exports(), program.resource_types()), ({}, [], []))
        self.assertIsNone(program.file_version())

    def test_imports_by_number_are_told(self):
        data = make_program(imports={"One.dll": ["a"]})
        name = struct.pack("<QQ", 0x1000 + data.index(b"\0\0a\0") - 0x400, 0)
        at = data.index(name)
        program = PortableExecutable(support.set_bytes(data, at, "<Q", 1 << 63 | 7))
        self.assertEqual(program.imports(), {"one.dll": ["#7"]})

    def test_cut_and_damaged_programs_raise_value_errors_only(self):
        whole = support.app_program(delayed_imports={"Two.dll": ["c"]})
        noise = random.Random(6)
        spoilt = [whole[:size] for size in range(0, len(whole), 7)]
        for _ in range(3000):
            data = bytearray(whole)
            for _ in range(3):
                data[noise.randrange(len(data))] = noise.choice((0, 1, 0x10, 0x7F, 0x80, 0xFF))
            spoilt.append(bytes(data))
        for data in spoilt:
            try:
                program = PortableExecutable(data)
                program.imports(), program.exports(), program.resource(24), program.file_version()
            except ValueError:
                pass

    def test_the_toolchain_lists_what_apps_may_import(self):
        self.assertIn("CreateFileW", app_functions.of("api-ms-win-core-file-l1-1-0.dll"))
        self.assertNotIn("MessageBoxW", app_functions.of("api-ms-win-core-file-l1-1-0.dll"))
        self.assertIsNone(app_functions.of("kernel32.dll"))


if __name__ == "__main__":
    unittest.main()
