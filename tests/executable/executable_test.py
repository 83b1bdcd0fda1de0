#!/usr/bin/env python3
"""What the shipped executable is: small, hardened, importing nothing but Windows. Usage: executable_test.py EXE"""

import os
import pathlib
import re
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "package"))

from msix.portable_executable import PortableExecutable

# All that is needed of Windows, the universal C runtime included, is reached through API sets; but for the version of a
# file, whose API set is a private one.
WINDOWS = re.compile(r"(api|ext)-ms-win-[a-z0-9-]+-l\d+-\d+-\d+\.dll|version\.dll")

EXECUTABLE = ""


class ShippedExecutable(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.program = PortableExecutable(pathlib.Path(EXECUTABLE).read_bytes())

    def test_is_at_most_300000_bytes(self):
        self.assertLessEqual(len(self.program.data), 300_000)

    def test_is_stripped_with_its_debug_information_beside_it(self):
        self.assertEqual(self.program.symbol_count, 0)
        self.assertFalse([s.name for s in self.program.sections if s.name.startswith(".debug")])
        with open(os.path.splitext(EXECUTABLE)[0] + ".pdb", "rb") as file:
            self.assertTrue(file.read(32).startswith(b"Microsoft C/C++ MSF 7.00"))

    def test_imports_nothing_but_windows(self):
        foreign = [n for n in self.program.imports() if not WINDOWS.fullmatch(n)]
        self.assertEqual(foreign, [])

    def test_exports_the_factories_of_its_classes_and_nothing_else(self):
        self.assertEqual(self.program.exports(), ["DllGetActivationFactory"])

    def test_is_a_64_bit_program_with_the_windows_10_window_subsystem(self):
        self.assertTrue(self.program.is_64_bit)
        self.assertEqual(self.program.machine, 0x8664)
        self.assertEqual(self.program.subsystem, 2)
        self.assertEqual(self.program.subsystem_version, (10, 0))

    def test_runs_in_an_app_container_with_random_addresses_and_no_executable_data(self):
        appcontainer, nx, dynamic_base, high_entropy = 0x1000, 0x0100, 0x0040, 0x0020
        wanted = appcontainer | nx | dynamic_base | high_entropy
        self.assertEqual(self.program.characteristics & wanted, wanted)

    def test_does_not_claim_control_flow_guard(self):
        # This C runtime has no load configuration for it.
        self.assertEqual(self.program.characteristics & 0x4000, 0)

    def test_has_sections_that_are_mapped_and_not_copied(self):
        page = 4096
        self.assertEqual([s.name for s in self.program.sections if s.raw % page != 0], [])

    def test_has_no_section_both_writable_and_executable(self):
        executable, writable = 0x20000000, 0x80000000
        both = executable | writable
        self.assertEqual([s.name for s in self.program.sections if s.flags & both == both], [])

    def test_carries_a_version_resource_and_a_manifest_for_windows_10(self):
        self.assertIn(16, self.program.resource_types())
        self.assertIn(24, self.program.resource_types())
        self.assertIn(b"{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}", self.program.data)


if __name__ == "__main__":
    EXECUTABLE = sys.argv.pop(1)
    unittest.main()
