"""The types of values: as text, from a value of their own or from storage and a type code."""

import struct

import gdb

from .memory import Invalid, at, c_text, counted_text, element_limit, enumerator, pointee, quoted, read, type_of

# The stored type of each type code.
STORED_TYPES = (
    "void",
    "char",
    "unsigned char",
    "short",
    "unsigned short",
    "unsigned int",
    "long long",
    "unsigned long long",
    "lyrHalfFloat",
    "bool",
    "int",
    "float",
    "double",
    "lyrDouble2",
    "lyrDouble3",
    "lyrDouble4",
    "lyrDouble44",
    "int",
    "KString",
    "KTime",
    "lyrVoidReference",
    "lyrBlob",
    "lyrDistance",
    "lyrDateTime",
)

# Centimetres, and the name.
UNITS = {
    0.1: "mm",
    10.0: "dm",
    1.0: "cm",
    100.0: "m",
    100000.0: "km",
    2.54: "Inch",
    30.48: "Foot",
    91.44: "Yard",
    160934.4: "Mile",
}

TIME_UNITS_PER_SECOND = 705600000
NO_VALUE = "no value"


def shortest(number, digits, rounded):
    """The first of so many significant digits that reads back as the same number."""
    if number != number:
        return "nan"
    for count in digits:
        text = f"{number:.{count}g}"
        if rounded(float(text)) == number:
            break
    return text


def to_float(number):
    """The float next to a number."""
    try:
        return struct.unpack("<f", struct.pack("<f", number))[0]
    except OverflowError:
        return float("inf") if number > 0 else float("-inf")


def double_text(number):
    return shortest(number, (15, 16, 17), float)


def float_text(number):
    return shortest(number, (6, 7, 8, 9), to_float)


def string_text(value):
    return quoted(*counted_text(value))


def symbol_text(value):
    return quoted(*c_text(int(value["mText"])))


def half_text(value):
    return float_text(struct.unpack("<e", struct.pack("<H", int(value["mBits"])))[0])


def time_text(value):
    count = int(value["mCount"])
    seconds, units = divmod(abs(count), TIME_UNITS_PER_SECOND)
    nanoseconds = (units * 10**9 + TIME_UNITS_PER_SECOND // 2) // TIME_UNITS_PER_SECOND
    fraction = f".{nanoseconds:09}".rstrip("0") if nanoseconds else ""
    sign = "-" if count < 0 else ""
    return f"{sign}{seconds // 3600:02}:{seconds // 60 % 60:02}:{seconds % 60:02}{fraction}"


def date_time_text(value):
    year, month, day, hour, minute, second, millisecond = (
        int(value[member])
        for member in ("mYear", "mMonth", "mDay", "mHour", "mMinute", "mSecond", "mMillisecond")
    )
    if not (0 <= year <= 9999 and 1 <= month <= 12 and 1 <= day <= 31 and hour <= 23 and minute <= 59):
        raise Invalid("no date")
    if not (second <= 59 and 0 <= millisecond <= 999):
        raise Invalid("no time")
    return f"{year:04}-{month:02}-{day:02}T{hour:02}:{minute:02}:{second:02}.{millisecond:03}"


def unit_text(value):
    factor, multiplier = float(value["mScaleFactor"]), float(value["mMultiplier"])
    if factor not in UNITS:
        return f"x {double_text(factor * multiplier)} cm"
    return UNITS[factor] if multiplier == 1.0 else f"x {double_text(multiplier)} {UNITS[factor]}"


def distance_text(value):
    return f"{float_text(float(value['mValue']))} {unit_text(value['mUnit'])}"


def blob_text(value):
    address, size, capacity = int(value["mData"]), int(value["mSize"]), int(value["mCapacity"])
    if not 0 <= size <= capacity or (size == 0) != (address == 0):
        raise Invalid(f"{size} of {capacity} bytes at {address:#x}")
    if size == 0:
        return "no bytes"
    shown = read(address, min(size, element_limit()))
    read(address + size - 1, 1)
    dots = "..." if size > len(shown) else ""
    return f"{size} byte{'s' if size > 1 else ''}: {shown.hex(' ')}{dots}"


def reference_text(_):
    return "reference"


def number_text(value):
    """A number, or a vector of numbers or vectors."""
    kind = value.type.strip_typedefs()
    if kind.code == gdb.TYPE_CODE_STRUCT:
        return vector_text(value)
    if kind.code == gdb.TYPE_CODE_FLT:
        return float_text(float(value)) if kind.sizeof == 4 else double_text(float(value))
    if kind.code == gdb.TYPE_CODE_BOOL:
        return {0: "false", 1: "true"}.get(int(value), f"bool {int(value)}")
    if kind.code in (gdb.TYPE_CODE_INT, gdb.TYPE_CODE_CHAR):
        return str(int(value))
    return str(value)


def vector_text(value):
    data = value["mData"]
    first, last = data.type.range()
    return "(" + ", ".join(number_text(data[index]) for index in range(first, last + 1)) + ")"


# The texts of the stored types that are classes.
CLASS_TEXTS = {
    "KString": string_text,
    "KTime": time_text,
    "lyrBlob": blob_text,
    "lyrDateTime": date_time_text,
    "lyrDistance": distance_text,
    "lyrHalfFloat": half_text,
    "lyrVoidReference": reference_text,
}
VECTOR_ROWS = {"lyrDouble2": (1, 2), "lyrDouble3": (1, 3), "lyrDouble4": (1, 4), "lyrDouble44": (4, 4)}


def type_text(code):
    return enumerator("ELyrType", code)


def stored_text(code, address):
    """The text of the value of a type code that is stored at an address."""
    name = STORED_TYPES[code] if 0 <= code < len(STORED_TYPES) else "void"
    if name == "void":
        return NO_VALUE
    if name in CLASS_TEXTS:
        return CLASS_TEXTS[name](at(address, type_of(name)))
    if name in VECTOR_ROWS:
        rows, columns = VECTOR_ROWS[name]
        row = gdb.lookup_type("double").array(columns - 1)
        texts = [array_text(at(address + index * row.sizeof, row), columns) for index in range(rows)]
        return texts[0] if rows == 1 else "(" + ", ".join(texts) + ")"
    return number_text(at(address, gdb.lookup_type(name)))


def array_text(array, count):
    return "(" + ", ".join(number_text(array[index]) for index in range(count)) + ")"


def value_text(item):
    """The text of the value in a KLyrPropertyValue."""
    code, address = int(item["mType"]), int(item["mValue"])
    if int(item["mRef"]) < 0:
        raise Invalid(f"counted {int(item['mRef'])} times")
    has_storage = 0 < code < len(STORED_TYPES)
    # A value stands in the block of its item, close behind it.
    place = address - int(item.address)
    if not (0 < place <= 2 * item.type.sizeof if has_storage else address == 0):
        raise Invalid(f"a value of {type_text(code)} at {address:#x}")
    return stored_text(code, address) if has_storage else NO_VALUE


def scoped_pointer_target(value):
    """What a scoped pointer owns, None if it is null."""
    return pointee(value["mPointer"]) if int(value["mPointer"]) else None
