"""The package of this very build. Usage: shipped_test.py LAYOUT PDB_FOLDER SOURCE_FOLDER BUILD_FOLDER"""

import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest
import zipfile

import support
from msix import version_resource
from msix.manifest import Manifest
from msix.portable_executable import PortableExecutable

LAYOUT, PDB_FOLDER, SOURCE, BUILD = sys.argv[1:5]

DEBUG_DIRECTORY, REPRODUCIBLE = 6, 16
CONSOLE_PROGRAMS = {"helper": (b"WaitForEnd", b"Session.cpp"), "doctor": (b"TakeSplit", b"ReadLog.cpp")}


def debug_kinds(program):
    """The types of the entries in a program's debug directory."""
    address, size = program.directory(DEBUG_DIRECTORY)
    section = program.section_of(address)
    at = address - section.address + section.raw
    return [struct.unpack_from("<I", program.data, at + 28 * i + 12)[0] for i in range(size // 28)]


class Shipped(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.dist = pathlib.Path(folder.name)
        command = [sys.executable, support.ROOT / "package" / "command.py"]
        cls.done = subprocess.run(
            [*command, "--layout", LAYOUT, "--pdb-folder", PDB_FOLDER, "--dist", cls.dist, "--programs",
             *(pathlib.Path(BUILD, program, f"{program}.exe") for program in CONSOLE_PROGRAMS)],
            capture_output=True, text=True, check=False,
        )  # fmt: skip
        (cls.package,) = cls.dist.glob("*.msix")

    def test_is_accepted(self):
        self.assertEqual(self.done.returncode, 0, self.done.stderr)
        self.assertEqual(support.problems(self.package.read_bytes()), [])

    def test_carries_the_version_of_the_manifest_in_its_name_and_in_the_executable(self):
        version = Manifest(support.manifest_bytes()).version
        self.assertEqual(self.package.name, f"VelmoNotificationClient_{version}_x64.msix")
        program = PortableExecutable((self.dist / "VelmoNotificationClient.exe").read_bytes())
        self.assertEqual(version_resource.file_version(program), version)

    def test_has_the_folder_of_the_build_in_it(self):
        with zipfile.ZipFile(self.package) as archive:
            names = set(archive.namelist())
        for file in pathlib.Path(LAYOUT).rglob("*"):
            if file.is_file():
                self.assertIn(str(file.relative_to(LAYOUT)), names)

    def test_nothing_tells_where_or_when_it_was_built(self):
        for program in (support.EXECUTABLE, *(f"{program}.exe" for program in CONSOLE_PROGRAMS)):
            self.assertIn(REPRODUCIBLE, debug_kinds(PortableExecutable((self.dist / program).read_bytes())), program)
        for file in [*self.dist.iterdir(), pathlib.Path(LAYOUT, "HOV", "Tessaline.exe")]:
            data = file.read_bytes()
            for folder in (SOURCE, BUILD):
                for place in (folder.encode("utf-8"), folder.encode("utf-16-le")):
                    self.assertNotIn(place, data, file)

    def test_debug_information_belongs_to_the_executable_and_has_its_lines(self):
        data = (self.dist / "VelmoNotificationClient.pdb").read_bytes()
        self.assertIn(b"OnBackgroundActivated", data)
        self.assertIn(b"App.cpp", data)

    def test_the_console_programs_have_theirs(self):
        for program, texts in CONSOLE_PROGRAMS.items():
            data = (self.dist / f"{program}.pdb").read_bytes()
            for text in texts:
                self.assertIn(text, data, program)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[5:])
