"""What ./dev mutate tells."""

import equivalents


def describe(change, text):
    where = f" in {change.function}" if change.function else ""
    lines = [f"{change.file}:{change.line}{where}: {change.kind}", *(f"    {line}" for line in change.diff(text))]
    return "\n".join([*lines, f"    play it again: ./dev mutate --replay {change.id}"])


def progress(number, wanted, change, outcome):
    return (f"    {number}/{wanted} {outcome.kind:<12} {change.id} {change.file}:{change.line} {change.kind}, "
            f"{outcome.seconds:.0f} s{', ' + outcome.by if outcome.by else ''}")


def survivor(change, text):
    """With what names it in the file of equivalents."""
    entry = "\n".join(f"        {line}" for line in equivalents.entry(change).splitlines())
    return f"\n{describe(change, text)}\n    or, where it makes no difference, name it with the reason:\n{entry}\n"


def summary(numbers, named, seed, elapsed, spent):
    tried = numbers["caught"] + numbers["survived"]
    share = f"{100 * numbers['caught'] / tried:.1f} %" if tried else "none"
    each = f"; each {elapsed / tried:.1f} s, {spent / tried:.1f} s of processor" if tried else ""
    return (f"mutants tried: {tried}, caught: {numbers['caught']} ({share}), survived: {numbers['survived']}\n"
            f"not counted: {numbers['not compiled']} that do not compile, {numbers['same program']} that give the same "
            f"program, {named} named equivalent\nseed {seed}, {elapsed:.0f} s{each}")
