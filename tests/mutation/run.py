#!/usr/bin/env python3
"""Do the tests notice when the code is wrong?

The small source changes listed in `mutants/*.txt` are compiled into one copy of the tree, each
behind a number that the environment chooses; see `switching.py`. Then the quick test suites
are run on one after another until one fails, and the slow ones on what they let pass. A change that no suite notices has survived:
either a test is missing, or the list has to say why the change is none.

    tests/mutation/run.py                     # all; goes on where the last run was stopped
    tests/mutation/run.py --only 'cursor-*'   # those whose names match
    tests/mutation/run.py --list
    tests/mutation/run.py --check             # only whether every change still applies

A result stays valid as long as the mutant and the file that it changes stay the same; "survived"
also asks for the same tests. Exit status: 0 all killed or equivalent, 1 otherwise.
"""

import argparse
import concurrent.futures
import fnmatch
import hashlib
import pathlib
import sys
import threading
import time

sys.dont_write_bytecode = True  # Nothing is left behind among the sources.

from mutants import HERE, ROOT, Malformed, content_of, read_all, report_stale
from workshop import Workshop


class Results:
    """What earlier runs found, one line per mutant tried; the last line of a mutant counts."""

    def __init__(self, path):
        self.path = path
        self.writing = threading.Lock()
        self.tests = hashlib.sha256()
        for file in sorted((ROOT / "tests").rglob("*")):
            if file.is_file() and HERE not in file.parents:
                self.tests.update(file.read_bytes())
        self.known = {}
        if path.exists():
            for line in path.read_text(encoding="utf-8").splitlines():
                name, key, status, detail, _ = line.split("\t")
                self.known[name] = (key, status, detail)

    def key(self, mutant, status):
        digest = hashlib.sha256(mutant.definition().encode())
        digest.update(content_of(mutant.file).encode())
        if status == "survived":
            digest.update(self.tests.digest())
        return digest.hexdigest()[:16]

    def of(self, mutant):
        key, status, detail = self.known.get(mutant.name, ("", "", ""))
        return (status, detail) if key == self.key(mutant, status) else None

    def add(self, mutant, status, detail, seconds):
        with self.writing:
            key = self.key(mutant, status)
            self.known[mutant.name] = (key, status, detail)
            with self.path.open("a", encoding="utf-8") as file:
                file.write("\t".join([mutant.name, key, status, detail, f"{seconds:.1f}"]) + "\n")


def verdict(mutant, status):
    if status == "survived" and mutant.equivalent:
        return "equivalent"
    if status == "killed" and mutant.equivalent:
        return "killed although listed as equivalent"
    return status


def summarise(mutants, results):
    counts, bad = {}, 0
    for mutant in mutants:
        status, detail = results.of(mutant) or ("not run", "")
        shown = verdict(mutant, status)
        counts[shown] = counts.get(shown, 0) + 1
        if shown == "equivalent":
            print(f"equivalent: {mutant.name}: {mutant.equivalent}")
        elif shown != "killed":
            bad += 1
            print(f"{shown}: {mutant.name} ({mutant.file}): {mutant.meaning} {detail}".rstrip())
    print(", ".join(f"{count} {shown}" for shown, count in sorted(counts.items())))
    return bad


def run_all(waiting, applying, results, options):
    """Tries the mutants that wait; all that apply are compiled in, so that one build serves."""
    begin = time.monotonic()
    workshop = Workshop(options.work.resolve(), options.jobs, options.suites)
    workshop.prepare(applying)
    built = time.monotonic()
    print(f"prepared in {built - begin:.0f} s; {len(workshop.alone)} have to be built alone",
          flush=True)
    spent = dict.fromkeys((m.name for m in waiting), 0.0)
    decided = []

    def decide(mutant, status, detail=""):
        # Only all suites can tell that a mutant survives.
        if status != "survived" or not options.suites:
            results.add(mutant, status, detail, spent[mutant.name])
        decided.append(mutant)
        print(f"{len(decided)}/{len(waiting)} {mutant.name}: {verdict(mutant, status)} {detail} "
              f"({spent[mutant.name]:.1f} s)", flush=True)

    def timed(test, mutant):
        start = time.monotonic()
        outcome = test(mutant)
        spent[mutant.name] += time.monotonic() - start
        return outcome

    def attempt(mutant, test, is_last):
        suite = timed(test, mutant)
        if suite:
            decide(mutant, "killed", suite)
        elif is_last:
            decide(mutant, "survived")

    def attempt_all(mutants, test, is_last):
        with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
            for attempted in [pool.submit(attempt, m, test, is_last) for m in mutants]:
                attempted.result()

    inside = [m for m in waiting if m.name not in workshop.alone]
    attempt_all(inside, workshop.test_quickly, is_last=False)
    attempt_all([m for m in inside if m not in decided], workshop.test_slowly, is_last=True)
    for mutant in waiting:
        if mutant.name in workshop.alone:
            decide(mutant, *timed(workshop.test_alone, mutant))
    seconds = time.monotonic() - built
    print(f"{len(waiting)} mutants in {seconds:.0f} s, {seconds / len(waiting):.1f} s each; "
          f"{time.monotonic() - begin:.0f} s with the build")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--only", metavar="PATTERN", action="append", default=[],
                        help="only mutants whose name or file matches; may be repeated")
    parser.add_argument("--suites", metavar="PATTERN", action="append", default=[],
                        help="only these suites, of which survivors are not recorded")
    parser.add_argument("--list", action="store_true", help="name the mutants and stop")
    parser.add_argument("--check", action="store_true", help="only check that every mutant applies")
    parser.add_argument("--report", action="store_true", help="show the results so far and stop")
    parser.add_argument("--again", action="store_true", help="forget the results of earlier runs")
    parser.add_argument("--jobs", type=int, default=2, help="compilers, and mutants, at a time (2)")
    parser.add_argument("--work", type=pathlib.Path, default=ROOT / "build" / "mutation",
                        help="where the copy, its build and the results are kept (build/mutation)")
    options = parser.parse_args()

    listed = read_all()
    mutants = listed
    if options.only:
        mutants = [m for m in mutants if any(
            fnmatch.fnmatch(m.name, p) or fnmatch.fnmatch(m.file, p) for p in options.only)]
    if options.list:
        for mutant in mutants:
            print(f"{mutant.name:45} {mutant.file}: {mutant.meaning}")
        print(f"{len(mutants)} mutants")
        return 0
    stale = report_stale(mutants)
    if options.check:
        print(f"{len(mutants) - len(stale)} of {len(mutants)} mutants apply")
        return 1 if stale or not mutants else 0
    mutants = [m for m in mutants if m.occurrences() == 1]

    options.work.mkdir(parents=True, exist_ok=True)
    results_path = options.work / "results.tsv"
    if options.again:
        results_path.unlink(missing_ok=True)
    results = Results(results_path)
    waiting = [m for m in mutants if results.of(m) is None]
    if waiting and not options.report:
        run_all(waiting, [m for m in listed if m.occurrences() == 1], results, options)
    bad = summarise(mutants, results)
    return 1 if bad or stale else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Malformed as error:
        sys.exit(str(error))
