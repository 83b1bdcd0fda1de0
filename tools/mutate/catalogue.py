"""All changes of the product's sources. What was found in a file is kept until it, or what it includes, differs."""

import hashlib
import json
import pathlib

import syntax
from builds import fingerprint, plain, without_output
from change import Change, numbered

FOLDERS = ("app", "service", "logging", "utils")


def product_sources(root):
    return [path for folder in FOLDERS for path in sorted((root / folder).glob("*")) if path.suffix in (".cpp", ".h")]


def is_product(build, made):
    return build.is_of(made, FOLDERS)


def command_of(made):
    return [word for word in plain(without_output(made.words)) if word not in ("-c", made.source)]


class Catalogue:
    def __init__(self, root, build, kept):
        self.root = root
        self.build = build
        self.kept = kept
        kept.mkdir(parents=True, exist_ok=True)
        tool = pathlib.Path(__file__).parent
        self.version = b"".join(path.read_bytes() for path in (tool / "syntax.py", tool / "change.py"))

    def changes(self, path):
        name = str(path.relative_to(self.root))
        users = self.build.compiled_from(path)
        made = next((each for each in users if is_product(self.build, each)), users[0] if users else None)
        if made is None:
            return []  # nothing is compiled from it
        content = hashlib.sha256(self.version + fingerprint(made, self.root).encode()).hexdigest()
        kept = self.kept / (name.replace("/", "-") + ".json")
        known = json.loads(kept.read_text()) if kept.exists() else {}
        if known.get("content") != content:
            found = numbered(syntax.changes_in(path, name, made.source, command_of(made)))
            known = {"content": content, "changes": [each.__dict__ for each in found]}
            whole = kept.with_suffix(".new")  # one that is interrupted leaves no part
            whole.write_text(json.dumps(known))
            whole.replace(kept)
        return [Change(**each) for each in known["changes"]]
