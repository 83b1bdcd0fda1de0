"""The metadata as the generator sees it: types, methods, parameters, with every name written as C++ writes it."""
import json
import re
from pathlib import Path

FOUNDATION = ("Windows.Foundation", "Windows.Foundation.Collections")
BASE_TYPES = {"IInspectable", "DateTime", "TimeSpan"}  # written by hand, in Windows.Foundation
BASE_NAMES = {"hstring", "guid", "hresult", "event_token", "com_array", "array_view"}  # in namespace winrt


def cpp_namespace(namespace):
    return "winrt::" + namespace.replace(".", "::")


def split_arguments(text):
    """Splits at the commas that are not inside angle brackets."""
    parts, depth = [""], 0
    for character in text:
        depth += {"<": 1, ">": -1}.get(character, 0)
        if character == "," and depth == 0:
            parts.append("")
        else:
            parts[-1] += character
    return [part.strip() for part in parts if part.strip()]


class Parameter:
    """One parameter of a method as programs see it."""

    def __init__(self, text):
        declared, self.name = text.rsplit(" ", 1)
        self.declared = declared
        if self.name == "type":  # each binary interface has a member of this name
            self.name = "type_"
        plain = re.sub(r"\s*(const)?\s*&$", "", declared)
        wrapped = re.fullmatch(r"winrt::(array_view|com_array)<(.*?)( const)?>", plain)
        text_type = re.fullmatch(r"winrt::impl::param_type<(.*)>", plain)
        self.is_out = declared.endswith("&") and not declared.endswith("const&")
        self.array = wrapped.group(1) if wrapped else None
        self.element_const = bool(wrapped and wrapped.group(3))
        self.type = wrapped.group(2) if wrapped else text_type.group(1) if text_type else plain
        self.type = self.type.replace("winrt::param::hstring", "winrt::hstring")


class Method:
    def __init__(self, slot, typed):
        self.slot, arguments = re.fullmatch(r"(\w+)\((.*)\)", slot).groups()
        self.slot_arguments = split_arguments(arguments)
        self.is_noexcept = typed.endswith(" noexcept")
        typed = typed.removesuffix(" noexcept").removesuffix(" const")
        head, parameters = re.fullmatch(r"(.*?)\((.*)\)", typed).groups()
        result, self.name = head.rsplit(" ", 1)
        self.parameters = [Parameter(text) for text in split_arguments(parameters)]
        result_array = re.fullmatch(r"winrt::com_array<(.*)>", result)
        self.result = result_array.group(1) if result_array else result
        self.result_is_array = bool(result_array)
        self.is_event = self.slot.startswith("add_")

    def declaration(self):
        return ", ".join(f"{p.declared} {p.name}" for p in self.parameters)

    def names(self):
        return ", ".join(p.name for p in self.parameters)


class Type:
    def __init__(self, full, facts):
        self.full = full
        self.namespace, self.name = full.rsplit(".", 1)
        self.facts = facts
        kind, _, self.detail = re.match(r"(\w+)(\s*)(.*)", facts["kind"], re.S).groups()
        self.parameters = split_arguments(self.detail[1:-1]) if kind == "generic" else []
        if kind == "generic":
            kind = "delegate" if facts["base"] == "IUnknown" else "interface"
        self.kind = kind
        self.requires = []
        self.methods = []
        arguments = f"<{', '.join(self.parameters)}>" if self.parameters else ""
        self.cpp = f"{cpp_namespace(self.namespace)}::{self.name}{arguments}"

    def template(self):
        return f"template <{', '.join('typename ' + p for p in self.parameters)}>"

    def specialisation(self):
        return self.template() if self.parameters else "template <>"

    def with_d(self):
        return f"template <{', '.join(['typename D'] + ['typename ' + p for p in self.parameters])}>"

    def metadata_name(self):
        return self.full + (f"`{len(self.parameters)}" if self.parameters else "")

    def forward(self):
        if self.kind == "enum":
            return f"enum class {self.name} : {self.detail};"
        return (self.template() + "\n" if self.parameters else "") + f"struct {self.name};"


class Model:
    """All types by their full name, with every name in them written as C++ writes it."""

    def __init__(self, files):
        self.types = {}
        self.extra = {"delegates": {}, "requires": {}, "overrides": {}, "bases": {}}
        for file in files:
            data = json.loads(Path(file).read_text(encoding="utf-8"))
            for namespace, types in data["namespaces"].items():
                for name, facts in types.items():
                    self.types[f"{namespace}.{name}"] = Type(f"{namespace}.{name}", facts)
            for key, values in self.extra.items():
                values.update(data.get(key, {}))
        for type_ in list(self.types.values()):
            self.complete(type_)

    def complete(self, type_):
        facts = type_.facts
        type_.requires = [self.qualify(text) for text in self.extra["requires"].get(type_.full, [])]
        type_.overrides = [self.qualify(text) for text in self.extra["overrides"].get(type_.full, [])]
        type_.bases = [self.qualify(text) for text in self.extra["bases"].get(type_.full, [])]
        if type_.kind == "delegate":
            type_.parameters_of_call = [Parameter(self.qualify(text)) for text in self.extra["delegates"][type_.full]]
        elif type_.kind == "interface":
            for slot, typed in zip(facts.get("slots", []), facts.get("typed", []), strict=True):
                method = Method(slot, self.qualify(typed))
                type_.methods.append(method)
                self.infer_opaque(method)
        elif type_.kind == "struct":
            type_.fields = list(zip([self.qualify(f) for f in split_arguments(type_.detail[1:-1])], facts["fields"]))
        elif type_.kind == "class":
            default = facts.get("default_interface")
            type_.default = self.types[default] if default else None
            self.read_factories(type_)

    def read_factories(self, type_):
        type_.statics, type_.constructors, type_.composable, type_.activatable = [], [], None, False
        for text in type_.facts.get("factories", []):
            name, _, role = text.partition(" ")
            if name == "IActivationFactory":
                type_.activatable = True
                continue
            factory = self.types[f"{type_.namespace}.{name}"]
            if role == "(composable)":
                type_.composable = factory
            elif name.endswith("Factory"):
                type_.constructors.append(factory)
            else:
                type_.statics.append(factory)

    def qualify(self, text):
        """Writes each type in a declaration with its whole C++ name."""
        def replace(match):
            word = match.group(0)
            before = text[: match.start()].rstrip()
            if word.startswith("Windows::"):
                self.mention(word.replace("::", "."))
                return "winrt::" + word
            if word in BASE_NAMES or word == "param::hstring":
                return "winrt::" + word
            if word == "param_type":
                return "winrt::impl::param_type"
            # The name of a method or a parameter, which may be spelled like a type.
            is_name = text[match.end():].lstrip()[:1] in ("(", "", ")", ",") and before and before[-1] not in "<,("
            if is_name:
                return word
            if word in BASE_TYPES:
                return "winrt::Windows::Foundation::" + word
            for namespace in FOUNDATION:
                if f"{namespace}.{word}" in self.types:
                    return f"{cpp_namespace(namespace)}::{word}"
            return word

        return re.sub(r"[A-Za-z_]\w*(::\w+)*", replace, text)

    def mention(self, full):
        if full not in self.types:
            self.types[full] = Type(full, {"kind": "opaque"})

    def infer_opaque(self, method):
        """What a type is that is mentioned only: told by how its values travel."""
        arguments = list(method.slot_arguments)
        pairs = []
        for parameter in method.parameters:
            arguments.pop(0) if parameter.array else None
            pairs.append((parameter.type, arguments.pop(0)))
        if method.result != "void":
            pairs.append((method.result, arguments[-1]))
        for name, argument in pairs:
            type_ = self.types.get(name.removeprefix("winrt::").replace("::", "."))
            if type_ and type_.kind == "opaque" and re.match(r"u?int\d+_t\b", argument):
                type_.kind, type_.detail = "enum", argument.rstrip("*")
                type_.facts["values"] = {}

    def of_namespace(self, namespace):
        return [t for t in self.types.values() if t.namespace == namespace]

    def namespaces(self):
        return sorted({t.namespace for t in self.types.values()})

    def named_in(self, text):
        """The types whose names stand in a piece of generated code."""
        names = re.findall(r"winrt::(Windows(?:::\w+)+)", text)
        return {n.replace("::", "."): self.types[n.replace("::", ".")] for n in names
                if n.replace("::", ".") in self.types}
