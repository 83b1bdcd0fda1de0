"""Damaged packages, each of which is answered with problems, soon, and never with an exception. One without a problem has
the contents that its block map tells, as another reader sees both.

Usage: package_fuzz.py SECONDS PREFIX [SEED]     what fails is kept in a file that begins with PREFIX
       package_fuzz.py FILE [FILE...]            plays these again"""

import base64
import hashlib
import io
import itertools
import pathlib
import secrets
import sys
import time
import urllib.parse
import xml.etree.ElementTree
import zipfile

FUZZ = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(FUZZ.parent / "tests" / "package"))

from mutation_test import VELMO, DamagedPackages, problems  # noqa: E402

CORPUS = FUZZ / "corpus" / "package"
NAMESPACE = "{http://schemas.microsoft.com/appx/2010/blockmap}"
UNTOLD = {"AppxBlockMap.xml", "[Content_Types].xml", "AppxSignature.p7x"}
BLOCK = 65536


def told_contents(block_map):
    """Name -> (size, the hashes of its blocks), as the block map tells them."""
    files = xml.etree.ElementTree.fromstring(block_map).findall(f"{NAMESPACE}File")
    return {file.get("Name").replace("\\", "/"): (int(file.get("Size")), [block.get("Hash") for block in file.findall(f"{NAMESPACE}Block")]) for file in files}


def block_hashes(content):
    return [base64.b64encode(hashlib.sha256(content[at : at + BLOCK]).digest()).decode()
            for at in range(0, len(content), BLOCK)]


def check(data, certificate):
    """The problems; fails where there is none and the package is not in order."""
    found = problems(data, certificate)
    if not found:
        with zipfile.ZipFile(io.BytesIO(data)) as archive:
            contents = {name: archive.read(name) for name in archive.namelist()}
        there = {urllib.parse.unquote(name): (len(content), block_hashes(content))
                 for name, content in contents.items() if name not in UNTOLD}
        assert there == told_contents(contents["AppxBlockMap.xml"]), "the contents differ from the block map"
    return found


def check_seeds(seeds):
    """Those whose name says so are in order, all others are not."""
    for path, data in seeds.items():
        assert bool(check(data, VELMO)) != path.name.startswith("whole"), path.name


def certificate_file(kept):
    return kept.with_suffix(".certificate")


def keep(kept, data, certificate):
    kept.write_bytes(data)
    if certificate is not None:
        certificate_file(kept).write_bytes(certificate)


def fuzz(seconds, prefix, seed):
    seeds = {path: path.read_bytes() for path in sorted(CORPUS.iterdir())}
    check_seeds(seeds)
    packages, end = DamagedPackages(list(seeds.values())), time.monotonic() + seconds
    print(f"seed {seed}", flush=True)
    for case in itertools.count():
        if time.monotonic() >= end:
            print(f"stat::number_of_executed_units: {case}")
            return
        data, certificate = packages.case(seed, case)
        try:
            check(data, certificate)
        except BaseException:
            kept = pathlib.Path(f"{prefix}crash-{seed}-{case}.msix")
            keep(kept, data, certificate)
            print(f"crash: the input is {kept}", flush=True)
            raise


def play(kept):
    certificate = certificate_file(kept)
    for problem in check(kept.read_bytes(), certificate.read_bytes() if certificate.exists() else None):
        print(problem)
    print("nothing differs")


if __name__ == "__main__":
    if sys.argv[1].isdecimal():
        fuzz(int(sys.argv[1]), sys.argv[2], int(sys.argv[3]) if len(sys.argv) > 3 else secrets.randbelow(10**6))
    else:
        for name in sys.argv[1:]:
            play(pathlib.Path(name))
