#!/usr/bin/env python3
"""Compares a built library's debug information with the record of its classes.

compare_built.py ABIDW LIBRARY RECORD: sizes and virtual slots, of the classes that the debug
information describes. Members that a library never uses are not described, nor are templates that it
does not instantiate; so what is missing there is no difference.
"""
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree


def read_record(path):
    """Class name -> (size in bytes, names of the functions in its slots)."""
    classes = {}
    with open(path, encoding="utf-8") as record:
        for line in record:
            line = line.rstrip("\n")
            if slot := re.fullmatch(r"    slot \d+: (.*)", line):
                slots.append(slot[1].rsplit("::", 1)[-1])
                continue
            name, size = re.fullmatch(r"(.*): size (\d+), alignment \d+", line).groups()
            slots = []
            classes[name] = (int(size), slots)
    return classes


def described_classes(node, scope=""):
    """Every class with a definition, with its qualified name."""
    for child in node:
        if child.tag not in ("abi-instr", "namespace-decl", "class-decl", "member-type"):
            continue
        name = child.get("name", "")
        qualified = scope if child.tag in ("abi-instr", "member-type") else scope + name + "::"
        if child.tag == "class-decl" and "size-in-bits" in child.attrib:
            yield qualified[:-2], child
        yield from described_classes(child, qualified)


def differences(name, described, size, slots):
    built = int(described.get("size-in-bits")) // 8
    if built != size:
        yield f"{name} has {built} bytes, recorded are {size}"
    for function in described.iter("member-function"):
        slot = int(function.get("vtable-offset", "-1"))
        if slot < 0 or function.get("destructor") == "yes":
            continue
        declared = function.find("function-decl").get("name")
        recorded = slots[slot] if slot < len(slots) else "no slot"
        if recorded not in (declared, "(pure)"):
            yield f"{name} has {declared} in slot {slot}, recorded is {recorded}"


def main():
    abidw, library, record = sys.argv[1:]
    recorded = read_record(record)
    described = subprocess.run(
        [abidw, "--no-corpus-path", "--no-show-locs", library], check=True, capture_output=True
    ).stdout
    found = set()
    wrong = set()
    for name, node in described_classes(ElementTree.fromstring(described)):
        if name in recorded:
            found.add(name)
            wrong.update(differences(name, node, *recorded[name]))
    for difference in sorted(wrong):
        print(difference)
    if not found:
        print(f"No class of {record} is described in {library}; has it debug information?")
    print(f"{len(found)} of {len(recorded)} recorded classes are described")
    return 1 if wrong or not found else 0


if __name__ == "__main__":
    sys.exit(main())
