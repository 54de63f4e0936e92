"""A copy of the sources with all mutants inside, its build, and the suites that are run on it."""

import fnmatch
import hashlib
import os
import pathlib
import re
import resource
import signal
import subprocess
import sys
import tempfile

import switching
from mutants import HERE, ROOT, content_of

COPIED = ["CMakeLists.txt", "cmake", "model", "traversal"]
TESTS_COPIED = ["CMakeLists.txt", "host_framework", "model", "oracle", "scenario", "small_worlds",
                "support", "traversal"]

CONFIGURATION = [
    "-DCMAKE_BUILD_TYPE=",
    "-DCMAKE_CXX_FLAGS=-O1 -w -D_GLIBCXX_ASSERTIONS -fsanitize=address,undefined"
    " -fno-sanitize-recover=all",
    "-DMODELING_NUV0_BUILD_TOOLS=OFF",
    "-DMODELING_NUV0_BUILD_EXAMPLES=OFF",
    "-DMODELING_NUV0_COMPILING_TESTS=OFF",
    "-DMODELING_NUV0_INSTALL=OFF",
    # A test that runs on a shared library need not be linked again when the library changes.
    "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
]

# Depth and the distribution of random cases take long and say little about a mutant.
LEFT_OUT = "*DepthAndWidth*:*Million*:*SmallStack*:*RandomCasesShow*"
# What takes most of the time of its program is a suite of its own, to be run behind the others.
SLOW = "*EveryPoint*:*CallbacksEverywhere*:ThreadsTest*:*CopyAllocationFailure*:*WalkMemory*"

ENVIRONMENT = {
    "MODELING_NUV0_ORACLE_CASES": "800",
    "GTEST_FAIL_FAST": "1",
    "GTEST_BRIEF": "1",
    "ASAN_OPTIONS": "hard_rss_limit_mb=4096:symbolize=0:detect_stack_use_after_return=0",
    "UBSAN_OPTIONS": "symbolize=0",
}
LEAST_CPU_SECONDS = 10
# A suite that takes longer is asked only about what all others have let pass.
QUICK_CPU_SECONDS = 6
# Without any mutant, when it is not yet known how long a suite takes.
FIRST_CPU_SECONDS = 600
# A suite that computes less than so much in so long waits for something that never comes.
STILL_SECONDS = 120
STILL_CPU_SECONDS = 0.5


def number_of(mutant):
    """The same in every run, so that a list that grows does not change all sources."""
    return int(hashlib.sha256(mutant.name.encode()).hexdigest()[:7], 16) + 1


def put(path, content):
    """Writes only what differs, so that the build sees only real changes as such."""
    if path.is_file() and path.read_bytes() == content:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


def family(parent):
    """A process and its children, and the seconds that each has computed so far."""
    computed = {}
    for file in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            fields = file.read_text().rpartition(")")[2].split()
        except OSError:
            continue  # It has ended meanwhile.
        number = int(file.parent.name)
        if parent in (number, int(fields[1])):
            ticks = sum(int(field) for field in fields[11:15])
            computed[number] = ticks / os.sysconf("SC_CLK_TCK")
    return computed


def noticed(suite, ending):
    return suite.name if ending == "fails" else f"{suite.name} ({ending})"


class Suite:
    """A test program, or a part of it, and how long it takes without any mutant."""

    def __init__(self, name, target, command):
        self.name = name
        self.target = target
        self.command = command
        self.cpu = 0.0

    def run(self, number):
        """How it ends with the mutant of that number: empty when it passes. And its last output.

        Time alone fails no suite, as others may be at work on the machine: what is limited is the
        time that the suite itself computes, and how long it may stand still."""
        limit = max(LEAST_CPU_SECONDS, int(5 * self.cpu)) if self.cpu else FIRST_CPU_SECONDS
        environment = dict(os.environ, **ENVIRONMENT, **{switching.VARIABLE: str(number)})
        script = f'ulimit -S -t {limit}; ulimit -c 0; exec "$@"'
        with tempfile.TemporaryFile() as output:
            process = subprocess.Popen(["sh", "-c", script, "sh", *self.command], stdout=output,
                                       stderr=subprocess.STDOUT, env=environment)
            ending = self.ending_of(process)
            output.seek(max(0, output.seek(0, os.SEEK_END) - 4000))
            return ending, output.read().decode("utf-8", "replace")

    @staticmethod
    def ending_of(process):
        computed = 0.0
        while True:
            try:
                status = process.wait(timeout=STILL_SECONDS)
                return "" if status == 0 else "no end" if status == -signal.SIGXCPU else "fails"
            except subprocess.TimeoutExpired:
                before, computed = computed, sum(family(process.pid).values())
                if computed - before < STILL_CPU_SECONDS:
                    for one in family(process.pid):
                        os.kill(one, signal.SIGKILL)
                    process.wait()
                    return "stands still"

    def measure(self):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        ending, output = self.run(0)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        if ending:
            sys.exit(f"{self.name} fails without any mutant:\n{output}")
        self.cpu = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        print(f"{self.name}: passes, {self.cpu:.1f} s", flush=True)


class Workshop:
    def __init__(self, directory, jobs, wanted_suites):
        self.directory = directory
        self.jobs = jobs
        self.wanted_suites = wanted_suites
        self.tree = directory / "tree"
        self.build = directory / "build"
        self.refused_path = directory / "refused.txt"
        self.alone = set()
        self.switched = {}
        self.suites = []

    def prepare(self, mutants):
        """Builds everything with the mutants inside; those that cannot be are named in `alone`."""
        self.directory.mkdir(parents=True, exist_ok=True)
        refused = set(self.refused_path.read_text().split()) if self.refused_path.exists() else set()
        configured = False
        while True:
            self.write_tree(mutants, refused)
            if not configured:
                self.must(["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja",
                           f"-DCMAKE_PROJECT_INCLUDE={HERE / 'Precompile.cmake'}", *CONFIGURATION])
                configured = True
                self.suites = self.find_suites()
            built = self.ninja(*sorted({suite.target for suite in self.suites}))
            if built.returncode == 0:
                break
            output = built.stdout.decode("utf-8", "replace")
            found = self.refused_in(output)
            if not found - refused:
                sys.exit(output[-8000:])
            print("to be built alone: " + ", ".join(sorted(found - refused)), flush=True)
            refused |= found
            self.refused_path.write_text("\n".join(sorted(refused)))
        for suite in self.suites:
            suite.measure()
        self.suites.sort(key=lambda suite: suite.cpu)

    def write_tree(self, mutants, refused):
        by_file = {}
        for mutant in mutants:
            if self.key(mutant) not in refused:
                by_file.setdefault(mutant.file, []).append((number_of(mutant), mutant))
        self.alone = {m.name for m in mutants if self.key(m) in refused}
        wanted = {pathlib.Path("mutant_switch.h")}
        put(self.tree / "mutant_switch.h", switching.HEADER.encode())
        tops = [ROOT / name for name in COPIED] + [ROOT / "tests" / name for name in TESTS_COPIED]
        for top in tops:
            for file in [top] if top.is_file() else sorted(p for p in top.rglob("*") if p.is_file()):
                name = str(file.relative_to(ROOT))
                wanted.add(file.relative_to(ROOT))
                if name not in by_file:
                    put(self.tree / name, file.read_bytes())
                    continue
                source = switching.Switched(content_of(name), by_file[name])
                self.switched[name] = source
                self.alone |= {mutant.name for mutant in source.left_over}
                put(self.tree / name, source.text.encode())
        for file in sorted((ROOT / "tests").glob("*/CMakeLists.txt")):
            if file.parent.name not in TESTS_COPIED:
                # The build names every directory; in these it finds nothing to do.
                wanted.add(file.relative_to(ROOT))
                put(self.tree / file.relative_to(ROOT), b"")
        for file in [p for p in self.tree.rglob("*") if p.is_file()]:
            if file.relative_to(self.tree) not in wanted:
                file.unlink()

    @staticmethod
    def key(mutant):
        return mutant.name + "-" + hashlib.sha256(mutant.definition().encode()).hexdigest()[:8]

    def refused_in(self, output):
        """The mutants on whose lines the compiler found errors."""
        found = set()
        for file, line in re.findall(r"^(/\S+?):(\d+):\d+: (?:fatal )?error", output, re.MULTILINE):
            path = pathlib.Path(file).resolve()
            name = str(path.relative_to(self.tree)) if path.is_relative_to(self.tree) else ""
            if name in self.switched:
                number = self.switched[name].number_at(int(line))
                found |= {self.key(m) for n, m in self.switched[name].numbered if n == number}
        return found

    def must(self, command):
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        if done.returncode != 0:
            sys.exit(done.stdout.decode("utf-8", "replace")[-8000:])

    def ninja(self, *targets):
        return subprocess.run(["ninja", "-C", self.build, "-k0", f"-j{self.jobs}", *targets],
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)

    def find_suites(self):
        listing = subprocess.run(["ninja", "-C", self.build, "-t", "targets", "all"],
                                 stdout=subprocess.PIPE, check=True).stdout.decode()
        suites = []
        for path, target in re.findall(r"^(tests/\w+/(\w+_tests)): CXX_EXECUTABLE", listing,
                                       re.MULTILINE):
            if "depth" in target:
                continue
            program = self.build / path
            suites.append(Suite(target, target, [program, f"--gtest_filter=-{LEFT_OUT}:{SLOW}"]))
            if target.startswith("traversal") and "first_use" not in target:
                suites.append(Suite(target + "_slow", target,
                                    [program, f"--gtest_filter={SLOW}:-{LEFT_OUT}"]))
        suites.append(Suite("small_worlds", "small_worlds",
                            [self.build / "tests/small_worlds/small_worlds", "--stride", "101",
                             "--until", "40000"]))
        cases = sorted(self.tree.glob("tests/scenario/cases/*.scn"))
        script = 'for case in "$@"; do "$0" --check "$case" || exit 1; done'
        suites.append(Suite("scenarios", "scenario_runner",
                            ["sh", "-c", script, self.build / "tests/scenario/scenario-runner",
                             *cases]))
        return [suite for suite in suites
                if not self.wanted_suites
                or any(fnmatch.fnmatch(suite.name, wanted) for wanted in self.wanted_suites)]

    def suites_for(self, mutant):
        """The layer that the mutant changes is asked first, as it fails soonest."""
        first = mutant.first_suite or mutant.file.split("/")[0] + "_tests"
        return sorted(self.suites, key=lambda suite: suite.name != first)

    def test_quickly(self, mutant):
        """Runs the quick suites on a mutant that is compiled in; the one that noticed it, if any."""
        return self.noticed_by(mutant, lambda suite: suite.cpu <= QUICK_CPU_SECONDS)

    def test_slowly(self, mutant):
        """The same with the others."""
        return self.noticed_by(mutant, lambda suite: suite.cpu > QUICK_CPU_SECONDS)

    def noticed_by(self, mutant, wanted):
        for suite in filter(wanted, self.suites_for(mutant)):
            ending, _ = suite.run(number_of(mutant))
            if ending:
                return noticed(suite, ending)
        return ""

    def test_alone(self, mutant):
        """Builds and runs a mutant that could not be compiled in beside the others."""
        path = self.tree / mutant.file
        switched = path.read_bytes()
        put(path, mutant.mutated().encode())
        try:
            for suite in self.suites_for(mutant):
                built = self.ninja(suite.target)
                if built.returncode != 0:
                    print(built.stdout.decode("utf-8", "replace")[-2000:])
                    return "does not build", ""
                ending, _ = suite.run(0)
                if ending:
                    return "killed", noticed(suite, ending)
            return "survived", ""
        finally:
            put(path, switched)
