"""Run by gdb on the core of the scene: compares what the printers show with what they should show.

A transcript is a text with lines "(gdb) COMMAND", each with what gdb answers below it up to the next empty line;
everything else in it is prose. Addresses, which all stand for 0x..., and the numbers of values are not compared. The
answers of this run are left in WORK_DIR, in files of the same name.
"""

import itertools
import pathlib
import re
import sys
import time

import gdb

# Set by the command line.
gSource = pathlib.Path(SOURCE_DIR)  # noqa: F821
gWork = pathlib.Path(WORK_DIR)  # noqa: F821
gKnowsLibrary = KNOWS_LIBRARY  # noqa: F821

TRANSCRIPTS = (
    "tests/gdb/values.txt",
    "tests/gdb/properties.txt",
    "tests/gdb/connections.txt",
    "tests/gdb/kit.txt",
    "docs/debugging.md",
)
LAYERS = ("components/kbaselib/klib", "klyrplugins", "lyrcore", "lyrkit")
# Public classes that gdb shows as well by itself: no members, plain ones, or those of the application's class derived
# from it.
PLAIN = {
    "KLyrConnectionPointFilter",
    "KLyrDumpStyle",
    "KLyrLookupBracket",
    "KLyrOwnedPage",
    "KLyrPlug",
    "KLyrLessCompare",
    "KNameMapCompare",
    "KStringCompare",
    "LyrPropertyFlags",
    "LyrSdkDeletionPolicy",
}
# No garbage may keep a printer longer. It is some thousand times what they take.
MOST_SECONDS = 60

gFaults = []


def answer(command):
    try:
        return gdb.execute(command, to_string=True).rstrip("\n")
    except gdb.error as error:
        return str(error)


def without_numbers(text):
    """A text with the same address everywhere, and the same number for each value."""
    return re.sub(r"^\$\d+ = ", "$1 = ", re.sub(r"0x[0-9a-f]{6,}", "0x...", text), flags=re.M)


def as_shown_here(text):
    """A text with escapes for what gdb's terminal does not know; the transcripts are written for one that knows all."""
    charset = gdb.host_charset()
    return "".join(
        char if char.encode(charset, "ignore") else "".join(f"\\{byte:03o}" for byte in char.encode("utf-8"))
        for char in text
    )


def check_transcript(name):
    lines = (gSource / name).read_text("utf-8").split("\n")
    made = []
    commands = 0
    while lines:
        line = lines.pop(0)
        made.append(line)
        if not line.startswith("(gdb) "):
            continue
        commands += 1
        expected = list(itertools.takewhile(lambda text: text and not text.startswith(("(gdb) ", "```")), lines))
        del lines[: len(expected)]
        found = without_numbers(answer(line[len("(gdb) ") :]))
        wanted = as_shown_here(without_numbers("\n".join(expected)))
        made.extend(found.split("\n") if found else [])
        if found != wanted:
            gFaults.append(f"{name}: {line[6:]}\n  shows   {found}\n  and not {wanted}")
    if not commands:
        gFaults.append(f"{name} holds no commands")
    (gWork / pathlib.Path(name).name).write_text("\n".join(made), "utf-8")


def header_text(layer):
    return "\n".join(path.read_text() for path in sorted((gSource / "lyrfilesdk" / layer).glob("*.h")))


def check_tables(printers):
    """What the printers know of the library stands in its headers."""
    headers = header_text("klyrplugins")
    rows = re.findall(r"^ +p(?:None|Value|Reference)\( *\d+, *\w+, +([\w ]+?), +\d+\)", headers, re.M)
    if tuple(rows) != printers.values.STORED_TYPES:
        gFaults.append(f"the printers' type list is not the library's: {rows}")
    units = re.findall(r"KLyrSystemUnit KLyrSystemUnit::(\w+)\{([\d.]+)\}", headers)
    if {float(factor): name for name, factor in units} != printers.values.UNITS:
        gFaults.append(f"the printers' units are not the library's: {units}")
    if f"kTimeUnitsPerSecond = {printers.values.TIME_UNITS_PER_SECOND};" not in header_text(LAYERS[0]):
        gFaults.append("the printers' unit of time is not the library's")


def public_classes(text):
    """The classes of a header, and those in the public parts of them, as Outer::Inner."""
    text = re.sub(r"namespace detail \{.*?\}  // namespace detail", "", text, flags=re.S)
    head = r"(class|struct)(?: LYRSDK_API| __attribute__\(\(\w+\)\))? (\w+)[^;]*? *\{"
    outer, is_public = "", False
    for line in text.split("\n"):
        if found := re.match(head, line):
            outer, is_public = found[2], found[1] == "struct"
            yield outer
        elif found := re.match(r"(public|private|protected):", line):
            is_public = found[1] == "public"
        elif is_public and (found := re.match("    " + head, line)):
            yield f"{outer}::{found[2]}"


def check_every_class_has_a_printer(printers):
    """Every class of the public headers, but those whose members are of no use."""
    manifest = (gSource / "tests/install/manifest.txt").read_text()
    names = set()
    for layer in LAYERS:
        for header in re.findall(rf"include/(lyrfilesdk/{layer}/\w+\.h)", manifest):
            names.update(public_classes((gSource / header).read_text()))
    known = set(printers.PRINTERS)
    if len(names) < 45 or names - known != PLAIN:
        gFaults.append(f"without a printer: {sorted(names - known - PLAIN)}; not found: {sorted(PLAIN - names)}")


def classes_of_scene():
    """The classes of the library of which the scene has objects, and those that they are made of."""
    left = [gdb.parse_and_eval(f"scene::{name}").type for name in scene_names()]
    found = {}
    while left:
        kind = left.pop().strip_typedefs()
        while kind.code in (gdb.TYPE_CODE_PTR, gdb.TYPE_CODE_ARRAY):
            kind = kind.target().strip_typedefs()
        kind = kind.unqualified()
        name = kind.tag or ""
        if kind.code == gdb.TYPE_CODE_STRUCT and name.startswith("lyrsdk::") and name not in found and kind.sizeof:
            found[name] = kind
            left.extend(field.type for field in kind.fields())
    return found


def scene_names(files=("values", "properties", "kit")):
    """The objects of the scene."""
    texts = [(gSource / f"tests/gdb/{name}.cpp").read_text() for name in files]
    # What stands in unnamed namespaces is not looked at.
    text = re.sub(r"namespace \{.*?\}  // namespace\n", "", "\n".join(texts), flags=re.S)
    return re.findall(r"^[\w:<>, *]+ (sg\w+)(?:\[\w+\])?(?:[({ ].*)?;$", text, re.M)


def use_printer(value, depth=0):
    """All that a printer is asked for, and those of the members; an error would be one of the printer's.

    Front ends that show a value as a tree ask for members with names of their own.
    """
    printer = gdb.default_visualizer(value)
    if printer is None:
        return False
    printer.to_string()
    if hasattr(printer, "children"):
        members = list(itertools.islice(printer.children(), 200))
        if len({name for name, _ in members}) != len(members):
            raise ValueError("two members of one name")
        if depth:
            for _, member in members:
                if isinstance(member, gdb.Value):
                    use_printer(member, depth - 1)
    return True


def garbage_places():
    """Where there is garbage, and where there are broken pages."""
    garbage = gdb.parse_and_eval("scene::sgGarbage")
    mutants = gdb.parse_and_eval("scene::sgMutants")
    blocks = [int(garbage[block].address) for block in range(garbage.type.range()[1] + 1)]
    pages = [int(mutants[index].address) for index in range(int(gdb.parse_and_eval("scene::sgMutantCount")))]
    return [*blocks, 8, 3], pages


def broken_answers(place):
    """The objects of the kit, with each word in turn changed to a number and to a place that holds no object."""
    word = gdb.lookup_type("void").pointer().sizeof
    for name in scene_names(("kit",)):
        value = gdb.parse_and_eval(f"scene::{name}")
        where, kind = int(value.address), value.type.strip_typedefs()
        if not (kind.tag or "").startswith("lyrsdk::"):
            continue
        image = gdb.selected_inferior().read_memory(where, kind.sizeof).tobytes()
        for start in range(0, len(image) - word + 1, word):
            for number in (0x41, place):
                changed = number.to_bytes(word, "little")
                yield gdb.Value(image[:start] + changed + image[start + word :], kind), where


def check_garbage(printers):
    """No memory makes a printer fail or run on."""
    asked = set()

    def check(value, where, depth=0):
        began = time.monotonic()
        try:
            if use_printer(value, depth):
                asked.add(printers.plain_name(value.type.strip_typedefs().tag.replace("lyrsdk::", "", 1)))
        except Exception as error:  # whatever it is, it should not have come here
            gFaults.append(f"{value.type} at {where:#x}: {type(error).__name__}: {error}")
        if time.monotonic() - began > MOST_SECONDS:
            gFaults.append(f"{value.type} at {where:#x} took too long")

    blocks, pages = garbage_places()
    for name in scene_names():
        value = gdb.parse_and_eval(f"scene::{name}")
        if value.type.code == gdb.TYPE_CODE_PTR:
            value = value.dereference()
        check(value, int(value.address))
    for name, kind in classes_of_scene().items():
        for place in blocks + pages if name == "lyrsdk::KLyrPropertyPage" else blocks:
            check(gdb.Value(place).cast(kind.pointer()).dereference(), place)
    for place in pages:
        check(printers.properties.make_handle(place, 1), place)
    for value, where in broken_answers(blocks[3]):
        check(value, where, 2)
    missed = set(printers.PRINTERS) - asked
    if missed:
        gFaults.append(f"no garbage was shown as {sorted(missed)}")


def check_without_library():
    """Where the debug info of the program is not enough, the printers say so, and show the rest."""
    lacking = re.compile(r"<no debug info(?: of \w+)?: only the name of [^<>]* is known>")
    wanted = {}
    for name in TRANSCRIPTS:
        found = re.findall(r"^\(gdb\) print (\*?)(sg\w+)\n\$\d+ = (.*)$", (gSource / name).read_text(), re.M)
        wanted.update({f"{star}scene::{name}": without_numbers(text) for star, name, text in found})
    shown = 0
    for name, text in wanted.items():
        found = without_numbers(answer(f"print {name}"))[len("$1 = ") :]
        if found.startswith("<no debug info of "):
            continue
        # What is shown in part has gaps.
        if all(part in text for part in lacking.split(found)):
            shown += 1
        else:
            gFaults.append(f"print {name}\n  shows   {found}\n  and not {text}")
    if shown < 20:
        gFaults.append(f"without the library no more than {shown} of {len(wanted)} objects are shown")


def select_main():
    """The frame that uses the scene's namespace."""
    frame = gdb.newest_frame()
    while frame.name() != "main":
        frame = frame.older()
    frame.select()


def main():
    printers = sys.modules.get("lyrsdk_gdb")
    for setting in ("width 0", "height 0", "print elements 200", "print symbol off"):
        gdb.execute(f"set {setting}")
    if printers is None:
        gFaults.append("the printers were not loaded")
    elif not gKnowsLibrary:
        check_without_library()
    else:
        select_main()
        check_tables(printers)
        check_every_class_has_a_printer(printers)
        check_garbage(printers)
        for name in TRANSCRIPTS:
            check_transcript(name)
    for fault in gFaults:
        print(fault)
    if gFaults:
        gdb.execute("quit 1")
    print("all of the core is shown as it should be")


main()
