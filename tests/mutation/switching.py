"""Sources in which mutants are chosen at run time.

A mutant that changes the body of a function is compiled in beside the original: the body is written
once for each of its mutants, and the number in the environment chooses.

    int f(int a) { if (MUTANT(7)) { return a - 1; } else { return a + 1; } }

A mutant that changes what a member or a variable is initialised with becomes `MUTANT(7) ? b : a`.
What changes declarations fits in neither and has to be built by itself.
"""

import re

VARIABLE = "MODELING_NUV0_MUTANT"

# Not a function of the sources: included by every source that has mutants.
HEADER = f"""#pragma once
#include <cstdlib>
#include <type_traits>
namespace mutation {{
inline int chosen() noexcept {{
    static const int number = [] {{
        const char* const text = std::getenv("{VARIABLE}");
        return text == nullptr ? 0 : std::atoi(text);
    }}();
    return number;
}}
constexpr bool is(int number) noexcept {{
    return std::is_constant_evaluated() ? false : chosen() == number;
}}
}}  // namespace mutation
#define MUTANT(number) (::mutation::is(number))
"""


def masked(text):
    """The text without what is no code: comments, literals and directives become blanks."""
    pattern = re.compile(
        r'//[^\n]*|/\*.*?\*/|R"\((?:.*?)\)"|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])\'(?:\\.|[^\'\\\n])+\''
        r"|^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", re.DOTALL | re.MULTILINE)
    return pattern.sub(lambda m: re.sub(r"[^\n]", " ", m.group()), text)


def closing(code, opening):
    """The place of the bracket that closes the one at the place given."""
    pairs = {"{": "}", "(": ")"}
    up, down = code[opening], pairs[code[opening]]
    depth = 0
    for place in range(opening, len(code)):
        if code[place] == up:
            depth += 1
        elif code[place] == down:
            depth -= 1
            if depth == 0:
                return place
    raise ValueError("a bracket that is not closed")


def kind_of(head):
    """What the brace behind the head opens: a scope, a body, or a value."""
    head = re.sub(r"\b(public|private|protected)\s*:(?!:)", " ", head)
    head = re.sub(r"\[\[.*?\]\]", " ", head, flags=re.DOTALL)
    while True:
        # What stands in brackets, innermost first, says nothing about the whole.
        shorter = re.sub(r"\([^()]*\)", "@", re.sub(r"<[^<>()]*>", " ", head))
        if shorter == head:
            break
        head = shorter
    head = re.sub(r"\boperator\s*[^\s\w@]+", "operator", head).strip()
    if re.match(r"(inline\s+)?namespace\b|extern\s*$", head):
        return "scope"
    if re.match(r"(template\s+)*(class|struct|union)\b", head):
        return "scope"
    if "=" in head or "@" not in head or re.search(r"\benum\b", head):
        return "value"
    # In a list of initialisers, a name before the brace is a member.
    if re.search(r"@[^:]*(?<!:):(?!:)", head) and re.search(r"\w$", head):
        return "value"
    return "body"


def bodies(text):
    """The bodies of functions as pairs of places: behind the opening brace, at the closing one."""
    code = masked(text)
    found = []
    head, place = 0, 0
    while place < len(code):
        if code[place] in ";}":
            head = place + 1
        elif code[place] == "{":
            kind = kind_of(code[head:place])
            if kind == "scope":
                head = place + 1
            else:
                end = closing(code, place)
                if kind == "body":
                    found.append((place + 1, end))
                    head = end + 1
                place = end
        place += 1
    return found


def initialiser_around(text, start, end):
    """The argument in round brackets, or the value behind a `=`, that a change lies in, if any: where
    it starts and ends, and the name of the member when it is all that the member is made of."""
    code = masked(text)
    depth, first, inner = 0, None, start
    for place in range(start - 1, -1, -1):
        if code[place] in ")}":
            depth += 1
        elif code[place] in "({" and depth > 0:
            depth -= 1
        elif code[place] == "," and depth == 0 and first is None:
            first = place + 1
        elif code[place] == "(":
            close = closing(code, place)
            name = re.search(r"(\w+)\s*$", code[:place])
            before = code[:name.start()].rstrip() if name else ""
            if close < end:
                return None
            if not before.endswith((",", ":")) or before.endswith("::"):
                # A call inside: what is around it may be the initialiser.
                inner, first = place, None
                continue
            last = end_of_argument(code, inner, close)
            if last < end:
                return None
            whole = first is None and last == close
            return first or place + 1, last, name.group(1) if whole else None
        elif code[place] in ";{":
            return None
        elif code[place] == "=" and depth == 0:
            close = code.find(";", place)
            return (place + 1, close, None) if close >= end else None
    return None


def end_of_argument(code, place, close):
    """Where the argument around a place ends: at a comma or the closing bracket."""
    depth = 0
    for at in range(place, close):
        if code[at] in "({":
            depth += 1
        elif code[at] in ")}":
            depth -= 1
        elif code[at] == "," and depth == 0:
            return at
    return close


class Switched:
    """One source with mutants inside."""

    def __init__(self, text, numbered):
        """`numbered` are pairs of a number and a mutant, all of them mutants of this source."""
        self.numbered = numbered
        self.left_over = []
        in_bodies, in_values = {}, {}
        places = bodies(text)
        for number, mutant in numbered:
            start, end, new = mutant.change()
            body = next((b for b in places if b[0] <= start and end <= b[1]), None)
            value = None if body else initialiser_around(text, start, end)
            if body:
                in_bodies.setdefault(body, []).append((number, start, end, new))
            elif value:
                in_values.setdefault(value, []).append((number, start, end, new))
            else:
                self.left_over.append(mutant)
        pieces = []
        for (start, end), changes in in_bodies.items():
            pieces.append((start, end, self.body(text, start, end, changes)))
        for (start, end, name), changes in in_values.items():
            pieces.append((start, end, self.value(text, start, end, name, changes)))
        self.text = text
        for start, end, piece in sorted(pieces, reverse=True):
            self.text = self.text[:start] + piece + self.text[end:]
        if pieces:
            prelude = '#include "mutant_switch.h"\n'
            once = "#pragma once\n"
            at = self.text.index(once) + len(once) if once in self.text else 0
            self.text = self.text[:at] + prelude + self.text[at:]

    @staticmethod
    def body(text, start, end, changes):
        parts = []
        for number, change_start, change_end, new in changes:
            changed = text[start:change_start] + new + text[change_end:end]
            parts.append(f"\n/*<{number}*/ if (MUTANT({number})) {{{changed}\n}} /*{number}>*/ else")
        return "".join(parts) + f" {{{text[start:end]}\n}}\n"

    @staticmethod
    def value(text, start, end, name, changes):
        old = text[start:end].strip()
        result = f"({old})" if old else f"decltype({name})()"
        for number, change_start, change_end, new in changes:
            changed = (text[start:change_start] + new + text[change_end:end]).strip()
            other = f"({changed})" if changed else f"decltype({name})()"
            result = f"/*<{number}*/ MUTANT({number}) ? {other} : {result} /*{number}>*/"
        return f" {result}\n"

    def number_at(self, line):
        """Which mutant a line of the switched text belongs to, if it does to one."""
        before = "\n".join(self.text.split("\n")[:line])
        opened = re.findall(r"/\*<(\d+)\*/", before)
        closed = set(re.findall(r"/\*(\d+)>\*/", "\n".join(self.text.split("\n")[:line - 1])))
        still = [int(number) for number in opened if number not in closed]
        return still[-1] if still else None
