"""Signs packages and checks their signatures with osslsigncode, where one is installed that can."""

import re
import shutil
import subprocess
import tempfile

from . import certificate, files
from .problem import PackageError

TOOL = "osslsigncode"
# Earlier ones do not write this format well.
LEAST = (2, 9)
# A signature takes a second; with a time stamp the server's answer comes on top.
_LONGEST_SECONDS = 120


def _call(arguments):
    """Runs the tool. Raises OSError or SubprocessError when it does not run to its end."""
    return subprocess.run(
        [TOOL, *map(str, arguments)], stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace",
        check=False, timeout=_LONGEST_SECONDS,
    )  # fmt: skip


def obstacle():
    """Why this machine can neither sign nor check, as a sentence without its full stop; None when it can."""
    wanted = ".".join(map(str, LEAST))
    if shutil.which(TOOL) is None:
        return f"{TOOL} is not installed; {wanted} or later signs packages and checks signatures"
    try:
        told = _call(["--version"]).stdout
    except (OSError, subprocess.SubprocessError):
        told = ""
    found = re.search(r"osslsigncode ([0-9]{1,4})\.([0-9]{1,4})", told)
    if not found or tuple(map(int, found.groups())) < LEAST:
        version = ".".join(found.groups()) if found else "of an unknown version"
        return f"{TOOL} here is {version}; {wanted} or later signs packages and checks signatures"
    return None


def _run(what, where, arguments):
    try:
        done = _call(arguments)
    except (OSError, subprocess.SubprocessError) as error:
        raise PackageError(where, f"{what}: {error}", f"See why {TOOL} does not run") from error
    if done.returncode:
        told = " ".join((done.stderr or done.stdout).split())
        raise PackageError(where, f"{what}: {told}", "See what the tool says of it")


def sign(package, publisher, certificate_file, key_file):
    """Signs a package file in its place. Raises PackageError; the file is then as it was."""
    subject = certificate.subject(files.read(certificate_file), certificate_file)
    if subject != publisher:
        # The tool would sign all the same, and Windows refuse the package.
        raise PackageError(
            certificate_file, f"its subject is {subject}, the manifest's Publisher is {publisher}",
            "Sign with a certificate whose subject is the Publisher",
        )  # fmt: skip
    files.read(key_file)
    signed = package.with_suffix(".signed")
    signed.unlink(missing_ok=True)
    try:
        _run(
            "it could not be signed", package,
            ["sign", "-certs", certificate_file, "-key", key_file, "-in", package, "-out", signed],
        )  # fmt: skip
        signed.replace(package)
    finally:
        signed.unlink(missing_ok=True)


def check(package, certificate_file):
    """Verifies the signature of a package file against a certificate. Raises PackageError."""
    trusted_text = certificate.armour(files.read(certificate_file), certificate_file)
    # The tool reads PEM only, and the certificate may have come as DER.
    with tempfile.NamedTemporaryFile(suffix=".pem") as trusted:
        trusted.write(trusted_text)
        trusted.flush()
        _run("its signature does not hold", package, ["verify", "-CAfile", trusted.name, "-in", package])
