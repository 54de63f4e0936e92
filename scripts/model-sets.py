#!/usr/bin/env python3
"""Writes the table of real models: model-sets.py [--check] DESCRIBE_SET SAMPLES PAGE

Loads each set with the program `describe_set`, and puts the table between the marks of the page.
With --check it only compares, and ends with 1 where the page says something else.
"""
import collections
import os
import subprocess
import sys

BEGIN = "<!-- table: model sets -->\n"
END = "<!-- end of the table -->\n"

UML = ["uml2=uml2", "emf=emf"]
RESOURCES = "uml2/org.eclipse.uml2.uml.resources"

# What people call it, the first root, the files there (none: the folder), further roots, and what is
# to be said of the findings.
SETS = [
    ("railway network", "trainbenchmark", ["railway-1.xmi"], [], ""),
    ("enterprise architecture", "archi", ["Archisurance.archimate"], [], ""),
    ("social network, small", "ttc2018-social", ["models/1/initial.xmi"], [], ""),
    ("social network, large", "ttc2018-social", ["models/16/initial.xmi"], [], ""),
    ("changes of it, first", "ttc2018-social", ["models/1/change01.xmi"], [], ""),
    ("changes of it, second", "ttc2018-social", ["models/1/change02.xmi"], [],
     "they refer to what the first changes add"),
    ("Java program, small", "modisco-java-kdm", ["test001_java.xmi"], [], ""),
    ("Java program, large", "modisco-java-kdm", ["infra.browser.javaxmi"], [], ""),
    ("the same as KDM", "modisco-java-kdm", ["test001_kdm.xmi"], [], ""),
    ("KDM of many roots", "modisco-java-kdm", ["Bug_318638.kdm"], [], ""),
    ("system model", "capella", ["In-Flight Entertainment System.capella"], [], ""),
    ("system model in fragments", "capella", ["FragmentTestModel/sysmodel.capella"], [],
     "they lead to elements that no file has"),
    ("libraries of SysML, all", "sysmlv2", [], [], ""),
    ("library for OCL", "ocl", ["OCL-2.5.oclas"], [], ""),
    ("UML libraries", RESOURCES + "/libraries", [], UML, ""),
    ("UML in UML", RESOURCES + "/metamodels", [], UML, ""),
    ("UML profiles", RESOURCES + "/profiles", [], UML, ""),
    ("UML as the standard writes it", "uml2/org.eclipse.uml2/model", ["UML.xmi"], UML,
     "ids are given twice, and nothing refers to them"),
    ("standard profile of UML", "uml2/org.eclipse.uml2/model", ["StandardProfile.xmi"], UML,
     "tags hold elements of a metamodel that theirs does not know"),
    ("MOF as the standard writes it", "uml2/org.eclipse.uml2/model", ["MOF.xmi"], UML,
     "it needs `Superstructure.xmi`, which is not there, and tags as above"),
    ("UML of an older version", "uml2/org.eclipse.uml2.examples.gettingstarted/models",
     ["ExtendedPO2.uml"], UML, ""),
    ("generator model of Ecore", "emf/org.eclipse.emf.ecore/model", ["Ecore.genmodel"], UML, ""),
    ("generator model of a library", "emf/org.eclipse.emf.examples.library/model",
     ["extlibrary.genmodel"], UML, "generator models have fragments of their own"),
    ("generator model of generator models", "emf/org.eclipse.emf.codegen.ecore/model",
     ["GenModel.genmodel"], UML, "as above"),
    ("generator model of XML schemas", "emf/org.eclipse.xsd/model", ["XSD.genmodel"], UML, ""),
    ("processes as plain XML", "bpmn2", ["basic.bpmn2"], [], ""),
    ("processes as XMI", "bpmn2", ["basic.bpmn2xmi"], [], ""),
    ("processes, by prefixed names", "bpmn2", ["qname_prefixNs_noNs.bpmn2"], [], ""),
    ("processes of two files", "bpmn2", ["qname_prefixNs_normal.bpmn2"], [],
     "imports by namespace are not followed"),
    ("processes with extensions", "bpmn2/extensibility", ["SimpleExtensions.bpmn2"],
     ["bpmn2=bpmn2"], "content of namespaces without a metamodel is left out"),
    ("car software", "amalthea", ["AMALTHEA_Democar_MappingExample_withTasks.amxmi"], [], ""),
    ("car software in six files", "amalthea/democar.split", [], ["amalthea=amalthea"], ""),
    ("metamodels of Petri nets", "pnml", [], ["emf=emf"], ""),
    ("metamodels of the system model", "capella", None, ["emf=emf"], ""),
    ("every metamodel", ".", None, [],
     "one is made to be wrong"),
]


def figures(program, samples, folder, files, roots):
    command = [program]
    for root in roots:
        name, _, path = root.partition("=")
        command += ["--root", f"{name}={samples}/{path}"]
    if files is None:
        listed = subprocess.run(
            ["find", ".", "-name", "*.ecore", "-type", "f"],
            cwd=f"{samples}/{folder}", capture_output=True, text=True, check=True)
        files = sorted(line[2:] for line in listed.stdout.splitlines())
    command += [f"{samples}/{folder}", *files]
    told = subprocess.run(command, capture_output=True, text=True, check=True).stdout
    loaded, elements, others, links = 0, 0, 0, 0
    findings = collections.Counter()
    for line in told.splitlines():
        kind, *fields = line.split("\t")
        if kind == "file" and fields[0].startswith("model:"):
            loaded += 1
            elements += int(fields[1])
        elif kind == "file":
            others += 1
        elif kind == "links" and fields[0].startswith("model:"):
            links += int(fields[2])
        elif kind == "findings":
            findings[fields[1]] += int(fields[2])
    return loaded, elements, links, others, findings


def table(program, samples):
    lines = [
        "| model | files | elements | links | files besides | findings | remark |",
        "|---|---:|---:|---:|---:|---|---|",
    ]
    for name, folder, files, roots, remark in SETS:
        loaded, elements, links, others, findings = figures(program, samples, folder, files, roots)
        told = ", ".join(f"{count} {reason}" for reason, count in sorted(findings.items()))
        lines.append(
            f"| {name} | {loaded} | {elements} | {links} | {others} | {told or 'none'} | {remark} |")
    return "\n".join(lines) + "\n"


def main(arguments):
    is_check = arguments[:1] == ["--check"]
    program, samples, path = arguments[1:] if is_check else arguments
    if not os.path.isdir(samples):
        print("needs the optional sample models")
        return 77
    with open(path, encoding="utf-8") as page:
        text = page.read()
    before, _, rest = text.partition(BEGIN)
    old, _, after = rest.partition(END)
    new = table(program, samples)
    if is_check:
        if old == new:
            return 0
        print("the table of model sets is not what is loaded; scripts/model-sets.py writes it anew")
        was, now = old.splitlines(), new.splitlines()
        print("\n".join(f"- {line}" for line in was if line not in now))
        print("\n".join(f"+ {line}" for line in now if line not in was))
        return 1
    with open(path, "w", encoding="utf-8") as page:
        page.write(before + BEGIN + new + END + after)
    return 0


if __name__ == "__main__":
    if len(sys.argv) not in (4, 5):
        raise SystemExit(__doc__)
    sys.exit(main(sys.argv[1:]))
