"""Shows elements, links, results, walks and values in gdb as the library itself does.

    (gdb) print link
    $1 = Block'b1'-[ports]-Port'p1'
    (gdb) print walk
    $2 = walk on Block'b1'-[ports]-Port'p1', depth 1, 2 entered, 1 waiting = {...}

gdb loads the file by itself with an installed library, from where it trusts files (see "info
auto-load"), and `source modeling_nuv0_printers.py` loads it anywhere. Memory is read and nothing is
called, so it serves for core files too. What is optimised away cannot be shown.

Elements of the in-memory model are shown by class and name. Whoever walks a framework of their own
says how its handles are shown, by the name of their type:

    import modeling_nuv0_printers
    modeling_nuv0_printers.texts["nuv::zero::ModelElement"] = lambda handle: str(handle["id_"])

The texts are UTF-8. Containers are read as libstdc++ lays them out.
"""

import gdb
import gdb.printing

# By the name of a handle's type, a function from the handle to its text, or to None where it is null.
texts = {}

NOT_AN_ELEMENT = "Not an element"
MOST_SHOWN = 200
MOST_UNITS = 1 << 20


# Standard containers.

def pointer_in(value):
    """The pointer that a unique_ptr or shared_ptr holds: the first one inside."""
    if value.type.strip_typedefs().code == gdb.TYPE_CODE_PTR:
        return value
    for field in value.type.strip_typedefs().fields():
        if field.is_base_class or not hasattr(field, "bitpos"):
            inside = value.cast(field.type) if field.is_base_class else None
        else:
            inside = value[field]
        if inside is None or inside.type.strip_typedefs().code not in (
                gdb.TYPE_CODE_PTR, gdb.TYPE_CODE_STRUCT):
            continue
        found = pointer_in(inside)
        if found is not None:
            return found
    return None


def vector_size(vector):
    bounds = vector["_M_impl"]
    return int(bounds["_M_finish"] - bounds["_M_start"])


def vector_entry(vector, index):
    return (vector["_M_impl"]["_M_start"] + index).dereference()


def u16_text(string):
    """A std::u16string."""
    return units_at(int(string["_M_dataplus"]["_M_p"]), int(string["_M_string_length"]))


def units_at(address, length):
    if length == 0:
        return ""
    if length > MOST_UNITS:
        # gdb ends itself where it is asked for more memory than there is.
        raise gdb.MemoryError(f"no text: {length} units")
    units = gdb.selected_inferior().read_memory(address, 2 * length).tobytes()
    return units.decode("utf-16-le" if is_little_endian() else "utf-16-be", "replace")


def is_little_endian():
    return "little" in gdb.execute("show endian", to_string=True)


# The in-memory model.

def u64(address):
    order = "little" if is_little_endian() else "big"
    size = gdb.lookup_type("void").pointer().sizeof
    return int.from_bytes(gdb.selected_inferior().read_memory(address, size).tobytes(), order)


def object_at(address, kind="Object"):
    return gdb.Value(address).cast(
        gdb.lookup_type("nuv::zero::memory::" + kind).pointer()).dereference()


def class_of(element):
    """The ClassObject of an object."""
    return object_at(int(element["class_"].dereference()["impl_"]), "ClassObject")


def class_name(of_class):
    return u16_text(of_class["name_"])


def property_text(handle):
    if int(handle["impl_"]) == 0:
        return None
    return u16_text(object_at(int(handle["impl_"]), "PropertyObject")["name_"])


def class_text(handle):
    if int(handle["impl_"]) == 0:
        return None
    return u16_text(object_at(int(handle["impl_"]), "TypeObject")["qualifiedName_"])


def slot_word(element, number):
    inline_slots = int(element["inlineSlotCount_"])
    size = gdb.lookup_type("nuv::zero::memory::SlotWord").sizeof
    if number < inline_slots:
        return u64(int(element.address) + element.type.sizeof + number * size)
    late = element["lateSlots_"]
    if int(late) == 0 or number - inline_slots >= vector_size(late.dereference()):
        return 0
    return int(vector_entry(late.dereference(), number - inline_slots)["bits_"])


def element_text(handle):
    if int(handle["impl_"]) == 0:
        return None
    return text_of_object(int(handle["impl_"]))


def text_of_object(address):
    element = object_at(address)
    of_class = class_of(element)
    # What stands for a class or a property of the metamodel is an object too, without slots.
    slots = of_class["layout_"]["slotOrder_"]
    name = ""
    for number in range(vector_size(slots)):
        if u16_text(vector_entry(slots, number).dereference()["name_"]) == "name":
            shown = content_of(slot_word(element, number))
            name = shown if isinstance(shown, str) else ""
    return class_name(of_class) + "'" + name + "'"


def content_of(word):
    """What a slot holds: None for nothing, a text, a number, an Elements or a list."""
    tag = word & 7
    if word == 0 or word == 1:
        return None
    if word & 1 == 0:
        return Elements([word & ~2])
    if tag == 7:
        length = (word >> 3) & 7
        return "".join(chr((word >> (8 * (i + 1))) & 0xFF) for i in range(length))
    if tag == 3:
        bits = 8 * gdb.lookup_type("void").pointer().sizeof
        return (word if word < 1 << (bits - 1) else word - (1 << bits)) >> 3
    return content_of_payload(object_at(word & ~1, "Payload"))


class Elements(list):
    """Addresses of objects."""


def content_of_payload(payload):
    kind = str(payload["kind_"]).rsplit("::", 1)[-1]
    size = int(payload["size_"])
    begin = int(payload.address) + payload.type.sizeof
    if kind in ("Elements", "Element"):
        step = gdb.lookup_type("void").pointer().sizeof
        return Elements(u64(begin + i * step) for i in range(size))
    if kind == "Text":
        return units_at(begin, size)
    if kind == "Texts":
        entries = gdb.Value(begin).cast(
            gdb.lookup_type("std::u16string").strip_typedefs().pointer())
        return [u16_text((entries + i).dereference()) for i in range(size)]
    if kind in ("Integers", "Integer"):
        entries = gdb.Value(begin).cast(gdb.lookup_type("std::int64_t").pointer())
        found = [int((entries + i).dereference()) for i in range(size)]
        return found[0] if kind == "Integer" else found
    return content_of(int(object_at(begin, "Payload::Planted")["word"]["bits_"]))


def shown_content(content):
    if content is None:
        return "unset"
    if isinstance(content, str):
        return '"' + content + '"'
    if isinstance(content, Elements):
        return "{" + ", ".join(text_of_object(each) if each else NOT_AN_ELEMENT
                               for each in content[:MOST_SHOWN]) + rest_of(content) + "}"
    if isinstance(content, list):
        return "{" + ", ".join(shown_content(each) for each in content[:MOST_SHOWN]) + rest_of(
            content) + "}"
    return str(content)


def rest_of(entries):
    return "" if len(entries) <= MOST_SHOWN else f", and {len(entries) - MOST_SHOWN} more"


texts["nuv::zero::ModelElement"] = element_text
texts["nuv::zero::meta::Property"] = property_text
for _type in ("Class", "Type", "StructuredType", "PrimitiveType"):
    texts["nuv::zero::meta::" + _type] = class_text


def text_of(handle, null=NOT_AN_ELEMENT):
    kind = handle.type.strip_typedefs().unqualified()
    if kind.code == gdb.TYPE_CODE_REF:
        handle = handle.referenced_value()
        kind = handle.type.strip_typedefs().unqualified()
    function = texts.get(kind.name)
    text = function(handle) if function else str(handle)
    return null if text is None else text


# Links and walks.

def link_text(source, property_handle, target):
    shown = property_handle and text_of(property_handle, null="")
    return f"{text_of(source)}-{'[' + shown + ']' if shown else '[pseudo]'}-{text_of(target)}"


def text_of_link(link):
    return link_text(link["source_"], link["property_"], link["target_"])


class Frontier:
    """What both orders know of where a walk stands."""

    def __init__(self, walk):
        self.walk = walk
        pointer = pointer_in(walk["store_"])
        self.is_there = int(pointer) != 0
        if self.is_there:
            self.store = pointer.cast(pointer.dynamic_type).dereference()
            self.is_queue = any(f.name == "queue_" for f in self.store.type.fields())

    def waiting(self):
        if self.is_queue:
            return int(self.store["queue_"]["size_"])
        return int(self.store["path_"]["size_"]) + vector_size(self.store["waiting_"])

    def cursor(self, index):
        block = pointer_in(vector_entry(self.store["path_"]["blocks_"], index // 64))
        return block.dereference()["_M_elems"][index % 64]

    @staticmethod
    def is_on_link(cursor):
        return int(cursor["valueIndex_"]) < int(cursor["valueCount_"])

    def depth(self):
        if self.is_queue:
            between = bool(self.store["hasTurn_"]) and not self.is_on_link(self.store["turn_"])
            return int(self.store["level_"] if between else self.store["depth_"])
        size = int(self.store["path_"]["size_"])
        return size - (0 if size == 0 or self.is_on_link(self.cursor(size - 1)) else 1)

    def path(self):
        """The links to where the walk stands. REQUIRES: depth-first."""
        links, before = [], None
        size = int(self.store["path_"]["size_"])
        for index in range(size):
            cursor = self.cursor(index)
            target = cursor["element_"]["handle_"]
            if before is None:
                links.append(f"{NOT_AN_ELEMENT}-[pseudo]-{text_of(target)}")
            else:
                links.append(link_text(before["element_"]["handle_"],
                                       before["setting_"].dereference()["property_"], target))
            before = cursor
        if size and self.is_on_link(before):
            links.append(text_of_link(self.walk["current_"]["link_"]))
        return links


def has_field(value, name):
    return any(field.name == name for field in value.type.strip_typedefs().fields())


def entered_count(walk):
    entered = walk["entered_"]
    elements = entered["elements_"]
    return int(elements["size_"] if has_field(elements, "size_") else elements["count_"]) + int(
        bool(entered["hasNull_"]))


class TextPrinter:
    """A value that is one text."""

    def __init__(self, text):
        self.text = text

    def to_string(self):
        return self.text


class WalkPrinter:
    """Where a walk stands, with its path."""

    def __init__(self, walk):
        self.walk = walk
        self.frontier = Frontier(walk) if walk is not None else None

    def to_string(self):
        if self.frontier is None or not self.frontier.is_there:
            return "walk that was moved from"
        if bool(self.walk["hasEnded_"]):
            return f"walk at its end, {entered_count(self.walk)} entered"
        current = self.walk["current_"]["link_"]
        where = "walk before its first link" if is_empty(current) else (
            "walk on " + text_of_link(current))
        return (f"{where}, depth {self.frontier.depth()}, {entered_count(self.walk)} entered, "
                f"{self.frontier.waiting()} waiting")

    def children(self):
        if self.frontier is None or not self.frontier.is_there or bool(self.walk["hasEnded_"]):
            return
        if self.frontier.is_queue:
            return
        for index, link in enumerate(self.frontier.path()[:MOST_SHOWN]):
            yield f"path[{index}]", link


def is_empty(link):
    return text_of(link["target_"], null="") == "" and text_of(link["source_"], null="") == ""


def result_text(result):
    order = str(result["algo_"]).rsplit("::", 1)[-1]
    inputs = [text_of(vector_entry(result["inputs_"], i))
              for i in range(min(vector_size(result["inputs_"]), MOST_SHOWN))]
    return f"{order} from {{{', '.join(inputs)}}}"


def walk_in(pointer):
    return None if pointer is None or int(pointer) == 0 else pointer.dereference()


class RangePrinter(WalkPrinter):
    """A LinkRange: what it walks, until it is begun."""

    def __init__(self, value):
        self.value = value
        payload = value["walk_"]["_M_payload"]
        begun = bool(payload["_M_engaged"])
        context = payload["_M_payload"]["_M_value"] if begun else None
        super().__init__(walk_in(pointer_in(context["walk_"])) if begun else None)

    def to_string(self):
        if self.walk is None:
            result = walk_in(pointer_in(self.value["result_"]))
            return "range, not begun" + ("" if result is None else ", " + result_text(result))
        return super().to_string()


def strip_inline(name):
    """The name without the namespace of a library over a host's framework."""
    return "::".join(part for part in name.split("::") if not part.startswith("over_"))


def printer_of(value):
    """What gdb asks: a printer, or None for what is not ours."""
    kind = value.type.strip_typedefs().unqualified()
    if kind.code == gdb.TYPE_CODE_REF:
        value = value.referenced_value()
        kind = value.type.strip_typedefs().unqualified()
    if kind.code != gdb.TYPE_CODE_STRUCT or not kind.name or not kind.name.startswith("nuv::zero::"):
        return None
    name = strip_inline(kind.name)
    if name in texts:
        return TextPrinter(text_of(value))
    traversal = "nuv::zero::traversal::"
    if name == traversal + "internal::Link":
        return TextPrinter(text_of_link(value))
    if name == traversal + "internal::TraversalResult":
        return TextPrinter(result_text(value))
    if name == traversal + "internal::TraversalResult::IterationContext":
        return WalkPrinter(walk_in(pointer_in(value["walk_"])))
    if name == traversal + "internal::Walk":
        return WalkPrinter(value)
    if name == traversal + "LinkRange":
        return RangePrinter(value)
    if name == "nuv::zero::Value":
        return TextPrinter(shown_content(content_of(int(value["held_"]["word_"]["bits_"]))))
    return None


printer_of.__name__ = "modeling_nuv0"


def register(objfile=None):
    gdb.printing.register_pretty_printer(objfile, printer_of, replace=True)


register(gdb.current_objfile())
