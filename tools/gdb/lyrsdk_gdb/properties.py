"""Pages, their entries and items, connections and handles: what is seen, through the chain of pages."""

import itertools

import gdb

from .memory import (
    ERRORS,
    Invalid,
    array_elements,
    at,
    bits,
    complaint,
    element_limit,
    element_values,
    pointee,
    tree_find,
    tree_records,
    tree_size,
    type_of,
)
from .values import NO_VALUE, stored_text, string_text, symbol_text, type_text, value_text

# A chain of pages is followed so far up, and a path shows so many names.
LONGEST_CHAIN = 4096
LONGEST_PATH = 32

FLAG_BITS = 16
DEFINED_FLAGS = 0x7FFF
FLAGS = "LyrPropertyFlags::eLyrPropertyFlags"
CONNECTION_TYPE = "kLyrConnectionType"
BOUNDS = ("min", "soft min", "max", "soft max")


def attempt(text, *arguments):
    """A text, or what is wrong in its place."""
    try:
        return text(*arguments)
    except ERRORS as error:
        return complaint(error)


def counted(count, noun, plural=None):
    """A number of things."""
    return f"{count} {noun if count == 1 else plural or noun + 's'}"


# --- pages ------------------------------------------------------------------------------------------------------------


def check_page(page):
    """Raises Invalid for memory that holds no page, or not any more."""
    tree = page["mEntries"]["mTree"]
    record = tree["mRoot"].type.target()
    if int(tree["mAllocator"]["mRecordSize"]) != record.sizeof:
        raise Invalid("no page")
    tree_size(tree)
    if int(pointee(page["mIdGenerator"])["mRef"]) <= 0:
        raise Invalid("a page that is gone")


class View:
    """What is seen through a page: its own entries, and those of the pages that it is an instance of."""

    def __init__(self, page):
        check_page(page)
        self.page = page
        # (pages up, page) of the pages that hold entries.
        self.pages = []
        self.ends = True
        seen = set()
        while True:
            if int(page["mEntries"]["mTree"]["mSize"]):
                self.pages.append((len(seen), page))
            seen.add(int(page.address))
            above = page["mInstanceOf"]
            if int(above) == 0:
                break
            if int(above) in seen:
                raise Invalid("pages that are instances of each other")
            if len(seen) == LONGEST_CHAIN:
                self.ends = False
                break
            page = pointee(above)
            check_page(page)

    def entries(self, key):
        """(pages up, page, entry) of the pages that hold an entry of a property."""
        for level, page in self.pages:
            pointer = tree_find(page["mEntries"]["mTree"], key)
            if pointer is not None:
                yield level, page, pointee(pointer)

    def item(self, key, member):
        """(pages up, page, item) of the item seen for a property; all None if there is none."""
        for level, page, entry in self.entries(key):
            if int(entry[member]):
                return level, page, pointee(entry[member])
        return None, None, None

    def entry(self, key):
        return next((entry for _, _, entry in self.entries(key)), None)

    def name(self, key):
        """The name of a property."""
        info = self.item(key, "mInfo")[-1]
        # As the property shows itself, without the quotes.
        return symbol_text(info["mName"])[1:-1] if info is not None else ""

    def path(self, key):
        """The names from the root to a property, a slash between them."""
        names = []
        seen = set()
        while key >= 0:
            if key in seen:
                names.append("<circle>")
                break
            if len(names) == LONGEST_PATH:
                names.append("...")
                break
            entry = self.entry(key)
            if entry is None:
                names.append(f"<no property {key}>")
                break
            seen.add(key)
            names.append(attempt(self.name, key))
            key = int(entry["mParentId"])
        return "/".join(reversed(names))

    def flags(self, key):
        """The flags seen for a property."""
        flags = hidden = 0
        for _, _, entry in self.entries(key):
            data = int(entry["mFlags"]["mFlagData"])
            flags |= data & 0xFFFF & ~hidden
            hidden |= data >> FLAG_BITS
        return flags


def page_name(page):
    """The name of a page's root property, in quotes."""
    return f'"{View(page).name(0)}"'


def page_text(page):
    view = View(page)
    texts = [f'page "{attempt(view.name, 0)}"']
    if int(page["mInstanceOf"]):
        texts.append(f"instance of {int(page['mInstanceOf']):#x}")
    texts.append(counted(tree_size(page["mEntries"]["mTree"]), "own entry", "own entries"))
    _, instances = array_elements(page["mInstances"], page["mInstanceOf"].type)
    if instances:
        texts.append(counted(instances, "instance"))
    if page["mDestroyPending"]:
        texts.append("destroyed, but kept for its instances")
    return ", ".join(texts)


def page_children(page):
    """A page's own entries by id and path."""
    view = View(page)
    last = -1
    for record in tree_records(page["mEntries"]["mTree"]):
        key = int(record["mData"]["mFirst"])
        if key <= last:
            raise Invalid(f"the entry {key} behind the entry {last}")
        last = key
        yield f"[{key}] {attempt(view.path, key)}", pointee(record["mData"]["mSecond"])


def generator_text(generator):
    if int(generator["mRef"]) <= 0:
        raise Invalid("not counted by any page")
    # Pages use it, and properties that are bound.
    return f"next id {int(generator['mNextId'])}, {counted(int(generator['mRef']), 'use')}"


# --- items ------------------------------------------------------------------------------------------------------------


def info_type(info):
    """The type code of a description, through the pages that type it."""
    seen = set()
    while info is not None and int(info["mTypeInfo"]):
        if int(info.address) in seen:
            return 0
        seen.add(int(info.address))
        info = View(pointee(info["mTypeInfo"])).item(0, "mInfo")[-1]
    return int(info["mType"]) if info is not None else 0


def type_of_info_text(info):
    text = type_text(info_type(info))
    if int(info["mTypeInfo"]):
        text += f" of the page {page_name(pointee(info['mTypeInfo']))}"
    return text


def bound_text(address):
    """A bound stands behind its type, at the next place where any value may stand."""
    alignment = gdb.lookup_type("double").alignof
    code = type_of("ELyrType")
    offset = (code.sizeof + alignment - 1) // alignment * alignment
    return stored_text(int(at(address - offset, code)), address)


def enumeration(info):
    """The items of the list of enumeration texts of a description."""
    pointer = info["mEnumList"]["mPointer"]
    if int(pointer):
        array = pointee(pointer)["mList"]
        for item in element_values(array, array.type.template_argument(0)):
            yield pointee(item)


def enumeration_text(info):
    texts = []
    for item in enumeration(info):
        if len(texts) == element_limit():
            texts.append("...")
            break
        texts.append(string_text(item["mString"]))
    return ", ".join(texts)


def info_text(info):
    if int(info["mRef"]) < 0:
        raise Invalid(f"counted {int(info['mRef'])} times")
    texts = [attempt(type_of_info_text, info)]
    if int(info["mLabel"]["mText"]):
        texts.append(f"label {attempt(symbol_text, info['mLabel'])}")
    for index, bound in enumerate(BOUNDS):
        address = int(info["mMinMaxValue"][index])
        if address:
            texts.append(f"{bound} {attempt(bound_text, address)}")
    if int(info["mEnumList"]["mPointer"]):
        texts.append(f"enumeration {attempt(enumeration_text, info)}")
    if int(info["mUserTag"]):
        texts.append(f"user tag {int(info['mUserTag'])}")
    if int(info["mUserData"]):
        texts.append(f"user data {int(info['mUserData']):#x}")
    return f"{symbol_text(info['mName'])} ({'; '.join(texts)})"


def value_item_text(item):
    text = value_text(item)
    return text if text == NO_VALUE else f"{text} ({type_text(int(item['mType']))})"


def flags_text(flags):
    """The flags that are set here, on or off."""
    data = int(flags["mFlagData"])
    on, here = data & 0xFFFF, data >> FLAG_BITS
    off, all_off = here & ~on, DEFINED_FLAGS & ~on
    texts = []
    if on:
        texts.append(f"on {bits(FLAGS, on)}")
    if off and off == all_off:
        texts.append("all others off" if on else "all off")
    elif off:
        texts.append(f"off {bits(FLAGS, off)}")
    if on & ~here:
        texts.append(f"not marked as set here {bits(FLAGS, on & ~here)}")
    return ", ".join(texts) if texts else "none set here"


def entry_text(entry):
    """None; but an entry that points at nowhere is none."""
    for member in ("mInfo", "mValue", "mConnect"):
        if int(entry[member]):
            pointee(entry[member])


def entry_children(entry):
    """What an entry holds; the rest is inherited."""
    yield "parent", entry["mParentId"]
    for name, member in (("description", "mInfo"), ("value", "mValue"), ("connections", "mConnect")):
        if int(entry[member]):
            yield name, pointee(entry[member])
    if int(entry["mFlags"]["mFlagData"]):
        yield "flags", entry["mFlags"]


# --- connections ------------------------------------------------------------------------------------------------------


def connections(points):
    """(number of sources, number of destinations, connections) of a KConnectionList.

    A single connection may stand in the list itself, beside empty arrays. The arrays of a long list have free places in
    them, null points; sources come before destinations all the same.
    """
    sources, destinations = int(points["mSrcCount"]), int(points["mDstCount"])
    peers, types = points["mConnectionConnect"], points["mConnectionType"]
    point_type = type_of("KLyrConnectionPoint").pointer()
    code_type = type_of(CONNECTION_TYPE)
    peer_at, count = array_elements(peers, point_type)
    type_at, type_count = array_elements(types, code_type)
    single = 1 if int(points["mOnly"]) else 0
    if sources < 0 or destinations < 0 or sources + destinations > count + single or count != type_count:
        raise Invalid(f"{sources} sources and {destinations} destinations in lists of {count} and {type_count}")

    def places():
        if single:
            yield points["mOnly"], points["mOnlyType"]
        for index in range(count):
            yield at(peer_at + index * point_type.sizeof, point_type), at(type_at + index * code_type.sizeof, code_type)

    def walk():
        taken = (place for place in places() if int(place[0]))
        for number, (peer, code) in enumerate(itertools.islice(taken, sources + destinations)):
            side = f"source {number}" if number < sources else f"destination {number - sources}"
            yield f"{side} ({bits(CONNECTION_TYPE, int(code))})", peer

    return sources, destinations, walk


def connections_text(points):
    sources, destinations, _ = connections(points)
    texts = [counted(count, noun) for count, noun in ((sources, "source"), (destinations, "destination")) if count]
    return ", ".join(texts) or "no connections"


def connections_children(points):
    for name, peer in connections(points)[2]():
        yield name, property_of_point(peer)


def property_of_point(pointer):
    """A handle to the property of a connection point, or the pointer to a point that belongs to no property."""
    point = pointee(pointer)
    connect_type = type_of("KLyrPropertyConnect")
    place = next(field.bitpos // 8 for field in connect_type.fields() if field.name == "mConnectionPoint")
    if int(point["mData"]) != int(pointer) - place:
        return pointer
    connect = at(int(point["mData"]), connect_type)
    return make_handle(int(connect["mPage"]), int(connect["mId"]))


def make_handle(page, key):
    """A handle that is nowhere in the program."""
    handle_type = type_of("KLyrPropertyHandle")
    image = bytearray(handle_type.sizeof)
    for field in handle_type.fields():
        number = {"mPage": page, "mId": key}[field.name]
        start, size = field.bitpos // 8, field.type.sizeof
        image[start : start + size] = (number & ((1 << 8 * size) - 1)).to_bytes(size, "little")
    return gdb.Value(bytes(image), handle_type)


def connect_text(connect):
    if int(connect["mRef"]) < 0:
        raise Invalid(f"counted {int(connect['mRef'])} times")
    points = connect["mConnectionPoint"]["mList"]
    if int(connect["mPage"]) == 0:
        return f"of a property that is gone, {connections_text(points)}"
    path = View(pointee(connect["mPage"])).path(int(connect["mId"]))
    return f"of {path}, {connections_text(points)}"


# --- handles ----------------------------------------------------------------------------------------------------------


def seen_value_text(view, key, info):
    """(value, where it comes from) of the value seen; empty without a value."""
    level, page, item = view.item(key, "mValue")
    text = attempt(value_text, item) if item is not None else NO_VALUE
    if text == NO_VALUE:
        return "", ""
    if int(item["mType"]) == type_number("eENUM") and info is not None:
        number = int(at(int(item["mValue"]), gdb.lookup_type("int")))
        name = attempt(enumeration_name, info, number)
        text += f" {name}" if name else ""
    return text, "own" if level == 0 else f"inherited from the page {int(page.address):#x}, {level} up"


def type_number(name):
    return next(field.enumval for field in type_of("ELyrType").fields() if field.name.endswith(name))


def enumeration_name(info, number):
    """The text of a number; empty if there is none."""
    for index, item in enumerate(enumeration(info)):
        if index == number:
            return string_text(item["mString"])
    return ""


def handle_text(handle):
    if int(handle["mPage"]) == 0:
        return "no property"
    page, key = pointee(handle["mPage"]), int(handle["mId"])
    view = View(page)
    if key < 0 or view.entry(key) is None:
        where = "" if view.ends else f" within {LONGEST_CHAIN} pages"
        return f'no property {key} in the page "{attempt(view.name, 0)}"{where}'
    info = view.item(key, "mInfo")[-1]
    kind = attempt(type_of_info_text, info) if info is not None else "no description"
    value, origin = seen_value_text(view, key, info)
    details = [origin] if value else [NO_VALUE]
    flags = view.flags(key)
    if flags:
        details.append(bits(FLAGS, flags))
    connect = view.item(key, "mConnect")[-1]
    if connect is not None:
        details.append(attempt(connections_text, connect["mConnectionPoint"]["mList"]))
    shown = f"{kind} = {value}" if value else kind
    return f"{view.path(key)}: {shown} ({'; '.join(details)})"
