"""A copy of the sources with all mutants inside, its build, and the suites that are run on it."""

import fnmatch
import hashlib
import os
import pathlib
import re
import resource
import subprocess
import sys

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
WALL_SECONDS = 600


def number_of(mutant):
    """The same in every run, so that a list that grows does not change all sources."""
    return int(hashlib.sha256(mutant.name.encode()).hexdigest()[:7], 16) + 1


def put(path, content):
    """Writes only what differs, so that the build sees only real changes as such."""
    if path.is_file() and path.read_bytes() == content:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


class Suite:
    """A test program, or a part of it, and how long it takes without any mutant."""

    def __init__(self, name, target, command):
        self.name = name
        self.target = target
        self.command = command
        self.cpu = 0.0

    def run(self, number):
        """Whether it passes with the mutant of that number, and the end of its output."""
        limit = max(LEAST_CPU_SECONDS, int(5 * self.cpu)) if self.cpu else WALL_SECONDS
        environment = dict(os.environ, **ENVIRONMENT, **{switching.VARIABLE: str(number)})
        command = ["sh", "-c", f'ulimit -t {limit}; ulimit -c 0; exec "$@"', "sh", *self.command]
        try:
            done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                  timeout=WALL_SECONDS, env=environment, check=False)
        except subprocess.TimeoutExpired:
            return False, "took too long"
        return done.returncode == 0, done.stdout.decode("utf-8", "replace")[-4000:]

    def measure(self):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        passed, output = self.run(0)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        if not passed:
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
            if not suite.run(number_of(mutant))[0]:
                return suite.name
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
                if not suite.run(0)[0]:
                    return "killed", suite.name
            return "survived", ""
        finally:
            put(path, switched)
