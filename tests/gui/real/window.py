# SPDX-License-Identifier: MIT
"""The real program on a real display, as its users meet it.

What is shown is read over AT-SPI, as a screen reader reads it, and from the X server; keys, mouse
and drags come from xdotool. Every step waits for what must come and fails when it does not.

run.sh starts these tests. Exit status 77 says that something that is needed is not installed.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import urllib.parse
from pathlib import Path

SKIPPED = 77
LONGEST_WAIT = 30  # seconds

os.environ.pop("NO_AT_BRIDGE", None)
try:
    import gi
    gi.require_version("Atspi", "2.0")
    gi.require_version("Gtk", "3.0")  # of the drag source
    from gi.repository import Atspi
except (ImportError, ValueError) as error:
    print(f"skipped: {error}", file=sys.stderr)
    sys.exit(SKIPPED)

MAIN = "Tarvel 3.81 - Veldo Marsk, 2014"
HELP_TITLE = "Tarvel v3.81 - Veldo Marsk"
PREFERENCES = {  # operations and titles
    "Extract": "Preferences for 'Extract'",
    "Text": "Preferences for 'Text'",
    "Journals": "Preferences for 'Journals'",
    "Clean tags": "Preferences for Clean tags'",
}
FIRST = "Load first file"
SECOND = "Load second file"
LIBRARY = b"@ARTICLE{harrow2009,\n  author = {Harrow, E.},\n  title = {Tides},\n  doi = {1}\n}\n\n"
DOCUMENT = b"\\begin{document}\n\\cite{harrow2009}\n\\end{document}\n"

SHOWING = Atspi.StateType.SHOWING
SENSITIVE = Atspi.StateType.SENSITIVE
CHECKED = Atspi.StateType.CHECKED
ACTIVE = Atspi.StateType.ACTIVE


def wait_for(what, condition, seconds=LONGEST_WAIT):
    """Gives the first true value of the condition."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"this never came: {what}")
        time.sleep(0.02)


def output_of(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          check=False, text=True).stdout.strip()


def press(*keys):
    output_of("xdotool", "key", "--delay", "20", *keys)


def point_at(place):
    output_of("xdotool", "mousemove", str(place[0]), str(place[1]))


def property_of(window, name):
    """The value of a property of an X window, as xprop prints it; empty when it has none."""
    line = output_of("xprop", "-id", window, name)
    return line.partition(" = ")[2] or line.partition("# ")[2]


def active_title():
    """The title of the window that has the focus."""
    window = output_of("xdotool", "getactivewindow")
    return property_of(window, "_NET_WM_NAME")[1:-1] if window else ""


def place_of(window):
    """Where an X window stands on the screen, without what the window manager adds."""
    lines = output_of("xwininfo", "-id", window).splitlines()
    values = dict(line.strip().split(": ", 1) for line in lines if ": " in line)
    return tuple(int(values.get(key, -1)) for key in (
        "Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))


def has_state(node, state):
    return node.get_state_set().contains(state)


def extents(node):
    box = Atspi.Component.get_extents(node, Atspi.CoordType.SCREEN)
    return box.x, box.y, box.width, box.height


def middle(node):
    x, y, width, height = extents(node)
    return x + width // 2, y + height // 2


def uri_of(path):
    return "file://" + urllib.parse.quote(os.fsencode(path))


class Program:
    """A run of the program in the directory `home`."""

    def __init__(self, home, environment=None, **streams):
        self.error_file = tempfile.TemporaryFile()
        streams = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL,
                   "stderr": self.error_file} | streams
        self.process = subprocess.Popen([sys.argv[1]], cwd=home,
                                        env=os.environ | (environment or {}), **streams)
        self.root = wait_for("the program on the bus", self._find_root)
        self.wait_active(MAIN)

    def _find_root(self):
        desktop = Atspi.get_desktop(0)
        desktop.clear_cache()
        for index in range(desktop.get_child_count()):
            root = desktop.get_child_at_index(index)
            try:
                if root and root.get_process_id() == self.process.pid and root.get_child_count():
                    return root
            except gi.repository.GLib.GError:
                pass  # a program that has just ended
        return None

    def stop(self):
        self.process.kill()
        self.process.wait()
        self.error_file.close()

    def errors(self):
        """What stands on standard error."""
        self.error_file.seek(0)
        return self.error_file.read().decode("utf-8", "backslashreplace")

    # --- What is shown

    def walk(self, node=None):
        """All that is shown inside `node`, from top to bottom."""
        node = node or self.root
        node.clear_cache()
        for index in range(node.get_child_count()):
            child = node.get_child_at_index(index)
            if child and has_state(child, SHOWING):
                yield child
                yield from self.walk(child)

    def find(self, role, name=None, description=None, inside=None):
        """What is shown with this role, name and description; waits until there is one."""
        def first():
            try:
                for node in self.walk(inside):
                    if (node.get_role_name() == role and name in (None, node.get_name()) and
                            description in (None, node.get_description())):
                        return node
            except gi.repository.GLib.GError:
                pass  # a window that has just gone
            return None
        return wait_for(f"{role} '{name}' '{description}'", first)

    def active_window(self, title):
        """The window with this title, which has the focus. (A message box has another name on the
        bus than its title.)"""
        def first():
            for index in range(self.root.get_child_count()):
                node = self.root.get_child_at_index(index)
                if node and has_state(node, ACTIVE) and active_title() == title:
                    return node
            return None
        return wait_for(f"the window '{title}' on the bus", first)

    def button(self, name, description=None):
        return self.find("push button", name, description)

    def picker(self, purpose):
        return self.find("push button", description=purpose)

    def shown_file(self, purpose):
        return self.picker(purpose).get_name()

    def wait_shown(self, purpose, name):
        wait_for(f"'{name}' in the picker '{purpose}'", lambda: self.shown_file(purpose) == name)

    def windows(self):
        """The X windows that are shown, the titles by their numbers."""
        numbers = output_of("xdotool", "search", "--all", "--onlyvisible", "--pid",
                            str(self.process.pid), "--name", ".*").split()
        titles = {number: property_of(number, "_NET_WM_NAME") for number in numbers}
        return {number: title[1:-1] for number, title in titles.items() if title}

    def titles(self):
        return list(self.windows().values())

    def wait_for_state(self, node, state, value=True):
        wait_for(f"{state.value_nick} {value}: '{node.get_name()}'",
                 lambda: has_state(node, state) == value)

    def window(self, title):
        return wait_for(f"the window '{title}'",
                        lambda: next((n for n, t in self.windows().items() if t == title), None))

    def wait_active(self, title):
        """Waits until a window has the focus and knows where it stands."""
        wait_for(f"the window '{title}' with the focus", lambda: active_title() == title)
        wait_for(f"the window '{title}' in its place", self._is_in_place)

    def _is_in_place(self):
        place = place_of(output_of("xdotool", "getactivewindow"))
        self.root.clear_cache()
        for index in range(self.root.get_child_count()):
            node = self.root.get_child_at_index(index)
            if node and has_state(node, ACTIVE) and node.get_child_count():
                return extents(node.get_child_at_index(0)) == place
        return False

    def wait_gone(self, title):
        wait_for(f"the end of the window '{title}'", lambda: title not in self.titles())

    # --- What a user does

    def click(self, node):
        point_at(middle(node))
        output_of("xdotool", "click", "1")

    def raise_main(self):
        output_of("xdotool", "windowactivate", "--sync", self.window(MAIN))
        self.wait_active(MAIN)

    def open_preferences(self, operation):
        """Opens the preferences of an operation and waits until they have the focus."""
        if active_title() != MAIN:
            self.raise_main()
        self.click(self.button("Preferences", f"Preferences for {operation}"))
        self.wait_active(PREFERENCES[operation])

    def move(self, title, x, y):
        output_of("xdotool", "windowmove", "--sync", self.window(title), str(x), str(y))

    def answer(self, title):
        """Waits for a box and presses its OK button by the keyboard."""
        self.wait_active(title)
        press("Return")
        self.wait_gone(title)

    def choose(self, purpose, *names):
        """Opens the dialog of a picker and opens what it lists, one in the other. Does not wait
        for the end of the dialog."""
        self.wait_active(MAIN)
        self.click(self.picker(purpose))
        self.wait_active("Select a file")
        for name in names:
            self.click(self.find("table cell", name))
            press("Return")

    def pick(self, purpose, *names):
        """The same for a file that needs no conversion."""
        self.choose(purpose, *names)
        self.wait_shown(purpose, names[-1])
        self.wait_active(MAIN)


class DragSource:
    """A window of another program, from which files can be dragged."""

    PLACE = (10, 10)
    REFUSAL = 0.5  # seconds without an acceptance

    def __init__(self, *uris):
        script = Path(__file__).parent / "drag_source.py"
        self.process = subprocess.Popen([sys.executable, script, *map(str, self.PLACE), *uris],
                                        stdout=subprocess.PIPE, text=True)
        self.lines = []
        self.reader = threading.Thread(target=self._read)
        self.reader.start()
        self._wait("ready")

    def _read(self):
        for line in self.process.stdout:
            self.lines.append(line.strip())

    def _wait(self, word):
        wait_for(f"'{word}' from the drag source", lambda: word in self.lines)

    def drag_to(self, place, welcome):
        """Drags the files to a place of the screen; whether that asked for them. Drops them at once
        when they are `welcome`, and else after a while."""
        x, y = self.PLACE
        steps = ["mousemove", x + 20, y + 20, "mousedown", 1, "mousemove", x + 40, y + 40,
                 "mousemove", place[0] - 10, place[1], "sleep", 0.1, "mousemove", *place]
        output_of("xdotool", *map(str, steps))
        if welcome:
            wait_for("a place that accepts the files", lambda: self.lines[-1] == "accepted")
        else:
            time.sleep(self.REFUSAL)
        output_of("xdotool", "mouseup", "1")
        self._wait("end")
        return "asked" in self.lines

    def stop(self):
        self.process.kill()
        self.process.wait()
        self.reader.join()
        self.process.stdout.close()


class WindowTest(unittest.TestCase):
    """A test with a directory of its own, in which the program is started."""

    def setUp(self):
        self.home = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.home)

    def start(self, **options):
        program = Program(self.home, **options)
        self.addCleanup(program.stop)
        return program

    def drag(self, uri, place, welcome=True):
        """Drags one file to a place, which is to accept it or not; whether it asked for it."""
        source = DragSource(uri)
        try:
            return source.drag_to(place, welcome)
        finally:
            source.stop()

    def new_file(self, name, content=LIBRARY):
        path = self.home / name
        path.write_bytes(content)
        return path


def main():
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]], verbosity=2)
