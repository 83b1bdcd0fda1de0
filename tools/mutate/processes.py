"""Runs commands that may hang, and ends all of them when the tool is to stop."""

import os
import signal
import subprocess
import threading

SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)

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


def end_by_signals():
    """While nothing runs that would have to be ended: a library that is called would keep a handler waiting."""
    for number in SIGNALS:
        signal.signal(number, signal.SIG_DFL)


def stop_by_signals():
    for number in SIGNALS:
        signal.signal(number, lambda *_: stop())


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
