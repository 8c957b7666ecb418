"""What stands on properties: where items come from, what a page holds, what a push moves, ranges, bound properties.

A handle inside of these is shown as any other, with its path and the value that it sees.
"""

from .memory import Invalid, bits, element_limit, pointee, quoted
from .properties import (
    CONNECTION_TYPE,
    DEFINED_FLAGS,
    FLAG_BITS,
    FLAGS,
    View,
    attempt,
    handle_text,
    page_name,
)

# The walks of ranges: what they go over, and the handle that they begin with.
WALKS = {
    "ChildWalk": ("children", "mParent"),
    "DescendentWalk": ("descendents", "mAncestor"),
    "AncestorWalk": ("ancestors", "mProperty"),
    "InstanceWalk": ("instances", "mProperty"),
    "AllInstancesWalk": ("instances at all levels", "mProperty"),
}


def is_true(value):
    """A bool; other bytes than 0 and 1 are none."""
    number = int(value)
    if number not in (0, 1):
        raise Invalid(f"a bool of {number}")
    return number == 1


def choice(value):
    """The name of the enumerator that a value of an enumeration has."""
    kind = value.type.strip_typedefs()
    for field in kind.fields():
        if field.enumval == int(value):
            return field.name.rsplit("::", 1)[-1]
    raise Invalid(f"no {kind.name.rsplit('::', 1)[-1]}: {int(value) & 0xFFFFFFFF:#x}")


def is_handle(handle):
    return int(handle["mPage"]) != 0


def seen_path(handle):
    if not is_handle(handle) or int(handle["mId"]) < 0:
        return "no property"
    return View(pointee(handle["mPage"])).path(int(handle["mId"]))


def path_of(handle):
    """The path of a handle's property, which may have gone since the answer was given."""
    return attempt(seen_path, handle)


def is_same(handle, other):
    return all(int(handle[member]) == int(other[member]) for member in ("mPage", "mId"))


def flags_of(value):
    number = int(value)
    if number == DEFINED_FLAGS:
        return "all flags"
    return f"flags {bits(FLAGS, number)}" if number else ""


def listed(*texts):
    """Those texts that are not empty, with commas between them."""
    return ", ".join(text for text in texts if text)


def handles(value, names):
    """(name, handle) for the members that lead to a page."""
    for name, member in names:
        if is_handle(value[member]):
            yield name, value[member]


# --- answers: where an item comes from --------------------------------------------------------------------------------


def origin_of(value):
    """Whether an item is own, inherited or from nowhere."""
    origin, distance = choice(value["mOrigin"]), int(value["mDistance"])
    least = {"eNowhere": -1, "eOwn": 0, "eInherited": 1}[origin]
    if distance < least or (distance > least and origin != "eInherited"):
        raise Invalid(f"{origin}, {distance} up")
    if is_handle(value["mHolder"]) != (origin != "eNowhere"):
        raise Invalid(f"{origin}, with the holder {path_of(value['mHolder'])}")
    return {"eNowhere": "from nowhere", "eOwn": "own", "eInherited": f"inherited, {distance} up"}[origin]


def item_origin_children(value):
    yield from handles(value, (("held by", "mHolder"),))
    # An inherited item is its own way back.
    if not is_same(value["mHolder"], value["mIfInherited"]):
        yield from handles(value, (("if inherited", "mIfInherited"),))


def flag_origin_text(value):
    state = "on" if is_true(value["mIsOn"]) else "off"
    origin = origin_of(value)
    mark = "" if origin == "from nowhere" or is_true(value["mIsSet"]) else "not marked as set there"
    back = "on" if is_true(value["mIsOnIfInherited"]) else "off"
    return listed(state, origin, mark, f"{back} if inherited" if origin == "own" else "")


def flag_origin_children(value):
    yield from handles(value, (("held by", "mHolder"),))


def explanation_text(value):
    return f"of {path_of(value['mProperty'])}"


def explanation_children(value):
    yield from handles(value, (("property", "mProperty"), ("added by", "mAddedBy")))
    yield "description", value["mDescription"]
    yield "value", value["mValue"]
    # Of the flags, those that are on or would be.
    for index in range(FLAG_BITS):
        flag = value["mFlags"][index]
        if int(flag["mIsOn"]) or int(flag["mIsOnIfInherited"]):
            yield f"flag {bits(FLAGS, 1 << index)}", flag
    yield "connections", value["mConnections"]
    for name, member in (("sources", "mSrcCount"), ("destinations", "mDstCount")):
        if int(value[member]):
            yield name, value[member]


# --- answers: what a page holds ---------------------------------------------------------------------------------------


def override_text(value):
    parts = (("added here", "mIsAdded"), ("description", "mDescription"), ("value", "mValue"))
    held = [name for name, member in parts if is_true(value[member])]
    flags = flags_of(value["mFlags"])
    connections = "connections" if is_true(value["mConnections"]) else ""
    if not is_true(value["mIsHeld"]):
        return f"{path_of(value['mProperty'])}: all inherited"
    return f"{path_of(value['mProperty'])}: {listed(*held, flags, connections) or 'an empty entry'}"


def redundancy_text(value):
    redundant = listed("value" if is_true(value["mValue"]) else "", flags_of(value["mFlags"]))
    return f"{path_of(value['mProperty'])}: {redundant or 'nothing'} redundant"


def property_children(value):
    yield from handles(value, (("property", "mProperty"),))


# --- answers: what a push does ----------------------------------------------------------------------------------------


def push_items_text(value):
    parts = (("description", "mDescription"), ("value", "mValue"))
    moved = [name for name, member in parts if is_true(value[member])]
    flags = flags_of(value["mFlags"])
    new = "new above" if is_true(value["mIsNewAbove"]) else ""
    items = listed(*moved, flags, new)
    return f"{path_of(value['mProperty'])}: {choice(value['mResult'])}{' (' + items + ')' if items else ''}"


def reach_of(name, value):
    reach = choice(value)
    return "" if reach == "eNotMoved" else f"{name} {reach}"


def push_effect_text(value):
    changed, shielded = flags_of(value["mFlagsChanged"]), flags_of(value["mFlagsShielded"])
    effect = listed(
        reach_of("description", value["mDescription"]),
        reach_of("value", value["mValue"]),
        f"{changed} eChanged" if changed else "",
        f"{shielded} eShielded" if shielded else "",
    )
    return f"{path_of(value['mProperty'])}: {effect or 'nothing of it changes'}"


def push_effect_children(value):
    shields = (("shield of the description", "mDescriptionShield"), ("shield of the value", "mValueShield"))
    yield from handles(value, (("property", "mProperty"), *shields))


# --- ranges -----------------------------------------------------------------------------------------------------------


def walk_text(walk):
    """What a range goes over."""
    name = walk.type.strip_typedefs().tag.rsplit("::", 1)[-1]
    if name == "PropertyWalk":
        what = "own properties" if is_true(walk["mOwn"]) else "properties"
        return f"{what} of the page {page_name(pointee(walk['mPage']))}" if int(walk["mPage"]) else f"{what} of no page"
    if name == "PeerWalk":
        what = "sources" if is_true(walk["mSources"]) else "destinations"
        filtered = ", filtered" if int(walk["mFilter"]) else ""
        return f"{what} of {attempt(handle_text, walk['mProperty'])}{filtered}"
    what, member = WALKS[name]
    return f"{what} of {attempt(handle_text, walk[member])}"


def range_text(value):
    return walk_text(value["mWalk"])


def range_iterator_text(value):
    return f"at {attempt(handle_text, value['mHandle'])}" if is_handle(value["mHandle"]) else "end"


# --- the rest ---------------------------------------------------------------------------------------------------------


def connection_type_text(value):
    return bits(CONNECTION_TYPE, int(value))


def bound_property_text(value):
    family, key = int(value["mFamily"]), int(value["mId"])
    if family == 0 and key == -1:
        return "bound to nothing"
    generator = pointee(value["mFamily"])
    # One that all ids were taken from has no next one.
    next_id = int(generator["mNextId"])
    if int(generator["mRef"]) <= 0 or key < 0 or 0 <= next_id <= key:
        raise Invalid(f"the property {key} of a family with {next_id} properties")
    return f"bound to the property {key} of the family of {family:#x}"


def builder_text(value):
    failed = choice(value["mFailed"])
    if (failed == "eLyrBuildDone") != is_handle(value["mHandle"]):
        raise Invalid(f"{failed}, with {attempt(handle_text, value['mHandle'])}")
    return handle_text(value["mHandle"]) if failed == "eLyrBuildDone" else f"failed at {failed}"


def reason_text(value):
    # Also of a value that stands nowhere in memory, as that of a call.
    text = bytearray()
    for index in range(value["mText"].type.sizeof):
        char = int(value["mText"][index]) & 0xFF
        if char == 0:
            limit = element_limit()
            return quoted(bytes(text[:limit]), len(text) > limit) if text else "no reason"
        text.append(char)
    raise Invalid("a text without an end")
