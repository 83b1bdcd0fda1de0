"""Checks the programs of a package by the rules of Windows, for those in an app container and for others."""

from . import app_functions, constant_rules, loading_rules, version_resource, xml_text
from .portable_executable import EXECUTABLE, IMPORTS, MANIFEST_RESOURCE, WRITABLE, PortableExecutable
from .problem import PackageError, Problem

X64, X86 = 0x8664, 0x014C
WINDOW_SUBSYSTEM, CONSOLE_SUBSYSTEM = 2, 3

APP_CONTAINER, GUARD = 0x1000, 0x4000
APP_FLAGS = {
    APP_CONTAINER: "APPCONTAINER: Windows starts no app without it. Link it with --appcontainer",
    0x0100: "NX_COMPAT (data is not executed). Link it with --nxcompat",
    0x0040: "DYNAMIC_BASE (random addresses). Link it with --dynamicbase",
    0x0020: "HIGH_ENTROPY_VA (random 64-bit addresses). Link it with --high-entropy-va",
}

LEAST_ALIGNMENT = 4096

OLD_RUNTIME = "msvcrt.dll"
WINDOWS_10 = "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"

_BUILD = "Build it with ./dev build"
_GIVE = "Give the desktop component's program with --desktop"


def _flags(path, program):
    for flag, meaning in APP_FLAGS.items():
        if not program.characteristics & flag:
            what, _, remedy = meaning.rpartition(". ")
            yield Problem(path, f"its header lacks the flag {what}", remedy)
    if program.characteristics & GUARD:
        yield Problem(path, "it claims Control Flow Guard, for which its C runtime has nothing", "Link it without")


def _header(path, program):
    if not program.is_64_bit:
        yield Problem(path, "it is not PE32+ (64-bit)", _BUILD)
    if program.machine != X64:
        yield Problem(path, f"it is built for machine {program.machine:#06x}, the package for x64", _BUILD)
    if program.subsystem != WINDOW_SUBSYSTEM or program.subsystem_version < (10, 0):
        version = ".".join(map(str, program.subsystem_version))
        yield Problem(
            path, f"its subsystem is {program.subsystem}, version {version}, instead of a window's, 10.0",
            "Link it with -mwindows and --major-subsystem-version=10",
        )  # fmt: skip


def _sections(path, program):
    both = EXECUTABLE | WRITABLE
    for section in program.sections:
        if section.flags & both == both:
            yield Problem(path, f"its section {section.name} is both writable and executable", "Link it without")
    if program.section_alignment < LEAST_ALIGNMENT:
        yield Problem(path, f"its sections are aligned to {program.section_alignment} bytes", "Align them to 4096")
    imports, _ = program.directory(IMPORTS)
    if imports and program.section_of(imports).flags & EXECUTABLE:
        yield Problem(path, "its import table lies in an executable section", "Link it with lld")


def _imports(path, program):
    for dll, names in program.imports().items():
        allowed = app_functions.of(dll)
        if dll == OLD_RUNTIME:
            yield Problem(path, f"it imports {dll}, the old C runtime", "Link the universal one, with -lucrt")
        elif allowed is None:
            yield Problem(path, f"it imports {dll}, which app containers do not have", "Link it to the API sets")
        else:
            for name in sorted(set(names) - allowed):
                yield Problem(path, f"it imports {name} of {dll}, which apps may not call", "Use another function")


def _resources(path, program, version):
    found = version_resource.file_version(program)
    if found != version:
        yield Problem(
            path, f"its version resource says {found}, the manifest {version}", "Build it again from this manifest"
        )
    manifest = program.resource(MANIFEST_RESOURCE)
    if manifest is None:
        yield Problem(path, "it has no manifest embedded", _BUILD)
        return
    root = xml_text.parse(manifest, f"{path}, embedded manifest")
    systems = [element.get("Id", "").lower() for element in root.iter() if xml_text.plain(element.tag) == "supportedOS"]
    if WINDOWS_10 not in systems:
        yield Problem(path, "its embedded manifest does not name Windows 10 as supported", _BUILD)


def _guarded(path, data, rules, remedy=_BUILD):
    """The problems that the rules find, also if the file is damaged or not a program."""
    try:
        yield from rules(PortableExecutable(data))
    except ValueError as error:
        yield Problem(path, str(error), remedy)
    except PackageError as error:
        yield error.problem


def app_problems(path, data, manifest):
    """The problems of the application's own executable."""

    def rules(program):
        for rule in (loading_rules.problems, loading_rules.relocations, _header, _flags, _sections, _imports):
            yield from rule(path, program)
        yield from _resources(path, program, manifest.version)
        yield from constant_rules.problems(path, program, manifest)

    yield from _guarded(path, data, rules)


def server_problems(path, data, classes):
    """The problems of a file that serves runtime classes: the executable itself, or a library."""

    def rules(program):
        if path.lower().endswith(".dll"):
            yield from loading_rules.problems(path, program, library=True)
        if "DllGetActivationFactory" not in program.exports():
            yield Problem(path, "it does not export DllGetActivationFactory, by which its classes are made", _BUILD)
        for name in classes:
            if not program.has_text(name):
                yield Problem(path, f"it does not know the class {name}, which the manifest says it makes", _BUILD)

    yield from _guarded(path, data, rules)


def desktop_problems(path, data):
    """The problems of the full-trust component. It may be an older program than the app, and of 32 bits."""

    def rules(program):
        yield from loading_rules.problems(path, program)
        if (program.machine, program.is_64_bit) not in ((X64, True), (X86, False)):
            yield Problem(path, f"it is built for machine {program.machine:#06x}", "Give a program for x64 or x86")
        if program.subsystem not in (WINDOW_SUBSYSTEM, CONSOLE_SUBSYSTEM):
            yield Problem(path, f"its subsystem is {program.subsystem}, no window's and no console's", _GIVE)
        if program.characteristics & APP_CONTAINER:
            yield Problem(path, "it has the flag APPCONTAINER, with which it has no full trust", "Link it without")

    yield from _guarded(path, data, rules, _GIVE)
