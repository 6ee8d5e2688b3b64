#!/usr/bin/env python3
"""Writes the seed inputs of the fuzz targets, in the bytecode each target reads
(see the Step functions of the targets). Run from anywhere; rewrites
fuzz/corpus/<target>/seed-*. Inputs named regression-* are kept: they once
crashed a target and were fixed."""
import pathlib
import struct

HERE = pathlib.Path(__file__).resolve().parent


def text(s, odd=False):
    raw = s.encode("utf-16-le") + (b"x" if odd else b"")
    return bytes([len(raw)]) + raw


def u32(n):
    return struct.pack("<I", n & 0xFFFFFFFF)


# cell_values: a column is a type-code choice and a name; a step picks the
# record, the view, then the operation.
CODES = [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25]


def column(code, name):
    return bytes([CODES.index(code)]) + text(name)


def step(op, record=0, view=0):
    return bytes([record, view, op])


KINDS = [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 14, 16, 17, 18, 19, 20, 21, 22, 23, 36]


def plain(vt, payload=b""):
    return bytes([0, KINDS.index(vt)]) + payload


def byref(vt, payload):
    return bytes([0xC1, KINDS.index(vt)]) + payload


CELL_SEEDS = {
    # int32, text and real columns; text into the int column, read back every way
    "mixed": bytes([3]) + column(10, "n") + column(1, "t") + column(4, "r")
    + step(0) + bytes([1]) + plain(8, text("12abc"))
    + step(3) + bytes([1, 5])
    + step(3) + bytes([2, 8])
    + step(4, view=1) + bytes([3, 3])
    + step(2) + bytes([3, 1, 0])  # SetValueAsDouble(index 3) with NaN
    + step(4) + bytes([3, 5]),
    # odd-length text and a by-reference string in a text column, then the name lookups
    "odd_text": bytes([2]) + column(1, "a") + column(9, "b")
    + step(0) + bytes([1]) + plain(8, text("ab", odd=True))
    + step(0) + bytes([2]) + byref(8, text("ref"))
    + step(1) + bytes([0]) + plain(8, text("x"))
    + step(3) + bytes([0, 1, 0]),
    # 64-bit limits in an int64 column, read as every width; then past the end
    "wide": bytes([1]) + column(12, "big")
    + step(2) + bytes([1, 4, 0, 3])  # SetValueAsInt64(1, INT64_MIN)
    + step(3) + bytes([1, 5]) + step(3) + bytes([1, 7]) + step(3) + bytes([1, 9])
    + step(3) + bytes([0xF0]) + u32(0xFFFFFFFF) + bytes([0]),
    # unknown type codes, objects, add and remove columns around the records
    "schema": bytes([2]) + column(5, "o") + column(25, "u")
    + step(0) + bytes([1]) + plain(13, bytes([1]))
    + step(5) + bytes([0xF0]) + u32(0x80000000) + text("late")
    + step(6) + bytes([0])
    + step(7, record=1) + bytes([1, 0])
    + step(8) + bytes([3, 0]),
}

# late_binding: the setup reads three column-type picks and a record count;
# with two records the graph starts as 0-2 columns, 3-4 records, 5 the
# collection, 6 the list, 7 its view, 8 the event listener, 9 the utilities,
# 10 the factory, 11-12 the grouped lists, 13-14 a synchronized and a plain
# iterator of the list. Objects offered as arguments come
# in the same order.
FACES = {"dispatch": 0, "mutable_column": 2, "mutable_columns": 4, "mutable_record": 6,
         "mutable_list": 8, "iterator": 9, "utils": 10, "factory": 11}
METHOD, GET, PUT = 0, 1, 3


def late_setup(records=2):
    return bytes([0, 0, 0, records])


def invoke(target, face, member, flags=METHOD, args=(), named=()):
    out = bytes([target, FACES[face], 2, member, flags, 1, len(args)]) + b"".join(args)
    out += bytes([len(named)]) + bytes([0 if n == -3 else 1 for n in named])
    return out + bytes([0])  # every out-parameter given


def obj(index):
    return bytes([0, KINDS.index(9), index])


def i4(special):
    return bytes([0, KINDS.index(3), 0, special])


LATE_SEEDS = {
    "add_and_iterate": late_setup() + invoke(6, "mutable_list", 3)
    + invoke(6, "mutable_list", 10, args=[plain(11, bytes([0]))])
    + invoke(13, "iterator", 6) + invoke(18, "iterator", 6),
    "set_value": late_setup() + invoke(3, "mutable_record", 7, args=[i4(1), plain(8, text("7"))])
    + invoke(3, "mutable_record", 20, args=[i4(1)]),
    "columns": late_setup() + invoke(5, "mutable_columns", 7, args=[plain(8, text("g.d")), i4(0)])
    + invoke(5, "mutable_columns", 8, args=[i4(1)]),
    "utils": late_setup() + invoke(9, "utils", 5, args=[obj(6)])
    + invoke(10, "factory", 2, args=[obj(5)]),
    "property_put": late_setup() + invoke(0, "mutable_column", 5, flags=PUT, args=[plain(8, text("h.x"))], named=[-3])
    + invoke(11, "mutable_list", 9, flags=GET),
}

# call_sequences: a step is an operation code and its picks; every callback
# call reads one byte (bit 0 the answer, bit 1 stop the event, bit 2 run a
# nested step), so a seed carries a few spare bytes for them.
ADD_COLUMN, REMOVE_COLUMN, ADD_RECORD, ITERATE, CLEAR_LIST, CLEAR_COLUMNS = 0, 1, 2, 3, 4, 5
LISTEN, STOP_LISTENING, NEW_ITERATOR, WALK, SET_VALUE, EVENTS, DROP, GROUP = 6, 7, 8, 9, 10, 11, 12, 13
NEW_ACTOR, NEW_SCRIPT = 0, 1  # with no callback yet
REENTER, STOP = 4, 2

SEQUENCE_SEEDS = {
    # a list listener that adds a record from inside RecordBeforeAdd
    "reentrant_add": bytes([ADD_COLUMN, 0, LISTEN, 0, NEW_ACTOR, 0, ADD_RECORD, REENTER, ADD_RECORD])
    + bytes(6) + bytes([WALK, 0]),
    # a script comparator sorting three records, then a walk of the sorted iterator
    "script_sort": bytes([ADD_COLUMN, 0, ADD_RECORD, ADD_RECORD, ADD_RECORD,
                          SET_VALUE, 0, 0, 0, 7, SET_VALUE, 1, 0, 0, 3,
                          NEW_ITERATOR, 0, 1, 2, NEW_SCRIPT]) + bytes([0, 1, 2, 0, 1, 2])
    + bytes([ITERATE, 0, 1, ITERATE, 0, 2, WALK, 1]),
    # a comparator that clears the list while it sorts
    "clear_in_sort": bytes([ADD_COLUMN, 1, ADD_RECORD, ADD_RECORD, NEW_ITERATOR, 0, 0, 2, NEW_ACTOR,
                            REENTER, CLEAR_LIST]) + bytes(4) + bytes([WALK, 0]),
    # a grouped list with a listener, records added through the source, then dropped
    "grouped": bytes([ADD_COLUMN, 0, ADD_COLUMN, 1, GROUP, 0, LISTEN, 4, 0, NEW_SCRIPT, 0, ADD_RECORD])
    + bytes(4) + bytes([NEW_ITERATOR, 2, 0, 0, ITERATE, 0, 1, DROP, 2, 0, DROP, 3]),
    # a record listener that vetoes a value change, then removes itself
    "veto": bytes([ADD_COLUMN, 0, ADD_RECORD, LISTEN, 2, 0, NEW_ACTOR, 2,
                   SET_VALUE, 0, 0, 0, 9, STOP, STOP_LISTENING, 2, 0, 0, EVENTS, 2, 0, 1, SET_VALUE, 0, 0, 1, 5]),
}

SEEDS = {"cell_values": CELL_SEEDS, "late_binding": LATE_SEEDS, "call_sequences": SEQUENCE_SEEDS}


def main():
    for target, seeds in SEEDS.items():
        folder = HERE / target
        folder.mkdir(exist_ok=True)
        for old in folder.glob("seed-*"):
            old.unlink()
        for name, data in seeds.items():
            (folder / f"seed-{name}").write_bytes(data)


if __name__ == "__main__":
    main()
