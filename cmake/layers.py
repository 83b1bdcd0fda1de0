#!/usr/bin/env python3
"""Includes and imports run downward only, as the table below says, and never in a circle.

A folder without a row of its own belongs to the row of the nearest folder above it. A row lists what its files may
include besides their own row: other rows, or single headers.
"""

import ast
import graphlib
import os
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

TABLE = {
    # The product.
    "utils": [],
    "logging": ["utils"],
    "projection/generator": [],
    "projection": ["projection/generator"],
    "service": ["logging", "utils", "projection"],
    "app": ["service", "logging", "utils", "projection"],
    # What stands beside it.
    "console": ["utils"],
    "helper": ["console", "service/Messages.h", "utils/Utf8.h", "projection"],
    "doctor/base": ["console", "utils"],
    "doctor/log": ["doctor/base", "utils"],
    "doctor/show": ["doctor/base", "doctor/log", "utils"],
    "doctor/stories": ["doctor/log"],
    "doctor/watches": ["doctor/log", "doctor/stories"],
    "doctor/verdict": ["doctor/base", "doctor/log", "doctor/stories", "doctor/watches"],
    "doctor/timeline": ["doctor/base", "doctor/log", "doctor/stories", "doctor/verdict", "utils"],
    "doctor/live": [
        "doctor/base", "doctor/log", "doctor/verdict", "helper", "service/Messages.h", "utils", "projection",
    ],
    "doctor/cli": [
        "doctor/base", "doctor/live/LiveOptions.h", "doctor/log", "doctor/show",
        "doctor/timeline", "doctor/verdict", "utils",
    ],
    "doctor": ["console/Colours.h", "doctor/base", "doctor/cli", "doctor/live", "helper", "utils"],
    "simulator/base": ["projection"],
    "simulator/protocol": ["simulator/base"],
    "simulator/package": ["simulator/base", "simulator/protocol"],
    "simulator/platform": ["simulator/base", "simulator/package", "simulator/protocol"],
    "simulator/broker": ["simulator/base", "simulator/platform", "simulator/protocol"],
    "simulator/runtime": ["simulator/base", "simulator/package", "simulator/protocol", "projection"],
    "simulator/testing": [
        "simulator/base", "simulator/platform", "simulator/protocol", "simulator/runtime", "projection",
    ],
    "simulator/desktop": ["simulator/base", "simulator/protocol"],
    "simulator/log": [
        "doctor/base", "doctor/log", "doctor/show/Follow.h", "doctor/verdict", "simulator/base", "simulator/package",
        "simulator/protocol",
    ],
    "simulator/client": ["simulator/base", "simulator/package", "simulator/protocol"],
    "simulator/doctor": [
        "console", "doctor/base", "doctor/cli/ExitCode.h", "doctor/cli/LocalNow.h", "doctor/live/ComponentFile.h",
        "doctor/live/LogCheck.h", "doctor/live/MakeFinding.h", "doctor/live/MutexCheck.h", "doctor/verdict",
        "simulator/base", "simulator/client", "simulator/log", "simulator/package", "simulator/platform/Journal.h",
        "simulator/protocol",
    ],
    "simulator/scenario": [
        "console", "doctor/base", "doctor/log", "doctor/show/Follow.h", "doctor/timeline", "doctor/verdict",
        "simulator/base", "simulator/client", "simulator/log", "simulator/package", "simulator/protocol",
    ],
    "simulator/cli": [
        "console", "doctor", "doctor/base", "doctor/cli/LocalNow.h", "doctor/log/LogFolder.h", "simulator/base",
        "simulator/broker", "simulator/client", "simulator/doctor", "simulator/log", "simulator/package",
        "simulator/platform", "simulator/protocol", "simulator/scenario",
    ],
    "package/msix": [],
    "package": ["package/msix"],
    "cmake": ["package/msix"],
    "tools": [],
    # What tries them.
    "tests/support": ["logging", "service", "utils", "simulator/base", "projection"],
    "tests/native": [
        "bench/harness", "doctor/log", "doctor/stories", "doctor/verdict", "doctor/watches", "explore/faults",
        "explore/faults/model", "explore/harness", "explore/kill", "explore/stress", "logging", "simulator/protocol",
        "utils",
    ],
    "tests/unit/app": [
        "app", "service", "logging", "projection", "simulator/runtime/Implements.h", "simulator/testing",
        "tests/support",
    ],
    "tests/unit/doctor": [
        "console", "doctor", "doctor/base", "doctor/cli/ExitCode.h", "doctor/live", "doctor/log", "doctor/show",
        "doctor/stories", "doctor/timeline", "doctor/verdict", "helper", "service/Messages.h", "utils", "projection",
        "tests/native", "tests/support",
    ],
    "tests/unit/explore": [
        "explore/harness", "explore/kill", "explore/log", "logging", "simulator/base", "tests/support",
    ],
    "tests/unit/helper": ["helper", "projection", "tests/support"],
    "tests/unit/logging": ["logging", "utils", "tests/support"],
    "tests/unit/projection": ["projection", "tests/support"],
    "tests/unit/simulator": [
        "doctor/timeline", "doctor/verdict", "helper", "projection", "simulator/base", "simulator/broker",
        "simulator/cli", "simulator/client", "simulator/doctor", "simulator/log", "simulator/package",
        "simulator/platform", "simulator/protocol", "simulator/runtime",
        "simulator/scenario", "simulator/testing", "tests/support",
    ],
    "tests/unit/utils": ["logging", "utils", "tests/support"],
    "tests/flow": [
        "app", "service", "logging", "utils", "projection", "simulator/runtime/Implements.h", "simulator/testing",
        "tests/support",
    ],
    "tests/storm": ["service", "projection", "simulator/testing", "tests/flow"],
    "tests/e2e": [
        "helper", "service", "projection", "simulator/base", "simulator/platform/Journal.h", "simulator/protocol",
        "tests/support",
    ],
    "tests/executable": ["package/msix"],
    "tests/page": ["doctor/timeline", "tests/unit/doctor"],
    "tests/package": ["package", "package/msix"],
    "tests/tools": ["cmake"],
    "fuzz": ["doctor/log", "doctor/verdict", "logging", "simulator/base", "simulator/protocol", "tests/native"],
    "fuzz/windows": [
        "doctor/log", "logging", "utils", "projection", "simulator/base", "simulator/package", "simulator/protocol",
        "simulator/runtime", "fuzz",
    ],
    "bench": [
        "app", "helper", "service", "logging", "utils", "projection", "simulator/base", "simulator/broker",
        "simulator/client", "simulator/protocol", "simulator/testing", "bench/harness",
    ],
    "bench/harness": [],
    "bench/bare_app": ["projection"],
    "explore/harness": [],
    "explore/kill": [
        "explore/harness", "logging/RotationLimit.h", "simulator/base", "simulator/client", "simulator/package",
        "simulator/protocol",
    ],
    "explore/log": ["explore/harness", "logging", "tests/support"],
    "explore/faults/model": ["simulator/protocol/KnownCalls.h"],
    "explore/faults": [
        "explore/harness", "explore/faults/model", "app", "service", "utils", "projection",
        "simulator/protocol", "simulator/testing", "tests/flow", "tests/support",
    ],
    "explore/stress": ["explore/harness", "doctor/log", "logging", "simulator/base"],
    "bench/redaction": ["logging", "bench/harness", "tests/native"],
}

# (file, what it includes against the table): known, and to be mended.
EXCEPTIONS = set()

OUTPUT = {"build", "dist"}  # folders of the root that hold no sources
IMPORTED_FROM = ("package", "cmake")  # folders that scripts put on Python's path

INCLUDE = re.compile(r'^\s*#\s*include\s+(?:"([^"]+)"|<(winrt/[^>]+)>)', re.MULTILINE)


def sources(root):
    for folder, folders, names in os.walk(root):
        place = pathlib.Path(folder).relative_to(root)
        # Not even looked into: tests at work there remove folders at any moment.
        folders[:] = sorted(name for name in folders if not name.startswith(".") and (place / name).as_posix() not in OUTPUT)
        yield from (place / name for name in sorted(names) if name.endswith((".h", ".cpp", ".py")))


def included(root, file):
    for quoted, projected in INCLUDE.findall((root / file).read_text(encoding="utf-8")):
        name = quoted or projected
        if name.startswith("winrt/"):
            yield f"projection/{name}"  # some of it is generated
        else:
            yield name if "/" in name else (file.parent / name).as_posix()


def module(root, file, dotted, level):
    """The file of a module of this project; None for one of Python's own."""
    beside = file.parents[level - 1] if level else file.parent
    for folder in [beside] if level else [beside, *map(pathlib.Path, IMPORTED_FROM)]:
        path = folder.joinpath(*dotted.split(".")) if dotted else folder
        for candidate in (path.with_suffix(".py"), path / "__init__.py"):
            if (root / candidate).is_file():
                return candidate.as_posix()
    return None


def imported(root, file):
    for node in ast.walk(ast.parse((root / file).read_text(encoding="utf-8"))):
        if isinstance(node, ast.Import):
            yield from (module(root, file, name.name, 0) for name in node.names)
        elif isinstance(node, ast.ImportFrom):
            for name in node.names:  # a module of the package, or what a module holds
                inner = f"{node.module}.{name.name}" if node.module else name.name
                yield module(root, file, inner, node.level) or module(root, file, node.module or "", node.level)


def uses(root, file):
    found = imported(root, file) if file.suffix == ".py" else included(root, file)
    return sorted(set(found) - {None})


def row_of(file, table):
    """The nearest folder above with a row."""
    return next((str(folder) for folder in pathlib.PurePath(file).parents if str(folder) in table), None)


def circle(graph):
    try:
        graphlib.TopologicalSorter(graph).prepare()
        return None
    except graphlib.CycleError as error:
        return error.args[1][::-1]


def violations(root=ROOT, table=None, exceptions=None):
    table = TABLE if table is None else table
    exceptions = EXCEPTIONS if exceptions is None else exceptions
    files = {file.as_posix(): uses(root, file) for file in sources(root)}
    met = set()
    for file, used in files.items():
        row = row_of(file, table)
        if row is None:
            yield f"{file}: its folder has no row in the table of cmake/layers.py"
            continue
        for name in used:
            if (file, name) in exceptions:
                met.add((file, name))
            elif row_of(name, table) != row and row_of(name, table) not in table[row] and name not in table[row]:
                yield f"{file} includes {name}, which {row} may not"
    for file, name in sorted(exceptions - met):
        yield f"{file} no longer includes {name}: remove the exception"
    for row in sorted(set(table) - {row_of(file, table) for file in files}):
        yield f"{row} has a row in the table and no sources"
    for row, allowed in table.items():
        yield from (f"{row} may include {entry}, which does not exist" for entry in allowed
                    if entry not in table and entry not in files)
    if ring := circle({row: [entry if entry in table else row_of(entry, table) for entry in allowed]
                       for row, allowed in table.items()}):
        yield f"the table lets folders include each other: {' -> '.join(map(str, ring))}"
    if ring := circle({file: [name for name in used if name in files] for file, used in files.items()}):
        yield f"files include each other: {' -> '.join(ring)}"


if __name__ == "__main__":
    found = list(violations())
    print("\n".join(found), end="\n" if found else "")
    sys.exit(1 if found else 0)
