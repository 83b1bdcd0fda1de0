#!/usr/bin/env python3
"""assemble.py SOURCE NOTICE LIBRARY LICENCE: writes the page as C++ source, with its style, its script and the library
that draws; and the notice that goes with a program that holds it.

All that the page needs is in it. Its policy names the scripts and the style by their hashes, so that a browser runs
nothing else, whatever a log holds.
"""

import base64
import hashlib
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
LIBRARY = "D3 5.16.0"
PACKAGE = "node-d3 5.16.0-10"  # of Debian 12
LIBRARY_HASH = "63cdc8691107d063922c58ece1b9b4eeb9fef305429a55d3d962eea0812f1e03"  # SHA-256
DATA = "{{data}}"  # what the program replaces
PIECE = 16000  # characters: compilers need not take longer strings than 65,536 bytes

SOURCE = """// Made by assemble.py.
#include "doctor/timeline/PageTemplate.h"

namespace doctor
{{

namespace
{{

constexpr std::string_view head[] = {{
{head}
}};

constexpr std::string_view tail[] = {{
{tail}
}};

}} // namespace

std::span<std::string_view const> PageHead()
{{
    return head;
}}

std::span<std::string_view const> PageTail()
{{
    return tail;
}}

}} // namespace doctor
"""


def read(path):
    try:
        return pathlib.Path(path).read_bytes()
    except FileNotFoundError:
        sys.exit(f"assemble.py: {path} is missing: it is of Debian's package {PACKAGE}, which ./dev build installs")


def library(path):
    content = read(path)
    found = hashlib.sha256(content).hexdigest()
    if found != LIBRARY_HASH:
        sys.exit(f"assemble.py: {path} is not {LIBRARY} of {PACKAGE}: its SHA-256 is {found}, not {LIBRARY_HASH}")
    return content.decode()


def policy(style, *scripts):
    def source(text):
        return f"'sha256-{base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()}'"

    return (f"default-src 'none'; script-src {' '.join(map(source, scripts))}; style-src {source(style)}; "
            "base-uri 'none'; form-action 'none'")


def assembled(library_text, notice):
    page, style, script = ((HERE / f"timeline.{kind}").read_text(encoding="utf-8") for kind in ("html", "css", "js"))
    for text in (library_text, script):
        if re.search("</script|<!--", text, re.IGNORECASE):
            sys.exit("assemble.py: a script that holds '</script' or '<!--' cannot stand in a page")
    parts = {
        "policy": policy(style, library_text, script),
        "style": style,
        "licence": notice.replace("--", "- -"),
        "library": library_text,
        "script": script,
    }
    return re.sub(r"\{\{(policy|style|licence|library|script)\}\}", lambda match: parts[match[1]], page)


def literals(text):
    """C++ string literals, whose line ends and quotes are escaped; none ends within a character."""
    def literal(piece):
        escaped = piece.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n").replace("\r", "\\r")
        return f'"{escaped.replace("?", chr(92) + "?")}"'

    return ",\n".join(literal(text[at : at + PIECE]) for at in range(0, len(text), PIECE))


def main(source, notice_path, library_path, licence_path):
    notice = f"Timelines are drawn by {LIBRARY}, as Debian distributes it:\n\n{read(licence_path).decode()}"
    head, data, tail = assembled(library(library_path), notice).partition(DATA)
    if not data or DATA in tail:
        sys.exit(f"assemble.py: the page has {DATA} not exactly once")
    pathlib.Path(notice_path).write_text(notice, encoding="utf-8")
    pathlib.Path(source).write_text(SOURCE.format(head=literals(head), tail=literals(tail)), encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
