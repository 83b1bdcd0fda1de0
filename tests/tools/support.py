"""What the tests of the scripts share: processes that are started, watched and ended."""

import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
LIMIT = 100  # seconds: what takes longer never comes
TEST_LIMIT = 600  # seconds for a test: far more than one takes on a busy machine, less than ctest grants a script


def wait_until(condition, what):
    """Looks until the condition holds; what it is is said when it never does."""
    deadline = time.monotonic() + LIMIT
    while not condition():
        if time.monotonic() > deadline:
            raise AssertionError(f"after {LIMIT} s still not: {what}")
        time.sleep(0.02)


def _state_and_environment(folder):
    try:
        state = (folder / "stat").read_text().rpartition(")")[2].split()[0]
        return state, (folder / "environ").read_bytes().split(b"\0")
    except OSError:
        return "Z", []  # it has ended meanwhile


def processes_with(variable):
    """The ids of the living processes whose environment holds NAME=VALUE."""
    found = []
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        state, environment = _state_and_environment(folder)
        if state != "Z" and variable.encode() in environment:
            found.append(int(folder.name))
    return found


def servers_of(prefix):
    def is_server(process):
        try:
            return "wineserver" in pathlib.Path(f"/proc/{process}/comm").read_text()
        except OSError:
            return False

    return [process for process in processes_with(f"WINEPREFIX={prefix}") if is_server(process)]


def end_server(prefix):
    """Ends the Wine server of the prefix. A process that is just starting outlives it."""
    subprocess.run(["wineserver", "-k"], env=os.environ | {"WINEPREFIX": str(prefix)}, check=False)


def stop_wine(prefix):
    """Ends all that runs in the prefix."""
    if pathlib.Path(prefix).exists():
        subprocess.run(["bash", "-c", '. "$0"; stop_wine "$1"', ROOT / "tools" / "wine.sh", prefix], check=False)


def copy_part(name, clone):
    """Copies a file or folder of the sources. What Python compiles meanwhile, for another test, comes and goes."""
    source, target = ROOT / name, clone / name
    if source.is_dir():
        shutil.copytree(source, target, ignore=shutil.ignore_patterns("__pycache__"))
    else:
        shutil.copy(source, target)


def _fail_at_limit(*_):
    raise AssertionError(f"not through after {TEST_LIMIT} s")


class ScriptTest(unittest.TestCase):
    """Has a folder of its own, ends what it started, and fails where it waits without end."""

    def setUp(self):
        # A caller in the background, or one that outlives its terminal, ignores them; what is started would, too.
        signal.signal(signal.SIGINT, signal.default_int_handler)
        signal.signal(signal.SIGTERM, signal.SIG_DFL)
        signal.signal(signal.SIGHUP, signal.SIG_DFL)
        signal.signal(signal.SIGALRM, _fail_at_limit)
        signal.alarm(TEST_LIMIT)
        self.addCleanup(signal.alarm, 0)
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)

    def start(self, *command, **options):
        """Starts a command with its output, errors included, as lines to be read."""
        process = subprocess.Popen(
            [str(word) for word in command],
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            stdin=subprocess.DEVNULL,
            text=True,
            errors="replace",
            **options,
        )
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)
        return process

    def read_until(self, process, text):
        """Reads lines up to one that holds the text; returns them."""
        lines = []
        for line in process.stdout:
            lines.append(line)
            if text in line:
                return "".join(lines)
        raise AssertionError(f"never said {text!r}, but:\n{''.join(lines)}")
