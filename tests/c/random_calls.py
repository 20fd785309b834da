#!/usr/bin/env python3
"""Calls every function of qd_wrt.h thousands of times with arguments of all kinds, right ones and wrong ones: null,
handles that are stale, foreign or made up, structs of any size, bytes that are no text. Each call answers a status;
none ends the program.

Usage: random_calls.py LIBRARY HEADER [SEED]
"""

import ctypes
import random
import re
import sys

library = ctypes.CDLL(sys.argv[1])
seed = int(sys.argv[3]) if len(sys.argv) > 3 else 2
random.seed(seed)
header = re.sub(r"//.*", "", open(sys.argv[2], encoding="utf-8").read())
PARAMETERS = dict(re.findall(r"^QD_C_(?:HEADLESS_)?API qd_status (\w+)\((.*?)\);", header, re.M | re.S))
for unwanted in ("qd_shutdown", "qd_tree_create_in_hwnd", "qd_tree_hwnd"):
    PARAMETERS.pop(unwanted)
library.qd_last_error.restype = ctypes.c_char_p

trees, gone, nodes, kinds, keep = [], [], [], [], []
NEWS = {"qd_tree": trees, "qd_node": nodes, "qd_kind": kinds}
MOST_TREES = 8
in_callback = 0


def a_tree():
    return random.choice([None, 7, *gone[-3:], *trees[-MOST_TREES:], *trees[-1:] * 20])


def a_node():
    return random.choice([0, 1, 2**64 - 1, random.getrandbits(64), *nodes[-20:], *nodes[-4:] * 8])


def a_text():
    return random.choice([None, b"", b"a", b"\xff", "\u00e4\U0001f600".encode(), b"\xed\xa0\x80", b"x" * 3000, b"id:1",
                          b"/[/", b"IDS_QD_WRT_Item=Teil\nx", b"qd_wrt state 1\nopen 3\nselected 3\ncolumn 99\n", b"qd_wrt state 1\ncolumn -1\n"])


def from_callback(*_):
    """What a callback does: anything."""
    global in_callback, inside
    if in_callback > 2:
        return 0
    in_callback += 1
    inside += 1
    for _ in range(random.randrange(3)):
        call(random.choices(names, weights)[0])
    in_callback -= 1
    return random.randrange(2)


CALLBACK = ctypes.CFUNCTYPE(ctypes.c_int, *[ctypes.c_uint64] * 5)(from_callback)
ADDRESS = ctypes.cast(CALLBACK, ctypes.c_void_p).value


def struct(*values):
    """Bytes of a struct with a size in front, mostly the right one; they are longer than any size."""
    body = b"".join(size.to_bytes(width, "little") for width, size in values)
    size = random.choice([len(body) + 4] * 30 + [0, len(body), 2**32 - 1])
    made = ctypes.create_string_buffer(size.to_bytes(4, "little") + body + b"\0" * 64)
    keep.append(made)
    return ctypes.addressof(made)


def pointer_to_text():
    text = a_text()
    if text is None:
        return 0
    keep.append(ctypes.create_string_buffer(text))
    return ctypes.addressof(keep[-1])


def a_callback():
    return random.choice([0, ADDRESS, ADDRESS])


def some(right, wrong):
    return random.choice([*right * 12, *wrong])


def struct_of(kind):
    if kind == "qd_tree_options":
        return struct((4, some([1], [0, 2])), (4, some([0, 300], [2**31])), (4, some([0, 300], [2**32 - 1])), (8, 0),
                      (8, a_callback()))
    if kind == "qd_callbacks":
        return struct((4, some([0, 1], [2])), (8, 0), *[(8, a_callback()) for _ in range(7)])
    if kind == "qd_column":
        return struct((4, 0), (8, pointer_to_text()), (4, some([0, 50], [2**32 - 1])), (4, some([0, 1, 2], [3])),
                      (4, some([0, 1], [2])), (4, some([0, 1], [2])))
    return struct((4, some([1, 9, 65, 73, random.randrange(128)], [2**31])), (8, pointer_to_text()), (4, random.getrandbits(32)),
                  (4, some([random.getrandbits(24)], [2**32 - 1])), (4, some([0, 1], [2])), (4, random.randrange(400)),
                  (8, random.randrange(50)), (8, random.choice(kinds[-3:] or [0, 9])))


def argument(declared):
    """A value for a parameter, and the list that takes what comes back in it."""
    declared = re.sub(r"\bconst\b", "", declared).strip()
    kind, stars, _ = re.fullmatch(r"(\w+)\s*(\**)\s*(\w+)", declared).groups()
    if kind in ("qd_tree", "qd_menu") and stars == "*":
        return ctypes.c_void_p(a_tree() if kind == "qd_tree" else random.choice([None, 1, 2])), None, None
    if stars and random.random() < 0.05:
        return None, None, None
    if kind in ("qd_tree_options", "qd_callbacks", "qd_column", "qd_row"):
        return ctypes.c_void_p(struct_of(kind)), None, None
    if kind == "char":
        room = ctypes.create_string_buffer(a_text() or b"", 4096)
        keep.append(room)
        return ctypes.cast(room, ctypes.c_void_p), None, None
    if stars:
        room = (ctypes.c_uint64 * 512)(*[a_node() for _ in range(3)])
        keep.append(room)
        return ctypes.cast(room, ctypes.c_void_p), room, NEWS.get(kind)
    if kind in ("qd_node", "qd_kind"):
        return ctypes.c_uint64(a_node()), None, None
    if kind == "uint64_t":
        return ctypes.c_uint64(random.randrange(50)), None, None
    if kind == "size_t":
        return ctypes.c_size_t(random.choice([0, 1, 3, 512])), None, None
    return ctypes.c_int(random.choice([0, 1, 2, 7, -1])), None, None


def call(name):
    if name == "qd_tree_create_headless" and len(trees) > 200:
        return
    arguments = [argument(parameter) for parameter in PARAMETERS[name].split(",") if parameter.strip() != "void"]
    status = getattr(library, name)(*[value for value, _, _ in arguments])
    if not 0 <= status < 18:
        sys.exit(f"random_calls: {name} answered {status} ({library.qd_last_error()}) with seed {seed}")
    counts[name, status] = counts.get((name, status), 0) + 1
    if name == "qd_tree_destroy" and status == 0:
        trees.remove(arguments[0][0].value)
        gone.append(arguments[0][0].value)
    for _, room, news in arguments:
        if status == 0 and room is not None and news is not None and room[0] != 0:
            news.append(room[0])
    del keep[:-2000]


counts = {}
inside = 0
names = list(PARAMETERS)
RARE = {"qd_tree_create_headless": 0.3, "qd_tree_destroy": 0.3, "qd_tree_clear": 0.5, "qd_kind_create": 5, "qd_node_remove": 5,
        "qd_node_add": 40}
weights = [RARE.get(name, 10) for name in names]
for _ in range(30000):
    call(random.choices(names, weights)[0])
succeeded = {name for name, status in counts if status == 0}
# What works within a callback only, or on what is open only.
alone = {name for name in names if name.startswith(("qd_menu_add", "qd_cell_"))} | {"qd_headless_rename"}
missed = set(names) - succeeded - alone
if len(missed) > 4:
    sys.exit(f"random_calls: never succeeded: {sorted(missed)}")
if library.qd_shutdown() != 0:
    sys.exit("random_calls: the trees cannot be taken down")
print(f"random_calls: {sum(counts.values())} calls of {len(names)} functions, {inside} callbacks")
