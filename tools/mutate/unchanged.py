"""The objects as they are compiled without a change: a change that gives the same bytes changes nothing."""

import threading

from builds import fingerprint


class Unchanged:
    def __init__(self, root, kept):
        self.root = root
        self.kept = kept
        self.lock = threading.Lock()
        kept.mkdir(parents=True, exist_ok=True)

    def object(self, build, made, path, text, trial):
        name = f"{build.folder.name}-{made.path.replace('/', '-')}"
        print_file, kept = self.kept / f"{name}.txt", self.kept / name
        of_now = fingerprint(made, self.root)
        with self.lock:
            if not kept.exists() or not print_file.exists() or print_file.read_text() != of_now:
                if trial.compile(build, made, path, text, kept) is None:
                    raise OSError(f"{made.source} does not compile without a change")
                print_file.write_text(of_now)
            return kept.read_bytes()
