#!/usr/bin/env python3
"""defined_elsewhere.py <clang++> <root> <header>...: functions that one of the headers declares and
another one defines. Who reads the first cannot know what else has to be included."""

import os
import pathlib
import sys
import tempfile

sys.dont_write_bytecode = True
from syntax_tree import SyntaxTree  # noqa: E402


def main(clang, root, *headers):
    with tempfile.TemporaryDirectory() as work:
        source = pathlib.Path(work) / "headers.cpp"
        source.write_text("".join(f'#include "{header}"\n' for header in headers))
        tree = SyntaxTree(clang, ["-std=c++20", f"-I{root}"], str(source), "nuv")
    known = {os.path.join(root, header) for header in headers}
    found = set()
    for function in tree.functions.values():
        declared = tree.first_declaration(function.id).place[0]
        defined = function.place[0]
        if function.has_body and declared != defined and {declared, defined} <= known:
            found.add(f"{function.name}: {os.path.relpath(declared, root)}, "
                      f"defined in {os.path.relpath(defined, root)}")
    print(f"{len(tree.functions)} declarations in {len(headers)} headers, {len(found)} defined elsewhere")
    print("\n".join(sorted(found)))
    return 1 if found or not tree.functions else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
