# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
"""The program as a screen reader meets it: a tree of things with a role and a name, on which one acts, writes and
chooses. There are no places on the screen here, and no names of the source code."""

import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

LIMIT_SECONDS = 60
LOOK_AGAIN_MS = 50


def wait_until(what, condition):
    """Lets events come in until `condition` gives something, and gives that."""
    context = GLib.MainContext.default()
    end = time.monotonic() + LIMIT_SECONDS
    while True:
        try:
            found = condition()
        except GLib.Error:  # something of the tree went while it was looked at
            found = None
        if found:
            return found
        if time.monotonic() > end:
            raise AssertionError(f"not within {LIMIT_SECONDS} s: {what}")
        GLib.timeout_add(LOOK_AGAIN_MS, lambda: False)
        context.iteration(True)


def showing(thing):
    states = thing.get_state_set()
    return states.contains(Atspi.StateType.SHOWING) and states.contains(Atspi.StateType.VISIBLE)


def children(thing):
    for index in range(thing.get_child_count()):
        child = thing.get_child_at_index(index)
        if child:
            yield child


def below(thing):
    """Everything that shows below `thing`, in the order in which it is read."""
    for child in children(thing):
        if showing(child):
            yield child
            yield from below(child)


def tree(thing, depth=0):
    """What a failed step saw."""
    line = "  " * depth + f"{thing.get_role_name()} «{thing.get_name()}»"
    return "\n".join([line] + [tree(child, depth + 1) for child in children(thing) if showing(child)])


def described(role, name):
    return f"{role} {name.__doc__ if callable(name) else f'«{name}»'}"


def look_for(within, role, name):
    fits = name if callable(name) else lambda found: found == name
    return next((t for t in below(within) if t.get_role_name() == role and fits(t.get_name())), None)


def find(within, role, name):
    """The one thing of this role and name (or whose name this function takes) that shows; waits for it."""
    return wait_until(f"a {described(role, name)}", lambda: look_for(within, role, name))


def gone(within, role, name):
    wait_until(f"no {described(role, name)}", lambda: not look_for(within, role, name))


def act(within, role, name, action):
    """Does what the thing offers under the action's name."""
    def do():
        # Looked for again each time: a view that was just made anew takes the thing that was found with it.
        thing = look_for(within, role, name)
        if not thing or not thing.get_state_set().contains(Atspi.StateType.ENABLED):
            return False
        interface = thing.get_action_iface()
        names = [interface.get_action_name(i) for i in range(interface.get_n_actions())]
        return action in names and interface.do_action(names.index(action))

    wait_until(f"a {described(role, name)} that offers «{action}»", do)


def press(within, name, role="push button"):
    act(within, role, name, "Press")


def switch(within, name, role):
    act(within, role, name, "Toggle")


def text_of(thing):
    interface = thing.get_text_iface()
    return Atspi.Text.get_text(interface, 0, Atspi.Text.get_character_count(interface))


def reads(within, name, fits):
    """Waits until the field of this name has a text that fits."""
    def look():
        field = look_for(within, "text", name)
        return field and fits(text_of(field))

    wait_until(f"a fitting text in «{name}»", look)


def write(within, name, text):
    """Instead of what stands in the field of this name."""
    def do():
        field = look_for(within, "text", name)
        return field and Atspi.EditableText.set_text_contents(field.get_editable_text_iface(), text)

    wait_until(f"a field «{name}» that lets itself be written to", do)


def choose_row(rows, name):
    def do():
        item = look_for(rows, "list item", name)
        if not item or item.get_state_set().contains(Atspi.StateType.SELECTED):
            return item
        Atspi.Table.add_row_selection(rows.get_table_iface(), item.get_index_in_parent())
        return False

    wait_until(f"a {described('list item', name)} that lets itself be chosen", do)


def program(name):
    """The running program that calls itself so."""
    desktop = Atspi.get_desktop(0)
    return wait_until(f"the program {name}", lambda: next((a for a in children(desktop) if a.get_name() == name), None))
