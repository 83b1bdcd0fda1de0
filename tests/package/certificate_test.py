"""Whom a certificate names, and that it is the publisher."""

import base64
import hashlib
import unittest

import support
from msix import blocks, certificate, part, writer, zip_reader, zip_writer
from msix.problem import PackageError

# Object ids of the parts of a name, and kinds of text.
COMMON_NAME, ORGANISATION, COUNTRY = b"\x55\x04\x03", b"\x55\x04\x0a", b"\x55\x04\x06"
COMPONENT = bytes.fromhex("0992268993f22c640119")
UTF8, PRINTABLE, BMP = 0x0C, 0x13, 0x1E


def der(tag, *contents):
    content = b"".join(contents)
    size = len(content)
    length = bytes([size]) if size < 0x80 else b"\x83" + size.to_bytes(3, "big")
    return bytes([tag]) + length + content


def name(*parts):
    """A distinguished name; each part is (object id, kind of text, bytes)."""
    return der(0x30, *(der(0x31, der(0x30, der(6, kind), der(tag, value))) for kind, tag, value in parts))


def make_certificate(subject):
    """The DER of a certificate of this subject, with nothing else of use in it."""
    issuer = name((COMMON_NAME, UTF8, b"Somebody Else"))
    serial, algorithm, validity = der(2, b"\1"), der(0x30, der(6, b"\x2a")), der(0x30, der(0x17, b"260101000000Z"))
    key = der(0x30, algorithm, der(3, b"\0" + bytes(300)))
    body = der(0x30, der(0xA0, der(2, b"\2")), serial, algorithm, issuer, validity, subject, key)
    return der(0x30, body, algorithm, der(3, b"\0"))


VELMO = make_certificate(name((COMMON_NAME, UTF8, b"Velmo")))
OTHER = make_certificate(name((COMMON_NAME, UTF8, b"Vermo")))


def signature(*certificates, digests=None):
    """A signature part with these certificates, of a package with these digests; it signs nothing."""
    made_for = b"APPX" + b"".join(name + digest for name, digest in (digests or {}).items())
    imprint = der(0x30, der(0x30, der(6, b"\x2a")), der(4, made_for))
    told = der(0x30, der(6, b"\x2a"), der(0xA0, der(0x30, der(0x30, der(6, b"\x2a")), imprint)))
    signed = der(0x30, der(2, b"\1"), der(0x31), told, der(0xA0, *certificates), der(0x31))
    return b"PKCX" + der(0x30, der(6, b"\x2a"), der(0xA0, signed))


def signed_package(signed=None, certificates=(), files=None):
    """The sample as a tool that signs leaves it: the signature last, and its type told. Without a signature one that
    fits is made, with these certificates."""
    entries = zip_reader.read(writer.write(files or support.files()), "sample")
    types, block_map = entries[-1], entries[-2]
    data = part.content(types, types.name, 1 << 20).replace(
        b"</Types>",
        b'<Override PartName="/AppxSignature.p7x" ContentType="application/vnd.ms-appx.signature"/></Types>',
    )
    stream = blocks.deflate(data)[0]
    mapped = part.content(block_map, block_map.name, 1 << 20)
    digests = {
        b"AXPC": bytes(32), b"AXCD": bytes(32), b"AXCT": hashlib.sha256(data).digest(),
        b"AXBM": hashlib.sha256(mapped).digest(),
    }  # fmt: skip
    kept = [zip_writer.Entry(e.name, e.method, e.size, e.crc, e.stream) for e in entries[:-1]]
    last = zip_writer.stored("AppxSignature.p7x", signed or signature(*certificates, digests=digests))
    return zip_writer.write([*kept, zip_writer.deflated(types.name, data, stream), last])


class Subject(unittest.TestCase):
    def test_is_read_from_der_and_pem(self):
        pem = b"-----BEGIN CERTIFICATE-----\n" + base64.encodebytes(VELMO) + b"-----END CERTIFICATE-----\n"
        self.assertEqual(certificate.subject(VELMO, "c"), "CN=Velmo")
        self.assertEqual(certificate.subject(b"a comment\n" + pem, "c"), "CN=Velmo")

    def test_is_written_as_windows_does_the_last_part_first(self):
        subject = name(
            (COUNTRY, PRINTABLE, b"IN"), (COMPONENT, UTF8, b"velmo"), (ORGANISATION, UTF8, b"Velmo, Ltd."),
            (COMMON_NAME, BMP, "Grüße".encode("utf-16-be")),
        )  # fmt: skip
        found = certificate.subject(make_certificate(subject), "c")
        self.assertEqual(found, 'CN=Grüße, O="Velmo, Ltd.", DC=velmo, C=IN')

    def test_kinds_without_a_name_are_numbers(self):
        found = certificate.subject(make_certificate(name((bytes.fromhex("2b8837"), UTF8, b"x"))), "c")
        self.assertEqual(found, "OID.1.3.1079=x")

    def test_what_is_no_certificate_is_refused(self):
        empty = b"-----BEGIN CERTIFICATE-----\n!!\n-----END CERTIFICATE-----"
        for data in (b"", b"\x30", empty, bytes(100), VELMO[:40]):
            with self.subTest(data=data[:20]), self.assertRaisesRegex(PackageError, "no certificate"):
                certificate.subject(data, "c")

    def test_a_certificate_with_its_issuers_and_words_around_it_is_passed_on_as_it_is(self):
        pem = b"words\n" + certificate.armour(VELMO, "c") + b"words\n" + certificate.armour(OTHER, "c")
        self.assertEqual(certificate.armour(pem, "c"), pem)
        self.assertEqual(certificate.subject(pem, "c"), "CN=Velmo")

    def test_numbers_and_names_without_bound_are_refused_at_once(self):
        long_id = name((b"\xff" * 60000 + b"\1", UTF8, b"x"))
        many = name(*[(COMMON_NAME, UTF8, b"x")] * 1000)
        for data in (make_certificate(long_id), make_certificate(many), b"-----BEGIN CERTIFICATE-----" * 50000):
            with self.subTest(size=len(data)), self.assertRaisesRegex(PackageError, "no certificate"):
                certificate.subject(data, "c")

    def test_every_cut_of_a_certificate_is_refused(self):
        for size in range(len(VELMO)):
            with self.subTest(size=size), self.assertRaises(PackageError):
                certificate.subject(VELMO[:size], "c")


class Publisher(unittest.TestCase):
    def test_the_certificate_of_the_publisher_is_accepted(self):
        self.assertEqual(support.problems(writer.write(support.files()), VELMO), [])

    def test_another_publisher_than_the_certificates_is_refused(self):
        (found,) = support.problems(writer.write(support.files()), OTHER)
        self.assertIn("its Publisher is CN=Velmo, the certificate's subject is CN=Vermo", found)

    def test_a_file_that_is_no_certificate_is_refused(self):
        (found,) = support.problems(writer.write(support.files()), b"no certificate")
        self.assertIn("the certificate: there is no certificate", found)

    def test_a_signed_package_is_accepted_whatever_else_its_signature_carries(self):
        self.assertEqual(support.problems(signed_package(certificates=(OTHER, VELMO))), [])

    def test_a_package_signed_by_another_is_refused(self):
        (found,) = support.problems(signed_package(certificates=(OTHER,)))
        self.assertIn("its Publisher is CN=Velmo, the certificate's subject is CN=Vermo", found)

    def test_a_signature_without_certificates_is_refused(self):
        (found,) = support.problems(signed_package(certificates=()))
        self.assertIn("the certificate's subject is missing", found)

    def test_the_signature_of_another_package_is_refused_without_a_key_or_a_tool(self):
        signed = zip_reader.read(signed_package(certificates=(VELMO,)), "sample")
        for changes, part in (
            ({support.MARKUP: b"<Page>other</Page>"}, "AppxBlockMap.xml"), ({"new.gif": b""}, "[Content_Types].xml"),
        ):  # fmt: skip
            found = support.problems(signed_package(signed[-1].stream, files=support.files(**changes)))
            self.assertTrue(any(f"made for a package with another {part}" in text for text in found), found)

    def test_a_signature_that_does_not_say_what_it_signed_is_refused(self):
        for part in (signature(VELMO), signature(VELMO, digests={b"AXBM": bytes(31)})):
            found = support.problems(signed_package(part))
            self.assertTrue(any("AppxSignature.p7x" in text for text in found), found)

    def test_a_signature_that_cannot_be_read_is_refused(self):
        whole = signature(VELMO)
        for part in (b"x", b"PKCX", whole[4:], *(whole[:size] for size in range(5, len(whole), 9))):
            found = support.problems(signed_package(part))
            self.assertTrue(any("AppxSignature.p7x: the signature cannot be read" in text for text in found), found)


if __name__ == "__main__":
    unittest.main()
