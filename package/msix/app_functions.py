"""Which functions of Windows an app container may import, from the import libraries that the toolchain has for apps."""

import functools
import pathlib
import re
import struct

from .problem import PackageError

FOLDER = pathlib.Path("/usr/x86_64-w64-mingw32/lib")
# The app platform, and the universal C runtime as apps have it.
LIBRARIES = ("libwindowsapp.a", "libucrtapp.a")

# What that list leaves out and the application needs all the same. Windows loads it into app containers; its
# certification kit, for packages that go to the store, may ask about it.
BESIDES = {
    # The compiler's own helpers and what its handling of exceptions calls. They touch nothing of the system.
    "api-ms-win-crt-private-l1-1-0.dll": {
        "__C_specific_handler", "__intrinsic_setjmp", "longjmp", "memchr", "memcmp", "memcpy", "memmove", "strchr",
        "strrchr", "strstr", "wcschr", "wcsrchr", "wcsstr",
    },
    # The user's choice of language and the folder of programs, read only.
    "api-ms-win-core-registry-l1-1-0.dll": {"RegCloseKey", "RegGetValueW", "RegOpenKeyExW", "RegQueryValueExW"},
    # The suite's version for the log's header.
    "version.dll": {"GetFileVersionInfoSizeW", "GetFileVersionInfoW", "VerQueryValueW"},
    # Path arithmetic with the shell's rules.
    "api-ms-win-core-shlwapi-legacy-l1-1-0.dll": {"PathAppendW", "PathFileExistsW", "PathRemoveFileSpecW"},
}  # fmt: skip

_DLL = re.compile(rb"([A-Za-z0-9_.-]+\.dll)\0")
_ARCHIVE_MAGIC = b"!<arch>\n"
_HEADER_SIZE = 60
_IMPORTED = b"__imp_"


def _symbols(archive):
    """The names in the index that is the first member of every archive: a count, that many offsets, the names."""
    start = len(_ARCHIVE_MAGIC) + _HEADER_SIZE
    (count,) = struct.unpack_from(">I", archive, start)
    names = start + 4 + 4 * count
    return archive[names:].split(b"\0", count)[:count]


@functools.cache
def _listed():
    """Names of the functions and of the DLLs (lower case). Raises PackageError when the libraries are not there."""
    functions, dlls = set(), set()
    for name in LIBRARIES:
        try:
            archive = (FOLDER / name).read_bytes()
        except OSError as error:
            raise PackageError(
                name, f"the list of functions that apps may import cannot be read: {error.strerror}",
                "Install the package mingw-w64-x86-64-dev",
            ) from error  # fmt: skip
        functions |= {symbol[len(_IMPORTED) :].decode() for symbol in _symbols(archive) if symbol.startswith(_IMPORTED)}
        dlls |= {dll.decode().lower() for dll in _DLL.findall(archive)}
    return functions, dlls


def of(dll):
    """The functions that an app may import from a DLL (lower case); None when it may import nothing from it."""
    if dll in BESIDES:
        return BESIDES[dll]
    functions, dlls = _listed()
    return functions if dll in dlls else None
