#!/usr/bin/env python3
"""compare.py BEFORE AFTER: what ./dev bench --json wrote of two runs, row by row.

A row has changed when its two intervals have nothing in common; where they have, the runs cannot tell.
"""

import argparse
import json
import pathlib


def read_rows(path):
    """{(bench, table, row): row}"""
    rows = {}
    for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
        row = json.loads(line)
        key = (row["bench"], row["table"], row["row"])
        if key in rows:
            raise SystemExit(f"{path} has two rows '{', '.join(key)}': it holds more than one run")
        rows[key] = row
    return rows


def change(before, after):
    """What two intervals say, and by how much their medians differ."""
    if before["low"] <= after["high"] and after["low"] <= before["high"]:
        return "no change seen"
    difference = after["median"] - before["median"]
    by = f"{abs(difference / before['median']) * 100:.1f} %" if before["median"] else f"{abs(difference):g}"
    return f"{'more' if difference > 0 else 'less'} by {by}"


def figures(row):
    return f"{row['median']:.3f} ({row['low']:.3f} - {row['high']:.3f})"


def compare(before, after):
    """The lines to print. Tables and rows in the order of the later run; then those that it has no more."""
    table = None
    for key, row in after.items():
        if key[:2] != table:
            table = key[:2]
            yield f"\n{row['bench']}: {row['table']}"
        if key in before:
            yield (f"  {row['row']:38} {figures(before[key]):>30} -> {figures(row):30} {row['unit']}: "
                   f"{change(before[key], row)}")
        else:
            yield f"  {row['row']:38} {'':30}    {figures(row):30} {row['unit']}: is new"
    for key in before.keys() - after.keys():
        yield f"  not in the later run: {', '.join(key)}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("before", type=pathlib.Path)
    parser.add_argument("after", type=pathlib.Path)
    arguments = parser.parse_args()
    print("\n".join(compare(read_rows(arguments.before), read_rows(arguments.after))))


if __name__ == "__main__":
    main()
