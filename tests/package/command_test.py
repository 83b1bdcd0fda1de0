"""The command line: what it makes of a layout, what it says, and that it never ends in a traceback."""

import os
import pathlib
import shutil
import ssl
import subprocess
import sys
import tempfile
import unittest
import zipfile

import support
from certificate_test import OTHER, VELMO, signed_package
from msix import signing, writer
from program import make_program

COMMAND = support.ROOT / "package" / "command.py"
LAYOUT = support.ROOT / "package" / "layout.py"
INSTALL = support.ROOT / "package" / "install.py"
PACKAGE = "VelmoNotificationClient_1.0.0.0_x64.msix"


class Making(unittest.TestCase):
    """Runs the command on the sample, each time in a folder of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.dist = self.folder / "dist"
        self.write({f"layout/{path}": data for path, data in support.files().items()})
        self.write({"build/VelmoNotificationClient.pdb": b"symbols"})
        self.write({"tools/doctor.exe": b"a program", "tools/doctor.pdb": b"its symbols"})
        self.write({"one/copyright": b"one licence", "two/copyright": b"another one\n"})

    def write(self, files):
        for path, data in files.items():
            file = self.folder / path.replace("\\", "/")
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_bytes(data)

    def run_command(self, *arguments, search=None):
        environment = os.environ | ({"PATH": search} if search else {})
        done = subprocess.run(
            [sys.executable, COMMAND, *map(str, arguments)],
            cwd=self.folder, env=environment, capture_output=True, text=True, check=False,
        )  # fmt: skip
        self.assertNotIn("Traceback", done.stderr)
        return done

    def pretend_tool(self, version, more=""):
        """A search path on which the tool that signs says that it is of a version; without one it is not there."""
        if version:
            tool = self.folder / "bin" / "osslsigncode"
            script = f"#!/bin/sh\necho 'osslsigncode {version}, using:'\n{more}\n"
            self.write({"bin/osslsigncode": script.encode("ascii")})
            tool.chmod(0o755)
        return str(self.folder / "bin")

    def make(self, *arguments, **others):
        places = ("--layout", "layout", "--pdb-folder", "build", "--dist", "dist", "--programs", "tools/doctor.exe")
        notices = ("--notices", "one/copyright", "two/copyright")
        return self.run_command(*places, *notices, *arguments, **others)

    def made(self, path):
        with zipfile.ZipFile(self.dist / PACKAGE) as archive:
            return archive.read(path)

    def assert_fails(self, done, *words):
        self.assertEqual(done.returncode, 1, done.stdout)
        for word in words:
            self.assertIn(word, done.stderr)


class Command(Making):
    def test_makes_executable_debug_information_and_package(self):
        done = self.make()
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(
            sorted(file.name for file in self.dist.iterdir()),
            ["NOTICE.txt", "VelmoNotificationClient.exe", "VelmoNotificationClient.pdb", PACKAGE, "doctor.exe",
             "doctor.pdb"],
        )
        self.assertEqual((self.dist / "VelmoNotificationClient.exe").read_bytes(), support.app_program())
        self.assertEqual((self.dist / "VelmoNotificationClient.pdb").read_bytes(), b"symbols")
        self.assertEqual(self.made("VelmoNotificationClient.exe"), support.app_program())

    def test_puts_the_licences_of_the_programs_libraries_beside_them(self):
        self.assertEqual(self.make().returncode, 0)
        self.assertEqual(b"one licence\n\nanother one\n", (self.dist / "NOTICE.txt").read_bytes())
        self.write({"one/copyright": b""})
        (self.folder / "one/copyright").unlink()
        self.assert_fails(self.make(), "one/copyright")

    def test_puts_programs_with_their_debug_information_beside_the_package_and_not_into_it(self):
        done = self.make()
        self.assertEqual((self.dist / "doctor.exe").read_bytes(), b"a program")
        self.assertEqual((self.dist / "doctor.pdb").read_bytes(), b"its symbols")
        self.assertIn("doctor.exe  9 bytes\n", done.stdout)
        self.assertIn("doctor.pdb  11 bytes\n", done.stdout)
        with zipfile.ZipFile(self.dist / PACKAGE) as archive:
            self.assertEqual([name for name in archive.namelist() if "doctor" in name], [])

    def test_a_program_without_its_debug_information_is_told(self):
        (self.folder / "tools" / "doctor.pdb").unlink()
        self.assert_fails(self.make(), "tools/doctor.pdb: it cannot be read: No such file")

    def test_what_it_made_is_accepted(self):
        self.make()
        done = self.run_command("--verify", self.dist / PACKAGE)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("is in order", done.stdout)
        self.assertIn("it is not signed", done.stdout)

    def test_the_same_files_give_the_same_package_whenever_they_were_made(self):
        self.make()
        first = (self.dist / PACKAGE).read_bytes()
        shutil.rmtree(self.dist)
        for number, file in enumerate((self.folder / "layout").rglob("*")):
            os.utime(file, (number * 1e7, number * 1e7))
        self.make()
        self.assertEqual((self.dist / PACKAGE).read_bytes(), first)

    def test_a_package_with_the_stand_in_says_so(self):
        done = self.make()
        told = b"Its desktop component is a stand-in for development.</Description>"
        self.assertIn(told, self.made("AppxManifest.xml"))
        self.assertIn("stand-in", done.stdout)

    def test_a_desktop_component_takes_the_place_of_the_stand_in(self):
        program = make_program(characteristics=0x140)
        self.write({"suite/Other.exe": program})
        done = self.make("--desktop", "suite/Other.exe")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.made("HOV/Tessaline.exe"), program)
        self.assertNotIn(b"stand-in", self.made("AppxManifest.xml"))

    def test_a_desktop_component_may_come_with_its_folder(self):
        program = make_program(characteristics=0x140)
        self.write({"suite/Tessaline.exe": program, "suite/data/a b.dat": b"data"})
        done = self.make("--desktop", "suite")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.made("HOV/Tessaline.exe"), program)
        self.assertEqual(self.made("HOV/data/a%20b.dat"), b"data")

    def test_a_desktop_component_that_is_not_there_is_told(self):
        self.assert_fails(self.make("--desktop", "nowhere"), "nowhere: there is no Tessaline.exe in it")

    def test_a_desktop_component_that_cannot_be_one_is_told(self):
        self.write({"script": b"#!/bin/sh"})
        self.assert_fails(self.make("--desktop", "script"), "HOV\\Tessaline.exe:", "Windows would refuse it")

    def test_missing_debug_information_is_told(self):
        (self.folder / "build" / "VelmoNotificationClient.pdb").unlink()
        self.assert_fails(self.make(), "VelmoNotificationClient.pdb: it cannot be read: No such file")

    def test_a_folder_that_is_no_package_is_told(self):
        (self.folder / "layout" / "AppxManifest.xml").unlink()
        self.assert_fails(self.make(), "layout: there is no AppxManifest.xml in it")

    def test_a_manifest_without_a_description_is_told(self):
        text = support.manifest_bytes().replace(b"Description>", b"Summary>")
        self.write({"layout/AppxManifest.xml": text})
        self.assert_fails(self.make(), "no Description")

    def test_each_problem_of_a_refused_package_is_a_line(self):
        package = writer.write(support.files(**{support.MARKUP: None, "Assets\\StoreLogo.png": b"x"}))
        self.write({"bad.msix": package})
        done = self.run_command("--verify", "bad.msix")
        self.assert_fails(done, "MainPage.xaml: ", "Assets\\StoreLogo.png: ", "bad.msix has 2 problems")

    def test_files_that_cannot_be_a_package_are_told_without_a_traceback(self):
        whole = writer.write(support.files())
        for data in (b"", b"hello", whole[:100], whole[:-1], whole[: len(whole) // 2], bytes(100000)):
            self.write({"bad.msix": data})
            self.assert_fails(self.run_command("--verify", "bad.msix"), "bad.msix: ", "get or make it again")
        self.assert_fails(self.run_command("--verify", "absent.msix"), "absent.msix: it cannot be read")
        self.assert_fails(self.run_command("--verify", self.folder), "it cannot be read: Is a directory")

    def test_the_publisher_is_compared_with_the_certificate(self):
        self.write({"good.msix": writer.write(support.files()), "velmo.der": VELMO, "other.der": OTHER})
        done = self.run_command("--verify", "good.msix", "--cert", "velmo.der")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assert_fails(self.run_command("--verify", "good.msix", "--cert", "other.der"), "CN=Vermo")
        self.assert_fails(self.run_command("--verify", "good.msix", "--cert", "absent"), "absent: it cannot be read")

    def test_a_signature_that_nobody_checked_has_an_exit_code_of_its_own(self):
        self.write({"signed.msix": signed_package(certificates=(VELMO,)), "velmo.der": VELMO})
        done = self.run_command("--verify", "signed.msix")
        self.assertEqual(done.returncode, 3, done.stderr)
        self.assertIn("signed.msix carries a signature that was NOT checked: give --cert CERT", done.stderr)
        self.assertIn("in order, but for its signature, which nobody checked", done.stdout)
        data = signed_package(certificates=(VELMO,)).replace(b"AppxSignature.p7x", b"APPXSIGNATURE.P7X")
        self.write({"other-case.msix": data})
        self.assertEqual(self.run_command("--verify", "other-case.msix").returncode, 3)
        for version, words in ((None, "is not installed"), ("2.5", "here is 2.5"), ("two", "of an unknown version")):
            done = self.run_command("--verify", "signed.msix", "--cert", "velmo.der", search=self.pretend_tool(version))
            self.assertEqual(done.returncode, 3, done.stderr)
            self.assertIn("was NOT checked: osslsigncode", done.stderr)
            self.assertIn(words, done.stderr)

    def test_a_signature_that_the_tool_refuses_is_a_problem(self):
        self.write({"signed.msix": signed_package(certificates=(VELMO,)), "velmo.der": VELMO})
        search = self.pretend_tool("2.9", "[ $1 = --version ] || { echo 'signature mismatch'; exit 1; }")
        done = self.run_command("--verify", "signed.msix", "--cert", "velmo.der", search=search)
        self.assert_fails(done, "signed.msix: its signature does not hold:", "signature mismatch")

    def test_the_help_tells_the_exit_codes(self):
        told = " ".join(self.run_command("--help").stdout.split())
        self.assertRegex(told, r"exit codes: 0 .*; 1 .*; 2 .*; 3 the package is in order but for its signature")

    def test_arguments_that_contradict_each_other_are_told(self):
        for arguments in (("--cert", "x"), ("--verify", "x", "--desktop", "y"), ("--nonsense",), ("--sign", "x")):
            done = self.run_command(*arguments)
            self.assertEqual(done.returncode, 2)
            self.assertIn("usage: ./dev package", done.stderr)


class Signing(Making):
    def make_key(self, subject):
        subprocess.run(
            ["openssl", "req", "-x509", "-newkey", "rsa:2048", "-sha256", "-nodes", "-days", "2", "-subj", subject,
             "-addext", "extendedKeyUsage=codeSigning", "-addext", "keyUsage=critical,digitalSignature",
             "-addext", "basicConstraints=critical,CA:FALSE", "-keyout", "key.pem", "-out", "cert.pem"],
            cwd=self.folder, check=True, capture_output=True,
        )  # fmt: skip

    def test_without_a_fit_tool_the_package_stays_unsigned_and_the_command_says_so(self):
        self.write({"cert.pem": VELMO, "key.pem": b""})
        self.make()
        unsigned = (self.dist / PACKAGE).read_bytes()
        for version, words in ((None, "is not installed; 2.9 or later"), ("2.5", "here is 2.5; 2.9 or later")):
            done = self.make("--sign", "cert.pem", "key.pem", search=self.pretend_tool(version))
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertIn("the package stays unsigned", done.stderr)
            self.assertIn(words, done.stderr)
            self.assertEqual((self.dist / PACKAGE).read_bytes(), unsigned)

    def test_the_certificate_of_another_publisher_signs_nothing(self):
        self.write({"cert.pem": OTHER, "key.pem": b""})
        done = self.make("--sign", "cert.pem", "key.pem", search=self.pretend_tool("2.9"))
        self.assert_fails(done, "cert.pem: its subject is CN=Vermo, the manifest's Publisher is CN=Velmo")

    @unittest.skipIf(signing.obstacle(), signing.obstacle())
    @unittest.skipUnless(shutil.which("openssl"), "openssl is not installed")
    def test_a_signed_package_is_accepted_and_verified(self):
        self.make_key("/CN=Velmo")
        done = self.make("--sign", "cert.pem", "key.pem")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue(self.made("AppxSignature.p7x").startswith(b"PKCX"))
        done = self.run_command("--verify", self.dist / PACKAGE, "--cert", "cert.pem")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("its signature holds", done.stdout)
        self.assertIn("is in order\n", done.stdout)
        self.write({"cert.der": ssl.PEM_cert_to_DER_cert((self.folder / "cert.pem").read_text("ascii"))})
        done = self.run_command("--verify", self.dist / PACKAGE, "--cert", "cert.der")
        self.assertEqual(done.returncode, 0, done.stderr)

    @unittest.skipIf(signing.obstacle(), signing.obstacle())
    @unittest.skipUnless(shutil.which("openssl"), "openssl is not installed")
    def test_a_signature_of_another_certificate_of_the_same_name_is_refused(self):
        self.make_key("/CN=Velmo")
        self.make("--sign", "cert.pem", "key.pem")
        self.make_key("/CN=Velmo")
        self.assert_fails(self.run_command("--verify", self.dist / PACKAGE, "--cert", "cert.pem"), "does not hold")

    @unittest.skipIf(signing.obstacle(), signing.obstacle())
    def test_a_key_that_cannot_be_used_leaves_the_package_unsigned(self):
        self.write({"cert.pem": VELMO, "key.pem": b"no key"})
        self.make()
        unsigned = (self.dist / PACKAGE).read_bytes()
        self.assert_fails(self.make("--sign", "cert.pem", "key.pem"), "it could not be signed")
        self.assertEqual((self.dist / PACKAGE).read_bytes(), unsigned)
        self.assertEqual(len(list(self.dist.iterdir())), 6)


class Layout(unittest.TestCase):
    def test_the_folder_holds_what_the_package_needs_and_nothing_else(self):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            for file, data in (("a.exe", support.app_program()), ("d.exe", b"d"), ("MainPage.xaml", b"<Page/>")):
                (folder / file).write_bytes(data)
            (folder / "out").mkdir()
            (folder / "out" / "stray.txt").write_bytes(b"x")
            manifest = support.ROOT / "package" / "AppxManifest.xml"
            arguments = [manifest, folder / "a.exe", folder / "d.exe", folder / "out", folder / "MainPage.xaml"]
            subprocess.run([sys.executable, LAYOUT, *arguments], check=True)
            found = {str(file.relative_to(folder / "out")) for file in folder.glob("out/**/*") if file.is_file()}
        images = {"Assets/StoreLogo.png", "Assets/Square150x150Logo.png", "Assets/Square44x44Logo.png"}
        programs = {"VelmoNotificationClient.exe", "HOV/Tessaline.exe"}
        self.assertEqual(found, {"AppxManifest.xml", "MainPage.xaml", *programs, *images})


class Installing(Making):
    def install(self):
        return subprocess.run(
            [sys.executable, INSTALL, self.dist / PACKAGE, self.folder / "installed"],
            capture_output=True, text=True, check=False,
        )  # fmt: skip

    def test_unpacks_the_files_and_the_block_map(self):
        self.make()
        self.assertEqual(self.install().returncode, 0)
        root = self.folder / "installed"
        found = {str(file.relative_to(root)).replace("/", "\\"): file for file in root.rglob("*") if file.is_file()}
        self.assertEqual(set(found), {*support.files(), "AppxBlockMap.xml"})
        self.assertEqual(found["One byte more.bin"].read_bytes(), support.files()["One byte more.bin"])

    def test_refuses_a_damaged_package_in_a_sentence_and_unpacks_nothing(self):
        self.make()
        package = bytearray((self.dist / PACKAGE).read_bytes())
        package[len(package) // 2] ^= 1
        (self.dist / PACKAGE).write_bytes(package)
        done = self.install()
        self.assertEqual(done.returncode, 1)
        self.assertNotIn("Traceback", done.stderr)
        self.assertRegex(done.stderr, r"damaged|hash|checksum")
        self.assertFalse((self.folder / "installed").exists())


if __name__ == "__main__":
    unittest.main()
