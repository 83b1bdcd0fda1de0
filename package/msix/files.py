"""Reading and writing files, of which each failure is a sentence."""

import os
import stat

from . import limits
from .problem import PackageError


def refuse(path, what, error, remedy):
    """Raises PackageError for a failure of the system."""
    raise PackageError(path, f"{what}: {error.strerror or error}", remedy) from error


def read(path):
    """The bytes of a file. Raises PackageError, also for what is no file, where a read could wait without end."""
    try:
        with open(path, "rb", opener=lambda name, flags: os.open(name, flags | os.O_NONBLOCK)) as file:
            status = os.fstat(file.fileno())
            if not stat.S_ISREG(status.st_mode):
                raise PackageError(path, "it is no regular file", "Give the path of a file")
            if status.st_size > limits.PACKAGE:
                what = f"it has {status.st_size} bytes; files up to {limits.PACKAGE} bytes are read"
                raise PackageError(path, what, "Give a smaller one")
            return file.read(status.st_size)
    except (OSError, ValueError) as error:
        refuse(path, "it cannot be read", error, "Give the path of an existing file")


def write(path, data):
    """Writes a file and makes its folder. Raises PackageError."""
    try:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)
    except OSError as error:
        refuse(path, "it cannot be written", error, "Give another folder, or make room there")


def remove(path):
    """Removes a file. Raises PackageError."""
    try:
        path.unlink()
    except OSError as error:
        refuse(path, "it cannot be removed", error, "Remove it by hand")
