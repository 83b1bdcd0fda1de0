"""The pieces of code for one type: identity, binary layout, consuming wrapper, producing stub, declarations."""
import re

from generator.model import cpp_namespace

# Members that the metadata does not know: their bodies are in winrt/base/.
WAITS = ["auto get() const;", "auto wait_for(winrt::Windows::Foundation::TimeSpan const& timeout) const;"]
HAND_WRITTEN = {
    "Windows.Foundation.IAsyncAction": WAITS,
    "Windows.Foundation.IAsyncOperation": WAITS,
    "Windows.Foundation.Collections.IIterator": ["auto operator++();", "auto operator*() const;"],
}


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
        slots = ""
        for m in t.methods:
            types = ", ".join(map(abi_type, m.slot_arguments))
            slots += f"        virtual int32_t __stdcall {m.slot}({types}) noexcept = 0;\n"
        return [f"{t.specialisation()}\nstruct abi<{t.cpp}>\n{{\n"
                f"    struct type : inspectable_abi\n    {{\n{slots}    }};\n}};"]
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


def emit_defaults(t):
    """For implementations that serve a part of an interface: what they do not declare is a call of D::Member<name>."""
    methods = "".join(f"    decltype(auto) {name}(auto&&... arguments) const\n    {{\n"
                      f"        return static_cast<D const&>(*this).template Member<\"{name}\">(arguments...);\n    }}\n"
                      for name in dict.fromkeys(m.name for m in t.methods))
    return f"{t.with_d()}\nstruct defaults<D, {t.cpp}>\n{{\n{methods}}};"


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
    return (f"{head}\n{{\n    using {base}::delegate_base;\n"
            f"    {t.name}(std::nullptr_t = nullptr) noexcept\n    {{\n    }}\n}};")


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
        out.append(f"inline {t.name}::{t.name}()\n    : {t.name}(winrt::impl::call_factory<{t.cpp}, "
                   f"winrt::Windows::Foundation::IActivationFactory>("
                   f"[](auto const& factory) {{ return factory.template ActivateInstance<{t.cpp}>(); }}))\n{{\n}}")
    if t.composable:
        m = t.composable.methods[0]
        out.append(f"inline {t.name}::{t.name}()\n"
                   f"    : {t.name}(winrt::impl::call_factory<{t.cpp}, {t.composable.cpp}>([](auto const& factory) {{\n"
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
        base = f"static_cast<D const*>(this)->template as<{interface.cpp}>()"
        methods = "".join(f"    auto {m.name}({m.declaration()}) const\n    {{\n"
                          f"        return {base}.{m.name}({m.names()});\n    }}\n" for m in interface.methods)
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


def in_namespace(name, pieces):
    return [f"namespace {name}\n{{", *pieces, f"}} // namespace {name}"] if pieces else []


def emit_enum(t):
    values = "".join(f"    {name} = {value},\n" for name, value in t.facts["values"].items())
    # GCC 12 takes the names of scoped enumerators for declarations in the enclosing scope.
    return (f"#pragma GCC diagnostic push\n#pragma GCC diagnostic ignored \"-Wshadow\"\n"
            f"enum class {t.name} : {t.detail}\n{{\n{values}}};\n#pragma GCC diagnostic pop")
