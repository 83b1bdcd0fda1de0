"""The changes that are known to make no difference, each with its reason. They are found again by what stands there."""

import tomllib
from dataclasses import dataclass


@dataclass
class Equivalent:
    file: str
    function: str
    line: str
    change: str
    reason: str
    nth: int = 1

    @property
    def key(self):
        return self.file, self.function, self.line, self.change, self.nth


def read(path):
    entries = tomllib.loads(path.read_text(encoding="utf-8")).get("equivalent", [])
    found = [Equivalent(**each) for each in entries]
    for each in found:
        if not each.reason.strip():
            raise ValueError(f"{path}: no reason is given for the change of {each.line!r}")
    return found


def sort_out(changes, equivalents):
    """(the changes that are not named, those that are, the entries that name none)"""
    named = {each.key for each in equivalents}
    keys = {each.key for each in changes}
    return ([each for each in changes if each.key not in named], [each for each in changes if each.key in named],
            [each for each in equivalents if each.key not in keys])


def quoted(text):
    return f"'{text}'" if "'" not in text else '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def entry(change):
    """What names it in the file, but for the reason."""
    lines = ["[[equivalent]]", f"file = {quoted(change.file)}", f"function = {quoted(change.function)}",
             f"line = {quoted(change.line_text)}", f"change = {quoted(change.words)}"]
    if change.nth > 1:
        lines.append(f"nth = {change.nth}")
    return "\n".join([*lines, 'reason = ""'])
