# SPDX-License-Identifier: MIT
"""A small window from which a list of files can be dragged: drag_source.py X Y URI...

Prints "ready" when it is shown; "accepted" and "refused" when the place under the mouse begins to
accept the files and ends to; "asked" when the place of a drop asks for them, and "end" when a drag
is over.
"""

import sys

x, y, uris = int(sys.argv[1]), int(sys.argv[2]), sys.argv[3:]
del sys.argv[1:]  # GTK would read them

import gi  # noqa: E402

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GLib, Gtk  # noqa: E402

drag = None
accepted = False


def give(_widget, _context, selection, _info, _time):
    print("asked", flush=True)
    selection.set_uris(uris)


def watch():
    global accepted
    if drag and accepted != (drag.get_selected_action() != 0):
        accepted = not accepted
        print("accepted" if accepted else "refused", flush=True)
    return drag is not None


def begin(_widget, context):
    global drag
    drag = context
    GLib.timeout_add(10, watch)


def end(_widget, _context):
    global drag
    drag = None
    print("end", flush=True)


box = Gtk.EventBox()
box.connect("drag-begin", begin)
box.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [Gtk.TargetEntry.new("text/uri-list", 0, 0)],
                    Gdk.DragAction.COPY | Gdk.DragAction.MOVE)
box.connect("drag-data-get", give)
box.connect("drag-failed", lambda *_: True)  # no animation
box.connect("drag-end", end)
window = Gtk.Window(type=Gtk.WindowType.POPUP)
window.set_default_size(60, 60)
window.add(box)
window.move(x, y)
window.connect("map-event", lambda _w, _e: print("ready", flush=True))
window.show_all()
Gtk.main()
