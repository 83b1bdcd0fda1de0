"""Tries changes one after the other, several at a time, and tells what became of them."""

import threading
import time
from collections import Counter

import processes

COUNTED = ("caught", "survived")


class Session:
    def __init__(self, trials, wanted, deadline, tell):
        self.trials = trials
        self.wanted = wanted
        self.deadline = deadline
        self.tell = tell
        self.outcomes = []  # (change, outcome), in the order they ended
        self.running = 0
        self.lock = threading.Condition()
        self.error = None

    @property
    def counted(self):
        return sum(outcome.kind in COUNTED for _, outcome in self.outcomes)

    def _next(self, waiting):
        """Begins one more only where the sample lacks it: the same changes are tried however long each takes."""
        with self.lock:
            while True:
                open_places = self.wanted - self.counted - self.running
                if not waiting or self.error or processes.stopping() or time.monotonic() > self.deadline or (
                        open_places <= 0 and self.running == 0):
                    return None
                if open_places > 0:
                    self.running += 1
                    return waiting.pop(0)
                self.lock.wait(1)

    def _work(self, trial, waiting):
        while (change := self._next(waiting)) is not None:
            outcome = None
            try:
                outcome = trial.run(change)
            except processes.Stopped:
                pass
            except Exception as error:  # of the tool or the machine: no verdict on the change
                self.error = error
            with self.lock:
                self.running -= 1
                if outcome:
                    self.outcomes.append((change, outcome))
                    self.tell(self, change, outcome)
                self.lock.notify_all()

    def run(self, changes):
        waiting = list(changes)
        workers = [threading.Thread(target=self._work, args=(trial, waiting)) for trial in self.trials]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()
        if self.error:
            raise self.error

    def numbers(self):
        return Counter(outcome.kind for _, outcome in self.outcomes)
