#!/usr/bin/env python3
"""./dev package: makes the package and what belongs to it in dist/, and checks packages."""

import argparse
import enum
import pathlib
import sys

import contents
from msix import manifest_rules, part_names, signing, verifier, writer, zip_reader
from msix.manifest import Manifest
from msix.part_names import MANIFEST, SIGNATURE
from msix.problem import PackageError

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "product"
PROGRAMS = [BUILD / name / f"{name}.exe" for name in ("helper", "doctor")]
# The licences of the libraries in these.
_COPYRIGHTS = [pathlib.Path("/usr/share/doc") / name / "copyright" for name in ("libcli11-dev", "nlohmann-json3-dev")]
NOTICES = [BUILD / "doctor" / "NOTICE.txt", *_COPYRIGHTS]

_TOP = """./dev package [--desktop PATH] [--sign CERT KEY]
       ./dev package --verify FILE [--cert CERT]"""

_CODES = """exit codes: 0 done, or the package is in order; 1 it has problems, or could not be made; 2 wrong arguments;
3 the package is in order but for its signature, which nobody checked: that takes --cert and osslsigncode 2.9"""


class Outcome(enum.IntEnum):
    """The meaning of the exit code; the help lists it, too."""

    DONE = 0
    REFUSED = 1
    SIGNATURE_UNCHECKED = 3  # 2 is the argument parser's


def parse_arguments(arguments):
    parser = argparse.ArgumentParser(prog="./dev package", allow_abbrev=False, usage=_TOP, description=__doc__, epilog=_CODES)
    parser.add_argument("--desktop", metavar="PATH", help="the suite's desktop component: its program or folder")
    parser.add_argument("--sign", nargs=2, type=pathlib.Path, metavar=("CERT", "KEY"), help="PEM files to sign with")
    parser.add_argument("--verify", metavar="FILE", type=pathlib.Path, help="checks a package and makes nothing")
    parser.add_argument("--cert", metavar="CERT", type=pathlib.Path, help="with --verify: whom the package is of")
    parser.add_argument("--layout", default=BUILD / "package" / "layout", help="the package as a folder")
    parser.add_argument("--pdb-folder", default=BUILD / "app", type=pathlib.Path, help="where the .pdb lies")
    parser.add_argument("--programs", nargs="*", default=PROGRAMS, type=pathlib.Path, metavar="PROGRAM",
                        help="those that go beside the package, each with its .pdb")  # fmt: skip
    parser.add_argument("--notices", nargs="*", default=NOTICES, type=pathlib.Path, metavar="FILE",
                        help="the licences of libraries in those; together they are NOTICE.txt")  # fmt: skip
    parser.add_argument("--dist", default=ROOT / "dist", type=pathlib.Path, help="where the results go")
    options = parser.parse_args(arguments)
    if options.cert is not None and not options.verify:
        parser.error("--cert belongs to --verify")
    if options.verify and (options.desktop is not None or options.sign):
        parser.error("--verify makes nothing: give it alone or with --cert")
    return options


def _tell(text):
    print(f"    {text}")


def _warn(text):
    print(f"\n./dev: {text}", file=sys.stderr)


def _verify(package, certificate_file):
    """Checks a package file and prints each problem on a line; returns their number."""
    data = contents.read(package)
    given = contents.read(certificate_file) if certificate_file else None
    problems = verifier.verify(data, package.name, given)
    for problem in problems:
        print(problem, file=sys.stderr)
    return len(problems)


def _verify_signature(package, certificate_file):
    names = (entry.name for entry in zip_reader.read(contents.read(package), package.name))
    if SIGNATURE not in map(part_names.canonical, names):
        _tell("it is not signed: Windows installs it only after ./dev package --sign CERT KEY")
        return Outcome.DONE
    obstacle = signing.obstacle() if certificate_file else "give --cert CERT"
    if obstacle:
        _warn(f"{package} carries a signature that was NOT checked: {obstacle}")
        return Outcome.SIGNATURE_UNCHECKED
    signing.check(package, certificate_file)
    _tell("its signature holds")
    return Outcome.DONE


def verify(options):
    count = _verify(options.verify, options.cert)
    if count:
        _warn(f"{options.verify} has {count} problem{'s' if count > 1 else ''}, see above")
        return Outcome.REFUSED
    outcome = _verify_signature(options.verify, options.cert)
    but = ", but for its signature, which nobody checked" if outcome == Outcome.SIGNATURE_UNCHECKED else ""
    _tell(f"{options.verify} is in order{but}")
    return outcome


def _sign(package, publisher, certificate_file, key_file):
    obstacle = signing.obstacle()
    if obstacle:
        _warn(f"the package stays unsigned: {obstacle}")
        return
    signing.sign(package, publisher, certificate_file, key_file)
    signing.check(package, certificate_file)
    _tell("signed")


def _files(options):
    files = contents.from_folder(options.layout)
    if options.desktop is not None:
        return contents.with_desktop_component(files, options.desktop)
    _tell("the desktop component is the stand-in: ./dev package --desktop PATH takes the suite's")
    return contents.with_stand_in_told(files)


def make(options):
    files = _files(options)
    manifest = Manifest(files[MANIFEST])
    problems = list(manifest_rules.problems(manifest))
    if problems:
        print(*problems, sep="\n", file=sys.stderr)
        _warn("nothing was made: Windows would refuse the manifest, see above")
        return Outcome.REFUSED
    if manifest.executable not in files:
        what = f"{MANIFEST} names it, but it is not there"
        raise PackageError(manifest.executable, what, "Build the package's folder with ./dev build")
    executable = options.dist / manifest.executable
    pdb = executable.with_suffix(".pdb")
    package = options.dist / f"{executable.stem}_{manifest.version}_{manifest.architecture}.msix"
    contents.write(executable, files[manifest.executable])
    contents.write(pdb, contents.read(options.pdb_folder / pdb.name))
    contents.write(package, writer.write(files))
    if _verify(package, None):
        _warn(f"{package} was made, but Windows would refuse it: see above")
        return Outcome.REFUSED
    if options.sign:
        _sign(package, manifest.publisher, *options.sign)
        if _verify(package, None):
            _warn(f"{package} was in order before it was signed, and is not now: see above")
            return Outcome.REFUSED
    beside = [file for program in options.programs for file in (program, program.with_suffix(".pdb"))]
    for file in beside:
        contents.write(options.dist / file.name, contents.read(file))
    notice = options.dist / "NOTICE.txt"
    contents.write(notice, b"\n\n".join(contents.read(file) for file in options.notices))
    for made in (executable, pdb, package, *(options.dist / file.name for file in beside), notice):
        _tell(f"{made}  {made.stat().st_size:,} bytes")
    return Outcome.DONE


def main(arguments):
    # The name of a file need not be text, and there may be no output at all.
    if sys.stdout:
        sys.stdout.reconfigure(errors="backslashreplace")
    options = parse_arguments(arguments)
    try:
        return verify(options) if options.verify else make(options)
    except PackageError as error:
        _warn(error)
    except OSError as error:
        _warn(f"{error.filename}: {error.strerror}")
    return Outcome.REFUSED


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
