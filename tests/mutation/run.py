#!/usr/bin/env python3
"""Do the tests notice when the code is wrong?

Applies the small source changes listed in `mutants/*.txt` one at a time to a copy of the tree,
builds what the change touches, and runs the test suites until one fails. A change that no suite
notices has survived: either a test is missing, or the list has to say why the change is none.

    tests/mutation/run.py                     # all; goes on where the last run was stopped
    tests/mutation/run.py --only 'cursor-*'   # those whose names match
    tests/mutation/run.py --list
    tests/mutation/run.py --check             # only whether every change still applies

A result stays valid as long as the mutant and the file that it changes stay the same; "survived"
also asks for the same tests. Exit status: 0 all killed or equivalent, 1 otherwise.
"""

import argparse
import fnmatch
import functools
import hashlib
import os
import pathlib
import re
import resource
import shutil
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent

COPIED = ["CMakeLists.txt", "cmake", "model", "traversal", "tests"]
TESTS_NOT_COPIED = {"abi", "compile_fail", "consumer", "fuzz", "headers", "mutation", "readme",
                    "symbols", "tools", "xmi"}

CONFIGURATION = [
    # Neither optimised nor with symbols: compiling is what takes the time.
    "-DCMAKE_BUILD_TYPE=",
    "-DCMAKE_CXX_FLAGS=-O0 -D_GLIBCXX_ASSERTIONS -fsanitize=address,undefined"
    " -fno-sanitize-recover=all",
    "-DMODELING_NUV0_BUILD_TOOLS=OFF",
    "-DMODELING_NUV0_BUILD_EXAMPLES=OFF",
    "-DMODELING_NUV0_COMPILING_TESTS=OFF",
    "-DMODELING_NUV0_INSTALL=OFF",
    # A test that runs on a shared library need not be linked again when the library changes.
    "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
]

# In this order, whatever else is found behind them.
SUITE_ORDER = ["model_tests", "traversal_tests", "scenarios", "oracle_tests"]
ORACLE_CASES = "400"
# Depth, the distribution of random cases, and copies that fail at every allocation take long and
# say little about a mutant that the others do not.
TESTS_LEFT_OUT = ("*CopyAllocationFailure*:*DepthAndWidth*:*Million*:*SmallStack*:"
                  "*RandomCasesShow*")

LEAST_CPU_SECONDS = 20
WALL_SECONDS = 600
BUILD_SECONDS = 1800


@functools.lru_cache(maxsize=None)
def content_of(file):
    """A source as it was when first asked for: others may be at work on it during a long run."""
    path = ROOT / file
    return path.read_text(encoding="utf-8") if path.is_file() else ""


class Mutant:
    def __init__(self, name, file):
        self.name = name
        self.file = file
        self.meaning = ""
        self.equivalent = ""
        self.first_suite = ""
        self.old = []
        self.new = []

    def old_text(self):
        return "\n".join(self.old)

    def occurrences(self):
        return content_of(self.file).count(self.old_text())

    def apply(self, text):
        return text.replace(self.old_text(), "\n".join(self.new))

    def definition(self):
        return "\0".join([self.file, *self.old, "", *self.new])


class Malformed(Exception):
    pass


def read_mutants(path):
    mutants = []
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        head = re.fullmatch(r"\[([a-z0-9-]+)\] (\S+)", line)
        if head:
            mutants.append(Mutant(*head.groups()))
        elif not line or line.startswith("#"):
            continue
        elif not mutants:
            raise Malformed(f"{path}:{number}: expected '[name] file'")
        elif line.startswith("|- "):
            mutants[-1].old.append(line[3:])
        elif line == "|-" or line == "|+":
            (mutants[-1].old if line == "|-" else mutants[-1].new).append("")
        elif line.startswith("|+ "):
            mutants[-1].new.append(line[3:])
        elif line.startswith("equivalent: "):
            mutants[-1].equivalent = line.removeprefix("equivalent: ")
        elif line.startswith("first: "):
            mutants[-1].first_suite = line.removeprefix("first: ")
        elif not mutants[-1].meaning:
            mutants[-1].meaning = line
        else:
            raise Malformed(f"{path}:{number}: not understood: {line}")
    for mutant in mutants:
        if not mutant.old or not mutant.meaning or mutant.old == mutant.new:
            raise Malformed(f"{path}: {mutant.name} lacks a meaning or changes nothing")
    return mutants


def read_all_mutants():
    mutants = [m for path in sorted(HERE.glob("mutants/*.txt")) for m in read_mutants(path)]
    names = [m.name for m in mutants]
    repeated = {name for name in names if names.count(name) > 1}
    if repeated:
        raise Malformed(f"used twice: {', '.join(sorted(repeated))}")
    return mutants


def report_stale(mutants):
    stale = [(m, m.occurrences()) for m in mutants]
    stale = [(m, count) for m, count in stale if count != 1]
    for mutant, count in stale:
        print(f"stale: {mutant.name}: its text occurs {count} times in {mutant.file}, not once")
    return stale


def copy_changed(source, target):
    """Copies what differs in content, so that the build sees only real changes as such."""
    wanted = set()
    for name in COPIED:
        top = source / name
        files = [top] if top.is_file() else sorted(p for p in top.rglob("*") if p.is_file())
        for file in files:
            relative = file.relative_to(source)
            if name == "tests" and relative.parts[1] in TESTS_NOT_COPIED:
                continue
            wanted.add(relative)
            copy = target / relative
            content = file.read_bytes()
            if not copy.is_file() or copy.read_bytes() != content:
                copy.parent.mkdir(parents=True, exist_ok=True)
                copy.write_bytes(content)
    for name in TESTS_NOT_COPIED:
        # The build names every directory; in these it finds nothing to do.
        relative = pathlib.Path("tests", name, "CMakeLists.txt")
        wanted.add(relative)
        (target / relative).parent.mkdir(parents=True, exist_ok=True)
        (target / relative).touch()
    for file in [p for p in target.rglob("*") if p.is_file() or p.is_symlink()]:
        if file.relative_to(target) not in wanted:
            file.unlink()


def mirror(source, target):
    """Makes the target the same as the source, by time and size."""
    def stamps(top):
        return {
            p.relative_to(top): (s.st_mtime_ns, s.st_size)
            for p in top.rglob("*") if p.is_file() for s in [p.stat()]
        }
    wanted, present = stamps(source), stamps(target) if target.exists() else {}
    for relative in present.keys() - wanted.keys():
        (target / relative).unlink()
    for relative, stamp in wanted.items():
        if present.get(relative) != stamp:
            (target / relative).parent.mkdir(parents=True, exist_ok=True)
            # A program that an interrupted run left running cannot be written to.
            (target / relative).unlink(missing_ok=True)
            shutil.copy2(source / relative, target / relative)


class Run:
    """One suite's process: how it ended and what it cost."""

    def __init__(self, command, cpu_seconds, environment):
        def limit():
            resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds + 1))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        try:
            done = subprocess.run(
                command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=WALL_SECONDS,
                env=environment, preexec_fn=limit, check=False)
            self.output = done.stdout.decode("utf-8", "replace")
            self.passed = done.returncode == 0
        except subprocess.TimeoutExpired:
            self.output = "took too long"
            self.passed = False
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        self.cpu = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


class Workshop:
    """The copy of the tree, its build, and the untouched build to return to after each mutant."""

    def __init__(self, directory, jobs):
        self.directory = directory
        self.jobs = jobs
        self.tree = directory / "tree"
        self.build = directory / "build"
        self.clean_build = directory / "clean-build"
        self.under_way = directory / "mutant-under-way"
        self.suites = []
        self.cpu_limits = {}

    def prepare(self):
        self.directory.mkdir(parents=True, exist_ok=True)
        if self.under_way.exists():
            # The last run was stopped in the middle of a mutant.
            mirror(self.clean_build, self.build)
            self.under_way.unlink()
        copy_changed(ROOT, self.tree)
        shared = self.directory / "shared"
        if not shared.exists() and (ROOT.parent / "shared").exists():
            shared.symlink_to(ROOT.parent / "shared")
        self.must(["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja",
                   f"-DCMAKE_PROJECT_INCLUDE={HERE / 'Precompile.cmake'}", *CONFIGURATION])
        mirror(self.build, self.clean_build)
        self.suites = self.find_suites()

    def make_ready(self, suite):
        """Builds and runs a suite without any mutant, when it is first wanted."""
        if suite in self.cpu_limits:
            return
        self.must(self.ninja(suite))
        result = self.run_suite(suite)
        if not result.passed:
            sys.exit(f"{suite} fails without any mutant:\n{result.output[-4000:]}")
        self.cpu_limits[suite] = max(LEAST_CPU_SECONDS, int(10 * result.cpu))
        print(f"{suite}: passes, {result.cpu:.1f} s", flush=True)
        mirror(self.build, self.clean_build)

    def must(self, command):
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        if done.returncode != 0:
            sys.exit(done.stdout.decode("utf-8", "replace")[-8000:])

    def find_suites(self):
        listing = subprocess.run(["ninja", "-C", self.build, "-t", "targets", "all"],
                                 stdout=subprocess.PIPE, check=True).stdout.decode()
        found = re.findall(r"^tests/\w+/(\w+_tests): CXX_EXECUTABLE", listing, re.MULTILINE)
        found += ["scenarios"] if "scenario-runner: CXX_EXECUTABLE" in listing else []
        known = [suite for suite in SUITE_ORDER if suite in found]
        return known + sorted(set(found) - set(known))

    def ninja(self, suite):
        target = "scenario_runner" if suite == "scenarios" else suite
        return ["ninja", "-C", self.build, f"-j{self.jobs}", target]

    def run_suite(self, suite):
        environment = dict(
            os.environ,
            MODELING_NUV0_ORACLE_CASES=ORACLE_CASES,
            GTEST_FAIL_FAST="1",
            GTEST_BRIEF="1",
            ASAN_OPTIONS="hard_rss_limit_mb=4096:symbolize=0",
            UBSAN_OPTIONS="symbolize=0")
        seconds = self.cpu_limits.get(suite, WALL_SECONDS)
        if suite != "scenarios":
            (executable,) = self.build.glob(f"tests/*/{suite}")
            return Run([executable, f"--gtest_filter=-{TESTS_LEFT_OUT}"], seconds, environment)
        runner = self.build / "tests/scenario/scenario-runner"
        cases = [*self.tree.glob("tests/scenario/cases/*.scn"),
                 *self.directory.glob("shared/cases/*.scn")]
        script = 'for case in "$@"; do "$0" --check "$case" || exit 1; done'
        return Run(["sh", "-c", script, runner, *sorted(cases)], seconds, environment)

    def suites_for(self, mutant):
        """The layer that the mutant changes is asked first, as it fails soonest."""
        first = mutant.first_suite or mutant.file.split("/")[0] + "_tests"
        return sorted(self.suites, key=lambda suite: suite != first)

    def test(self, mutant):
        for suite in self.suites_for(mutant):
            self.make_ready(suite)
            status = self.test_with(mutant, suite)
            if status != "survived":
                return status, suite
        return "survived", ""

    def test_with(self, mutant, suite):
        path = self.tree / mutant.file
        original, times = path.read_text(encoding="utf-8"), path.stat()
        if original != content_of(mutant.file):
            sys.exit(f"{mutant.file} changed while the run began; start it again")
        self.under_way.write_text(mutant.name)
        path.write_text(mutant.apply(original), encoding="utf-8")
        try:
            built = subprocess.run(self.ninja(suite), stdout=subprocess.PIPE, check=False,
                                   stderr=subprocess.STDOUT, timeout=BUILD_SECONDS)
            if built.returncode != 0:
                print(built.stdout.decode("utf-8", "replace")[-2000:])
                return "does not build"
            return "survived" if self.run_suite(suite).passed else "killed"
        finally:
            path.write_text(original, encoding="utf-8")
            os.utime(path, ns=(times.st_atime_ns, times.st_mtime_ns))
            mirror(self.clean_build, self.build)
            self.under_way.unlink()


class Results:
    """What earlier runs found, one line per mutant tried; the last line of a mutant counts."""

    def __init__(self, path):
        self.path = path
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
        key = self.key(mutant, status)
        self.known[mutant.name] = (key, status, detail)
        with self.path.open("a", encoding="utf-8") as file:
            file.write("\t".join([mutant.name, key, status, detail, f"{seconds:.0f}"]) + "\n")


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


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--only", metavar="PATTERN", action="append", default=[],
                        help="only mutants whose name or file matches; may be repeated")
    parser.add_argument("--list", action="store_true", help="name the mutants and stop")
    parser.add_argument("--check", action="store_true", help="only check that every mutant applies")
    parser.add_argument("--report", action="store_true", help="show the results so far and stop")
    parser.add_argument("--again", action="store_true", help="forget the results of earlier runs")
    parser.add_argument("--jobs", type=int, default=2, help="compilers at a time (2)")
    parser.add_argument("--work", type=pathlib.Path, default=ROOT / "build" / "mutation",
                        help="where the copy, its build and the results are kept (build/mutation)")
    options = parser.parse_args()

    mutants = read_all_mutants()
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

    work = options.work.resolve()
    work.mkdir(parents=True, exist_ok=True)
    results_path = work / "results.tsv"
    if options.again:
        results_path.unlink(missing_ok=True)
    results = Results(results_path)
    waiting = [m for m in mutants if results.of(m) is None]
    if waiting and not options.report:
        workshop = Workshop(work, options.jobs)
        workshop.prepare()
        # Sources before headers: what compiles soon answers soon.
        waiting.sort(key=lambda mutant: mutant.file.endswith(".h"))
        for number, mutant in enumerate(waiting, 1):
            start = time.monotonic()
            status, detail = workshop.test(mutant)
            seconds = time.monotonic() - start
            results.add(mutant, status, detail, seconds)
            print(f"{number}/{len(waiting)} {mutant.name}: {verdict(mutant, status)} {detail} "
                  f"({seconds:.0f} s)", flush=True)
    bad = summarise(mutants, results)
    return 1 if bad or stale else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Malformed as error:
        sys.exit(str(error))
