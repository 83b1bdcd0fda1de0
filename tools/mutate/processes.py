"""Runs commands that may hang, and ends all of them when the tool is to stop."""

import os
import signal
import subprocess
import threading

_running = set()
_lock = threading.Lock()
_stopping = threading.Event()


class Stopped(Exception):
    pass


def _end(process):
    try:
        os.killpg(process.pid, signal.SIGTERM)
        process.wait(5)
    except (ProcessLookupError, subprocess.TimeoutExpired):
        pass
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass


def stop():
    _stopping.set()
    with _lock:
        for process in _running:
            try:
                os.killpg(process.pid, signal.SIGTERM)
            except ProcessLookupError:
                pass


def stopping():
    return _stopping.is_set()


def run(words, seconds, **options):
    """(exit code, output); the code is None for one that has to be ended after so long."""
    with _lock:
        if stopping():
            raise Stopped
        process = subprocess.Popen([str(word) for word in words], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.STDOUT, text=True, errors="replace", start_new_session=True, **options)
        _running.add(process)
    try:
        output, _ = process.communicate(timeout=seconds)
        code = process.returncode
    except subprocess.TimeoutExpired:
        _end(process)
        code, output = None, ""
        process.stdout.close()
        process.wait()
    finally:
        with _lock:
            _running.discard(process)
    if stopping():
        raise Stopped
    return code, output
