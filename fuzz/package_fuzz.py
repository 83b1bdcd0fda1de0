"""Damaged packages, each of which is answered with problems, soon, and never with an exception.

Usage: package_fuzz.py SECONDS PREFIX [SEED]     what fails is kept in a file that begins with PREFIX
       package_fuzz.py FILE [FILE...]            plays these again"""

import itertools
import pathlib
import secrets
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests" / "package"))

from mutation_test import DamagedPackages, problems  # noqa: E402


def certificate_file(kept):
    return kept.with_suffix(".certificate")


def keep(kept, data, certificate):
    kept.write_bytes(data)
    if certificate is not None:
        certificate_file(kept).write_bytes(certificate)


def fuzz(seconds, prefix, seed):
    packages, end = DamagedPackages(), time.monotonic() + seconds
    print(f"seed {seed}", flush=True)
    for case in itertools.count():
        if time.monotonic() >= end:
            print(f"stat::number_of_executed_units: {case}")
            return
        data, certificate = packages.case(seed, case)
        try:
            problems(data, certificate)
        except BaseException:
            kept = pathlib.Path(f"{prefix}crash-{seed}-{case}.msix")
            keep(kept, data, certificate)
            print(f"crash: the input is {kept}", flush=True)
            raise


def play(kept):
    certificate = certificate_file(kept)
    for problem in problems(kept.read_bytes(), certificate.read_bytes() if certificate.exists() else None):
        print(problem)
    print("nothing differs")


if __name__ == "__main__":
    if sys.argv[1].isdecimal():
        fuzz(int(sys.argv[1]), sys.argv[2], int(sys.argv[3]) if len(sys.argv) > 3 else secrets.randbelow(10**6))
    else:
        for name in sys.argv[1:]:
            play(pathlib.Path(name))
