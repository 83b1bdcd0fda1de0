#!/usr/bin/env python3
"""Groups sources into larger compilation units: those whose names do not meet.

Usage: unity.py MOST_BYTES <SOURCES   (lines: directory TAB target TAB source; prints CMake commands)

What a source keeps to itself (an unnamed namespace, constants, aliases, macros) would be seen by those after it in the
same unit. So a source shares one only with sources in which none of these names appears.
"""

import pathlib
import re
import sys
from dataclasses import dataclass

IGNORED = re.compile(
    r'R"(?P<mark>[^()\s]*)\(.*?\)(?P=mark)"' r"|//[^\n]*|/\*.*?\*/" r'|"(?:\\.|[^"\\\n])*"' r"|(?<!\w)'(?:\\.|[^'\\\n])+'",
    re.DOTALL)
NAME = r"[A-Za-z_]\w*"
BRACKET = re.compile(r"(?P<space>\bnamespace(?P<name>\s+[\w:]+)?\s*\{)|[{}()]")
TYPE = re.compile(rf"\b(?:class|struct|union|enum(?:\s+class)?)\s+(?P<name>{NAME})")
DECLARED = re.compile(rf"(?<!::)\b(?P<name>{NAME})\s*(?:\[[^\]]*\]\s*)*(?:[({{=]|$)")
WORD = re.compile(rf"(?<![\w.])(?<!->)(?<!::){NAME}")
KEPT_CONSTANT = re.compile(rf"\b(?:static|const|constexpr)\b[^;{{}}()]*?\b(?P<name>{NAME})\s*(?:\[[^\]]*\]\s*)*[={{(;]")
USING = re.compile(rf"\busing\s+(?:[\w:]*::)?(?P<name>{NAME})\s*(?:;|=[^;]*;)")
DIRECTIVE = re.compile(r"\busing\s+namespace\s+[\w:]+\s*;")
MACRO = re.compile(rf"^\s*#\s*(?:define|undef)\s+(?P<name>{NAME})", re.MULTILINE)
WRAP = re.compile(rf"^WRAP\(\w+, (?P<name>{NAME})\)", re.MULTILINE)  # of tests/support: defines a function's wrapper
ENTRY = re.compile(r"\bint\s+(?P<name>w?main)\s*\(")
SHARED = {"PrintTo", "catch", "noexcept", "static_assert", "try"}  # overloads, and what only looks like a name


@dataclass
class Source:
    path: str
    size: int
    words: set  # all names that appear
    own: set  # names that only this source may see
    aliases: dict  # name -> its declaration
    directives: frozenset  # the namespaces used by all that follows

    def meets(self, other):
        if self.own & other.words or other.own & self.words:
            return True
        return any(other.aliases[name] != self.aliases[name] for name in self.aliases.keys() & other.aliases.keys())


def namespace_scope(text):
    """(What stands in unnamed namespaces, what stands in others), without what is in parentheses and other braces."""
    parts = {True: [], False: []}
    open_braces = []  # for each: whether a namespace, and unnamed, or within an unnamed one; None for other brackets
    end = 0
    for found in BRACKET.finditer(text):
        if None not in open_braces:
            parts[True in open_braces].append(text[end:found.start()])
        end = found.end()
        if found["space"]:
            open_braces.append(not found["name"])
        elif found[0] in "{(":
            if None not in open_braces:
                parts[True in open_braces].append(found[0])
            open_braces.append(None)
        elif open_braces:
            open_braces.pop()
            if found[0] == "}" and None not in open_braces:
                parts[True in open_braces].append(";")
    parts[True in open_braces].append(text[end:])
    return "".join(parts[True]), "".join(parts[False])


def declared(statement):
    """The name that a statement at namespace scope declares, if any; what macros of tests declare is their own."""
    found = TYPE.search(statement) or DECLARED.search(statement)
    return [found["name"]] if found and found["name"] not in SHARED and not found["name"].isupper() else []


def read(path):
    text = IGNORED.sub(" ", pathlib.Path(path).read_text(encoding="utf-8"))
    unnamed, named = namespace_scope(re.sub(r"^\s*#.*$", "", text, flags=re.MULTILINE))
    own = {name for statement in USING.sub(" ", unnamed).split(";") for name in declared(statement.strip())}
    own |= {found["name"] for found in KEPT_CONSTANT.finditer(named)} - SHARED
    own |= {found["name"] for found in MACRO.finditer(text)}
    own |= {found["name"] for found in ENTRY.finditer(text)}  # there is one in a program
    wrappers = {f"__wrap_{found['name']}" for found in WRAP.finditer(text)}
    return Source(path, len(text), set(WORD.findall(text)) | wrappers, own | wrappers,
                  {found["name"]: " ".join(found[0].split()) for found in USING.finditer(unnamed + named)},
                  frozenset(DIRECTIVE.findall(unnamed + named)))


def grouped(sources, most_bytes):
    """Each source goes into the first group that has room, does not meet it, and uses no namespace that it does not."""
    groups = []
    for source in sorted(sources, key=lambda each: len(each.directives)):
        for group in groups:
            room = sum(each.size for each in group) + source.size <= most_bytes
            if room and group[-1].directives <= source.directives and not any(map(source.meets, group)):
                group.append(source)
                break
        else:
            groups.append([source])
    return groups


def main(most_bytes, lines):
    targets = {}  # of each source in each directory
    for line in lines:
        directory, target, source = line.rstrip("\n").split("\t")
        targets.setdefault((directory, source), []).append(target)
    together = {}  # what goes into the same programs
    for (directory, source), users in targets.items():
        together.setdefault((directory, tuple(users)), []).append(source)
    for number, ((directory, _), sources) in enumerate(together.items()):
        for part, group in enumerate(grouped(map(read, sources), most_bytes)):
            for source in group:
                print(f'set_source_files_properties("{source.path}" DIRECTORY "{directory}" PROPERTIES '
                      f'UNITY_GROUP {number}_{part})')


if __name__ == "__main__":
    main(int(sys.argv[1]), sys.stdin)
