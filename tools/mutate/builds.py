"""A build folder of ninja: how its objects are compiled, what they read, how its programs are linked."""

import functools
import hashlib
import json
import pathlib
import shlex
import subprocess
from dataclasses import dataclass, field

LEFT_OUT = ("-W", "-g")  # options of warnings and of debug information


@dataclass
class Object:
    path: str  # below the build folder
    source: str
    words: list
    read: set = field(default_factory=set)  # all sources and headers, absolute

    @property
    def library(self):
        """The name of the target, as its archive has it."""
        return next(part[: -len(".dir")] for part in self.path.split("/") if part.endswith(".dir"))


def without_launcher(words):
    """A compiler's cache keeps nothing that is compiled once."""
    return words[1:] if pathlib.Path(words[0]).name == "ccache" else words


def plain(words):
    """Without warnings, which are no verdict, but for those that end a compilation as well, and without debug information,
    which differs where the program does not."""
    return [word for word in words if not word.startswith(LEFT_OUT) or word.startswith("-Wl,")] + [
        "-Wno-everything", "-Werror=return-type", "-Werror=c++11-narrowing"]


def without_output(words):
    found = list(words)
    place = found.index("-o")
    del found[place : place + 2]
    return found


@functools.cache
def hash_of(path, _changed):
    return hashlib.sha256(pathlib.Path(path).read_bytes()).digest()


def fingerprint(made, root):
    """Differs when the object is compiled from something else."""
    found = hashlib.sha256(" ".join(made.words).encode())
    for each in sorted(made.read):
        if each.startswith(f"{root}/"):
            found.update(each.encode() + hash_of(each, pathlib.Path(each).stat().st_mtime_ns))
    return found.hexdigest()


class Build:
    def __init__(self, root, folder):
        self.root = root
        self.folder = folder
        self.objects = {}
        for entry in json.loads((self.folder / "compile_commands.json").read_text()):
            words = without_launcher(shlex.split(entry["command"]))
            if "-c" in words and "-o" in words:
                path = words[words.index("-o") + 1]
                self.objects[path] = Object(path, entry["file"], words)
        self._read_dependencies()
        self._links = {}

    def _ninja(self, *arguments):
        words = ["ninja", "-C", self.folder, *arguments]
        return subprocess.run(words, capture_output=True, text=True, check=True).stdout

    def _read_dependencies(self):
        current = None
        for line in self._ninja("-t", "deps").splitlines():
            if line.startswith("    ") and current:
                current.read.add(str((self.folder / line.strip()).resolve()))
            elif ": #deps" in line:
                current = self.objects.get(line.split(":")[0])

    def is_of(self, made, folders):
        """Whether a source of these folders is compiled there, by itself or in a larger unit."""
        own = tuple(f"{self.root}/{folder}/" for folder in folders)
        return any(each.startswith(own) and each.endswith(".cpp") for each in made.read)

    def compiled_from(self, path):
        return [each for each in self.objects.values() if str(path) in each.read]

    def compile(self, made, output, overlay):
        """The command that compiles an object with what an overlay of the file system shows."""
        return [*plain(without_output(made.words)), "-ivfsoverlay", str(overlay), "-o", str(output)]

    def link(self, program, output, objects, options=()):
        """The command that links a program with other objects: they come first, so that theirs is taken of each function
        that several have."""
        words = self._link_words(program)
        place = words.index("-o")
        others = [word for word in words[1:place] + words[place + 2 :]
                  if word not in objects and not word.startswith(("-Wl,--out-implib", "-Wl,--pdb"))]
        return [words[0], *map(str, objects.values()), *others, *options, "-o", str(output)]

    def _link_words(self, program):
        if program not in self._links:
            last = self._ninja("-t", "commands", "-s", program).splitlines()[-1]
            words = shlex.split(last)
            begin = words.index("&&") + 1 if words[0] == ":" else 0
            end = words.index("&&", begin) if "&&" in words[begin:] else len(words)
            self._links[program] = words[begin:end]
        return self._links[program]

    def links_object(self, program, made):
        return made.path in self._link_words(program)

    def links_archive(self, program, made):
        return any(pathlib.PurePath(word).name == f"lib{made.library}.a" for word in self._link_words(program))
