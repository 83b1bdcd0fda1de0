#!/usr/bin/env python3
"""generate.py METADATA... --out FOLDER: writes the projection's headers, one set for each namespace.

For a namespace N the folder gets winrt/N.h, which programs include, and winrt/impl/N.{0,1,2}.h, which the headers of
other namespaces include, so that namespaces may refer to each other in circles:
  N.0.h  names, ids, enumerations, binary interfaces, and the declarations of the consuming methods
  N.1.h  interfaces
  N.2.h  delegates, structures, classes
  N.h    the bodies: consuming methods, producing stubs, constructors and static methods
winrt/defaults.h is for implementations that serve a part of an interface: winrt::impl::defaults<D, I> has each method
of I, as a call of D::Member<name>.
--list prints the files instead of writing them. Files that would not change are left alone.
"""
import argparse
from pathlib import Path

from generator import pieces
from generator.model import Model, cpp_namespace

# Written by hand in winrt/base/, on top of a generated header.
HAND_WRITTEN_HEADERS = {
    "Windows.Foundation": ["async_get", "coroutine_await", "coroutine_async", "boxing"],
    "Windows.Foundation.Collections": ["iteration"],
}


def forward_declarations(types):
    out = []
    for namespace in sorted({t.namespace for t in types}):
        out += pieces.in_namespace(cpp_namespace(namespace), [t.forward() for t in types if t.namespace == namespace])
    return out


def namespaces_named(model, own, code):
    return sorted({t.namespace for t in model.named_in("\n".join(code)).values()} - {own})


def header(includes, code):
    lines = ["// Written by generate.py from the metadata. Changes here do not last.", "#pragma once"]
    lines += [f'#include "winrt/{name}.h"' for name in includes]
    return "\n".join(lines) + "\n\n" + "\n\n".join(code) + "\n"


def generate_namespace(model, namespace):
    types = model.of_namespace(namespace)
    interfaces = [t for t in types if t.kind == "interface"]
    classes = [t for t in types if t.kind == "class"]
    structs = [t for t in types if t.kind == "struct"]
    composable = [t for t in classes if t.composable]
    cpp = cpp_namespace(namespace)

    own = [pieces.emit_enum(t) if t.kind == "enum" else t.forward() for t in types]
    facts = [text for t in types for text in pieces.emit_identity(t)]
    facts += [text for t in types for text in pieces.emit_abi(t)]
    facts += [pieces.emit_consume_declaration(t) for t in interfaces]
    foreign = [t for t in model.named_in("\n".join(facts)).values() if t.namespace != namespace]
    level0 = forward_declarations(foreign) + pieces.in_namespace(cpp, own) + pieces.in_namespace("winrt::impl", facts)

    level1 = [pieces.emit_interface(t) for t in interfaces]
    needs1 = [f"impl/{n}.0" for n in namespaces_named(model, namespace, level1)]

    level2 = [pieces.emit_opaque(t) for t in types if t.kind == "opaque"]
    level2 += [pieces.emit_struct(t) for t in structs]
    level2 += [pieces.emit_delegate(t) for t in types if t.kind == "delegate"]
    level2 += [pieces.emit_class(t) for t in classes]
    needs2 = [f"impl/{n}.1" for n in namespaces_named(model, namespace, level2)]

    bodies = [pieces.emit_consume_body(t, m) for t in interfaces for m in t.methods]
    bodies += [pieces.emit_produce(t) for t in interfaces]
    of_classes = [text for t in classes for text in pieces.emit_class_bodies(t)]
    of_classes += [text for t in composable for text in pieces.emit_composition(model, t)]
    needs = [f"impl/{n}.2" for n in namespaces_named(model, namespace, level0 + bodies + of_classes)]
    parent = namespace.rpartition(".")[0]
    if parent in model.namespaces():
        needs.insert(0, parent)
    last = "".join(f'\n#include "winrt/base/{name}.h"' for name in HAND_WRITTEN_HEADERS.get(namespace, []))

    level3 = pieces.in_namespace("winrt::impl", bodies) + pieces.in_namespace(cpp, of_classes)

    return {
        f"winrt/impl/{namespace}.0.h": header(["base"], level0),
        f"winrt/impl/{namespace}.1.h": header([f"impl/{namespace}.0", *needs1], pieces.in_namespace(cpp, level1)),
        f"winrt/impl/{namespace}.2.h": header([f"impl/{namespace}.1", *needs2], pieces.in_namespace(cpp, level2)),
        f"winrt/{namespace}.h": header([f"impl/{namespace}.2", *needs], level3) + last + "\n",
    }


def generate_defaults(model):
    interfaces = [t for t in model.types.values() if t.kind == "interface"]
    primary = ["// Of markers and of interfaces that the metadata lacks.\n"
               "template <typename D, typename I>\nstruct defaults\n{\n};"]
    code = forward_declarations(interfaces)
    code += pieces.in_namespace("winrt::impl", primary + [pieces.emit_defaults(t) for t in interfaces])
    return {"winrt/defaults.h": header(["base", "base/member_name"], code)}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("metadata", nargs="+")
    parser.add_argument("--out", required=True, type=Path)
    parser.add_argument("--list", action="store_true")
    arguments = parser.parse_args()
    model = Model(arguments.metadata)
    headers = generate_defaults(model)
    for namespace in model.namespaces():
        headers |= generate_namespace(model, namespace)
    for name, text in headers.items():
        path = arguments.out / name
        if arguments.list:
            print(path)
        elif not path.exists() or path.read_text(encoding="utf-8") != text:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
