"""What is read of the debugged program, from memory that may hold anything.

Members are found by their names in the program's debug info, so that word size, compiler and optimisation do not
matter. Nothing is called in the program: a core is enough. Whatever does not look like what the library would have left
there raises Invalid, with a reason. Every walk is bounded, whatever the links say.
"""

import gdb

# Texts of a program that prints without a limit are cut here.
LONGEST_TEXT = 1 << 20
# A red-black tree of 2^31 records is not higher.
HIGHEST_TREE = 64


class Invalid(Exception):
    """What stands in memory is not what the library would have left there."""


class NoDebugInfo(Invalid):
    """The program does not say what stands there."""


# What reading memory that may hold anything can end in.
ERRORS = (Invalid, gdb.error, ArithmeticError, AttributeError, LookupError, TypeError, ValueError)


def complaint(error, name=""):
    """What is shown in place of something that cannot be read."""
    # A class may be known without those that it is derived from.
    if isinstance(error, NoDebugInfo) or str(error).startswith("There is no member "):
        return f"<no debug info{' of ' + name if name else ''}: {error}>"
    return f"<invalid{' ' + name if name else ''}: {error}>"


def type_of(name):
    """The type of this name in the library; with it come its members."""
    try:
        return known(gdb.lookup_type("lyrsdk::" + name).strip_typedefs())
    except gdb.error:
        raise NoDebugInfo(f"lyrsdk::{name} is not known") from None


def known(value_type):
    """The type, provided that more of it is known than its name."""
    if value_type.code == gdb.TYPE_CODE_STRUCT and not value_type.fields():
        raise NoDebugInfo(f"only the name of {value_type} is known")
    return value_type


def read(address, size):
    """The bytes at an address."""
    try:
        return gdb.selected_inferior().read_memory(address, size).tobytes()
    except (gdb.error, OverflowError):
        raise Invalid(f"no memory at {address:#x}") from None


def at(address, value_type):
    """The value of a type at an address."""
    known(value_type)
    read(address, value_type.sizeof)
    return gdb.Value(address).cast(value_type.pointer()).dereference()


def pointee(pointer):
    """What a pointer that is not null leads to."""
    address = int(pointer)
    target = pointer.type.strip_typedefs().target().strip_typedefs()
    if address == 0:
        raise Invalid("null pointer")
    if address % (target.alignof or 1) != 0:
        raise Invalid(f"odd pointer {address:#x}")
    return at(address, target)


def element_limit():
    """How many elements or characters the user wants to see."""
    return gdb.parameter("print elements") or LONGEST_TEXT


def can_be_shown(char):
    """Whether it prints, and gdb's terminal knows it: gdb refuses a whole answer for one character that it does not."""
    try:
        char.encode(gdb.host_charset())
    except UnicodeEncodeError:
        return False
    return char.isprintable()


def quoted(text, cut=False):
    """A text in quotes, with escapes for what does not print; behind a cut text stand three dots."""
    shown = []
    for char in text.decode("utf-8", "surrogateescape"):
        if char in '"\\':
            shown.append("\\" + char)
        elif "\udc80" <= char <= "\udcff":
            shown.append(f"\\{ord(char) - 0xDC00:03o}")
        elif char == "\n":
            shown.append("\\n")
        elif can_be_shown(char):
            shown.append(char)
        else:
            shown.extend(f"\\{byte:03o}" for byte in char.encode())
    return '"' + "".join(shown) + '"' + ("..." if cut else "")


def c_text(address):
    """(bytes, cut) of a text that ends with a zero byte; null is the empty text."""
    text = bytearray()
    limit = element_limit()
    while address and len(text) <= limit:
        # Never beyond a boundary behind which there might be no memory.
        chunk = read(address + len(text), 64 - (address + len(text)) % 64)
        end = chunk.find(b"\0")
        text += chunk if end < 0 else chunk[:end]
        if end >= 0:
            break
    return bytes(text[:limit]), len(text) > limit


def counted_text(string):
    """(bytes, cut) of a KString."""
    address = int(string["mText"])
    if address == 0:
        return b"", False
    # Length and room stand in front of the text.
    header = gdb.lookup_type("int").array(1)
    length, room = (int(at(address - header.sizeof, header)[index]) for index in (0, 1))
    if not 0 < length <= room or read(address + length, 1) != b"\0":
        raise Invalid(f"no text at {address:#x}")
    limit = element_limit()
    return read(address, min(length, limit)), length > limit


def array_elements(array, element):
    """The address and the number of the elements of a KArrayTemplate of this type."""
    count, block = int(array["mArrayCount"]), int(array["mBaseArray"])
    if block == 0:
        if count != 0:
            raise Invalid(f"{count} elements without a block")
        return 0, 0
    room = int(at(block, gdb.lookup_type("int"))) * 4
    if not 0 <= count <= room:
        raise Invalid(f"{count} elements in a block of {room}")
    address = block + element.sizeof
    if count:
        read(address + (count - 1) * element.sizeof, element.sizeof)
    return address, count


def element_values(array, element):
    """The elements of a KArrayTemplate of this type."""
    address, count = array_elements(array, element)
    for index in range(count):
        yield at(address + index * element.sizeof, element)


def tree_size(tree):
    """The number of records of a KRedBlackTree; its root was looked at."""
    size, root = int(tree["mSize"]), tree["mRoot"]
    if size < 0 or (size == 0) != (int(root) == 0):
        raise Invalid(f"a tree of {size} records with the root {int(root):#x}")
    if size and int(pointee(root)["mParent"]) != 0:
        raise Invalid("a root with a parent")
    return size


def tree_records(tree):
    """The records of a KRedBlackTree in order. That each record leads back to its parent rules out circles."""
    left_over = tree_size(tree)
    path = []
    parent, link = 0, tree["mRoot"]
    while True:
        while int(link) != 0:
            record = pointee(link)
            if int(record["mParent"]) != parent or len(path) > HIGHEST_TREE:
                raise Invalid(f"broken links at the record {int(link):#x}")
            if int(record["mLeftChild"]) == int(record["mRightChild"]) != 0:
                raise Invalid(f"one child twice at the record {int(link):#x}")
            path.append(record)
            parent, link = int(link), record["mLeftChild"]
        if not path:
            break
        if left_over == 0:
            raise Invalid("more records than are counted")
        left_over -= 1
        record = path.pop()
        yield record
        parent, link = int(record.address), record["mRightChild"]
    if left_over:
        raise Invalid("fewer records than are counted")


def tree_find(tree, key):
    """The value of the record with this number as its key; None if there is none."""
    link = tree["mRoot"]
    for _ in range(HIGHEST_TREE):
        if int(link) == 0:
            return None
        record = pointee(link)
        found = int(record["mData"]["mFirst"])
        if found == key:
            return record["mData"]["mSecond"]
        link = record["mRightChild"] if found < key else record["mLeftChild"]
    raise Invalid("a tree that is too high")


def enumerators(name):
    """(name, number) of each enumerator of an enumeration."""
    return [(field.name.rsplit("::", 1)[-1], field.enumval) for field in type_of(name).fields()]


def enumerator(name, number):
    """The name of a number in an enumeration."""
    for found, value in enumerators(name):
        if value == number:
            return found
    return f"{name.rsplit('::', 1)[-1]} {number}"


def bits(name, number):
    """The names of the bits of a number in an enumeration, a bar between them."""
    if number == 0:
        return enumerator(name, 0)
    names = []
    for found, value in enumerators(name):
        if value & (value - 1) == 0 and value & number:
            names.append(found)
            number &= ~value
    if number:
        names.append(f"{number:#x}")
    return "|".join(names)
