#!/usr/bin/env python3
"""uncalled.py <clang++> <include root>: public operations of the headers below a root that the
consumers do not call.

Both lists come from the compiler: what a header offers from its declarations, what is called from
the syntax tree of the consumers. What cannot be called with the in-memory model is called with a
host's framework.
"""

import os
import pathlib
import sys
import tempfile

sys.dont_write_bytecode = True
HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "headers"))
from syntax_tree import SyntaxTree  # noqa: E402

NAMESPACE = "nuv_consumer"
HOST = ["-DMODELING_NUV0_FRAMEWORK_HEADER=\"tests/host_framework/HostFramework.h\"",
        f"-I{HERE.parent.parent}"]


def is_offered(function):
    return function.is_public and not function.node.get("isImplicit") and not function.node.get("explicitlyDeleted")


def read(clang, root, includes, arguments, work):
    """What the source of these includes has declared below the root, and what it calls of that."""
    source = work / "consumer.cpp"
    source.write_text("".join(f'#include "{include}"\n' for include in includes))
    tree = SyntaxTree(clang, ["-std=c++20", f"-I{root}", *arguments], str(source), "nuv")
    offered = {}
    for function in tree.functions.values():
        first = tree.first_declaration(function.id)
        if is_offered(first) and os.path.realpath(first.place[0]).startswith(f"{root}/"):
            offered.setdefault(first.place, first)
    called = set()
    for declaration in tree.roots:
        if declaration.get("name") == NAMESPACE:
            called |= tree.called_in(declaration)
    return offered, called


def main(clang, root):
    root = os.path.realpath(root)
    headers = sorted(str(path.relative_to(root)) for path in pathlib.Path(root).rglob("*.h"))
    consumers = sorted((HERE / "every_operation").glob("*.cpp"))
    with tempfile.TemporaryDirectory() as work:
        offered, called = read(clang, root, headers + consumers, [], pathlib.Path(work))
        of_host, called_by_host = read(clang, root, [HERE / "host_framework/WalkSupport.cpp"], HOST,
                                       pathlib.Path(work))
    missing = [offered[place] for place in sorted(offered.keys() - called - called_by_host)]
    print(f"{len(offered)} public operations in {len(headers)} headers, {len(missing)} not called")
    for function in missing:
        print(str(function).replace(f"{root}/", ""))
    if not offered or not of_host:
        print("no operations found: the headers are not where they were looked for")
        return 1
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
