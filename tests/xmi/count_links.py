#!/usr/bin/env python3
"""Compares the links of real models with those of another reader: count_links.py DESCRIBE_SET SAMPLES

Written independently of the C++ reader, on another XML parser: types every XML element against the
metamodels, finds what each reference leads to by its own rules, in whatever file, and counts for each
file and property the references that lead somewhere and the contents. Files in the form of an XML
schema are left to others. Ends with 77 where there are no samples.
"""
import collections
import functools
import os
import re
import subprocess
import sys
import urllib.parse

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from count_objects import XSI, Metamodel, is_xmi, parse, split  # noqa: E402

ECORE = "http://www.eclipse.org/emf/2002/Ecore"
UML = "http://www.eclipse.org/uml2/5.0.0/UML"
ALIASES = {
    "http://www.omg.org/spec/UML/20110701": UML,
    "http://www.omg.org/spec/UML/20131001": UML,
    "http://www.eclipse.org/uml2/4.0.0/UML": UML,
    "http://www.eclipse.org/uml2/4.0.0/Types": "http://www.eclipse.org/uml2/5.0.0/Types",
    "http://www.omg.org/spec/MOF/20110701": "http://www.omg.org/spec/MOF/20131001/cmof.xmi",
    "http://www.omg.org/spec/MOF/20110701/cmof.xmi": "http://www.omg.org/spec/MOF/20131001/cmof.xmi",
}
RESOURCES = "uml2/org.eclipse.uml2.uml.resources/"
PATHMAPS = {"UML_LIBRARIES": "libraries", "UML_METAMODELS": "metamodels", "UML_PROFILES": "profiles"}
# Tags of the meta-metamodel hold elements of a class that it does not know; they are not set.
NOT_SET = {"Tag.element"}
SETS = [
    ("trainbenchmark", ["railway-1.xmi"], []), ("archi", ["Archisurance.archimate"], []),
    ("ttc2018-social", ["models/16/initial.xmi", "models/1/change01.xmi", "models/1/change02.xmi"], []),
    ("modisco-java-kdm", ["test001_java.xmi", "test001_kdm.xmi", "Bug_318638.kdm"], []),
    ("capella", ["In-Flight Entertainment System.capella"], []),
    ("capella", ["FragmentTestModel/sysmodel.capella"], []), ("sysmlv2", [], []),
    ("ocl", ["OCL-2.5.oclas"], []),
    (RESOURCES + "metamodels", [], ["uml2=uml2", "emf=emf"]),
    (RESOURCES + "libraries", [], ["uml2=uml2", "emf=emf"]),
    ("uml2/org.eclipse.uml2/model", ["UML.xmi", "StandardProfile.xmi", "MOF.xmi"],
     ["uml2=uml2", "emf=emf"]),
    ("uml2/org.eclipse.uml2.examples.gettingstarted/models", ["ExtendedPO2.uml"],
     ["uml2=uml2", "emf=emf"]),
    ("emf", ["org.eclipse.emf.ecore/model/Ecore.genmodel", "org.eclipse.xsd/model/XSD.genmodel",
             "org.eclipse.emf.codegen.ecore/model/GenModel.genmodel",
             "org.eclipse.emf.examples.library/model/extlibrary.genmodel"], []),
    ("amalthea", ["AMALTHEA_Democar_MappingExample_withTasks.amxmi"], []),
]


class File:
    """One model file: its objects, and what its fragments lead to."""

    def __init__(self, world, path):
        self.world, self.path = world, path
        self.root, self.scopes = parse(path)
        self.roots = list(self.root) if is_xmi(self.root.tag) else [self.root]
        self.roots = [each for each in self.roots if not is_xmi(each.tag)]
        self.entries, self.ids, self.shared, self.parents = {}, {}, set(), {}
        self.contents = []
        self.read()

    def typed(self, element):
        for name in element.attrib:
            if split(name)[1] == "type" and (name.startswith(XSI) or is_xmi(name)):
                prefix, _, local = element.get(name).rpartition(":")
                return self.world.classes_get(self.scopes[element].get(prefix, ""), local)
        return None

    def read(self):
        todo = [(r, self.typed(r) or self.world.classes_get(*split(r.tag))) for r in self.roots]
        while todo:
            element, entry = todo.pop()
            self.entries[element] = entry
            for name, value in element.attrib.items():
                if is_xmi(name) and split(name)[1] == "id":
                    self.ids[value] = element
            for child in element:
                self.parents[child] = element
                if is_xmi(child.tag) or child.get(XSI + "nil") == "true":
                    continue
                found = self.world.feature(entry, split(child.tag)[1])
                if found is None:
                    raise SystemExit(f"{self.path}: {entry[1].get('name')} has no {child.tag}")
                owner, feature = found
                refers = child.get("href") is not None and self.world.feature(entry, "href") is None
                refers = refers or any(is_xmi(a) and split(a)[1] == "idref" for a in child.attrib)
                if feature.get("containment") == "true" and not refers:
                    self.contents.append((owner, feature))
                    typed = self.typed(child) or self.world.type_of(owner, feature)
                    if typed is None:
                        raise SystemExit(f"{self.path}: {child.tag} is of no type")
                    todo.append((child, typed))
        for element, entry in self.entries.items():
            for name in [a for a in element.attrib if not a.startswith("{")]:
                found = self.world.feature(entry, name)
                if found and found[1].get("iD") == "true":
                    value = element.get(name)
                    if value in self.ids and self.ids[value] is not element:
                        self.shared.add(value)
                    self.ids.setdefault(value, element)

    def step(self, element, step):
        if step.startswith("@"):
            name, _, index = step[1:].partition(".")
            same = [c for c in element if split(c.tag)[1] == name]
            at = int(index or 0)
            return same[at] if at < len(same) else None
        for text, index in ((step, 0), (urllib.parse.unquote(step), 0),
                            (step.rpartition(".")[0], int((re.findall(r"\.(\d+)$", step) or [0])[0]))):
            attribute, text = ("source", text[1:-1]) if text.startswith("%") else ("name", text)
            same = [c for c in element if c.get(attribute) == urllib.parse.unquote(text)]
            if index < len(same):
                return same[index]
        return None

    def find(self, fragment, start=None):
        if fragment in self.ids and fragment not in self.shared:
            return self.ids[fragment]
        named = re.fullmatch(r"(.*)\?type=(\w+)", fragment)
        if named:
            name = urllib.parse.unquote(named[1].replace("+", " ")).rpartition("/")[2]
            for element, entry in self.entries.items():
                if entry[1].get("name") == named[2] and element.get("name") == name:
                    return element
        if not fragment.startswith("/"):
            return None
        first, *steps = fragment[1:].split("/")
        if first and not first.isdigit():
            return None
        at = int(first or 0)
        element = start if start is not None else (self.roots[at] if at < len(self.roots) else None)
        for step in steps:
            if element is None or not step:
                break
            element = self.step(element, step)
        # A step may end at content that is kept elsewhere; then it is there that it leads.
        if element is not None and element not in self.entries and element.get("href"):
            return self.lead(element.get("href"))
        return element if element in self.entries else None

    def lead(self, reference):
        file, hash_sign, fragment = reference.partition("#")
        if not hash_sign:
            file, fragment = "", reference
        if not file:
            return self.find(fragment)
        if re.fullmatch(r"\w+:/*", file):
            return self.find(fragment)
        other, start = self.world.file_meant(self.path, file)
        return None if other is None else other.find(fragment, start)

    def links(self):
        counts = collections.Counter()

        def add(owner, feature, leads):
            name = owner[1].get("name") + "." + feature.get("name")
            if leads and name not in NOT_SET:
                counts[name] += 1

        for owner, feature in self.contents:
            add(owner, feature, True)
        for element, entry in self.entries.items():
            written = [(n, v) for n, v in element.attrib.items() if not n.startswith("{")]
            for child in element:
                if is_xmi(child.tag) or child in self.entries or child.get(XSI + "nil") == "true":
                    continue
                target = child.get("href")
                for name, value in child.attrib.items():
                    if is_xmi(name) and split(name)[1] == "idref":
                        target = value
                written.append((split(child.tag)[1], target if target is not None else child.text))
            for name, value in written:
                found = self.world.feature(entry, name)
                if found is None or found[1].get(XSI + "type", "").endswith("EAttribute"):
                    continue
                if found[1].get(self.world.xmi_type(found[1])) == "ecore:EAttribute":
                    continue
                for word in (value or "").split():
                    is_type = re.fullmatch(r"[\w.-]+:\w+", word) and " " in value
                    if not is_type:
                        add(*found, self.lead(word) is not None)
        return counts


class World(Metamodel):
    def __init__(self, samples):
        self.samples = samples
        paths = []
        for folder, _, names in os.walk(samples):
            paths += [os.path.join(folder, n) for n in names if n.endswith(".ecore")]
        paths = [p for p in sorted(paths) if not p.endswith("Bad.ecore")]
        self.paths, self.packages, self.by_id = paths, {}, {}
        super().__init__(paths)
        for entries in self.by_name.values():
            for path, entry in entries:
                ids = [v for a, v in entry[1].attrib.items() if is_xmi(a) and split(a)[1] == "id"]
                self.by_id.update({(path, each): entry for each in ids})
        for path in paths:
            root, _ = parse(path)
            for package in [root] + list(root.iter("eSubpackages")):
                self.packages.setdefault(package.get("nsURI"), (path, package))
        profile = os.path.join(samples, RESOURCES, "profiles/Ecore.profile.uml")
        root, _ = parse(profile)
        package = next(e for e in root.iter("contents") if e.get("nsURI"))
        for each in package.iter("eStructuralFeatures"):
            kind = self.xmi_type(each)
            each.set(XSI + "type", each.get(kind))
        for each in package.findall("eClassifiers"):
            each.set(XSI + "type", each.get(self.xmi_type(each)))
            by_id = {v: e for e in package.iter() for n, v in e.attrib.items() if n.endswith("}id")}
            names = [by_id[i].get("name") for i in each.get("eSuperTypes", "").split()]
            each.set("eSuperTypes", " ".join("#//" + n for n in names))
        self.add(package, profile)
        self.files = {}

    def lead(self, reference, namespace):
        """As of one metamodel, but of all that there are: by file, then by package and name."""
        target = reference.split()[-1]
        file, _, fragment = target.partition("#")
        here = self.packages[namespace][0] if namespace in self.packages else None
        if not file:
            path = here
        elif ALIASES.get(file, file) in self.packages:
            path = self.packages[ALIASES.get(file, file)][0]
        else:
            ends = [p for p in self.paths if p.endswith("/" + file.lstrip("./"))]
            ends = ends or [p for p in self.paths if p.endswith("/" + file.rpartition("/")[2])]
            near = os.path.normpath(os.path.join(os.path.dirname(here or ""), file))
            path = near if near in ends else (ends or [None])[0]
        if (path, fragment) in self.by_id:
            return self.by_id[path, fragment]
        *packages, name = fragment.strip("/").split("/")
        found = [entry for where, entry in self.by_name.get(name, []) if where == path or (
            path is None and not file and entry[0] == namespace)]
        inner = [e for e in found if packages and
                 self.packages.get(e[0], (None, {"name": ""}))[1].get("name") == packages[-1]]
        own = [e for e in found if e[0] == namespace]
        return (inner or own or found or [None])[0]

    @staticmethod
    def xmi_type(element):
        return next((a for a in element.attrib if is_xmi(a) and split(a)[1] == "type"), "")

    @functools.lru_cache(maxsize=None)
    def feature_named(self, namespace, class_name, name):
        return super().feature(self.classes[namespace, class_name], name)

    def feature(self, entry, name):
        return self.feature_named(entry[0], entry[1].get("name"), name)

    def classes_get(self, namespace, name):
        return self.classes[ALIASES.get(namespace, namespace), name]

    def type_of(self, owner, feature):
        return super().type_of(owner, feature)

    def file(self, path):
        path = os.path.normpath(path)
        if path not in self.files:
            self.files[path] = File(self, path) if os.path.isfile(path) else None
        return self.files[path]

    def file_meant(self, path, reference):
        """The file, and what paths in it lead from where that is not its root."""
        decoded = urllib.parse.unquote(reference)
        namespace = ALIASES.get(reference, reference)
        if namespace in self.packages:
            place, package = self.packages[namespace]
            file = self.file(place)
            start = next((e for e in file.entries if e.get("nsURI") == namespace), None)
            return file, start
        plugin = re.fullmatch(r"platform:/(?:plugin|resource)/([^/]+)/(.*)", decoded)
        if plugin:
            for folder, names, _ in os.walk(self.samples):
                if plugin[1] in names:
                    return self.file(os.path.join(folder, plugin[1], plugin[2])), None
        mapped = re.fullmatch(r"pathmap://(\w+)/(.*)", decoded)
        if mapped:
            return self.file(
                os.path.join(self.samples, RESOURCES, PATHMAPS[mapped[1]], mapped[2])), None
        standard = re.fullmatch(r"http://www.omg.org/spec/UML/\d+/(\w+\.xmi)", decoded)
        if standard:
            return self.file(
                os.path.join(self.samples, "uml2/org.eclipse.uml2/model", standard[1])), None
        if ":" in decoded.split("/")[0]:
            return None, None
        there = os.path.join(os.path.dirname(path), decoded)
        if not os.path.isfile(there) and decoded.endswith("Ecore.ecore"):
            there = self.packages[ECORE][0]
        return self.file(there), None


def told(program, samples, folder, files, roots):
    """What the other reader says: the links of each file by property."""
    command = [program]
    for root in roots:
        name, _, path = root.partition("=")
        command += ["--root", f"{name}={samples}/{path}"]
    text = subprocess.run(command + [f"{samples}/{folder}", *files], capture_output=True, text=True,
                          check=True).stdout
    folders = {"model": folder, **dict(root.split("=") for root in roots)}
    counts = {}
    for line in text.splitlines():
        kind, shown, *fields = line.split("\t")
        root, _, path = shown.partition(":")
        if root not in folders or kind not in ("file", "links"):
            continue
        place = os.path.normpath(os.path.join(samples, folders[root], path))
        of_file = counts.setdefault(place, collections.Counter())
        if kind == "links":
            of_file[fields[0]] += int(fields[1])
    return counts


def main(program, samples):
    if not os.path.isdir(samples):
        print("needs the optional sample models")
        return 77
    world, files, links, wrong = World(samples), 0, 0, 0
    seen = set()
    for folder, names, roots in SETS:
        for place, counts in told(program, samples, folder, names, roots).items():
            if place in seen:
                continue
            seen.add(place)
            own = world.file(place).links()
            files += 1
            links += sum(own.values())
            for name in sorted(own.keys() | counts.keys()):
                if own[name] != counts[name]:
                    wrong += 1
                    print(f"{place}: {name} has {counts[name]} links, and here {own[name]}")
    print(f"{files} files, {links} links, {wrong} properties differ")
    return 1 if wrong or not files else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        raise SystemExit(__doc__)
    sys.exit(main(sys.argv[1], sys.argv[2]))
