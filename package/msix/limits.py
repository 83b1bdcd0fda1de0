"""Limits of a check: beyond these it would take too much time or memory."""

PACKAGE = 1 << 30  # bytes of the file
CONTENT = 1 << 30  # bytes of all files in it together
ENTRIES = 0xFFFE  # files in it
XML = 8 << 20  # bytes of a part that describes the package
PROGRAM = 256 << 20  # bytes of a program that is looked into
IMAGE = 8 << 20  # bytes of an image
PROBLEMS = 200  # reported for one package
