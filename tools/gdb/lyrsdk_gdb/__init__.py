"""gdb pretty printers for the types of lyrsdk.

    memory.py      reading, and what the reading rests on
    values.py      the types of values
    properties.py  pages, items, connections, handles
    kit.py         what stands on handles: answers, ranges, bound properties
    __init__.py    the containers, and which printer is whose

A printer gives a text, children, or both. Memory that holds no object of the type prints as "<invalid ...>", a type of
which the program says too little as "<no debug info ...>", with the reason; no printer raises an error or runs without
an end. Texts and children are cut at "set print elements".
"""

import gdb
import gdb.printing

from . import kit, properties, values
from .memory import (
    ERRORS,
    Invalid,
    array_elements,
    complaint,
    element_values,
    known,
    pointee,
    read,
    tree_records,
    tree_size,
)

MOST_BLOCKS = 4096


class Printer:
    """Shows a value by a function that gives its text."""

    def __init__(self, value, name, text):
        self.value = value
        self.name = name
        self.text = text
        self.is_broken = False

    def to_string(self):
        try:
            known(self.value.type.strip_typedefs())
            return self.text(self.value) if self.text else None
        except ERRORS as error:
            self.is_broken = True
            return complaint(error, self.name)


class Parent(Printer):
    """Also shows what belongs to the value, by a function that gives (name, value) one by one."""

    def __init__(self, value, name, text, children):
        super().__init__(value, name, text)
        self.members = children

    def children(self):
        self.to_string()
        if self.is_broken:
            return
        try:
            yield from self.members(self.value)
        except ERRORS as error:
            yield from self.broken(str(error))

    def broken(self, reason):
        """What stands in place of the members that are not found."""
        yield "<invalid>", reason


class Array(Parent):
    def display_hint(self):
        return "array"


class Map(Parent):
    """The members are keys and values by turns."""

    def display_hint(self):
        return "map"

    def broken(self, reason):
        yield "<invalid> key", "<invalid>"
        yield "<invalid> value", reason


# --- containers -------------------------------------------------------------------------------------------------------


def array_type(value):
    """The type of a KArrayTemplate's elements."""
    return value.type.strip_typedefs().template_argument(0)


def array_text(value):
    return properties.counted(array_elements(value, array_type(value))[1], "element")


def array_children(value):
    for index, element in enumerate(element_values(value, array_type(value))):
        yield str(index), element


def base_array_text(value):
    size = int(value.type.strip_typedefs().template_argument(0))
    element = gdb.lookup_type("char").array(size - 1)
    return f"{properties.counted(array_elements(value, element)[1], 'element')} of {size} bytes"


def string_list_text(value):
    return properties.counted(array_elements(value["mList"], array_type(value["mList"]))[1], "string")


def string_list_children(value):
    for index, item in enumerate(element_values(value["mList"], array_type(value["mList"]))):
        yield str(index), pointee(item)


def string_list_item_text(value):
    reference = int(value["mReference"])
    return values.string_text(value["mString"]) + (f" ({reference})" if reference else "")


def pair_children(value):
    yield "mFirst", value["mFirst"]
    yield "mSecond", value["mSecond"]


def key_value_children(value):
    yield "key", value["mFirst"]
    yield "value", value["mSecond"]


def record_children(value):
    yield from key_value_children(value["mData"])


def tree_text(value):
    return properties.counted(tree_size(value), "record")


def tree_children(value):
    # No two members may have one name.
    for index, record in enumerate(tree_records(value)):
        yield f"key {index}", record["mData"]["mFirst"]
        yield f"value {index}", record["mData"]["mSecond"]


def map_text(value):
    return tree_text(value["mTree"])


def map_children(value):
    return tree_children(value["mTree"])


def iterator_text(value):
    if int(value["mRecord"]) == 0:
        return "end"
    pointee(value["mRecord"])
    return None


def iterator_children(value):
    if int(value["mRecord"]):
        yield from record_children(pointee(value["mRecord"]))


def scoped_pointer_text(value):
    return "null" if values.scoped_pointer_target(value) is None else f"owner of {int(value['mPointer']):#x}"


def scoped_pointer_children(value):
    target = values.scoped_pointer_target(value)
    if target is not None:
        yield "object", target


def allocator_text(value):
    return f"records of {int(value['mRecordSize'])} bytes, each a block"


def hungry_allocator_text(value):
    blocks, link = set(), value["mData"]
    while int(link):
        if int(link) in blocks or len(blocks) == MOST_BLOCKS:
            raise Invalid("blocks without an end")
        blocks.add(int(link))
        link = pointee(link)["mNextBlock"]
    records = properties.counted(int(value["mRecordPoolSize"]), "record")
    return f"room for {records} of {int(value['mRecordSize'])} bytes in {properties.counted(len(blocks), 'block')}"


def memory_block_text(value):
    data, free, end = (int(value[member]) for member in ("mData", "mFreeData", "mEnd"))
    if not data <= free <= end or (data == 0) != (end == 0):
        raise Invalid(f"bytes from {data:#x} by {free:#x} to {end:#x}")
    if data != end:
        read(data, 1)
    return f"{free - data} of {end - data} bytes handed out"


# --- which printer is whose -------------------------------------------------------------------------------------------

# A text function, or a printer class with a text function or None, and a function for the children.
PRINTERS = {
    "KArrayTemplate": (Array, array_text, array_children),
    "KBaseArrayFast": base_array_text,
    "KString": values.string_text,
    "KStringList": (Array, string_list_text, string_list_children),
    "KStringListTemplate": (Array, string_list_text, string_list_children),
    "KStringListItem": string_list_item_text,
    "KPair": (Parent, None, pair_children),
    "KMap": (Map, map_text, map_children),
    "KMap::KKeyValuePair": (Parent, None, key_value_children),
    "KRedBlackTree": (Map, tree_text, tree_children),
    "KRedBlackTree::RecordType": (Parent, None, record_children),
    "RedBack_IteratorType": (Parent, iterator_text, iterator_children),
    "KScopedPtr": (Parent, scoped_pointer_text, scoped_pointer_children),
    "KLyrSdkScopedPtr": (Parent, scoped_pointer_text, scoped_pointer_children),
    "KBaseAllocator": allocator_text,
    "KHungryAllocator": hungry_allocator_text,
    "KHungryAllocator::MemoryBlock": memory_block_text,
    "KTime": values.time_text,
    "KLyrStringSymbol": values.symbol_text,
    "KLyrSystemUnit": values.unit_text,
    "lyrBlob": values.blob_text,
    "lyrDateTime": values.date_time_text,
    "lyrDistance": values.distance_text,
    "lyrHalfFloat": values.half_text,
    "lyrVoidReference": values.reference_text,
    "lyrVectorTemplate2": values.vector_text,
    "lyrVectorTemplate3": values.vector_text,
    "lyrVectorTemplate4": values.vector_text,
    "KLyrConnectionPoint": (
        Parent,
        lambda point: properties.connections_text(point["mList"]),
        lambda point: properties.connections_children(point["mList"]),
    ),
    "KLyrConnectionPoint::KConnectionList": (
        Parent,
        properties.connections_text,
        properties.connections_children,
    ),
    "KLyrPropertyFlags": properties.flags_text,
    "KLyrPropertyValue": properties.value_item_text,
    "KLyrPropertyInfo": properties.info_text,
    "KLyrPropertyConnect": (
        Parent,
        properties.connect_text,
        lambda connect: properties.connections_children(connect["mConnectionPoint"]["mList"]),
    ),
    "KLyrPropertyEntry": (Parent, properties.entry_text, properties.entry_children),
    "KLyrPropertyIdGenerator": properties.generator_text,
    "KLyrPropertyPage": (Parent, properties.page_text, properties.page_children),
    "KLyrPropertyHandle": properties.handle_text,
    "KLyrItemOrigin": (Parent, kit.origin_of, kit.item_origin_children),
    "KLyrFlagOrigin": (Parent, kit.flag_origin_text, kit.flag_origin_children),
    "KLyrExplanation": (Parent, kit.explanation_text, kit.explanation_children),
    "KLyrOverride": (Parent, kit.override_text, kit.property_children),
    "KLyrRedundancy": (Parent, kit.redundancy_text, kit.property_children),
    "KLyrPushItems": (Parent, kit.push_items_text, kit.property_children),
    "KLyrPushEffect": (Parent, kit.push_effect_text, kit.push_effect_children),
    "KLyrHandleRange": kit.range_text,
    "KLyrHandleRange::Iterator": kit.range_iterator_text,
    "KLyrBoundProperty": kit.bound_property_text,
    "KLyrPropertyBuilder": kit.builder_text,
    "KLyrReason": kit.reason_text,
    # gdb shows combinations of these as a number: some enumerators are combinations themselves.
    "kLyrConnectionType": kit.connection_type_text,
}


def plain_name(name):
    """The name of a type without the arguments of its templates."""
    depth, plain = 0, []
    for char in name:
        depth += char == "<"
        if depth == 0:
            plain.append(char)
        depth -= char == ">"
    return "".join(plain)


class Lookup(gdb.printing.PrettyPrinter):
    """Finds the printer of a value."""

    def __init__(self):
        super().__init__("lyrsdk", [gdb.printing.SubPrettyPrinter(name) for name in PRINTERS])
        self.by_name = {printer.name: printer for printer in self.subprinters}

    def __call__(self, value):
        kind = value.type
        if kind.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
            value = value.referenced_value()
            kind = value.type
        kind = kind.unqualified().strip_typedefs()
        if kind.code not in (gdb.TYPE_CODE_STRUCT, gdb.TYPE_CODE_ENUM) or not (kind.tag or "").startswith("lyrsdk::"):
            return None
        name = plain_name(kind.tag[len("lyrsdk::") :])
        if name not in PRINTERS or not self.by_name[name].enabled:
            return None
        printer = PRINTERS[name]
        return Printer(value, name, printer) if callable(printer) else printer[0](value, name, *printer[1:])


def register(objfile):
    """Shows values by these printers while an object file is loaded; None: always."""
    gdb.printing.register_pretty_printer(objfile, Lookup(), replace=True)
