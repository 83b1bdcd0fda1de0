#!/usr/bin/env python3
"""generate_abi_checks.py ABI_JSON OUTPUT: writes tests that hold the projection against the facts of the file.

It reads the facts on its own and knows nothing of the projection's generator: ids, the slot of each method, the types
of its parameters, the number of slots, enumerations, classes, and the ids of generic instances.
"""
import json
import re
import sys
from pathlib import Path

INSTANCE = "int32_t"  # what generic types are instantiated with to look at their layout
UNKNOWN_SLOTS, INSPECTABLE_SLOTS = 3, 6

PRELUDE = """\
// Written by generate_abi_checks.py.
#include "tests/unit/projection/AbiFacts.h"

{includes}

using namespace test;

"""


def cpp(full):
    return "winrt::" + full.replace(".", "::")


def instance(full, facts):
    kind = re.fullmatch(r"generic<(.*)>", facts["kind"])
    count = kind.group(1).count(",") + 1 if kind else 0
    return cpp(full) + (f"<{', '.join([INSTANCE] * count)}>" if count else "")


def parameter(text):
    text = re.sub(r"arg_in<\w+>", INSTANCE, text)
    text = re.sub(r"arg_out<\w+>", INSTANCE + "*", text)
    text = re.sub(r"\b(Point|Size|Rect)\b", r"winrt::Windows::Foundation::\1", text)
    text = re.sub(r"struct (struct_\w+)", r"winrt::impl::\1", text)
    return re.sub(r"\b(guid|hresult|event_token)\b", r"winrt::\1", text)


def layout_checks(full, facts):
    abi = f"winrt::impl::abi<{instance(full, facts)}>::type"
    first = INSPECTABLE_SLOTS if facts["base"] == "IInspectable" else UNKNOWN_SLOTS
    out = []
    for index, slot in enumerate(facts.get("slots", [])):
        name, parameters = re.fullmatch(r"(\w+)\((.*)\)", slot).groups()
        types = ", ".join(parameter(p.strip()) for p in parameters.split(",")) if parameters else ""
        method = f"int32_t (__stdcall {abi}::*)({types}) noexcept"
        out.append(f"static_assert(std::is_same_v<decltype(&{abi}::{name}), {method}>);")
        out.append(f"EXPECT_EQ((SlotOf(&{abi}::{name})), {first + index}u);")
    out.append(f"EXPECT_EQ((SlotCount<{abi}>()), {first + len(facts.get('slots', []))}u);")
    return out


def checks(full, facts):
    kind = facts["kind"]
    out = []
    if "iid" in facts:
        holder = f"winrt::impl::guid_v<{instance(full, facts)}>"
        out.append(f'EXPECT_EQ(({holder}), winrt::guid("{facts["iid"]}"));')
        out += layout_checks(full, facts)
    if kind in ("interface", "delegate"):
        out.append(f"EXPECT_EQ(winrt::guid_of<{cpp(full)}>(), winrt::guid(\"{facts['iid']}\"));")
    if kind.startswith("enum"):
        out.append(f"static_assert(std::is_same_v<std::underlying_type_t<{cpp(full)}>, {kind.split()[1]}>);")
        out += [f"static_assert(static_cast<int64_t>({cpp(full)}::{name}) == {value});"
                for name, value in facts["values"].items()]
    if kind == "class":
        out += class_checks(full, facts)
    if kind in ("interface", "class") or kind.startswith("enum"):
        out.append(f'EXPECT_EQ(winrt::name_of<{cpp(full)}>(), L"{full}");')
    return out


def class_checks(full, facts):
    out = []
    if "default_interface" in facts:
        default = cpp(facts["default_interface"])
        out.append(f"static_assert(std::is_same_v<winrt::default_interface<{cpp(full)}>, {default}>);")
        out.append(f"static_assert(std::is_base_of_v<{default}, {cpp(full)}> && sizeof({cpp(full)}) == sizeof(void*));")
        out.append(f"EXPECT_EQ(winrt::guid_of<{cpp(full)}>(), winrt::guid_of<{default}>());")
    else:
        out.append(f"static_assert(!std::is_default_constructible_v<{cpp(full)}>);")
    if "IActivationFactory (default constructor)" in facts.get("factories", []):
        out.append(f"static_assert(std::is_default_constructible_v<{cpp(full)}>);")
    return out


def test(name, lines):
    return f"TEST(AbiFacts, {name})\n{{\n" + "".join(f"    {line}\n" for line in lines) + "}\n\n"


def instance_checks(data):
    """The ids of generic instances: short names are looked up among all types."""
    known = {name: f"{namespace}.{name}" for namespace, types in data["namespaces"].items() for name in types}
    known["PushNotificationReceivedEventArgs"] = "Windows.Networking.PushNotifications.PushNotificationReceivedEventArgs"
    basic = {"hstring": "winrt::hstring", "guid": "winrt::guid", "int32_t": "int32_t", "bool": "bool"}
    out = []
    for text, iid in data["generic_instances"].items():
        full = re.sub(r"[\w:]+", lambda m: "winrt::" + m.group(0) if m.group(0).startswith("Windows::")
                      else basic.get(m.group(0)) or cpp(known[m.group(0)]), text)
        out.append(f'static_assert(winrt::guid_of<{full}>() == winrt::guid("{iid}"));')
    return out


def main():
    source, target = sys.argv[1:]
    data = json.loads(Path(source).read_text(encoding="utf-8"))
    includes = "\n".join(f"#include <winrt/{namespace}.h>" for namespace in sorted(data["namespaces"]))
    out = PRELUDE.format(includes=includes)
    for namespace, types in data["namespaces"].items():
        lines = [line for name, facts in types.items() for line in checks(f"{namespace}.{name}", facts)]
        out += test(namespace.replace(".", "_"), lines)
    out += test("IdsOfGenericInstancesAreComputed", instance_checks(data))
    Path(target).write_text(out, encoding="utf-8")


if __name__ == "__main__":
    main()
