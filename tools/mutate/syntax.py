"""Finds what can be changed in a source, with libclang."""

import functools
import re
import subprocess

from clang.cindex import Config, CursorKind, Diagnostic, Index, SourceLocation, SourceRange, TokenKind

from change import Change

LIBRARY = "libclang-19.so.1"
FUNCTIONS = {CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR,
             CursorKind.FUNCTION_TEMPLATE, CursorKind.CONVERSION_FUNCTION}
BLOCKS = {CursorKind.IF_STMT, CursorKind.FOR_STMT, CursorKind.WHILE_STMT, CursorKind.CXX_FOR_RANGE_STMT,
          CursorKind.SWITCH_STMT, CursorKind.CXX_TRY_STMT, CursorKind.COMPOUND_STMT}
LABELS = {CursorKind.CASE_STMT, CursorKind.DEFAULT_STMT}
TURNED = {"==": "!=", "!=": "==", "&&": "||", "||": "&&", "<=": "<", ">=": ">", "<": "<=", ">": ">=", "true": "false",
          "false": "true"}
NEUTRAL = {"{}", "0", "nullptr", "false"}
NUMBER = re.compile(r"(?P<digits>0[xX][\da-fA-F']+|0[bB][01']+|\d[\d']*)(?P<suffix>[uUlLzZ]*)")
TEXT = re.compile(r"(?P<before>(?:u8|[uUL])?(?:R\"[^(]*\(|[\"']))(?P<text>.*)(?P<after>[\"'])", re.DOTALL)
ESCAPE = re.compile(r"\\(?:x[\da-fA-F]+|[0-7]{1,3}|u[\da-fA-F]{4}|.)")
CALLS = re.compile(r"\(|\+\+|--")


def children(cursor):
    return list(cursor.get_children())


def off_by_one(number):
    """The literals for one more and for one less; none for what is no whole number."""
    found = NUMBER.fullmatch(number)
    if not found:
        return []
    digits = found["digits"].replace("'", "")
    octal_or_not = (8, "0{:o}") if digits[:1] == "0" and len(digits) > 1 else (10, "{}")
    base, form = {"x": (16, "0x{:X}"), "b": (2, "0b{:b}")}.get(digits[1:2].lower(), octal_or_not)
    value = int(digits, base)
    return [form.format(each) + found["suffix"] for each in (value + 1, value - 1) if each >= 0]


def other_letter(letter):
    return chr(ord(letter) - 1) if letter in "zZ9" else chr(ord(letter) + 1)


def misspelt(literal):
    """The text with the letter in its middle exchanged; none for one without letters."""
    found = TEXT.fullmatch(literal)
    if not found:
        return []
    escaped = {place for escape in ESCAPE.finditer(found["text"]) for place in range(*escape.span())}
    places = [place for place, letter in enumerate(found["text"])
              if letter.isascii() and letter.isalnum() and place not in escaped]
    if not places:
        return []
    place = places[len(places) // 2]
    text = found["text"]
    return [found["before"] + text[:place] + other_letter(text[place]) + text[place + 1 :] + found["after"]]


class File:
    """One file as a translation unit shows it."""

    def __init__(self, unit, path, name):
        self.unit = unit
        self.name = name
        self.path = str(path)
        self.text = path.read_bytes()
        self.functions = []  # (start, end, name), outer before inner
        self.found = []

    def is_here(self, cursor):
        return cursor.location.file is not None and cursor.location.file.name == self.path

    def source(self, start, end):
        return self.text[start:end].decode()

    def range(self, cursor):
        """The bytes it stands on; nothing for what does not stand in this file."""
        start, end = cursor.extent.start, cursor.extent.end
        if start.file is None or start.file.name != self.path or end.file is None or end.file.name != self.path:
            return None
        return (start.offset, end.offset) if start.offset < end.offset else None

    def function_at(self, place):
        names = [name for start, end, name in self.functions if start <= place < end]
        return names[-1] if names else ""

    def add(self, kind, start, end, new):
        old = self.source(start, end)
        line_start = self.text.rfind(b"\n", 0, start) + 1
        line_end = self.text.find(b"\n", start)
        line_text = self.text[line_start : line_end if line_end >= 0 else None].decode().strip()
        self.found.append(Change(self.name, self.function_at(start), kind, start, end, old, new,
                                 self.text.count(b"\n", 0, start) + 1, line_text))


def qualified(cursor):
    names = []
    while cursor is not None and cursor.kind != CursorKind.TRANSLATION_UNIT:
        if cursor.spelling and "(unnamed" not in cursor.spelling and "(anonymous" not in cursor.spelling:
            names.append(cursor.spelling)
        cursor = cursor.semantic_parent
    return "::".join(reversed(names))


def statement_range(file, statement):
    """With its semicolon."""
    place = file.range(statement)
    if place is None:
        return None
    start, end = place
    ending = re.match(rb"\s*;", file.text[end:])
    if statement.kind not in BLOCKS and ending and file.text[end - 1 : end] != b";":
        end += ending.end()
    return start, end


def declared(statement):
    return [each for each in children(statement) if each.kind == CursorKind.VAR_DECL]


def is_guard(statement, scope):
    """A declaration that is made for its constructor and destructor: no name of it is used."""
    variables = declared(statement)
    if not variables or len(variables) != len(children(statement)):
        return False
    names = {each.spelling for each in variables}
    return not any(each.kind == CursorKind.DECL_REF_EXPR and each.spelling in names for each in scope.walk_preorder())


def is_step(statement, scope):
    """A statement whose absence or place may make a difference without breaking the compilation."""
    if statement.kind == CursorKind.DECL_STMT:
        return is_guard(statement, scope)
    return statement.kind not in LABELS and statement.kind != CursorKind.NULL_STMT


def are_free_of_calls(*texts):
    """Plain assignments: their order says nothing, unless one reads what the other writes, which the compiler knows."""
    return not any(CALLS.search(text) for text in texts)


def drop_and_swap(file, scope):
    steps = []  # the statement before, where it counts
    for statement in children(scope):
        while statement.kind in LABELS:
            statement = children(statement)[-1]
            steps = []
        place = statement_range(file, statement)
        if place is None or not is_step(statement, scope):
            steps = []
            continue
        text = file.source(*place)
        file.add("drop", *place, "".join(["{}" if statement.kind in BLOCKS else ";", "\n" * text.count("\n")]))
        if steps and statement.kind not in (CursorKind.RETURN_STMT, CursorKind.BREAK_STMT, CursorKind.CONTINUE_STMT):
            before = steps[-1]
            first = file.source(*before)
            if first != text and not are_free_of_calls(first, text):
                file.add("swap", before[0], place[1], text + file.source(before[1], place[0]) + first)
        steps = [place]


def turn_condition(file, cursor):
    parts = children(cursor)
    if cursor.kind == CursorKind.DO_STMT:
        condition = parts[-1]
    elif cursor.kind == CursorKind.CONDITIONAL_OPERATOR:
        condition = parts[0]
    else:
        head = parts[: next((n for n, part in enumerate(parts) if part.kind == CursorKind.COMPOUND_STMT), 0)]
        if not head:
            return
        condition = next((part for part in head if part.kind == CursorKind.VAR_DECL), head[-1])
    place = file.range(condition)
    if place is None:
        return
    text = file.source(*place)
    file.add("turn", *place, f"{text}; !{condition.spelling}" if condition.kind == CursorKind.VAR_DECL else f"!({text})")


def turn_order(file, cursor):
    """< and >, which tokens do not tell from brackets of templates."""
    operands = children(cursor)
    places = [file.range(each) for each in operands]
    if len(operands) != 2 or None in places:
        return
    between = file.source(places[0][1], places[1][0])
    if between.strip() in ("<", ">"):
        start = places[0][1] + between.index(between.strip())
        file.add("turn", start, start + 1, TURNED[between.strip()])


def change_arguments(file, cursor):
    whole = file.range(cursor)
    arguments = list(cursor.get_arguments())
    if cursor.kind == CursorKind.INIT_LIST_EXPR:
        arguments = children(cursor)
        if any(each.kind == CursorKind.INIT_LIST_EXPR for each in arguments):
            return  # rows of a table; what stands in one is changed
    places = [file.range(each) for each in arguments]
    if whole is None or None in places or cursor.spelling.startswith("operator"):
        return
    for number, (start, end) in enumerate(places):
        text = file.source(start, end)
        if (start, end) == whole or not whole[0] <= start < end <= whole[1]:
            return
        if text not in NEUTRAL:
            file.add("argument", start, end, "{}" + "\n" * text.count("\n"))
        if number and places[number - 1][1] < start:
            before = places[number - 1]
            other = file.source(*before)
            if other != text:
                file.add("arguments swapped", before[0], end, text + file.source(before[1], start) + other)


def visit(file, cursor):
    place = file.range(cursor)
    if cursor.kind in FUNCTIONS and cursor.is_definition() and place:
        file.functions.append((*place, qualified(cursor)))
    if cursor.kind == CursorKind.COMPOUND_STMT:
        drop_and_swap(file, cursor)
    elif cursor.kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT, CursorKind.DO_STMT, CursorKind.CONDITIONAL_OPERATOR):
        turn_condition(file, cursor)
    elif cursor.kind == CursorKind.BINARY_OPERATOR:
        turn_order(file, cursor)
    elif cursor.kind in (CursorKind.CALL_EXPR, CursorKind.INIT_LIST_EXPR):
        change_arguments(file, cursor)
    if cursor.kind != CursorKind.STATIC_ASSERT:
        for each in cursor.get_children():
            visit(file, each)


def is_directive(file, place):
    line = file.text[file.text.rfind(b"\n", 0, place) + 1 : place]
    return line.lstrip().startswith((b"#", b"static_assert", b"extern"))


def change_tokens(file):
    end = SourceLocation.from_offset(file.unit, file.unit.get_file(file.path), len(file.text))
    start = SourceLocation.from_offset(file.unit, file.unit.get_file(file.path), 0)
    for token in file.unit.get_tokens(extent=SourceRange.from_locations(start, end)):
        place, text = token.extent.start.offset, token.spelling
        if is_directive(file, place):
            continue
        if token.kind == TokenKind.LITERAL:
            kind, others = ("constant", off_by_one(text)) if text[0].isdigit() else ("letter", misspelt(text))
        elif text in TURNED and text not in "<>" and token.kind in (TokenKind.PUNCTUATION, TokenKind.KEYWORD):
            kind, others = "turn", [TURNED[text]]
        else:
            continue
        for new in others:
            file.add(kind, place, place + len(text.encode()), new)


@functools.cache
def headers_of(compiler):
    """The library does not look for the compiler's own ones where the compiler does."""
    return subprocess.run([compiler, "-print-resource-dir"], capture_output=True, text=True, check=True).stdout.strip()


def changes_in(path, name, unit_path, command):
    """All changes of a file, as the command compiles it with the unit that holds it."""
    if not Config.loaded and Config.library_file is None:
        Config.set_library_file(LIBRARY)
    compiler, *options = command
    unit = Index.create().parse(str(unit_path), args=[*options, "-resource-dir", headers_of(compiler)])
    errors = [str(each) for each in unit.diagnostics if each.severity >= Diagnostic.Error]
    if errors:
        raise SyntaxError("\n".join(errors))
    file = File(unit, path, name)
    for cursor in unit.cursor.get_children():
        if file.is_here(cursor):
            visit(file, cursor)
    change_tokens(file)
    return file.found
