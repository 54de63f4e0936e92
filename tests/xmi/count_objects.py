#!/usr/bin/env python3
"""Counts the objects of a model file: count_objects.py METAMODEL... MODEL

Written independently of the C++ reader, on another XML parser, to check it: types every XML element
against the metamodels and counts those that stand for objects, but neither values, nor references,
nor what is kept in other files, nor what is of no metamodel where anything may stand. Files of XML
schemas are understood as far as global elements go, which take each other's place.
"""
import sys
import xml.etree.ElementTree as ElementTree

XSI = "{http://www.w3.org/2001/XMLSchema-instance}"
FOR_XML = "http:///org/eclipse/emf/ecore/util/ExtendedMetaData"


def split(tag):
    namespace, _, local = tag[1:].rpartition("}") if tag.startswith("{") else ("", "", tag)
    return namespace, local


def is_xmi(tag):
    namespace = split(tag)[0]
    return namespace == "http://www.omg.org/XMI" or "/spec/XMI/" in namespace


def parse(path):
    """The root, and for each element the prefixes in scope."""
    scopes, stack, pending = {}, [{}], {}
    root = None
    for event, item in ElementTree.iterparse(path, ("start-ns", "start", "end")):
        if event == "start-ns":
            pending[item[0]] = item[1]
        elif event == "start":
            root = item if root is None else root
            stack.append({**stack[-1], **pending} if pending else stack[-1])
            pending = {}
            scopes[item] = stack[-1]
        else:
            stack.pop()
    return root, scopes


def said(element, key):
    """What a metamodel says of how a class or feature is written as XML."""
    for annotation in element.findall("eAnnotations"):
        if annotation.get("source") == FOR_XML:
            for details in annotation.findall("details"):
                if details.get("key") == key:
                    return details.get("value")
    return None


def written_name(element):
    return said(element, "name")


class Metamodel:
    """Classes by (namespace, name); types and superclasses by the last part of their references,
    in the package that the reference leads into or, failing that, in any."""

    def __init__(self, paths):
        self.classes = {}
        self.by_name = {}
        # Of global elements: what they contain, in whose place they stand, the package's namespace.
        self.globals = {}
        for path in paths:
            root, _ = parse(path)
            packages = root if is_xmi(root.tag) else [root]
            for package in packages:
                self.add(package, path)

    def add(self, package, path):
        namespace = package.get("nsURI", "")
        for classifier in package.findall("eClassifiers"):
            if classifier.get(XSI + "type") != "ecore:EClass":
                continue
            entry = (namespace, classifier)
            if written_name(classifier) == "" and said(classifier, "kind") == "mixed":
                self.add_globals(entry)
            self.classes[namespace, classifier.get("name")] = entry
            written = written_name(classifier)
            if written:
                self.classes.setdefault((namespace, written), entry)
            self.by_name.setdefault(classifier.get("name"), []).append((path, entry))
        for inner in package.findall("eSubpackages"):
            self.add(inner, path)

    def add_globals(self, root):
        for feature in root[1].findall("eStructuralFeatures"):
            if said(feature, "kind") == "element":
                uri = said(feature, "namespace") or ""
                head = (said(feature, "affiliation") or "").rpartition("#")
                key = uri, written_name(feature)
                self.globals[key] = (root, feature, (head[0] or uri, head[2]))

    def class_named(self, uri, name):
        """Files may call a package by the namespace of its global elements."""
        uris = [uri] + [root[0] for key, (root, _, _) in self.globals.items() if key[0] == uri]
        for each in uris:
            if (each, name) in self.classes:
                return self.classes[each, name]
        return None

    def class_of_global(self, tag):
        if split(tag) not in self.globals:
            return None
        root, feature, _ = self.globals[split(tag)]
        return self.type_of(root, feature)

    def part(self, entry, tag):
        """The feature that a child element stands for, with its class, and what it contains."""
        found = self.feature(entry, split(tag)[1])
        if found is not None:
            return found + (self.type_of(*found),)
        key = split(tag)
        while key in self.globals:
            key = self.globals[key][2]
            found = self.feature(entry, key[1])
            if found is not None:
                return found + (self.class_of_global(tag),)
        return None

    def has_wildcard(self, entry):
        kinds = [said(f, "kind") for f in entry[1].findall("eStructuralFeatures")]
        return "elementWildcard" in kinds or any(
            self.has_wildcard(each) for each in self.superclasses(entry)
        )

    def lead(self, reference, namespace):
        """The class that a reference in a metamodel leads to; null for one that is not there."""
        target = reference.split()[-1]
        file, _, fragment = target.partition("#")
        name = fragment.rpartition("/")[2]
        candidates = self.by_name.get(name, [])
        if not file and len(candidates) > 1:
            same = [entry for _, entry in candidates if entry[0] == namespace]
            # Packages nested in one file: the fragment names the way.
            parts = fragment.strip("/").split("/")
            deep = [e for e in same] if len(parts) == 1 else [
                e for _, e in candidates if e[0].endswith("/" + parts[-2])
            ]
            if deep:
                return deep[0]
        for path, entry in candidates:
            if file in ("", entry[0]) or path.endswith("/" + file.rpartition("/")[2]):
                return entry
        return None

    def superclasses(self, entry):
        namespace, classifier = entry
        references = classifier.get("eSuperTypes", "").split()
        references += [
            generic.get("eClassifier", "") for generic in classifier.findall("eGenericSuperTypes")
        ]
        found = [self.lead(r, namespace) for r in references if "#" in r]
        return [each for each in found if each is not None]

    def feature(self, entry, name):
        """The feature that a class calls, or writes, by that name, with the class that has it."""
        todo, seen = [entry], set()
        while todo:
            current = todo.pop(0)
            if id(current[1]) in seen:
                continue
            seen.add(id(current[1]))
            for feature in current[1].findall("eStructuralFeatures"):
                if name in (feature.get("name"), written_name(feature)):
                    return current, feature
            todo += self.superclasses(current)
        return None

    def type_of(self, owner, feature):
        reference = feature.get("eType")
        if reference is None:
            generic = feature.find("eGenericType")
            reference = None if generic is None else generic.get("eClassifier")
        return None if reference is None else self.lead(reference, owner[0])


def count(metamodel_paths, model_path):
    metamodel = Metamodel(metamodel_paths)
    root, scopes = parse(model_path)

    def named(element):
        for name in element.attrib:
            if split(name)[1] == "type" and (name.startswith(XSI) or is_xmi(name)):
                prefix, _, local = element.get(name).rpartition(":")
                return metamodel.class_named(scopes[element].get(prefix, ""), local)
        return None

    objects = 0
    todo = []
    for element in root if is_xmi(root.tag) else [root]:
        if not is_xmi(element.tag):
            entry = metamodel.class_of_global(element.tag) or metamodel.class_named(
                *split(element.tag)
            )
            todo.append((element, named(element) or entry))
    while todo:
        element, entry = todo.pop()
        objects += 1
        for child in element:
            if is_xmi(child.tag) or child.get(XSI + "nil") == "true":
                continue
            found = metamodel.part(entry, child.tag)
            if found is None:
                if metamodel.has_wildcard(entry):
                    continue
                raise SystemExit(f"{entry[1].get('name')} has no feature {child.tag}")
            _, feature, content = found
            is_contained = feature.get("containment") == "true"
            refers = child.get("href") is not None or any(
                is_xmi(a) and split(a)[1] == "idref" for a in child.attrib
            )
            if is_contained and not refers:
                todo.append((child, named(child) or content))
    return objects


if __name__ == "__main__":
    if len(sys.argv) < 3:
        raise SystemExit(__doc__)
    print(count(sys.argv[1:-1], sys.argv[-1]))
