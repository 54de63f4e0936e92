"""What clang knows of the functions that a source declares and calls, from its dump of the tree."""

import json
import subprocess

FUNCTIONS = {"FunctionDecl", "CXXMethodDecl", "CXXConstructorDecl", "CXXConversionDecl", "CXXDestructorDecl"}
RECORDS = {"CXXRecordDecl", "ClassTemplateSpecializationDecl", "ClassTemplatePartialSpecializationDecl"}


class Function:
    """One declaration of a function. `place` is file, line and column of its name, which all
    instances of a template share."""

    def __init__(self, node, scope, place, is_public):
        self.node = node
        self.id = node["id"]
        self.kind = node["kind"]
        self.scope = scope
        self.place = place
        self.is_public = is_public
        self.has_body = node.get("explicitlyDefaulted") == "default" or any(
            child.get("kind") in ("CompoundStmt", "CXXTryStmt") for child in node.get("inner", []))

    @property
    def name(self):
        return "::".join([*self.scope, self.node["name"]])

    @property
    def type(self):
        return self.node["type"]["qualType"]

    def __str__(self):
        file, line, _ = self.place
        return f"{file}:{line}: {self.name}: {self.type}"


def without_arguments(name):
    """The name of a type without template arguments and qualifiers."""
    plain, depth = [], 0
    for character in name.removeprefix("const "):
        depth += character == "<"
        if depth == 0:
            plain.append(character)
        depth -= character == ">"
    return "".join(plain).strip()


class SyntaxTree:
    """The declarations whose qualified names contain a word, of one source."""

    def __init__(self, clang, arguments, source, word):
        dump = subprocess.run(
            [clang, *arguments, "-fsyntax-only", "-Xclang", "-ast-dump=json", "-Xclang",
             f"-ast-dump-filter={word}", source], check=True, stdout=subprocess.PIPE, text=True).stdout
        self.roots = list(self._documents(dump))
        self._file, self._line = "", 0
        self.functions = {}
        self.first = {}
        self._classes, self._access = {}, {}
        for root in self.roots:
            self._place_everything(root)
        for root in self.roots:
            self._collect(root, [], True)

    @staticmethod
    def _documents(dump):
        decoder, at = json.JSONDecoder(), dump.find("{")
        while at >= 0:
            document, at = decoder.raw_decode(dump, at)
            yield document
            at = dump.find("{", at)

    def _place_everything(self, node):
        """Fills in what the dump leaves out: file and line are those of the location before."""
        stack = [node]
        while stack:
            each = stack.pop()
            if "offset" in each and "tokLen" in each:
                self._file = each.get("file", self._file)
                self._line = each.get("line", self._line)
                each["place"] = (self._file, self._line, each["col"])
            for value in reversed(list(each.values())):
                if isinstance(value, dict):
                    stack.append(value)
                elif isinstance(value, list):
                    stack.extend(item for item in reversed(value) if isinstance(item, dict))

    @staticmethod
    def place_of(node):
        location = node.get("loc", {})
        return location.get("expansionLoc", location).get("place", ("", 0, 0))

    def _collect(self, node, scope, is_public):
        """Files every function below a namespace or class."""
        kind = node["kind"]
        if kind in FUNCTIONS:
            parent = self._classes.get(node.get("parentDeclContextId"))
            if parent:
                # Defined outside of its class, so known by the declaration in there.
                scope, is_public = parent, True
            function = Function(node, scope, self.place_of(node), is_public)
            self.functions[function.id] = function
            before = node.get("previousDecl")
            self.first[function.id] = self.first.get(before, before) or function.id
            return
        inner = node.get("inner", [])
        if kind in RECORDS:
            # Declared in a class and defined outside of it: as public as it is in there.
            scope = self._classes.get(node.get("parentDeclContextId"), scope)
            is_public = self._access.get(node.get("previousDecl"), is_public)
            self._access[node["id"]] = is_public
            if not node.get("completeDefinition"):
                return
            scope = [*scope, node.get("name", "")]
            self._classes[node["id"]] = scope
            access = node.get("tagUsed") != "class"
            for child in inner:
                if child.get("kind") == "AccessSpecDecl":
                    access = child["access"] == "public"
                elif child.get("kind"):
                    self._collect(child, scope, is_public and (access or child["kind"] == "FriendDecl"))
        elif kind in ("NamespaceDecl", "LinkageSpecDecl", "FriendDecl", "ClassTemplateDecl", "FunctionTemplateDecl"):
            if kind == "NamespaceDecl":
                scope = [*scope, node.get("name", "")]
            for child in inner:
                if child.get("kind"):
                    self._collect(child, scope, is_public)

    def first_declaration(self, identity):
        function = self.functions.get(identity)
        if function is None:
            return None
        return self.functions.get(self.first[identity], function)

    def called_in(self, root):
        """The places of the functions that the code below a declaration calls or names."""
        by_constructor = {}
        destructors = {}
        for function in self.functions.values():
            owner = without_arguments("::".join(function.scope))
            if function.kind == "CXXConstructorDecl":
                by_constructor.setdefault((owner, function.type), set()).add(function.place)
            elif function.kind == "CXXDestructorDecl":
                destructors.setdefault(owner, set()).add(function.place)
        places, stack = set(), [root]
        while stack:
            node = stack.pop()
            for identity in (node.get("referencedMemberDecl"), node.get("referencedDecl", {}).get("id"),
                             node.get("dtor", {}).get("id")):
                function = self.first_declaration(identity)
                if function:
                    places.add(function.place)
            if "ctorType" in node:
                made = node["type"]
                owner = without_arguments(made.get("desugaredQualType", made["qualType"]))
                places |= by_constructor.get((owner, node["ctorType"]["qualType"]), set())
                places |= destructors.get(owner, set())
            stack.extend(child for child in node.get("inner", []) if child)
        return places
