#!/usr/bin/env python3
"""generate.py METADATA... --out FOLDER: writes the projection's headers, one set for each namespace.

For a namespace N the folder gets winrt/N.h, which programs include, and winrt/impl/N.{0,1,2}.h, which the headers of
other namespaces include, so that namespaces may refer to each other in circles:
  N.0.h  names, ids, enumerations, binary interfaces, and the declarations of the consuming methods
  N.1.h  interfaces
  N.2.h  delegates, structures, classes
  N.h    the bodies: consuming methods, producing stubs, constructors and static methods
--list prints the files instead of writing them. Files that would not change are left alone.
"""
import argparse
import json
import re
from pathlib import Path

FOUNDATION = ("Windows.Foundation", "Windows.Foundation.Collections")
BASE_TYPES = {"IInspectable", "DateTime", "TimeSpan"}  # written by hand, in Windows.Foundation
BASE_NAMES = {"hstring", "guid", "hresult", "event_token", "com_array", "array_view"}  # in namespace winrt

# Members that the metadata does not know: their bodies are in winrt/base/.
HAND_WRITTEN = {
    "Windows.Foundation.IAsyncAction": ["auto get() const;", "auto wait_for(winrt::Windows::Foundation::TimeSpan const& timeout) const;"],
    "Windows.Foundation.IAsyncOperation": ["auto get() const;", "auto wait_for(winrt::Windows::Foundation::TimeSpan const& timeout) const;"],
    "Windows.Foundation.Collections.IIterator": ["auto operator++();", "auto operator*() const;"],
}
HAND_WRITTEN_HEADERS = {
    "Windows.Foundation": ["async_get", "coroutine_await", "coroutine_async", "boxing"],
    "Windows.Foundation.Collections": ["iteration"],
}


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
        self.self_name = self.name + arguments

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
            is_name = text[match.end():].lstrip()[:1] in ("(", "", ")", ",") and before and before[-1] not in "<,("
            if is_name:
                return word
            if word in BASE_TYPES:
                return "winrt::Windows::Foundation::" + word
            for namespace in FOUNDATION:
                if f"{namespace}.{word}" in self.types:
                    return f"{cpp_namespace(namespace)}::{word}"
            if word == "IGetActivationFactory":
                self.mention("Windows.Foundation." + word)
                return "winrt::Windows::Foundation::" + word
            if word == "WwwFormUrlDecoder":
                self.mention("Windows.Foundation." + word)
                return "winrt::Windows::Foundation::" + word
            return word

        return re.sub(r"[A-Za-z_]\w*(::\w+)*", replace, text)

    def mention(self, full):
        if full not in self.types:
            opaque = Type(full, {"kind": "opaque"})
            self.types[full] = opaque

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


# ---- pieces of code

def guid_literal(text):
    digits = text.replace("-", "").lower()
    tail = ", ".join("0x" + digits[i:i + 2] for i in range(16, 32, 2))
    return f"{{0x{digits[:8]}, 0x{digits[8:12]}, 0x{digits[12:16]}, {{{tail}}}}}"


def abi_type(text):
    return re.sub(r"\b(Point|Size|Rect)\b", r"winrt::Windows::Foundation::\1", text)


def emit_identity(t):
    category = {"interface": "interface_category", "delegate": "delegate_category", "enum": "enum_category",
                "class": "class_category", "opaque": "class_category"}.get(t.kind)
    if t.kind == "struct":
        category = f"struct_category<{', '.join(field for field, _ in t.fields)}>"
    if t.parameters:
        category = f"pinterface_category<{', '.join(t.parameters)}>"
    out = [f"{t.specialisation()}\nstruct category<{t.cpp}>\n{{\n    using type = {category};\n}};",
           f"{t.specialisation()}\ninline constexpr std::wstring_view name_v<{t.cpp}>{{L\"{t.metadata_name()}\"}};"]
    if "iid" in t.facts:
        out.append(f"{t.specialisation()}\ninline constexpr guid guid_v<{t.cpp}>{guid_literal(t.facts['iid'])};")
    if t.kind == "opaque":
        out.append(f"template <>\nstruct default_interface_of<{t.cpp}>\n{{\n}};")
    if t.kind == "class":
        using = f"    using type = {t.default.cpp};\n" if t.default else ""
        out.append(f"template <>\nstruct default_interface_of<{t.cpp}>\n{{\n{using}}};")
    return out


def emit_abi(t):
    if t.kind == "delegate":
        types = ", ".join(p.type for p in t.parameters_of_call)
        return [f"{t.specialisation()}\nstruct abi<{t.cpp}>\n{{\n    using type = delegate_abi<{types}>;\n}};"]
    if t.kind == "interface":
        slots = "".join(f"        virtual int32_t __stdcall {m.slot}({', '.join(map(abi_type, m.slot_arguments))}) noexcept = 0;\n"
                        for m in t.methods)
        return [f"{t.specialisation()}\nstruct abi<{t.cpp}>\n{{\n    struct type : inspectable_abi\n    {{\n{slots}    }};\n}};"]
    if t.kind == "struct" and any("hstring" in field for field, _ in t.fields):
        name = "struct_" + t.full.replace(".", "_")
        fields = "".join(f"    arg_in<{field}> {member};\n" for field, member in t.fields)
        return [f"struct {name}\n{{\n{fields}}};\ntemplate <>\nstruct abi<{t.cpp}>\n{{\n    using type = {name};\n}};"]
    return []


def emit_consume_declaration(t):
    lines = []
    for m in t.methods:
        lines.append(f"auto {m.name}({m.declaration()}) const{' noexcept' if m.is_noexcept else ''};")
        if m.is_event:
            lines.append(f"using {m.name}_revoker = event_revoker<{t.cpp}, &abi<{t.cpp}>::type::remove_{m.name}>;")
            lines.append(f"[[nodiscard]] auto {m.name}(auto_revoke_t, {m.declaration()}) const;")
    lines += HAND_WRITTEN.get(t.full, [])
    body = "".join(f"    {line}\n" for line in lines)
    return f"{t.with_d()}\nstruct consume<D, {t.cpp}>\n{{\n{body}}};"


def consume_arguments(m):
    arguments = []
    for p in m.parameters:
        if p.array == "array_view":
            arguments += [f"{p.name}.size()", f"bind_in({p.name})"]
        elif p.array == "com_array":
            arguments += [f"&{p.name}_result.size", f"&{p.name}_result.data"]
        elif p.is_out:
            arguments.append(f"bind_out({p.name})")
        else:
            arguments.append(f"bind_in({p.name})")
    if m.result != "void":
        arguments += ["&winrt_result.size", "&winrt_result.data"] if m.result_is_array else ["winrt_result.put()"]
    return ", ".join(arguments)


def emit_consume_body(t, m):
    head = f"{t.with_d()}\nauto consume<D, {t.cpp}>::{m.name}({m.declaration()}) const"
    call = f"self(*this)->{m.slot}({consume_arguments(m)})"
    if m.is_noexcept:
        return f"{head} noexcept\n{{\n    static_cast<void>({call});\n}}"
    lines = [f"array_result_of_call<{p.type}> {p.name}_result;" for p in m.parameters if p.array == "com_array"]
    if m.result != "void":
        kind = "array_result_of_call" if m.result_is_array else "result_of_call"
        lines.append(f"{kind}<{m.result}> winrt_result;")
    lines.append(f"check_hresult({call});")
    lines += [f"{p.name} = {p.name}_result.take();" for p in m.parameters if p.array == "com_array"]
    if m.result != "void":
        lines.append("return winrt_result.take();")
    out = f"{head}\n{{\n" + "".join(f"    {line}\n" for line in lines) + "}"
    if m.is_event:
        out += (f"\n{t.with_d()}\nauto consume<D, {t.cpp}>::{m.name}(auto_revoke_t, {m.declaration()}) const\n{{\n"
                f"    return make_event_revoker<D, {m.name}_revoker, {t.cpp}>(static_cast<D const&>(*this), "
                f"{m.name}({m.names()}));\n}}")
    return out


def produce_parts(m):
    """Slot parameters, what precedes the call, its arguments, what follows it."""
    slot, before, arguments, after = [], [], [], []
    types = list(map(abi_type, m.slot_arguments))
    for p in m.parameters:
        if p.array:
            slot += [f"{types.pop(0)} {p.name}_size", f"{types.pop(0)} {p.name}"]
        else:
            slot.append(f"{types.pop(0)} {p.name}")
        if p.array == "array_view":
            const = " const" if p.element_const else ""
            arguments.append(f"borrow_array<{p.type}{const}>({p.name}_size, {p.name})")
        elif p.array == "com_array":
            before += [f"clear_result({p.name}_size);", f"clear_result({p.name});",
                       f"com_array<{p.type}> {p.name}_result;"]
            arguments.append(f"{p.name}_result")
            after.append(f"return_array<{p.type}>({p.name}_size, {p.name}, std::move({p.name}_result));")
        elif p.is_out:
            arguments.append(f"borrow_out<{p.type}>({p.name})")
        else:
            arguments.append(f"borrow<{p.type}>({p.name})")
    call = f"this->shim().{m.name}({', '.join(arguments)})"
    if m.result_is_array:
        slot += [f"{types.pop(0)} winrt_size", f"{types.pop(0)} winrt_result"]
        before += ["clear_result(winrt_size);", "clear_result(winrt_result);"]
        call = f"return_array<{m.result}>(winrt_size, winrt_result, {call})"
    elif m.result != "void":
        slot.append(f"{types.pop(0)} winrt_result")
        before.append("clear_result(winrt_result);")
        call = f"return_result<{m.result}>(winrt_result, {call})"
    return slot, before, call, after


def emit_produce(t):
    methods = ""
    for m in t.methods:
        slot, before, call, after = produce_parts(m)
        lines = before + [call + ";"] + after + ["return error_ok;"]
        methods += (f"    int32_t __stdcall {m.slot}({', '.join(slot)}) noexcept final\n    try\n    {{\n"
                    + "".join(f"        {line}\n" for line in lines)
                    + "    }\n    catch (...)\n    {\n        return to_hresult();\n    }\n")
    return f"{t.with_d()}\nstruct produce<D, {t.cpp}> : produce_base<D, {t.cpp}>\n{{\n{methods}}};"


def emit_interface(t):
    bases = ["winrt::Windows::Foundation::IInspectable", f"winrt::impl::consume_t<{t.cpp}>"]
    if t.requires:
        bases.append(f"winrt::impl::require<{', '.join([t.cpp] + t.requires)}>")
    head = (t.template() + "\n" if t.parameters else "") + f"struct {t.name} : " + ",\n    ".join(bases)
    return (f"{head}\n{{\n    {t.name}(std::nullptr_t = nullptr) noexcept\n    {{\n    }}\n"
            f"    {t.name}(void* object, take_ownership_from_abi_t) noexcept\n"
            f"        : winrt::Windows::Foundation::IInspectable(object, take_ownership_from_abi)\n    {{\n    }}\n}};")


def emit_delegate(t):
    types = ", ".join([t.cpp] + [p.type for p in t.parameters_of_call])
    base = f"winrt::impl::delegate_base<{types}>"
    head = (t.template() + "\n" if t.parameters else "") + f"struct {t.name} : {base}"
    return f"{head}\n{{\n    using {base}::delegate_base;\n    {t.name}(std::nullptr_t = nullptr) noexcept\n    {{\n    }}\n}};"


def emit_struct(t):
    fields = "".join(f"    {field} {member}{{}};\n" for field, member in t.fields)
    return (f"struct {t.name}\n{{\n{fields}\n"
            f"    friend bool operator==({t.name} const& left, {t.name} const& right) noexcept = default;\n}};")


def emit_opaque(t):
    base = "IUnknown" if t.name.endswith("Handler") else "IInspectable"
    return (f"struct {t.name} : winrt::Windows::Foundation::{base} // its members are not in the metadata\n{{\n"
            f"    {t.name}(std::nullptr_t) noexcept\n    {{\n    }}\n"
            f"    {t.name}(void* object, take_ownership_from_abi_t) noexcept\n"
            f"        : winrt::Windows::Foundation::{base}(object, take_ownership_from_abi)\n    {{\n    }}\n}};")


def static_methods(t):
    return [(factory, m) for factory in t.statics for m in factory.methods]


def emit_class(t):
    lines = []
    bases = []
    if t.default:
        bases.append(t.default.cpp)
        if t.bases:
            bases.append(f"winrt::impl::base<{', '.join([t.cpp] + t.bases)}>")
        if t.requires:
            bases.append(f"winrt::impl::require<{', '.join([t.cpp] + t.requires)}>")
        lines += [f"{t.name}(std::nullptr_t) noexcept", "{", "}",
                  f"{t.name}(void* object, take_ownership_from_abi_t) noexcept",
                  f"    : {t.default.cpp}(object, take_ownership_from_abi)", "{", "}"]
        if t.activatable or t.composable:
            lines.append(f"{t.name}();")
        for factory in t.constructors:
            for m in factory.methods:
                explicit = "explicit " if len(m.parameters) == 1 else ""
                lines.append(f"{explicit}{t.name}({m.declaration()});")
    else:
        lines.append(f"{t.name}() = delete;")
    for factory, m in static_methods(t):
        lines.append(f"static auto {m.name}({m.declaration()});")
        if m.is_event:
            lines.append(f"using {m.name}_revoker = winrt::impl::factory_event_revoker<{factory.cpp}, "
                         f"&winrt::impl::abi<{factory.cpp}>::type::remove_{m.name}>;")
            lines.append(f"[[nodiscard]] static auto {m.name}(auto_revoke_t, {m.declaration()});")
    body = "".join(f"    {line}\n" for line in lines)
    head = f"struct {t.name}" + (" : " + ",\n    ".join(bases) if bases else "")
    return f"{head}\n{{\n{body}}};"


def emit_class_bodies(t):
    out = []

    def call(factory, m):
        return (f"winrt::impl::call_factory<{t.cpp}, {factory.cpp}>("
                f"[&](auto const& factory) {{ return factory.{m.name}({m.names()}); }})")

    if t.default and t.activatable:
        out.append(f"inline {t.name}::{t.name}()\n    : {t.name}(winrt::impl::call_factory<{t.cpp}, winrt::Windows::Foundation::IActivationFactory>("
                   f"[](auto const& factory) {{ return factory.template ActivateInstance<{t.cpp}>(); }}))\n{{\n}}")
    if t.composable:
        m = t.composable.methods[0]
        out.append(f"inline {t.name}::{t.name}()\n    : {t.name}(winrt::impl::call_factory<{t.cpp}, {t.composable.cpp}>([](auto const& factory) {{\n"
                   f"          winrt::Windows::Foundation::IInspectable inner;\n"
                   f"          return factory.{m.name}(nullptr, inner);\n      }}))\n{{\n}}")
    for factory in t.constructors:
        for m in factory.methods:
            out.append(f"inline {t.name}::{t.name}({m.declaration()})\n    : {t.name}({call(factory, m)})\n{{\n}}")
    for factory, m in static_methods(t):
        out.append(f"inline auto {t.name}::{m.name}({m.declaration()})\n{{\n    return {call(factory, m)};\n}}")
        if m.is_event:
            out.append(f"inline auto {t.name}::{m.name}(auto_revoke_t, {m.declaration()})\n{{\n"
                       f"    auto const factory = get_activation_factory<{t.cpp}, {factory.cpp}>();\n"
                       f"    return {m.name}_revoker(factory, factory.{m.name}({m.names()}));\n}}")
    return out


def emit_composition(model, t):
    """What an implementation that derives from the class is written on: overrides and the base itself."""
    out = []
    for name in t.overrides:
        interface = model.types[name.removeprefix("winrt::").replace("::", ".")]
        methods = "".join(
            f"    auto {m.name}({m.declaration()}) const\n    {{\n"
            f"        return static_cast<D const*>(this)->template as<{interface.cpp}>().{m.name}({m.names()});\n    }}\n"
            for m in interface.methods)
        out.append(f"// Overridable methods that D leaves alone go to the platform's class.\n"
                   f"template <typename D>\nstruct {interface.name}T\n{{\n"
                   f"    using {interface.name} = {interface.cpp};\n\n{methods}}};")
    interfaces = ", ".join(["D"] + t.overrides + ["winrt::composing", "Interfaces..."])
    required = ", ".join(["D", t.default.cpp] + t.default.requires + t.requires)
    bases = [f"winrt::implements<{interfaces}>", f"winrt::impl::require<{required}>",
             f"winrt::impl::base<{', '.join(['D', t.cpp] + t.bases)}>"]
    bases += [f"{cpp_namespace(t.namespace)}::{name.rsplit('::', 1)[1]}T<D>" for name in t.overrides]
    create = t.composable.methods[0].name
    out.append(f"// D derives from the platform's {t.name}: D is the outer object, the platform's the inner one.\n"
               f"template <typename D, typename... Interfaces>\nstruct {t.name}T : " + ",\n    ".join(bases) +
               f"\n{{\n    using composable = {t.cpp};\n\n  protected:\n    {t.name}T()\n    {{\n"
               f"        winrt::impl::call_factory<{t.cpp}, {t.composable.cpp}>([&](auto const& factory) {{\n"
               f"            [[maybe_unused]] auto const whole = factory.{create}(*this, this->m_inner);\n"
               f"        }});\n    }}\n}};")
    return out


# ---- files

def in_namespace(name, pieces):
    return [f"namespace {name}\n{{", *pieces, f"}} // namespace {name}"] if pieces else []


def emit_enum(t):
    values = "".join(f"    {name} = {value},\n" for name, value in t.facts["values"].items())
    # GCC 12 takes the names of scoped enumerators for declarations in the enclosing scope.
    return (f"#pragma GCC diagnostic push\n#pragma GCC diagnostic ignored \"-Wshadow\"\n"
            f"enum class {t.name} : {t.detail}\n{{\n{values}}};\n#pragma GCC diagnostic pop")


def forward_declarations(types):
    out = []
    for namespace in sorted({t.namespace for t in types}):
        out += in_namespace(cpp_namespace(namespace), [t.forward() for t in types if t.namespace == namespace])
    return out


def namespaces_named(model, own, pieces):
    return sorted({t.namespace for t in model.named_in("\n".join(pieces)).values()} - {own})


def header(includes, pieces):
    lines = ["// Written by generate.py from the metadata. Changes here do not last.", "#pragma once"]
    lines += [f'#include "winrt/{name}.h"' for name in includes]
    return "\n".join(lines) + "\n\n" + "\n\n".join(pieces) + "\n"


def generate_namespace(model, namespace):
    types = model.of_namespace(namespace)
    interfaces = [t for t in types if t.kind == "interface"]
    classes = [t for t in types if t.kind == "class"]
    structs = [t for t in types if t.kind == "struct"]
    composable = [t for t in classes if t.composable]
    cpp = cpp_namespace(namespace)

    own = [emit_enum(t) if t.kind == "enum" else t.forward() for t in types]
    facts = [piece for t in types for piece in emit_identity(t)]
    facts += [piece for t in types for piece in emit_abi(t)]
    facts += [emit_consume_declaration(t) for t in interfaces]
    foreign = [t for t in model.named_in("\n".join(facts)).values() if t.namespace != namespace]
    level0 = forward_declarations(foreign) + in_namespace(cpp, own) + in_namespace("winrt::impl", facts)

    level1 = [emit_interface(t) for t in interfaces]
    needs1 = [f"impl/{n}.0" for n in namespaces_named(model, namespace, level1)]

    level2 = [emit_opaque(t) for t in types if t.kind == "opaque"]
    level2 += [emit_struct(t) for t in structs]
    level2 += [emit_delegate(t) for t in types if t.kind == "delegate"]
    level2 += [emit_class(t) for t in classes]
    needs2 = [f"impl/{n}.1" for n in namespaces_named(model, namespace, level2)]

    bodies = [emit_consume_body(t, m) for t in interfaces for m in t.methods]
    bodies += [emit_produce(t) for t in interfaces]
    of_classes = [piece for t in classes for piece in emit_class_bodies(t)]
    of_classes += [piece for t in composable for piece in emit_composition(model, t)]
    needs = [f"impl/{n}.2" for n in namespaces_named(model, namespace, level0 + bodies + of_classes)]
    parent = namespace.rpartition(".")[0]
    if parent in model.namespaces():
        needs.insert(0, parent)
    last = "".join(f'\n#include "winrt/base/{name}.h"' for name in HAND_WRITTEN_HEADERS.get(namespace, []))

    return {
        f"winrt/impl/{namespace}.0.h": header(["base"], level0),
        f"winrt/impl/{namespace}.1.h": header([f"impl/{namespace}.0", *needs1], in_namespace(cpp, level1)),
        f"winrt/impl/{namespace}.2.h": header([f"impl/{namespace}.1", *needs2], in_namespace(cpp, level2)),
        f"winrt/{namespace}.h": header([f"impl/{namespace}.2", *needs],
                                       in_namespace("winrt::impl", bodies) + in_namespace(cpp, of_classes)) + last + "\n",
    }


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("metadata", nargs="+")
    parser.add_argument("--out", required=True, type=Path)
    parser.add_argument("--list", action="store_true")
    arguments = parser.parse_args()
    model = Model(arguments.metadata)
    for namespace in model.namespaces():
        for name, text in generate_namespace(model, namespace).items():
            path = arguments.out / name
            if arguments.list:
                print(path)
            elif not path.exists() or path.read_text(encoding="utf-8") != text:
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
