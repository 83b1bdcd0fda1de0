"""The package as an archive: what is written, that others can read it, and that nothing in it can be changed unseen."""

import dataclasses
import io
import pathlib
import random
import shutil
import struct
import subprocess
import tempfile
import unittest
import zipfile
import zlib

import support
from msix import block_map, blocks, part_names, writer, zip_reader, zip_writer
from msix.problem import PackageError


def rewrite(package, change):
    """A package whose archive is in order, but whose entries a function changed (it gets and returns a list)."""
    entries = [
        zip_writer.Entry(entry.name, entry.method, entry.size, entry.crc, entry.stream)
        for entry in zip_reader.read(package, "sample")
    ]
    return zip_writer.write(change(entries))


def replaced(package, path, data):
    """A package in which one part has other content, its header and checksum made to fit."""
    name = part_names.encode(path)
    entry = zip_writer.deflated(name, data, blocks.deflate(data)[0])
    return rewrite(package, lambda entries: [entry if old.name == name else old for old in entries])


def map_changed(package, change):
    """A package whose block map a function changed (it gets and returns a list of files)."""
    files = block_map.read(contents(package)["AppxBlockMap.xml"])
    return replaced(package, "AppxBlockMap.xml", block_map.write(change(files)))


def contents(package):
    """Name -> content, as another reader sees it."""
    with zipfile.ZipFile(io.BytesIO(package)) as archive:
        return {name: archive.read(name) for name in archive.namelist()}


def flushed(data, how):
    """The two blocks of a file, deflated and flushed in a way."""
    compressor = zlib.compressobj(9, zlib.DEFLATED, -15)
    return [compressor.compress(block) + compressor.flush(how) for block in blocks.split(data)]


def with_gap(package, at):
    """A package with a byte more before `at`, where an entry or the directory begins; all offsets made to fit."""
    directory = struct.unpack_from("<Q", package, len(package) - 98 + 48)[0]
    changed = bytearray(package)
    entry = directory
    while package[entry : entry + 4] == b"PK\1\2":
        (offset,) = struct.unpack_from("<I", package, entry + 42)
        struct.pack_into("<I", changed, entry + 42, offset + (offset >= at))
        entry += zip_reader.CENTRAL_HEADER_SIZE + struct.unpack_from("<H", package, entry + 28)[0]
    struct.pack_into("<Q", changed, entry + 48, directory + 1)
    struct.pack_into("<Q", changed, entry + 56 + 8, entry + 1)
    return bytes(changed[:at]) + b"x" + bytes(changed[at:])


def packed(package, version=45, descriptor=None, zip64=0, change=lambda descriptor: descriptor, names=None):
    """The package as other packers write it: each entry needs a version of the format; with a descriptor ("<IQQ" or
    "<III") behind its data instead of sizes in its header, which a function may change; with so many of ZIP64's values
    in the directory; names spelt in another way."""
    archive, directory = b"", b""
    flags, unset = (8 if descriptor else 0), 0xFFFFFFFF
    entries = zip_reader.read(package, "sample")
    for entry in entries:
        name = (names or {}).get(entry.name, entry.name).encode("ascii")
        told = (entry.crc, len(entry.stream), entry.size)
        offset = len(archive)
        fixed = struct.pack("<HHHHH", version, flags, entry.method, 0, 0x21)
        here = (0, 0, 0) if descriptor else told
        archive += b"PK\3\4" + fixed + struct.pack("<IIIHH", *here, len(name), 0) + name + bytes(entry.stream)
        archive += change(b"PK\7\x08" + struct.pack(descriptor, *told)) if descriptor else b""
        values = (entry.size, len(entry.stream), offset)
        wide = struct.pack(f"<HH{zip64}Q", 1, 8 * zip64, *values[:zip64]) if zip64 else b""
        size, compressed, place = (unset if number < zip64 else value for number, value in enumerate(values))
        directory += b"PK\1\2" + struct.pack("<H", 45) + fixed + struct.pack("<III", entry.crc, compressed, size)
        directory += struct.pack("<HHHHHII", len(name), len(wide), 0, 0, 0, 0, place) + name + wide
    end = zip_writer._end(len(entries), len(directory), len(archive))
    return archive + directory + end


class Container(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.files = support.files()
        cls.package = writer.write(cls.files)

    def refused(self, package, *words):
        """Asserts that one message at least has all the words."""
        found = support.problems(package)
        self.assertTrue(any(all(word in text for word in words) for text in found), f"{words} not in {found}")

    def spans(self):
        """Name -> where its local header, its data and its entry in the central directory begin."""
        found, at = {}, 0
        entries = zip_reader.read(self.package, "sample")
        central = sum(entry.header_size + len(entry.stream) for entry in entries)
        for entry in entries:
            found[entry.name] = (at, at + entry.header_size, central)
            at += entry.header_size + len(entry.stream)
            central += zip_reader.CENTRAL_HEADER_SIZE + len(entry.name)
        return found

    def test_a_package_in_order_is_accepted(self):
        self.assertEqual(support.problems(self.package), [])

    def test_another_reader_gets_every_file_back(self):
        with zipfile.ZipFile(io.BytesIO(self.package)) as archive:
            self.assertIsNone(archive.testzip())
            for path, data in self.files.items():
                self.assertEqual(archive.read(part_names.encode(path)), data, path)

    @unittest.skipUnless(shutil.which("unzip"), "unzip is not installed")
    def test_unzip_finds_no_error(self):
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder) / "sample.zip"
            file.write_bytes(self.package)
            done = subprocess.run(["unzip", "-t", file], capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_the_order_of_the_files_given_does_not_matter(self):
        backwards = dict(reversed(list(self.files.items())))
        self.assertEqual(writer.write(backwards), self.package)

    def test_parts_stand_sorted_by_upper_case_with_what_describes_them_last(self):
        package = writer.write(support.files(**{"b.txt": b"1", "A.txt": b"2", "_.txt": b"3", "a\\z.txt": b"4"}))
        names = [entry.name for entry in zip_reader.read(package, "sample")]
        mine = [name for name in names if name in ("b.txt", "A.txt", "_.txt", "a/z.txt")]
        self.assertEqual(mine, ["A.txt", "a/z.txt", "b.txt", "_.txt"])
        self.assertEqual(names[-3:], ["AppxManifest.xml", "AppxBlockMap.xml", "[Content_Types].xml"])

    def test_all_but_empty_files_are_deflated(self):
        stored = [entry.name for entry in zip_reader.read(self.package, "sample") if entry.method == 0]
        self.assertEqual(stored, ["Empty.txt"])

    def test_blocks_are_of_64_kib_and_an_empty_file_has_none(self):
        files = block_map.read(contents(self.package)["AppxBlockMap.xml"])
        counts = {file.path: len(file.blocks) for file in files}
        self.assertEqual(counts["Empty.txt"], 0)
        self.assertEqual(counts["One block.bin"], 1)
        self.assertEqual(counts["One byte more.bin"], 2)

    def test_a_file_of_no_byte_one_block_and_one_byte_more_is_accepted_with_any_content(self):
        noise = random.Random(1).randbytes(3 * 65536)
        for size in (1, 65535, 65536, 65537, 131072, 131073):
            self.assertEqual(support.problems_of({"noise.bin": noise[:size]}), [], size)

    def test_each_block_is_readable_alone_also_where_files_repeat_themselves(self):
        repeated = random.Random(7).randbytes(1024) * 200
        self.assertEqual(support.problems_of({"repeated.bin": repeated}), [])

    def test_header_sizes_in_the_block_map_are_those_of_the_archive(self):
        with zipfile.ZipFile(io.BytesIO(self.package)) as archive:
            for file in block_map.read(archive.read("AppxBlockMap.xml")):
                at = archive.getinfo(part_names.encode(file.path)).header_offset
                name, extra = struct.unpack_from("<HH", self.package, at + 26)
                self.assertEqual(file.header_size, 30 + name + extra, file.path)

    def test_a_flipped_bit_is_refused_unless_every_file_reads_as_before(self):
        # Deflate can say the same in several ways, and pads its blocks with bits that nobody reads.
        whole = contents(self.package)
        ignored = set()
        for _, _, central in self.spans().values():
            # Who made the entry, and its attributes on the maker's system: nobody reads them.
            ignored |= {central + 4, central + 5, *range(central + 36, central + 42)}
        for at in set(range(len(self.package))) - ignored:
            package = bytearray(self.package)
            package[at] ^= 0x10
            with self.subTest(byte=at):
                self.assertTrue(support.problems(bytes(package)) or contents(package) == whole)

    def test_a_flipped_byte_in_a_part_is_reported_with_its_name(self):
        for name, (_, start, _) in self.spans().items():
            if name == "Empty.txt":
                continue
            package = bytearray(self.package)
            package[start + 3] ^= 0x10
            with self.subTest(part=name):
                self.refused(bytes(package), part_names.decode(name) + ":")

    def test_other_content_with_a_fitting_checksum_is_refused_by_its_hash(self):
        for path, data in self.files.items():
            if data:
                changed = bytes([data[0] ^ 1]) + data[1:]
                with self.subTest(path=path):
                    self.refused(replaced(self.package, path, changed), path + ":", "block 1", "hash")

    def test_a_missing_file_is_refused(self):
        package = rewrite(self.package, lambda entries: [e for e in entries if e.name != "MainPage.xaml"])
        self.refused(package, "MainPage.xaml:", "block map lists it")

    def test_an_extra_file_is_refused(self):
        extra = zip_writer.stored("0.txt", b"extra")
        self.refused(rewrite(self.package, lambda entries: [extra, *entries]), "0.txt:", "does not list it")

    def test_a_part_of_the_package_itself_that_is_missing_is_refused(self):
        for path in ("AppxManifest.xml", "AppxBlockMap.xml", "[Content_Types].xml"):
            with self.subTest(part=path):
                package = rewrite(self.package, lambda entries: [e for e in entries if e.name != path])
                self.refused(package, path + ":", "no such part")

    def test_two_files_that_differ_in_case_only_are_refused(self):
        twice = zip_writer.stored("EMPTY.TXT", b"")
        package = rewrite(self.package, lambda entries: sorted([twice, *entries], key=lambda e: e.name != "EMPTY.TXT"))
        self.refused(package, "two parts of this name")

    def test_parts_in_another_order_are_refused(self):
        package = rewrite(self.package, lambda entries: [entries[1], entries[0], *entries[2:]])
        self.refused(package, "in the order of packages")
        package = rewrite(self.package, lambda entries: [*entries[:-2], entries[-1], entries[-2]])
        self.refused(package, "[Content_Types].xml:", "in the order of packages")

    def test_a_block_map_in_another_order_is_refused(self):
        self.refused(map_changed(self.package, lambda files: files[::-1]), "another order")

    def test_a_wrong_size_in_the_block_map_is_refused(self):
        def change(files):
            return [dataclasses.replace(f, size=f.size + 1) for f in files]

        self.refused(map_changed(self.package, change), "MainPage.xaml:", "the block map says 8 bytes")

    def test_a_wrong_header_length_in_the_block_map_is_refused(self):
        def change(files):
            return [dataclasses.replace(f, header_size=f.header_size + 1) for f in files]

        self.refused(map_changed(self.package, change), "MainPage.xaml:", "local header has 44 bytes; it has 43")

    def test_a_wrong_size_of_a_block_is_refused(self):
        def change(files):
            return [
                dataclasses.replace(f, blocks=[blocks.Block(b.digest, b.size + 1) for b in f.blocks]) for f in files
            ]

        self.refused(map_changed(self.package, change), "One byte more.bin:", "block 2 is not where")

    def test_a_size_of_the_last_block_that_is_too_large_is_refused(self):
        for more in (1, 3, 1000, 1 << 40):

            def change(files, more=more):
                longer = [blocks.Block(files[0].blocks[-1].digest, files[0].blocks[-1].size + more)]
                return [dataclasses.replace(files[0], blocks=[*files[0].blocks[:-1], *longer]), *files[1:]]

            with self.subTest(more=more):
                found = support.problems(map_changed(self.package, change))
                self.assertTrue(any("behind the" in text for text in found), found)

    def test_a_last_block_that_has_the_end_of_the_stream_is_accepted(self):
        def change(file):
            last = file.blocks[-1]
            return dataclasses.replace(file, blocks=[*file.blocks[:-1], blocks.Block(last.digest, last.size + 2)])

        package = map_changed(self.package, lambda files: [change(f) if f.blocks else f for f in files])
        self.assertEqual(support.problems(package), [])

    def test_a_block_map_with_anything_else_in_it_is_refused(self):
        text = contents(self.package)["AppxBlockMap.xml"]
        for old, new, words in (
            (b"<File ", b'<File Mark="1" ', "a <File> has other attributes"),
            (b"<Block ", b'<Block Mark="1" ', "a <Block> has other attributes"),
            (b"<BlockMap ", b'<BlockMap Mark="1" ', "a <BlockMap> has other attributes"),
            (b"</File>", b"x</File>", "a <File> has text"),
            (b"</BlockMap>", b"x</BlockMap>", "a <BlockMap> has text"),
            (b' LfhSize="', b' lfhSize="', "a <File> has other attributes"),
            (b"xmlenc#sha256", b"xmlenc#sha512", "HashMethod"),
            (b"MainPage.xaml", b"M" * 261, "too long"),
        ):
            with self.subTest(new):
                self.assertIn(old, text)
                self.refused(replaced(self.package, "AppxBlockMap.xml", text.replace(old, new)), words)

    def test_a_file_that_is_listed_twice_is_refused(self):
        self.refused(map_changed(self.package, lambda files: [files[0], *files]), "lists it twice")

    def test_a_block_without_size_in_a_deflated_file_is_refused(self):
        def change(files):
            return [dataclasses.replace(f, blocks=[blocks.Block(b.digest, None) for b in f.blocks]) for f in files]

        self.refused(map_changed(self.package, change), "MainPage.xaml:", "only if it is deflated")

    def test_a_missing_block_is_refused(self):
        def change(files):
            return [dataclasses.replace(f, blocks=f.blocks[:1]) for f in files]

        self.refused(map_changed(self.package, change), "One byte more.bin:", "1 blocks of 2")

    def test_blocks_that_cannot_be_read_without_those_before_them_are_refused(self):
        data = random.Random(2).randbytes(1024) * 128
        pieces = flushed(data, zlib.Z_SYNC_FLUSH)
        other = zip_writer.deflated("twice.bin", data, b"".join(pieces) + blocks.END_OF_STREAM)
        package = writer.write(support.files(**{"twice.bin": data}))
        package = rewrite(package, lambda entries: [other if e.name == "twice.bin" else e for e in entries])

        def change(file):
            sizes = zip(file.blocks, pieces)
            return dataclasses.replace(file, blocks=[blocks.Block(b.digest, len(piece)) for b, piece in sizes])

        package = map_changed(package, lambda files: [change(f) if f.path == "twice.bin" else f for f in files])
        self.refused(package, "twice.bin:", "block 2 is not where")

    def test_more_behind_the_last_block_is_refused(self):
        stream, _ = blocks.deflate(b"<Page/>")
        empty_block = b"\0\0\0\xff\xff"
        longer = stream[: -len(blocks.END_OF_STREAM)] + empty_block + blocks.END_OF_STREAM
        other = zip_writer.deflated("MainPage.xaml", b"<Page/>", longer)
        package = rewrite(self.package, lambda entries: [other if e.name == other.name else e for e in entries])
        self.refused(package, "MainPage.xaml:", "behind the last block")

    def test_content_types_that_are_stored_are_refused(self):
        types = zip_writer.stored("[Content_Types].xml", contents(self.package)["[Content_Types].xml"])
        self.refused(rewrite(self.package, lambda entries: [*entries[:-1], types]), "[Content_Types].xml:", "stored")

    def test_a_file_without_a_content_type_or_with_another_one_is_refused(self):
        types = contents(self.package)["[Content_Types].xml"]
        for old, new, words in (
            (b'Extension="xaml"', b'Extension="yaml"', ("no type for MainPage.xaml",)),
            (b"application/x-msdownload", b"text/plain", ("HOV\\Tessaline.exe", "x-msdownload")),
            (b"blockmap+xml", b"blokmap+xml", ("AppxBlockMap.xml",)),
        ):
            with self.subTest(changed=old):
                self.assertIn(old, types)
                package = replaced(self.package, "[Content_Types].xml", types.replace(old, new))
                self.refused(package, "[Content_Types].xml:", *words)

    def test_content_types_with_anything_else_in_them_are_refused(self):
        types = contents(self.package)["[Content_Types].xml"]
        for old, new, words in (
            (b"<Types ", b'<Types Mark="1" ', "attributes or text"),
            (b"</Types>", b"x</Types>", "attributes or text"),
            (b"</Types>", "\u00a0</Types>".encode(), "attributes or text"),
            (b"<Default ", b'<Default Mark="1" ', "something else than Extension"),
            (b'<Default Extension="bin" ', b"<Default ", "something else than Extension"),
            (b"</Types>", b'<Default Extension="x" ContentType="a/b">x</Default></Types>', "something else than"),
            (b"</Types>", b'<n:Default xmlns:n="urn:n" Extension="x" ContentType="a/b"/></Types>', "urn:n"),
            (b"</Types>", b'<Default xmlns="" Extension="x" ContentType="a/b"/></Types>', "element Default"),
            (b"</Types>", b'<Default Extension=".x" ContentType="a/b"/></Types>', 'Extension=".x"'),
            (b"</Types>", b'<Default Extension="" ContentType="a/b"/></Types>', 'Extension=""'),
            (b"</Types>", b'<Default Extension="BIN" ContentType="a/b"/></Types>', "type of BIN twice"),
            (b"</Types>", b'<Override PartName="x" ContentType="a/b"/></Types>', 'PartName="x"'),
            (b"</Types>", b'<Override PartName="/x/" ContentType="a/b"/></Types>', 'PartName="/x/"'),
            (b"</Types>", b'<Override PartName="/a b" ContentType="a/b"/></Types>', 'PartName="/a b"'),
            (b"</Types>", b'<Override PartName="/appxmanifest.xml" ContentType="a/b"/></Types>', "xml twice"),
            (b"text/plain", b"text", 'ContentType="text"'),
            (b"text/plain", b"text/", 'ContentType="text/"'),
            (b"text/plain", b" text/plain", 'ContentType=" text/plain"'),
            (b"text/plain", b"text/plain;", 'ContentType="text/plain;"'),
            (b"text/plain", b"text/plain/x", 'ContentType="text/plain/x"'),
            (b"?>", b"?><!DOCTYPE Types>", "document type"),
            (b"encoding='utf-8'", b"encoding='us-ascii'", "its encoding is us-ascii"),
        ):
            with self.subTest(new):
                self.assertIn(old, types)
                package = replaced(self.package, "[Content_Types].xml", types.replace(old, new, 1))
                self.refused(package, "[Content_Types].xml:", words)

    def test_content_types_in_other_words_are_accepted(self):
        types = contents(self.package)["[Content_Types].xml"]
        for old, new in (
            (b"text/plain", b"text/plain; charset=utf-8"),
            (b"text/plain", b'text/plain;charset=&quot;utf-8&quot;; a=b'),
            (b"/AppxManifest.xml", b"/appxmanifest.XML"),
            (b'Extension="bin"', b'Extension="BIN"'),
            (b"><", b">\r\n\t <"),
            (b"</Types>", b'<Default Extension="x-y_z" ContentType="x/y+z"/></Types>'),
        ):
            with self.subTest(new):
                self.assertIn(old, types)
                package = replaced(self.package, "[Content_Types].xml", types.replace(old, new))
                self.assertEqual(support.problems(package), [])

    def test_a_version_of_the_format_that_windows_does_not_take_is_refused(self):
        for version in (0, 10, 21, 46, 63, 0x0314):
            with self.subTest(version=version):
                self.refused(packed(self.package, version=version), f"needs version {version}")

    def test_the_two_versions_of_the_format_are_accepted(self):
        for version in (20, 45):
            self.assertEqual(support.problems(packed(self.package, version=version)), [])

    def test_a_file_cut_anywhere_is_refused_with_a_sentence(self):
        for size in [*range(0, len(self.package), 61), *range(len(self.package) - 120, len(self.package))]:
            with self.subTest(size=size):
                self.assertTrue(support.problems(self.package[:size]))

    def test_bytes_before_within_or_behind_the_archive_are_refused(self):
        directory = next(iter(self.spans().values()))[2]
        for package in (
            b"x" + self.package,
            self.package + b"x",
            self.package[:directory] + b"x" + self.package[directory:],
        ):
            self.assertTrue(support.problems(package))

    def test_bytes_that_belong_to_no_entry_are_refused(self):
        places = [start for start, _, _ in self.spans().values()]
        for at in (places[0], places[3]):
            self.refused(with_gap(self.package, at), "instead of right behind the entry before")
        directory = next(iter(self.spans().values()))[2]
        self.refused(with_gap(self.package, directory), "belong to no entry")

    def test_garbage_is_refused_with_a_sentence(self):
        noise = random.Random(4)
        end = struct.pack("<4sHHHHIIH", b"PK\5\6", 0, 0, 9, 9, 100, 50, 0)
        for data in (b"", b"PK", bytes(5000), noise.randbytes(5000), noise.randbytes(300) + end, end):
            self.assertTrue(support.problems(data))

    def test_an_archive_of_which_nothing_says_zip64_is_read_too(self):
        package = self.package[:-98]
        directory = next(iter(self.spans().values()))[2]
        count = len(self.spans())
        end = struct.pack("<4sHHHHIIH", b"PK\5\6", 0, 0, count, count, len(package) - directory, directory, 0)
        self.assertEqual(support.problems(package + end), [])

    def test_parts_full_of_noise_never_make_the_verifier_fail(self):
        noise = random.Random(5)
        parts = contents(self.package)
        described = ("AppxManifest.xml", "AppxBlockMap.xml", "[Content_Types].xml")
        for name in (*described, support.EXECUTABLE, "HOV/Tessaline.exe"):
            for _ in range(150):
                data = bytearray(parts[name])
                for _ in range(noise.randrange(1, 6)):
                    data[noise.randrange(len(data))] = noise.choice((0, 1, 0x20, 0x22, 0x3C, 0x7F, 0x80, 0xFF))
                if bytes(data) != parts[name]:
                    package = replaced(self.package, part_names.decode(name), bytes(data))
                    if name != "[Content_Types].xml":
                        self.assertTrue(support.problems(package))
                    else:
                        support.problems(package)  # a changed blank between elements means the same


class OtherPackers(unittest.TestCase):
    """Windows' own packer and the tool that signs there write the same in other ways."""

    @classmethod
    def setUpClass(cls):
        cls.package = writer.write(support.files())

    def refused(self, package, *words):
        found = support.problems(package)
        self.assertTrue(any(all(word in text for word in words) for text in found), f"{words} not in {found}")

    def test_sizes_behind_the_data_are_read(self):
        for descriptor in ("<IQQ", "<III"):
            package = packed(self.package, descriptor=descriptor)
            self.assertEqual(support.problems(package), [])
            self.assertEqual(contents(package), contents(self.package))

    def test_sizes_behind_the_data_that_contradict_the_directory_are_refused(self):
        for what, change in {
            "missing": lambda found: b"",
            "without its mark": lambda found: found[4:],
            "cut": lambda found: found[:-1],
            "another checksum": lambda found: found[:4] + bytes([found[4] ^ 1]) + found[5:],
            "another size": lambda found: found[:-8] + struct.pack("<Q", 1 << 40),
        }.items():
            for descriptor in ("<IQQ", "<III"):
                with self.subTest(what, descriptor=descriptor):
                    self.assertTrue(support.problems(packed(self.package, descriptor=descriptor, change=change)))

    def test_values_of_zip64_in_the_directory_are_read(self):
        for count in (1, 2, 3):
            for descriptor in (None, "<IQQ"):
                package = packed(self.package, zip64=count, descriptor=descriptor)
                self.assertEqual(support.problems(package), [])
                self.assertEqual(contents(package), contents(self.package))

    def test_values_of_zip64_that_the_header_has_too_are_read_and_compared(self):
        package = packed(self.package, zip64=1)
        at = package.index(b"PK\1\2")
        (name_size,) = struct.unpack_from("<H", package, at + 28)
        place = at + zip_reader.CENTRAL_HEADER_SIZE + name_size + 4
        (size,) = struct.unpack_from("<Q", package, place)
        said = support.set_bytes(package, at + 24, "<I", size)
        self.assertEqual(support.problems(said), [])
        self.refused(support.set_bytes(said, place, "<Q", size + 1), "its ZIP64 field contradicts its header")
        self.refused(support.set_bytes(said, place - 4, "<H", 2), "an extra field that is not ZIP64's")
        self.refused(support.set_bytes(said, at + 20, "<I", 0xFFFFFFFF), "differ")

    def test_names_in_another_case_are_the_same_parts(self):
        names = {
            "AppxManifest.xml": "appxmanifest.xml", "MainPage.xaml": "MAINPAGE.xaml",
            "Assets/StoreLogo.png": "ASSETS/sTORElOGO.png",
        }  # fmt: skip
        package = packed(self.package, names=names)
        self.assertEqual(set(names.values()) - set(contents(package)), set())
        self.assertEqual(support.problems(package), [])

    def test_parts_stand_as_windows_compares_names(self):
        # In full case conversion the first would become SS, and by code points the last would be the last.
        ordered = ["a.txt", "SZ.txt", "\u00df.txt", "\U0001f600.txt", "\uff01.txt"]
        package = writer.write(support.files(**{path: b"x" for path in ordered}))
        names = [part_names.decode(entry.name) for entry in zip_reader.read(package, "sample")]
        self.assertEqual([name for name in names if name in ordered], ordered)
        self.assertEqual(support.problems(package), [])

    def test_the_hash_of_whole_files_is_compared(self):
        text = contents(self.package)["AppxBlockMap.xml"].decode("utf-8")
        digest = blocks.digest(b"<Page/>")
        element = '<b4:FileHash xmlns:b4="http://schemas.microsoft.com/appx/2021/blockmap" Hash="{}"/></File>'
        end = text.index("</File>", text.index('"MainPage.xaml"'))

        def made(more):
            changed = text[:end] + more + text[end + len("</File>") :]
            changed = changed.replace("<BlockMap ", '<BlockMap IgnorableNamespaces="b4" ')
            return replaced(self.package, "AppxBlockMap.xml", changed.encode("utf-8"))

        self.assertEqual(support.problems(made(element.format(digest))), [])
        self.refused(made(element.format(blocks.digest(b"x"))), "MainPage.xaml:", "another hash", "of the whole file")
        self.refused(made(element.format(digest).replace("</File>", "") * 2 + "</File>"), "several <FileHash>")
        self.refused(made(element.format(digest).replace("2021", "2022")), "no <File> with <Block>s")

    def test_the_catalogue_of_the_tool_that_signs_is_a_part_of_its_own(self):
        catalogue = zip_writer.stored("AppxMetadata/CodeIntegrity.cat", b"catalogue")
        types = contents(self.package)["[Content_Types].xml"]
        override = (
            b'<Override PartName="/AppxMetadata/CodeIntegrity.cat" ContentType="application/vnd.ms-pkiseccat"/>'
        )
        told = types.replace(b"</Types>", override + b"</Types>")
        package = replaced(self.package, "[Content_Types].xml", told)
        self.assertEqual(support.problems(rewrite(package, lambda entries: [*entries, catalogue])), [])
        self.refused(rewrite(package, lambda entries: [catalogue, *entries]), "in the order of packages")
        self.refused(rewrite(self.package, lambda entries: [*entries, catalogue]), "no type for AppxMetadata")


class Writing(unittest.TestCase):
    def test_two_files_with_the_same_name_for_windows_are_refused(self):
        with self.assertRaisesRegex(PackageError, "same name as"):
            writer.write(support.files(**{"MAINPAGE.XAML": b"x"}))

    def test_a_package_without_a_manifest_is_refused(self):
        with self.assertRaisesRegex(PackageError, "no manifest"):
            writer.write({"a.txt": b"x"})


if __name__ == "__main__":
    unittest.main()
