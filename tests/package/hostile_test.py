"""Files made to hurt their reader: whatever they are, a sentence comes soon, without a traceback or much memory."""

import os
import pathlib
import resource
import socket
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

import support
from certificate_test import COMMON_NAME, UTF8, der, make_certificate, name, signed_package
from container_test import contents, replaced, rewrite
from msix import limits, writer, zip_writer
from program import SECTION, make_program

COMMAND = support.ROOT / "package" / "command.py"

# Of the processor's time and of memory. The interpreter alone takes a tenth of both.
SECONDS, BYTES = 30, 1 << 30


def bomb(size):
    """A deflated stream of so many zeros, and their checksum; for 1 MB of them it has 1 KB."""
    compressor, crc, stream = zlib.compressobj(9, zlib.DEFLATED, -15), 0, b""
    for _ in range(size >> 20):
        stream += compressor.compress(bytes(1 << 20))
        crc = zlib.crc32(bytes(1 << 20), crc)
    return stream + compressor.flush(), crc


def with_entry(part, size, stream, crc=0):
    """The sample with one part replaced by what its header need not tell rightly."""
    entry = zip_writer.Entry(part, zip_writer.DEFLATED, size, crc, stream)
    package = writer.write(support.files())
    return rewrite(package, lambda entries: [entry if old.name == part else old for old in entries])


def with_part(path, data):
    return replaced(writer.write(support.files()), path, data)


def with_manifest(old, new):
    text = support.manifest_bytes()
    assert old in text
    return with_part(support.MANIFEST, text.replace(old, new))


def with_program(data):
    return writer.write(support.files(**{support.EXECUTABLE: data}))


def many_imports(count):
    """Each of so many DLLs imports the same so many functions: each name has a place of its own in no table."""
    text = make_program().ljust(0x2000, b"\0")
    names = struct.pack("<Q", SECTION) * count + bytes(8)
    at = SECTION + 0x4000
    rows = struct.pack("<5I", at, 0, 0, SECTION, at) * count + bytes(20)
    data = bytearray(text.ljust(0x400 + 0x4000, b"\0") + names + rows)
    optional = 64 + 24
    struct.pack_into("<II", data, optional + 112 + 8, at + len(names), len(rows))
    # The first section has all of it.
    table = optional + 112 + 16 * 8
    struct.pack_into("<IIII", data, table + 8, len(data) - 0x400, SECTION, len(data) - 0x400, 0x400)
    for section in (1, 2):
        struct.pack_into("<IIII", data, table + 40 * section + 8, 0, 0, 0, 0)
    return bytes(data)


def ends_of_names(count):
    """A program whose data is a name so many times, each the end of a longer one."""
    return support.app_program(strings=["xxLaunchHOV\0" * count, *support.STRINGS[:3], *support.STRINGS[4:]])


def twice_listed(count):
    """A block map that lists one file so many times."""
    package = writer.write(support.files(**{"large.bin": bytes(32 << 20)}))
    text = contents(package)["AppxBlockMap.xml"].decode("utf-8")
    start = text.index('<File Name="large.bin"')
    end = text.index("</File>", start) + len("</File>")
    return replaced(package, "AppxBlockMap.xml", (text[:end] + text[start:end] * count + text[end:]).encode("utf-8"))


LONG = b"9" * 5000
NAMESPACE = b'<Package xmlns:p="http://' + b"x" * (1 << 20) + b'">' + b"<p:a/>" * 200000 + b"</Package>"

# What is made, and words that must be told of it.
PACKAGES = {
    "a file said to be small that is not": (lambda: with_entry("MainPage.xaml", 7, *bomb(512 << 20)), "another size"),
    "a file said to be larger than anything": (
        lambda: with_entry("MainPage.xaml", 0xFFFFFFFE, b"\3\0"), "are looked at"),
    "a manifest of 512 MB": (lambda: with_entry("AppxManifest.xml", 512 << 20, *bomb(512 << 20)), "looked at up to"),
    "an image of 512 MB": (
        lambda: with_entry("Assets/StoreLogo.png", 512 << 20, *bomb(512 << 20)),
        "StoreLogo.png: it has 536870912 bytes"),
    "a file that is listed many times": (lambda: twice_listed(150), "large.bin: the block map lists it twice"),
    "a size of 5,000 digits": (
        lambda: with_part("AppxBlockMap.xml", contents(writer.write(support.files()))["AppxBlockMap.xml"].replace(
            b'Size="', b'Size="' + LONG, 1)), "has no number as its"),
    "a version of 5,000 digits": (
        lambda: with_manifest(b'"10.0.22621.0"', b'"10.0.' + LONG + b'.0"'), "Windows does not take"),
    "elements within elements": (lambda: with_manifest(b"<Properties>", b"<a>" * 200000), "not well-formed"),
    "elements within elements to their ends": (
        lambda: with_manifest(b"<Properties>", b"<Properties>" + b"<a>" * 140000 + b"</a>" * 140000),
        "not known there"),
    "a million elements": (
        lambda: with_manifest(b"<Properties>", b"<Properties>" + b"<a/>" * 1000000), "more elements"),
    "a million attributes": (
        lambda: with_manifest(
            b"<Properties>", b"<Properties " + b" ".join(b'a%d=""' % i for i in range(700000)) + b">"),
        "more elements or attributes"),
    "names that repeat a long namespace": (lambda: with_part(support.MANIFEST, NAMESPACE), "a namespace of 200"),
    "a long namespace behind a long prefix": (
        lambda: with_manifest(b"<Package", b"<Package xmlns:" + b"p" * 150 + b'="' + b"x" * 1000 + b'"'),
        "whose prefix has 100"),
    "a server of many classes": (
        lambda: with_manifest(b"</Path>", b"</Path>" + b"".join(
            b'<ActivatableClass ActivatableClassId="A%d" ThreadingModel="both"/>' % i for i in range(50000))),
        "<InProcessServer> has 50002 <ActivatableClass> where 100 is allowed"),
    "entities of entities": (
        lambda: with_manifest(b"<Package", b'<!DOCTYPE a [<!ENTITY a "aa"><!ENTITY b "&a;&a;">]><Package'),
        "document type"),
    "more problems than anybody reads": (
        lambda: with_manifest(b"<Properties>", b"<Properties>" + b"<a/>" * 100000), "more problems than these"),
    "a package of nothing but empty files": (
        lambda: zip_writer.write([zip_writer.stored(f"{i:05}", b"") for i in range(limits.ENTRIES)]),
        "AppxManifest.xml: the package has no such part"),
    "a package of many files that nobody lists": (
        lambda: rewrite(writer.write(support.files()), lambda entries: [
            *(zip_writer.stored(f"{i:05}", b"") for i in range(50000)), *entries]), "more problems than these"),
    "long names of many files": (
        lambda: zip_writer.write([zip_writer.stored(f"{i:05}" + "%C3%BC" * 10000, b"") for i in range(400)]),
        "more than 2304 characters"),
    "imports of imports": (lambda: with_program(many_imports(60000)), "more names in its tables"),
    "nothing but the ends of a name": (
        lambda: with_program(ends_of_names(1000000)), "does not have the name LaunchHOV"),
    "sections over sections": (lambda: with_program(overlapping(2 << 20)), "they overlap"),
    "a subject of numbers without end": (
        lambda: signed_package(certificates=(make_certificate(name((b"\xff" * 500000 + b"\1", UTF8, b"x"))),)),
        "the signature cannot be read"),
    "half a million certificates": (
        lambda: signed_package(certificates=(der(0x30) * 500000,)), "the signature cannot be read"),
    "a subject of many parts": (
        lambda: signed_package(certificates=(make_certificate(name(*[(COMMON_NAME, UTF8, b"x")] * 9000)),)),
        "its subject has too many parts"),
    "many certificates with many parts": (
        lambda: signed_package(certificates=(make_certificate(name(*[(COMMON_NAME, UTF8, b"x" * 100)] * 60)),) * 100),
        "its Publisher is CN=Velmo"),
}  # fmt: skip


def overlapping(size):
    """A program each of whose sections has the whole file."""
    data = bytearray(support.app_program() + bytes(size))
    struct.pack_into("<H", data, 64 + 6, 96)
    table = 64 + 24 + 112 + 16 * 8
    for section in range(96):
        at = table + 40 * section
        struct.pack_into("<8sIIIIIIHHI", data, at, b"", size, SECTION, size, 0, 0, 0, 0, 0, 0x40000000)
    return bytes(data)


def limited():
    resource.setrlimit(resource.RLIMIT_CPU, (SECONDS, SECONDS))
    resource.setrlimit(resource.RLIMIT_AS, (BYTES, BYTES))


class Hostile(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_limited(self, *arguments):
        # The processor's time is limited; the wall's only stops a reader that waits.
        done = subprocess.run(
            [sys.executable, COMMAND, *map(str, arguments)],
            cwd=self.folder, preexec_fn=limited, stdin=subprocess.DEVNULL, capture_output=True, check=False,
            timeout=1500,
        )  # fmt: skip
        told = done.stderr.decode("utf-8", "replace")
        self.assertNotIn("Traceback", told)
        self.assertEqual(done.returncode, 1, told[-2000:])
        return told

    def verify(self, data, *words):
        (self.folder / "hostile.msix").write_bytes(data)
        told = self.run_limited("--verify", "hostile.msix")
        for word in words:
            self.assertIn(word, told)
        self.assertLess(len(told.splitlines()), limits.PROBLEMS + 10)
        self.assertLess(max(map(len, told.splitlines())), 1500)

    def test_packages(self):
        for what, (make, words) in PACKAGES.items():
            with self.subTest(what):
                self.verify(make(), words)

    def test_files_that_are_no_files_are_not_waited_for(self):
        os.mkfifo(self.folder / "pipe")
        (self.folder / "good.msix").write_bytes(writer.write(support.files()))
        (self.folder / "folder").mkdir()
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind(str(self.folder / "socket"))
            for file in ("pipe", "/dev/zero", "socket", "folder"):
                with self.subTest(file):
                    self.assertIn(file, self.run_limited("--verify", file))
                    self.assertIn(file, self.run_limited("--verify", "good.msix", "--cert", file))
                    self.assertIn(file, self.run_limited("--layout", file))

    def test_a_file_larger_than_any_package_is_not_read(self):
        with open(self.folder / "large.msix", "wb") as file:
            file.truncate(limits.PACKAGE + 1)
        self.assertIn("files up to", self.run_limited("--verify", "large.msix"))

    def test_an_output_path_that_is_a_file_is_told(self):
        for path, data in support.files().items():
            file = self.folder / "layout" / path.replace("\\", "/")
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_bytes(data)
        (self.folder / "taken").write_bytes(b"")
        (self.folder / "full" / "VelmoNotificationClient.exe").mkdir(parents=True)
        for dist, words in (("taken", "File exists"), ("taken/below", "Not a directory"), ("full", "Is a directory")):
            told = self.run_limited("--layout", "layout", "--dist", dist)
            self.assertIn("it cannot be written: " + words, told)

    def test_a_manifest_that_is_not_in_order_makes_nothing(self):
        layout = self.folder / "layout"
        layout.mkdir()
        for old, new in ((b'Version="1.0.0.0"', b'Version="1/../../../x"'), (b"Velmo suite", b"\xff")):
            (layout / "AppxManifest.xml").write_bytes(support.manifest_bytes().replace(old, new))
            self.run_limited("--layout", "layout", "--dist", "dist")
            self.assertFalse((self.folder / "dist").exists())
        (layout / "AppxManifest.xml").write_bytes(support.manifest_bytes())
        self.assertIn("names it, but it is not there", self.run_limited("--layout", "layout", "--dist", "dist"))

    def test_what_a_package_says_is_shown_on_one_line_and_harmless(self):
        text = '"velmo&#10;\x1b"'.replace("\x1b", "&#x9b;")
        (self.folder / "hostile.msix").write_bytes(with_manifest(b'"velmo-notification"', text.encode("utf-8")))
        told = self.run_limited("--verify", "hostile.msix")
        self.assertIn("velmo\\u000a\\u009b", told)

    def test_a_name_that_is_no_text_is_shown(self):
        name = os.fsencode(self.folder) + b"/\xff.msix"
        with open(name, "wb") as file:
            file.write(writer.write(support.files()))
        done = subprocess.run([sys.executable, COMMAND, "--verify", name], capture_output=True, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, b""))

    def test_no_output_at_all_is_no_failure(self):
        (self.folder / "good.msix").write_bytes(writer.write(support.files()))
        command = ["sh", "-c", '"$@" >&-', "sh", sys.executable, COMMAND, "--verify", "good.msix"]
        done = subprocess.run(command, cwd=self.folder, stderr=subprocess.PIPE, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, b""))


if __name__ == "__main__":
    unittest.main()
