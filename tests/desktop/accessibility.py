#!/usr/bin/env python3
"""Looks at the workbench through the accessibility bus as a screen reader does.

Usage: accessibility.py WORKBENCH MODEL, under a display and a session bus. Prints what does not hold and ends with 1.
"""
import os
import subprocess
import sys
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

failures = []


def expect(what, holds):
    if not holds:
        failures.append(what)


def find(node, role, depth=0):
    """All objects of a role below a node, not looking inside trees."""
    if node is None or depth > 12:
        return []
    if node.get_role() == role:
        return [node]
    return [hit for i in range(node.get_child_count()) for hit in find(node.get_child_at_index(i), role, depth + 1)]


def has(node, *states):
    return all(node.get_state_set().contains(state) for state in states)


def act(node, name):
    names = [Atspi.Action.get_action_name(node, i) for i in range(node.get_n_actions())]
    node.do_action(names.index(name))


def wait_for(make, seconds=30):
    end = time.time() + seconds
    while time.time() < end:
        result = make()
        if result:
            return result
        time.sleep(0.2)
    return None


def workbench_with_parts():
    desktop = Atspi.get_desktop(0)
    for i in range(desktop.get_child_count()):
        program = desktop.get_child_at_index(i)
        for tree in find(program, Atspi.Role.TREE):
            root = tree.get_child_at_index(0)
            geometry = root and root.get_child_at_index(1)  # coordinate systems stand before it
            # The tree of geometry sets looks much the same; the parts stand in the model tree.
            part = geometry and geometry.get_child_count() > 1 and geometry.get_child_at_index(1)
            if part and part.get_name().startswith("Shaft"):
                return tree
    return None


# What earlier runs left behind would be offered for recovery, before anything is opened.
state = tempfile.TemporaryDirectory()
program = subprocess.Popen(sys.argv[1:3], stderr=subprocess.DEVNULL, env={**os.environ, "XDG_STATE_HOME": state.name})
try:
    tree = wait_for(workbench_with_parts)
    expect("a tree with parts is on the bus", tree)
    if tree:
        root = tree.get_child_at_index(0)
        geometry = root.get_child_at_index(1)
        part = geometry.get_child_at_index(1)
        expect("the tree has one root", tree.get_child_count() == 1)
        # The toolkit's bridge to the bus calls the items of trees table cells.
        roles = (Atspi.Role.TREE_ITEM, Atspi.Role.TABLE_CELL)
        expect("rows are tree items", root.get_role() in roles and part.get_role() in roles)
        expect("a row names its place among its siblings", part.get_index_in_parent() == 1)
        expect("levels follow the tree", part.get_parent().get_name() == geometry.get_name() == "Geometry")
        expect("a title and an ID make the name", part.get_name() == "Shaft, 2")
        expect("the root is open", has(root, Atspi.StateType.EXPANDABLE, Atspi.StateType.EXPANDED))
        expect("a part is checked", has(part, Atspi.StateType.CHECKED))
        expect("nothing is selected yet", not has(part, Atspi.StateType.SELECTED))

        act(part, "Toggle")
        expect("the box can be pressed", wait_for(lambda: not has(part, Atspi.StateType.CHECKED), 5))
        act(part, "SetFocus")
        expect("a row can be selected", wait_for(lambda: has(part, Atspi.StateType.SELECTED), 5))
        act(geometry, "Expand")
        expect("a branch can be closed", wait_for(lambda: not has(geometry, Atspi.StateType.EXPANDED), 5))
        expect("rows in it are not showing", not has(part, Atspi.StateType.SHOWING))

        # The find bar: opened by its key, filled in and pressed by the reader.
        said = []
        listener = Atspi.EventListener.new(lambda event: said.append((event.source.get_name() or "")))
        listener.register("object:property-change:accessible-name")
        frame = wait_for(lambda: [hit for role in (Atspi.Role.FRAME, Atspi.Role.WINDOW)
                                  for hit in find(tree.get_application(), role)])
        place = root.get_extents(Atspi.CoordType.SCREEN)
        subprocess.run(["xdotool", "mousemove", str(place.x + 60), str(place.y + place.height // 2), "click", "1",
                        "sleep", "0.5", "key", "ctrl+f"], check=True)
        field = wait_for(lambda: next((text for text in find(frame[0], Atspi.Role.TEXT)
                                       if text.get_name() == "Find rows" and has(text, Atspi.StateType.SHOWING)), None))
        expect("the field has a name", field)
        if field:
            expect("the field has the focus", wait_for(lambda: has(field, Atspi.StateType.FOCUSED), 5))
            field.set_text_contents("shaft")  # as by dictation
            context = GLib.MainContext.default()
            end = time.time() + 10
            while time.time() < end and not any(" of " in name for name in said):
                context.iteration(False)
                time.sleep(0.02)
            expect("the count is told", any(" of " in name for name in said))
            bar = field.get_parent()
            names = [button.get_name() for button in find(bar, Atspi.Role.PUSH_BUTTON)]
            expect("buttons say what they do", "Next match (F3)" in names and len(names) == 4)
            choices = find(bar, Atspi.Role.RADIO_BUTTON)
            expect("the switch is two choices", [choice.get_name() for choice in choices] == ["Filter", "Find"])
            act(choices[1], "Press")
            expect("a choice can be pressed", wait_for(lambda: has(choices[1], Atspi.StateType.CHECKED), 5))
finally:
    program.kill()
    program.wait()

for failure in failures:
    print("does not hold:", failure)
sys.exit(1 if failures else 0)
