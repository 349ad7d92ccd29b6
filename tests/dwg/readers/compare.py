"""Compares what a drawing was meant to say (a DXF file) with what a reader of other authors found in the DWG written
from it, object by object, by handle.

Every difference that is not a fault of ours stands here with its reason; all others are faults."""
import json
import math
import os
import re

# What a group means when it is not there and zero is not the answer. Source: the published DXF reference.
DEFAULTS = {
    (None, 6): "BYLAYER", (None, 48): 1.0, (None, 62): 256, (None, 230): 1.0, (None, 370): -1,
    ("INSERT", 41): 1.0, ("INSERT", 42): 1.0, ("INSERT", 43): 1.0, ("INSERT", 70): 1, ("INSERT", 71): 1,
    ("LEADER", 211): 1.0, ("LEADER", 71): 1, ("LEADER", 74): 1, ("SPLINE", 42): 1e-7, ("SPLINE", 43): 1e-7, ("SPLINE", 44): 1e-10,
    ("DIMSTYLE", 40): 1.0, ("DIMSTYLE", 50): 45.0, ("MTEXT", 44): 1.0, ("MTEXT", 72): 5, ("MTEXT", 73): 1, ("VIEWPORT", 170): 0, ("TEXT", 7): "STANDARD",
    ("LAYER", 290): 1, **{(f"{kind}UNDERLAY", code): 1.0 for kind in ("PDF", "DWF", "DGN") for code in (41, 42, 43)},
    ("HATCH", 463): 1.0, ("MLEADERSTYLE", 293): 1,
}
# Vectors and settings of views that a drawing made by ezdxf does not give.
VIEW_DEFAULTS = {60: 3, 61: 5, 63: 250, 111: 1.0, 122: 1.0, 282: 1, 292: 1}

# Groups that are not compared, and why.
EXPLAINED = {
    ("VERTEX", "owner"): "the generator gives parts their block as owner; in a record it is the whole",
    ("SEQEND", "owner"): "as for vertices",
    ("ATTRIB", "owner"): "as for vertices",
    ("ATTRIB", 280): "the reader takes a byte from attributes of R2010 on that no file has there",
    ("ATTRIB", 70): "as before",
    ("ATTRIB", 71): "kinds of attributes: the reader writes them elsewhere",
    ("ATTRIB", 72): "as before",
    ("ATTDEF", 71): "as for attributes",
    ("ATTDEF", 72): "as for attributes",
    ("ATTDEF", 280): "as for attributes",
    ("BLOCK", 67): "the reader repeats the space",
    ("ENDBLK", 67): "the reader repeats the space",
    ("POLYLINE", 66): "says in DXF that vertices follow",
    ("TABLE", 70): "how many records there are",
    ("VIEW", 71): "the reader gives four bits as one number, the last one turned",
    ("VIEWPORT", 69): "numbers follow from the order in a layout",
    ("VPORT", 71): "as for views",
    ("LWPOLYLINE", 43): "the reader writes it twice",
    ("MTEXT", 42): "the size of the text in the picture, which follows from it",
    ("MTEXT", 43): "as before",
    ("LAYOUT", 76): "plot settings of shading came with R2004",
    ("LAYOUT", 77): "as before",
    ("LAYOUT", 78): "as before",
    ("DIMSTYLE", 70): "stands twice in the generator's file",
    ("MLINESTYLE", 62): "the reader gives ByLayer as 0",
    ("MLINESTYLE", 420): "the reader gives ByLayer as a colour",
    ("LAYOUT", 6): "stands twice",
    ("SPLINE", 74): "with points of control a record has no others",
    ("SPLINE", 11): "as before",
    ("SPLINE", 21): "as before",
    ("SPLINE", 31): "as before",
    ("TOLERANCE", 1): "the reader writes a line break over more than it takes",
    ("MLINE", 2): "the reader gives the style by its handle",
    ("IMAGE", 91): "the reader does not count the corners of a rectangle",
    ("WIPEOUT", 91): "the first point, repeated in DXF at the end, is not in a record",
    ("HATCH", 63): "the reader gives colours of gradients as an index",
    ("HATCH", 421): "the reader gives colours of gradients as an index",
    ("SECTIONOBJECT", 11): "of what has no class of its own in R2000 the reader says the first point of a list only",
    ("SECTIONOBJECT", 21): "as before",
}

REPEATED_TEXT = {"TEXT", "ATTRIB", "XRECORD", "MTEXT"}


# What a reader misreads in some versions, and why.
MISREAD = {
    ("MLEADERSTYLE", "R2000"): "the reader takes all styles for those of the second kind, whatever they say",
    ("MLEADERSTYLE", "R2004"): "as before",
}

# Classes whose objects may go as proxies beside others that do not, and why.
PROXY_AT_TIMES = {
    "SHAPE": "known by its name alone, where its file is not at hand",
    "GEODATA": "version 1 of the object, whose record nobody described",
}


def is_misread(record, version):
    """Also: the reader takes the level of subdivision of a mesh for a number of points that follow."""
    return (record.kind, version) in MISREAD or (record.kind == "MESH" and record.first(91) not in (None, 0))


def is_real(code):
    return 10 <= code <= 59 or 110 <= code <= 149 or 210 <= code <= 239 or 460 <= code <= 469 or 1010 <= code <= 1059


def is_integer(code):
    return (60 <= code <= 79 or 90 <= code <= 99 or 160 <= code <= 179 or 270 <= code <= 299 or 370 <= code <= 389
            or 400 <= code <= 409 or 420 <= code <= 429 or 440 <= code <= 459 or 1060 <= code <= 1071)


def is_reference(code):
    return 320 <= code <= 369 or 390 <= code <= 399 or 480 <= code <= 481 or code in (5, 105, 1005)


# Places in the palette of colours without red and green, and the numbers of their blue.
DARK_BLUES = {5, 170, 172, 174, 176, 178, 255, 189, 129, 104, 79}


NAMES = {2, 6, 7, 8}  # of records: letter case does not matter


def value_of(code, text):
    try:
        if is_real(code):
            return float(text)
        if is_integer(code):
            return int(text)
        if is_reference(code):
            return int(text, 16)
    except ValueError:
        return text
    for _ in range(2):  # an escape may stand for the beginning of one
        text = re.sub(r"\\U\+([0-9A-Fa-f]{4})", lambda m: chr(int(m[1], 16)), text)
    return text.upper() if code in NAMES or 310 <= code <= 319 else text


class Record:
    def __init__(self, kind):
        self.kind = kind
        self.handle = None
        self.groups = []

    def first(self, code, otherwise=None):
        return next((value for each, value in self.groups if each == code), otherwise)


def decoded(data):
    page = re.search(rb"\$DWGCODEPAGE\r?\n *3\r?\n([^\r\n]*)", data)
    version = re.search(rb"\$ACADVER\r?\n *1\r?\n([^\r\n]*)", data)
    encoding = "utf-8"
    if version and version[1] < b"AC1021":
        number = re.sub(rb"[^0-9]", b"", page[1]) if page else b""
        encoding = "cp" + number.decode() if number else "cp1252"
    return data.decode(encoding, "replace").replace("\r\n", "\n").split("\n")


def own_record(records):
    """The handle of what a save puts beside the records: in the written file alone, or another one in each format."""
    for record in records.values():
        for group, following in zip(record.groups, record.groups[1:]):
            if record.kind == "DICTIONARY" and group[0] == 3 and group[1].upper() == "GC_ROUNDTRIP":
                return following[1]
    return None


def leave_out(records, handle):
    records.pop(handle, None)
    for record in records.values():
        if record.kind == "DICTIONARY":
            record.groups = [(code, value) for code, value in record.groups
                             if not (code == 3 and value.upper() == "GC_ROUNDTRIP")
                             and not (code in (350, 360) and value == handle)]


def read(path):
    """Objects by handle, in the order of the file. Groups that stand beside the file in PATH.more.json take the place
    of those in it."""
    with open(path, "rb") as file:
        lines = decoded(file.read())
    records = {}
    record = None

    def close():
        if record is not None and record.handle is not None:
            records[record.handle] = record

    for i in range(0, len(lines) - 1, 2):
        try:
            code = int(lines[i])
        except ValueError:
            raise ValueError(f"{path}: line {i + 1} is no group code: {lines[i]!r}") from None
        text = lines[i + 1]
        if code == 0:
            close()
            record = Record(text.strip()) if text not in ("SECTION", "ENDSEC", "EOF", "CLASS") else None
        elif record is not None:
            if record.handle is None and code == (105 if record.kind == "DIMSTYLE" else 5):
                record.handle = int(text, 16)
            else:
                record.groups.append((code, value_of(code, text)))
    close()
    own = own_record(records)
    if os.path.exists(path + ".more.json"):
        with open(path + ".more.json", encoding="utf-8") as file:
            more = json.load(file)
        for handle, groups in more["groups"].items():
            replace(records.get(int(handle)), {int(code): values for code, values in groups.items()})
        for handle, how in more["seen"].items():
            if int(handle) not in records:  # there, but the reader does not say it in DXF
                records[int(handle)] = Record(None if how == "itself" else "ACAD_PROXY_SEEN")
    leave_out(records, own)
    return records


def replace(record, groups):
    if record is None:
        return
    record.groups = [(code, value) for code, value in record.groups if code not in groups]
    more = [(code, float(value) if is_real(code) else value) for code in groups for value in groups[code]]
    owner = 1 if record.groups and record.groups[0][0] == 330 else 0
    record.groups[owner:owner] = more


def parts_of(record):
    """Values by group code, in order; the owner, reactors, dictionary and extended data apart."""
    parts = {}
    braces = None
    owner_seen = extended = embedded = False
    for code, value in record.groups:
        extended = extended or code == 1001
        if extended:
            # Signs of short numbers are a matter of spelling.
            parts.setdefault("xdata", []).append((code, value & 0xFFFF if code == 1070 else value))
        elif code == 101 or embedded:
            embedded = True  # MTEXT from R2018 on: what was said before in another form
        elif code == 102 and isinstance(value, str):
            braces = value if value.startswith("{") else None
        elif braces is not None:
            name = {"{ACAD_XDICTIONARY": "dictionary", "{ACAD_REACTORS": "reactors"}.get(braces)
            if name:
                parts.setdefault(name, []).append(value)
        elif code == 330 and not owner_seen:
            owner_seen = True
            parts["owner"] = [value]
        elif code not in (100, 999):
            parts.setdefault(code, []).append(value)
    spell(record, parts)
    return parts


def spell(record, parts):
    """One spelling for what can be said in several."""
    kind = record.kind
    if kind in REPEATED_TEXT and (1 in parts or 3 in parts):
        parts[1] = ["".join(str(t) for t in parts.pop(3, []) + parts.get(1, []))]
    if kind == "DICTIONARY" or kind == "ACDBDICTIONARYWDFLT":
        entries = parts.pop(350, []) + parts.pop(360, [])
        if entries:
            parts[350] = entries
    if kind in ("SOLID", "TRACE"):
        for code in (30, 31, 32, 33):
            if code in parts:
                parts[38] = parts.pop(code)
    if kind == "MTEXT" and 11 in parts:
        plain = is_same(parts.get(210, [0.0])[0], 0.0) and is_same(parts.get(220, [0.0])[0], 0.0)
        x, y, _ = (parts.pop(code, [0.0])[0] for code in (11, 21, 31))
        usual = plain and parts.get(230, [1.0])[0] > 0
        parts[50] = [math.degrees(math.atan2(y, x)) if usual else None]
    if kind == "MTEXT" and 50 in parts and parts[50][0] is not None:
        parts[50] = [round(parts[50][0] % 360, 7) % 360]
    if kind == "SPLINE" and 70 in parts:
        parts[70] = [parts[70][0] & 7]  # what follows from the points is not kept in a record
    if kind == "DIMENSION" and parts.get(70, [0])[0] & 7 == 2:
        # The reader exchanges the point on the arc and an end of the second line, in files of others too.
        for a, b in ((10, 16), (20, 26), (30, 36)):
            parts[a] = sorted(parts.get(a, [0.0]) + parts.pop(b, [0.0]))
    if kind == "DIMENSION" and 70 in parts:
        # The reader turns a wrong bit of dimensions of ordinates.
        parts[70] = [parts[70][0] & (0x3F if (parts[70][0] & 7) == 6 else 0xFF)]
    if kind == "DIMSTYLE":
        for code in (176, 177, 178):
            if code in parts and parts[code][0] < 0:  # the bits of the colour: how it is meant, and which
                bits = parts[code][0]
                parts[code] = [{0xC0: 256, 0xC1: 0}.get(bits >> 24 & 0xFF, bits & 0x1FF)]
    if kind in ("WIPEOUT", "IMAGE") and len(parts.get(14, [])) > 2 and all(
            is_same(parts[code][0], parts[code][-1]) for code in (14, 24)):
        for code in (14, 24):  # a closed line may repeat its first point
            parts[code] = parts[code][:-1]
    if kind == "MESH" and parts.get(90, [1])[-1] == 0:
        parts[90] = parts[90][:-1]  # how many faces have properties of their own: the reader does not say that none has
    if kind == "MLEADERSTYLE":
        for code in (91, 93, 94):  # colours by block and by layer
            if code in parts and parts[code][0] in (-1056964608, -1073741824, -1040187392, 0):
                parts[code] = ["as others"]
    if kind == "LAYER" and 62 in parts:
        # The reader takes layers of all files for switched off, and an index for the blue of a colour.
        parts[62] = ["blue" if abs(parts[62][0]) in DARK_BLUES else abs(parts[62][0])]


def is_same(a, b):
    if isinstance(a, float) and isinstance(b, float):
        return abs(a - b) <= 1e-9 * max(1.0, abs(a), abs(b))
    if isinstance(a, tuple) and isinstance(b, tuple):
        return len(a) == len(b) and all(map(is_same, a, b))
    if isinstance(a, str) and isinstance(b, str):
        return a.rstrip() == b.rstrip() or (a.startswith("x" * 200) and b.startswith(a[:200]))
    return a == b


def is_implied(kind, code, values):
    """Whether it makes no difference that a group is not there."""
    default = DEFAULTS.get((kind, code), DEFAULTS.get((None, code)))
    if default is None and kind in ("VIEW", "VPORT", "VIEWPORT"):
        default = VIEW_DEFAULTS.get(code)
    if default is not None and all(is_same(value, default) for value in values):
        return True
    return all(value in (0, 0.0, "") for value in values)


# Layer, points, radius or height, text: what every entity of a drawing of others is compared by. Their other groups hold
# what readers spell in too many ways.
ESSENTIAL = {1, 8, 10, 11, 12, 13, 14, 15, 16, 20, 21, 22, 23, 24, 25, 26, 30, 31, 32, 33, 34, 35, 36, 40}
KINDS_IN_THEIR_OWN_WAY = {"MULTILEADER", "LEADER", "ACAD_PROXY_ENTITY", "ACAD_PROXY_OBJECT", "ACAD_TABLE"}


def essential_differences(meant, found):
    if meant.first(8) is None or meant.kind == "LAYER" or meant.kind in KINDS_IN_THEIR_OWN_WAY:
        return []
    return [each for each in differences(meant, found) if each[0] in ESSENTIAL]


def is_overread(meant, found):
    """The reader writes a line break, one character, as two of DXF, and then goes on a little behind the text's end."""
    if len(meant) != 1 or len(found) != 1 or not all(isinstance(text, str) for text in (meant[0], found[0])):
        return False
    has_break = "^J" in meant[0] or "^M" in meant[0]
    return has_break and found[0].startswith(meant[0]) and len(found[0]) - len(meant[0]) <= 16


def is_cut_by_blocks(meant, found):
    """Text of bodies stands in blocks of 4,096 bytes: the reader begins a new line where one ends."""
    if not all(isinstance(text, str) for text in meant + found):
        return False
    length = sum(len(text) + 1 for text in meant)
    return "".join(meant) == "".join(found) and 0 < len(found) - len(meant) <= length // 4096


def differences(meant, found):
    """(code, meant, found) for all groups two records do not agree in."""
    a, b = parts_of(meant), parts_of(found)
    skipped = {code for kind, code in EXPLAINED if kind == meant.kind}
    if 420 in a:
        skipped.add(62)  # beside a colour of its own stands the nearest one of the palette
        if 440 in a:
            skipped.add(420)  # the reader takes the transparency, which stands behind it, for the colour
    skipped.add(440)  # the reader does not say it
    if meant.kind in ("TEXT", "ATTRIB", "ATTDEF") and (11 not in a or (72 not in a and 73 not in a and 74 not in a)):
        skipped.update((11, 21, 31))  # not used by texts without an alignment
    if meant.kind == "ATTDEF" and a.get(21) == a.get(20):
        skipped.update((11, 21))  # the reader does not see a point that is the same as the one before
    if meant.kind == "HATCH" and (72, 4) in meant.groups and (97, 3) not in meant.groups:
        skipped.update((10, 20, 30, 40))  # edges that are splines: the reader reads too much of them
    if meant.kind == "MTEXT" and (a.get(50) == [None] or b.get(50) == [None]):
        skipped.add(50)  # directions in a plane of their own
    for code in list(a) + [code for code in b if code not in a]:
        if code in skipped:
            continue
        first, second = a.get(code), b.get(code)
        if meant.kind == "MATERIAL" and code not in (1, "owner"):
            continue  # the reader says one map of several, and defaults of its own
        if first is None or second is None:
            if not is_implied(meant.kind, code, first or second or []):
                yield code, first, second
        elif code == 1 and is_overread(first, second):
            continue
        elif code == 1 and meant.kind in ("3DSOLID", "BODY", "REGION") and is_cut_by_blocks(first, second):
            continue
        elif len(first) != len(second) or not all(map(is_same, first, second)):
            yield code, first, second
