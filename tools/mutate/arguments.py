"""The command line of ./dev mutate."""

import argparse
import pathlib
import random
import sys


def count(text):
    number = int(text)
    if number < 1:
        raise argparse.ArgumentTypeError(f"'{text}' is not above zero")
    return number


def parse(arguments):
    parser = argparse.ArgumentParser(prog="./dev mutate", usage="./dev mutate [FILES...] [--sample N] [--seed S] "
                                     "[--for MINUTES] | --replay ID")
    parser.add_argument("files", nargs="*", type=pathlib.Path, metavar="FILES", help="sources of the product; all")
    parser.add_argument("--sample", type=count, metavar="N", help="tries so many, drawn at random; all")
    parser.add_argument("--seed", type=int, metavar="S", help="draws the same sample again")
    parser.add_argument("--for", type=count, metavar="MINUTES", dest="minutes", help="begins none later")
    parser.add_argument("--replay", metavar="ID", help="tries this one, named equivalent or not")
    parser.add_argument("--jobs", type=count, default=2, metavar="N", help="tries so many at a time; 2")
    chosen = parser.parse_args(arguments)
    if chosen.replay and (chosen.files or chosen.sample or chosen.seed is not None or chosen.minutes):
        parser.error("--replay needs nothing but the ID")
    if chosen.seed is None:
        chosen.seed = random.randrange(1_000_000)
    return chosen


if __name__ == "__main__":
    parse(sys.argv[1:])
