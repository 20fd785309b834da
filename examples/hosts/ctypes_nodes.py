#!/usr/bin/env python3
"""A tree of a program's own rows in Python, by ctypes, with a scripted user in place of a window."""

import ctypes
import sys

qd = ctypes.CDLL(sys.argv[1] if len(sys.argv) > 1 else "libQD_wrtHeadless.so")
qd.qd_last_error.restype = ctypes.c_char_p
Tree, Node = ctypes.c_void_p, ctypes.c_uint64
Switched = ctypes.CFUNCTYPE(None, ctypes.c_void_p, Tree, Node, ctypes.c_int)


class Options(ctypes.Structure):
    _fields_ = [("size", ctypes.c_uint32), ("interface_number", ctypes.c_uint32), ("width", ctypes.c_int32),
                ("height", ctypes.c_int32), ("user", ctypes.c_void_p), ("selected", ctypes.c_void_p)]


class Callbacks(ctypes.Structure):
    _fields_ = [("size", ctypes.c_uint32), ("flags", ctypes.c_uint32), ("user", ctypes.c_void_p),
                ("clicked", ctypes.c_void_p), ("switched", Switched), ("renamed", ctypes.c_void_p),
                ("menu", ctypes.c_void_p), ("command", ctypes.c_void_p), ("dropped", ctypes.c_void_p),
                ("children", ctypes.c_void_p)]


class Row(ctypes.Structure):
    _fields_ = [("size", ctypes.c_uint32), ("fields", ctypes.c_uint32), ("title", ctypes.c_char_p),
                ("id", ctypes.c_int32), ("colour", ctypes.c_uint32), ("checked", ctypes.c_int32),
                ("icon", ctypes.c_uint32), ("key", ctypes.c_uint64), ("kind", ctypes.c_uint64)]


TITLE, CHECKED, KIND = 1, 8, 64


def check(status):
    if status != 0:
        raise RuntimeError(qd.qd_last_error().decode())


def add(parent, title, kind):
    node = Node()
    row = Row(ctypes.sizeof(Row), TITLE | CHECKED | KIND, title.encode(), kind=kind)
    check(qd.qd_node_add(tree, Node(parent), ctypes.byref(row), ctypes.byref(node)))
    return node.value


tree = ctypes.c_void_p()
options = Options(size=ctypes.sizeof(Options), interface_number=qd.qd_interface())
check(qd.qd_tree_create_headless(ctypes.byref(options), ctypes.byref(tree)))

heard = []
callbacks = Callbacks(ctypes.sizeof(Callbacks), switched=Switched(lambda user, of, node, on: heard.append((node, on))))
part = ctypes.c_uint64()
check(qd.qd_kind_create(tree, ctypes.byref(callbacks), ctypes.byref(part)))
housing = add(0, "Housing \u2013 \u00e4", part)
screw = add(housing, "Screw", part)
check(qd.qd_node_expand(tree, Node(housing), 1))
check(qd.qd_headless_click(tree, Node(screw), 1))
sys.exit(0 if heard == [(screw, 1)] else 1)
