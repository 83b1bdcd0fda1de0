"""Thousands of damaged packages: each is answered with problems, soon, and never with an exception.

Usage: mutation_test.py [CASES [SEED]]; what fails is told with its seed and number, and comes again with them."""

import random
import re
import struct
import sys
import time
import tracemalloc
import unittest

import support
from certificate_test import OTHER, VELMO, signed_package
from container_test import contents, packed, replaced
from msix import limits, part_names, writer
from msix.problem import Problem

CASES, SEED = 1200, 20

# What a case may take of the processor, and all of them together of memory.
SECONDS, BYTES = 5, 64 << 20

NUMBERS = (0, 1, 2, 7, 8, 0x7F, 0x80, 0xFF, 0x7FFF, 0x8000, 0xFFFF, 0x10000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF)
TEXTS = (
    b"", b" ", b"0", b"-1", b"9" * 40, b"9" * 5000, b"\\", b"/", b"..\\..\\x", b"\xc3\xbc", b"\xff", b"&#xD7FF;", b"&#10;",
    b"&amp;", b"%00", b"%", b"A" * 70000, b"<!-- -->", b"]]>", b"\xf0\x9f\x98\x80" * 300, b"windows.appService", b"x.exe",
    b"http://schemas.microsoft.com/appx/manifest/uap/windows10/4", b"\xc2\xa0", b"\x00", b"con", b"A.B", b"1.2.3.4",
)  # fmt: skip


def flip(noise, data):
    changed = bytearray(data)
    for _ in range(noise.randrange(1, 6)):
        changed[noise.randrange(len(changed))] = noise.choice((0, 1, 0x20, 0x22, 0x3C, 0x7F, 0x80, 0xFF))
    return bytes(changed)


def cut(noise, data):
    start, end = sorted(noise.randrange(len(data) + 1) for _ in range(2))
    return noise.choice((data[:start], data[end:], data[:start] + data[end:], data[:end] + data[start:]))


def number(noise, data):
    """A field of the file's tables, wherever it may be, with a number at the edge of something."""
    layout = noise.choice(("<B", "<H", "<I", "<I", "<Q", ">I"))
    value = noise.choice(NUMBERS) & (1 << 8 * struct.calcsize(layout)) - 1
    return support.set_bytes(data, noise.randrange(max(1, len(data) - 8)), layout, value) if len(data) > 8 else data


def header(noise, data):
    """The same, where the headers of programs and of images are."""
    return number(noise, data[:700]) + data[700:]


def text(noise, data):
    """Another value of an attribute or another text."""
    values = list(re.finditer(rb'(?<==")[^"]*(?=")|(?<=>)[^<]+(?=<)', data))
    if not values:
        return data
    chosen = noise.choice(values)
    return data[: chosen.start()] + noise.choice(TEXTS) + data[chosen.end() :]


def element(noise, data):
    """A tag taken out, doubled, or put elsewhere."""
    tags = list(re.finditer(rb"<[^>]*>", data))
    if not tags:
        return data
    one, other = noise.choice(tags), noise.choice(tags)
    without = data[: one.start()] + data[one.end() :]
    return noise.choice((without, data[: other.start()] + one[0] + data[other.start() :]))


MUTATIONS = (flip, cut, number, header, text, element)


def mutate(noise, data):
    for _ in range(noise.randrange(1, 4)):
        data = noise.choice(MUTATIONS)(noise, data or b"x")
    return data


class DamagedPackages:
    """One for each seed and number."""

    def __init__(self, bases=()):
        """bases: packages to damage besides its own."""
        self.files = support.files(**{"One block.bin": None})
        self.package = writer.write(self.files)
        self.bases = [self.package, packed(self.package, descriptor="<IQQ", zip64=3), signed_package(certificates=(VELMO,))]
        self.archives = [*self.bases, *bases]
        self.described = contents(self.package)

    def payload(self, noise):
        """A package that is in order but for one file's content."""
        path = noise.choice([*[path for path in self.files if self.files[path]], support.MANIFEST, support.EXECUTABLE])
        return writer.write(self.files | {path: mutate(noise, self.files[path])})

    def describing(self, noise):
        """A package one of whose describing parts is another."""
        path = noise.choice(("AppxBlockMap.xml", "[Content_Types].xml"))
        return replaced(self.package, path, mutate(noise, self.described[part_names.encode(path)]))

    def archive(self, noise):
        return mutate(noise, noise.choice(self.archives))

    def directory(self, noise):
        """The headers of an archive, most of which is its files."""
        base = noise.choice(self.bases)
        at = noise.choice([match.start() for match in re.finditer(rb"PK[\1\3\5\6\7][\2\4\6\7\x08]", base)])
        return base[:at] + number(noise, base[at : at + 60]) + base[at + 60 :]

    def signature(self, noise):
        whole = signed_package(certificates=(OTHER, VELMO))
        at = whole.index(b"PKCX")
        end = whole.index(b"PK\1\2")
        return signed_package(mutate(noise, whole[at:end]))

    def case(self, seed, case):
        """(its bytes, the certificate that it is verified with)"""
        noise = random.Random(f"{seed} {case}")
        ways = (self.payload, self.payload, self.describing, self.archive, self.directory, self.signature)
        data = noise.choice(ways)(noise)
        return data, noise.choice((None, VELMO, data[:500]))


def problems(data, certificate):
    """Those of a package, which are told soon and in few words."""
    before = time.process_time()
    found = support.verifier.verify(data, "sample.msix", certificate)
    assert time.process_time() - before < SECONDS, "it took long"
    assert all(isinstance(problem, Problem) for problem in found), found
    assert max((len(str(problem)) for problem in found), default=0) < 1300, "a long sentence"
    assert len(found) <= limits.PROBLEMS + 1, "many problems"
    return found


class Mutation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.packages = DamagedPackages()

    def test_every_damaged_package_is_answered_with_problems(self):
        refused = 0
        for case in range(CASES):
            with self.subTest(seed=SEED, case=case):
                refused += bool(problems(*self.packages.case(SEED, case)))
        # Some change nothing that anybody reads; if many did, the mutations would be none.
        self.assertGreater(refused, CASES * 0.7)

    def test_memory_stays_within_a_bound(self):
        packages = self.packages
        tracemalloc.start()
        self.addCleanup(tracemalloc.stop)
        for case in range(CASES // 20):
            noise = random.Random(f"{SEED} memory {case}")
            way = noise.choice((packages.payload, packages.describing, packages.directory))
            support.verifier.verify(way(noise), "sample.msix")
        self.assertLess(tracemalloc.get_traced_memory()[1], BYTES)


if __name__ == "__main__":
    CASES, SEED = int(sys.argv[1]) if len(sys.argv) > 1 else CASES, int(sys.argv[2]) if len(sys.argv) > 2 else SEED
    unittest.main(argv=sys.argv[:1])
