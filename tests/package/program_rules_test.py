"""What is asked of the programs in the package."""

import random
import re
import struct
import unittest

import support
from msix import app_functions, executable_constants, version_resource
from msix.portable_executable import PortableExecutable
from program import EXECUTABLE, GOOD_CHARACTERISTICS, READABLE, SECTION, WRITABLE, make_program

# Changes of the application's executable, and words of the message that they must lead to.
REFUSED = {
    "no APPCONTAINER": ({"characteristics": GOOD_CHARACTERISTICS & ~0x1000}, "APPCONTAINER"),
    "executable data": ({"characteristics": GOOD_CHARACTERISTICS & ~0x100}, "NX_COMPAT"),
    "a fixed address": ({"characteristics": GOOD_CHARACTERISTICS & ~0x40}, "DYNAMIC_BASE"),
    "32-bit addresses": ({"characteristics": GOOD_CHARACTERISTICS & ~0x20}, "HIGH_ENTROPY_VA"),
    "control flow guard": ({"characteristics": GOOD_CHARACTERISTICS | 0x4000}, "Control Flow Guard"),
    "another architecture": ({"machine": 0xAA64}, "machine 0xaa64"),
    "32 bits": ({"is_64_bit": False}, "not PE32+"),
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
    "a library": ({"file_flags": 0x2022}, "it is a library, no program"),
    "a file that its linker did not finish": ({"file_flags": 0x20}, "did not finish it"),
    "no relocations": ({"relocations": False}, "no relocations"),
    "relocations taken out": ({"file_flags": 0x23}, "no relocations"),
    "no imports": ({"imports": {}}, "imports nothing"),
    "no entry point": ({"entry": 0}, "entry point 0x0 lies outside its code"),
    "an entry point outside": ({"entry": 0x9000000}, "entry point 0x9000000 lies outside its code"),
    "an entry point in data": ({"entry": SECTION}, "entry point 0x1000 lies outside its code"),
    "sections behind the end of the file": ({"raw_size": 0x8000}, "sections have more bytes than the file"),
    "sections behind the end of the image": ({"image_size": 0x1000}, "behind the end of its image"),
    "a section on another": ({"code_at": SECTION}, "its section .text lies at 0x1000, where there is other data"),
    "a section on no page": ({"code_at": 0x9010}, "its section .text lies at 0x9010, where"),
    "too many imports": ({"imports": {"a.dll": ["b"] * 66000}}, "more names in its tables"),
    "an app service that it was not built for": (
        {"version_texts": {"AppService": "com.velmo.other"}}, "com.velmo.other"),
    "no app service": ({"version_texts": {}}, "was built for None"),
    "names that can be written over": ({"section_flags": READABLE | WRITABLE}, "does not have the name LaunchHOV"),
}

# Programs of any other origin that Windows starts with full trust.
DESKTOP = {
    "a window's": {},
    "a console's": {"subsystem": 3},
    "an old one": {"subsystem_version": (5, 2)},
    "of 32 bits": {"is_64_bit": False},
    "without relocations": {"relocations": False, "file_flags": 0x23},
    "importing from anywhere": {"imports": {"kernel32.dll": ["Sleep"], "msvcrt.dll": ["printf"]}},
    "for .NET, entered by its runtime": {"dot_net": True, "entry": 0, "imports": {}},
}
DESKTOP_REFUSED = {
    "with APPCONTAINER": ({"characteristics": 0x1000}, "APPCONTAINER"),
    "for another processor": ({"machine": 0xAA64}, "machine 0xaa64"),
    "with another processor's header": ({"machine": 0x14C}, "machine 0x014c"),
    "a driver": ({"subsystem": 1}, "subsystem is 1"),
    "a library": ({"file_flags": 0x2022}, "it is a library, no program"),
    "without an entry point": ({"entry": 0}, "entry point"),
    "without imports": ({"imports": {}}, "imports nothing"),
    "with sections behind its end": ({"raw_size": 0x8000}, "sections have more bytes"),
    "of 32 bits, with nothing in it": ({"is_64_bit": False, "entry": 0}, "entry point"),
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


class Constants(unittest.TestCase):
    """The names that the executable's code goes by."""

    def test_a_name_that_the_executable_does_not_have_as_a_literal_of_its_own_is_refused(self):
        for name in support.STRINGS[:-1]:
            for other in ("", f"xx{name}", f"{name}x", name.upper()):
                with self.subTest(name, other=other):
                    strings = [other if text == name else text for text in support.STRINGS]
                    found = support.problems_of({support.EXECUTABLE: support.app_program(strings=strings)})
                    self.assertTrue(any(f"does not have the name {name} in it" in text for text in found), found)

    def test_a_name_behind_the_end_of_a_narrow_literal_is_found(self):
        data = support.app_program()
        at = data.index("LaunchHOV\0".encode("utf-16-le"))
        for before in (b"x\0", b"xx\0", b"\xff\xff\xff\xff"):
            changed = data[: at - len(before)] + before + data[at:]
            self.assertTrue(PortableExecutable(changed).has_text("LaunchHOV"), before)

    def test_the_names_are_those_of_the_sources(self):
        app = support.ROOT / "app"
        sources = "".join(file.read_text("utf-8") for file in sorted([*app.glob("*.h"), *app.glob("*.cpp")]))
        classes = re.findall(r'className\[\] =\s+L"([^"]+)"', sources)
        groups = re.findall(r'LaunchDesktopComponent\(get_strong\(\), L"([^"]+)"', sources)
        self.assertCountEqual(classes, [executable_constants.APPLICATION, *executable_constants.CLASSES])
        self.assertCountEqual(groups, executable_constants.PARAMETER_GROUPS)
        factories = (app / "ActivationFactories.cpp").read_text("utf-8")
        self.assertEqual(len(re.findall(r"\bKnown<\w+>", factories)), len(executable_constants.CLASSES))


class Desktop(unittest.TestCase):
    def refused(self, data, words):
        found = support.problems_of({support.DESKTOP: data})
        self.assertTrue(any(support.DESKTOP in text and words in text for text in found), found)

    def test_may_be_any_program_with_full_trust(self):
        for what, changes in DESKTOP.items():
            with self.subTest(what):
                data = make_program(**({"characteristics": 0, "manifest": None, "file_version": None} | changes))
                self.assertEqual(support.problems_of({support.DESKTOP: data}), [])

    def test_refuses(self):
        for what, (changes, words) in DESKTOP_REFUSED.items():
            with self.subTest(what):
                self.refused(make_program(**({"characteristics": 0} | changes)), words)

    def test_must_be_a_program(self):
        header = b"MZ" + bytes(58) + struct.pack("<I", 64) + b"PE\0\0" + struct.pack("<H", 0x14C)
        for data in (b"not a program", header, header + bytes(400)):
            self.refused(data, "it is")


class Server(unittest.TestCase):
    """A library that makes classes, beside the executable."""

    CLASS = "Velmo.Other"
    EXTENSION = (
        '<Extension Category="windows.activatableClass.inProcessServer"><InProcessServer><Path>Server.dll</Path>'
        f'<ActivatableClass ActivatableClassId="{CLASS}" ThreadingModel="both"/></InProcessServer></Extension>'
    )

    def problems(self, **changes):
        end = "</Extensions>\n</Package>"
        text = support.manifest_bytes().decode("utf-8").replace(end, self.EXTENSION + end)
        wanted = {"strings": [self.CLASS], "exports": ["DllGetActivationFactory"], "file_flags": 0x2022, "entry": 0}
        library = make_program(**(wanted | changes))
        return support.problems_of({support.MANIFEST: text.encode("utf-8"), "Server.dll": library})

    def test_a_library_is_accepted(self):
        self.assertEqual(self.problems(), [])

    def test_what_makes_no_such_class_is_refused(self):
        for changes, words in (
            ({"file_flags": 0x22}, "it is no library"), ({"strings": ["Velmo.Others"]}, "does not know the class"),
            ({"exports": []}, "DllGetActivationFactory"), ({"entry": 0x800000}, "entry point"),
        ):  # fmt: skip
            found = self.problems(**changes)
            self.assertTrue(any("Server.dll" in text and words in text for text in found), found)


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
        self.assertEqual(version_resource.file_version(program), "1.2.3.65535")
        self.assertEqual(program.resource(24), b"<m/>")
        self.assertEqual(program.resource_types(), [16, 24])

    def test_a_program_without_tables_has_nothing_in_them(self):
        program = PortableExecutable(make_program(imports={}, file_version=None, manifest=None))
        self.assertEqual((program.imports(), program.exports(), program.resource_types()), ({}, [], []))
        self.assertIsNone(version_resource.file_version(program))

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
                program.imports(), program.exports(), program.resource(24), version_resource.file_version(program)
                version_resource.text(program, "AppService")
            except ValueError:
                pass

    def test_the_toolchain_lists_what_apps_may_import(self):
        self.assertIn("CreateFileW", app_functions.of("api-ms-win-core-file-l1-1-0.dll"))
        self.assertNotIn("MessageBoxW", app_functions.of("api-ms-win-core-file-l1-1-0.dll"))
        self.assertIsNone(app_functions.of("kernel32.dll"))


if __name__ == "__main__":
    unittest.main()
