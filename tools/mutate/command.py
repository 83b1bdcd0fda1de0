"""Changes one thing in the product, builds what depends on it, runs the tests that can see it, and lists what no test
noticed. The sources and the builds stay as they are."""

import pathlib
import random
import resource
import sys
import time

import arguments
import equivalents
import processes
import report
from builds import Build
from catalogue import Catalogue, product_sources
from programs import App, Baseline, BaselineFails, read_programs
from runner import Runner
from session import Session
from trial import Trial
from unchanged import Unchanged

APP = "app/VelmoNotificationClient.exe"
NO_END = float("inf")


def say(text):
    print(text, flush=True)


def cpu_seconds():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def read_app(root, build, baseline):
    """Nothing where the executable that ships is not built."""
    package = build.folder / "package/installed"
    if not package.exists():
        return None
    return App(build, APP, package, sorted((root / "simulator/scenarios").glob("*.scenario")), baseline)


def chosen_sources(root, files, called_from):
    sources = product_sources(root)
    wanted = [(called_from / file).resolve() for file in files] or sources
    for each in wanted:
        if each not in sources:
            sys.exit(f"./dev mutate: {each} is no source of the product")
    return wanted


def find_changes(catalogue, sources):
    found, told = [], time.monotonic()
    for number, path in enumerate(sources):
        found += catalogue.changes(path)
        if time.monotonic() > told + 30:
            told = time.monotonic()
            say(f"    {number + 1}/{len(sources)} sources read")
    return found


def drawn(options, everything, known):
    """(what to try, in order, how many of it)"""
    if options.replay:
        found = [each for each in everything if each.id == options.replay]
        return (found, 1) if found else sys.exit(f"./dev mutate: the sources have no change {options.replay}")
    if options.sample:
        random.Random(options.seed).shuffle(known)
    return known, min(options.sample or len(known), len(known))


def try_all(root, options, trials, changes, number):
    deadline = time.monotonic() + options.minutes * 60 if options.minutes else NO_END

    def tell(session, change, outcome):
        say(report.progress(session.counted, number, change, outcome))

    session = Session(trials, number, deadline, tell)
    try:
        session.run(changes)
    finally:
        for change, outcome in session.outcomes:
            if outcome.kind == "survived":
                say(report.survivor(change, (root / change.file).read_bytes()))
    return session.numbers()


def workers(root, builds, runners, place):
    baseline = Baseline(place / "baseline")
    programs = [program for each in builds for program in read_programs(each, baseline)]
    app = read_app(root, builds[-1], baseline)
    unchanged = Unchanged(root, place / "unchanged")
    return [Trial(root, builds, programs, app, place / f"worker-{number + 1}", runner, unchanged)
            for number, runner in enumerate(runners)]


def main(root, words, called_from):
    options = arguments.parse(words)
    processes.end_by_signals()
    place = root / "build/mutate"
    builds = [Build(root, folder) for folder in (root / "build/native", root / "build/product") if folder.exists()]
    sources = chosen_sources(root, options.files, called_from)
    wanted = {str(path.relative_to(root)) for path in sources}
    everything = find_changes(Catalogue(root, builds[-1], place / "changes"), sources)
    entries = equivalents.read(root / "tools/mutate/equivalents.toml")
    known, named, stale = equivalents.sort_out(everything, [each for each in entries if each.file in wanted])
    changes, number = drawn(options, everything, known)
    say(f"    changes: {len(known)} in {len(wanted)} sources; to be tried: {number}; seed {options.seed}")
    if options.replay:
        say(report.describe(changes[0], (root / changes[0].file).read_bytes()))
    if number == 0:
        return 0

    processes.stop_by_signals()
    runners = [Runner(place / f"prefix-{n + 1}", builds[-1].folder / "simulator/sim.exe")
               for n in range(min(options.jobs, number))]
    try:
        for runner in runners:
            runner.prepare()
        trials = workers(root, builds, runners, place)
        started, spent = time.monotonic(), cpu_seconds()
        numbers = try_all(root, options, trials, changes, number)
    except processes.Stopped:
        return 1
    except (BaselineFails, OSError) as error:
        sys.exit(f"./dev mutate: {error}")
    finally:
        for runner in runners:
            runner.close()
    say(report.summary(numbers, len(named), options.seed, time.monotonic() - started,
                       cpu_seconds() - spent))
    for each in stale:
        say(f"named equivalent, but no longer there: {each.file}, {each.function}: {each.line}\n    {each.change}")
    return 1 if numbers["survived"] or stale else 0
