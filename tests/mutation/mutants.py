"""The lists of mutants, and the sources that they change."""

import functools
import pathlib
import re

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent


@functools.lru_cache(maxsize=None)
def content_of(file):
    """A source as it was when first asked for: others may be at work on it during a long run."""
    path = ROOT / file
    return path.read_text(encoding="utf-8") if path.is_file() else ""


class Malformed(Exception):
    pass


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

    def new_text(self):
        return "\n".join(self.new)

    def occurrences(self):
        return content_of(self.file).count(self.old_text())

    def mutated(self):
        return content_of(self.file).replace(self.old_text(), self.new_text())

    def change(self):
        """Where the text really differs, and what stands there instead: start, end, text."""
        old, new = self.old_text(), self.new_text()
        start = content_of(self.file).index(old)
        shorter = min(len(old), len(new))
        same = next((i for i in range(shorter) if old[i] != new[i]), shorter)
        rest = shorter - same
        back = next((i for i in range(rest) if old[-1 - i] != new[-1 - i]), rest)
        return start + same, start + len(old) - back, new[same:len(new) - back]

    def definition(self):
        return "\0".join([self.file, *self.old, "", *self.new])


def read_list(path):
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
        elif line in ("|-", "|+"):
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


def read_all():
    mutants = [m for path in sorted(HERE.glob("mutants/*.txt")) for m in read_list(path)]
    names = [m.name for m in mutants]
    repeated = {name for name in names if names.count(name) > 1}
    if repeated:
        raise Malformed(f"used twice: {', '.join(sorted(repeated))}")
    return mutants


def sources():
    return [str(path.relative_to(ROOT)) for top in ("model", "traversal")
            for path in sorted((ROOT / top).rglob("*")) if path.suffix in (".h", ".cpp")]


def report_stale(mutants):
    stale = [(m, m.occurrences()) for m in mutants]
    stale = [(m, count) for m, count in stale if count != 1]
    for mutant, count in stale:
        moved = [f for f in sources() if content_of(f).count(mutant.old_text()) == 1]
        print(f"stale: {mutant.name}: its text occurs {count} times in {mutant.file}, not once"
              + (f"; it stands in {moved[0]} now" if len(moved) == 1 else ""))
    return stale
