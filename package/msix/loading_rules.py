"""Checks that Windows' loader would start a program, or load a library."""

from .portable_executable import DOT_NET, EXECUTABLE, IMPORTS, RELOCATIONS
from .problem import Problem

_IMAGE, _NO_RELOCATIONS, _LIBRARY = 0x0002, 0x0001, 0x2000

_REMEDY = "Take the file as its linker wrote it"


def _kind(program, library):
    if not program.flags & _IMAGE:
        yield "its header says that its linker did not finish it"
    if bool(program.flags & _LIBRARY) != library:
        yield "its header says that it is no library" if library else "its header says that it is a library, no program"


def _sections(program):
    if not program.sections:
        yield "it has no sections"
    last = program.headers_size
    for section in program.sections:
        if section.raw_size and section.raw + section.raw_size > len(program.data):
            yield f"its section {section.name} lies behind the end of the file"
        if section.address < last or program.section_alignment and section.address % program.section_alignment:
            yield f"its section {section.name} lies at {section.address:#x}, where there is other data or no page"
        if section.address + section.size > program.image_size:
            yield f"its section {section.name} lies behind the end of its image"
        last = section.address + (section.size or section.raw_size)


def _entry(program, library):
    address = program.entry_point
    if not address and library:
        return
    for section in program.sections:
        if section.flags & EXECUTABLE and 0 <= address - section.address < section.raw_size:
            return
    yield f"its entry point {address:#x} lies outside its code"


def _imports(program):
    if not program.imports():
        yield "it imports nothing, so that it could call nothing of Windows"


def relocations(path, program):
    """What prevents loading a program at another address than its linker gave it."""
    address, size = program.directory(RELOCATIONS)
    if program.flags & _NO_RELOCATIONS or not address or not size:
        yield Problem(path, "it has no relocations, so that it can be loaded at one address only", "Link it with them")
    else:
        program.section_of(address)


def problems(path, program, library=False):
    """What prevents the loader from starting it. Raises ValueError if a table lies outside the file."""
    for what in (*_kind(program, library), *_sections(program)):
        yield Problem(path, what, _REMEDY)
    # Code for .NET is entered by the runtime, which uses its own names.
    if program.directory(DOT_NET)[0]:
        return
    address, _ = program.directory(IMPORTS)
    for what in (*_entry(program, library), *(_imports(program) if address or not library else ())):
        yield Problem(path, what, _REMEDY)
