# SPDX-License-Identifier: MIT
"""The window "Messages" of a program that was started without a terminal: messages.py PROGRAM"""

import os
import subprocess
import tempfile
from pathlib import Path

import gi

from window import (FIRST, LIBRARY, MAIN, PREFERENCES, Atspi, WindowTest, extents, main, middle,
                    output_of, press, property_of, uri_of, wait_for)

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GLib, Gtk  # noqa: E402

MESSAGES = "Messages"
DESKTOP_FILE = Path(__file__).resolve().parents[3] / "packaging" / "org.tarvel.Tarvel.desktop"
# Its list of authors is of no known form, and its journal unknown.
BAD_LIBRARY = LIBRARY.replace(b"Harrow, E.", b"Harrow, Edwin").replace(b"doi =", b"journal =")


def clipboard_text():
    """What has been copied."""
    return Gtk.Clipboard.get(Gdk.SELECTION_CLIPBOARD).wait_for_text() or ""


class Messages(WindowTest):
    def start_with(self, name, content=BAD_LIBRARY, **options):
        path = self.new_file(name, content)
        program = self.start(**options)
        self.assertTrue(self.drag(uri_of(path), middle(program.picker(FIRST))))
        program.wait_shown(FIRST, name)
        return program

    def run_operation(self, program, name, box="Done!"):
        program.click(program.button(name))
        program.answer(box)

    def text(self, program):
        node = program.find("text", MESSAGES)
        return Atspi.Text.get_text(node, 0, -1)

    def wait_for_text(self, program, part):
        wait_for(f"'{part}' among the messages", lambda: part in self.text(program))
        return self.text(program)

    def settle(self, program):
        """Waits until the program has handled everything up to now."""
        program.raise_main()
        press("alt+a")
        program.answer("Tarvel v3.81 - Veldo Marsk")
        program.wait_active(MAIN)

    def test_the_window_shows_what_is_printed(self):
        with tempfile.TemporaryFile() as output:
            program = self.start_with("lit.bib", stdout=output)
            self.run_operation(program, "Clean authors")
            program.window(MESSAGES)
            press("alt+a")  # goes to the main window, not to the new one
            program.answer("Tarvel v3.81 - Veldo Marsk")
            program.wait_active(MAIN)
            text = self.text(program)
            output.seek(0)
            printed = output.read().decode() + program.errors()
            self.assertTrue(text.startswith("Clean authors:\n"), text)
            self.assertIn("Harrow", printed)
            self.assertIn("lit_author.bib", printed)
            shown = text.splitlines()[1:]
            self.assertEqual(len(shown), len(printed.splitlines()))
            for line in printed.splitlines():  # the terminal may show the program's name before it
                self.assertTrue(any(line.endswith(end) for end in shown), line)

    def test_the_newest_run_comes_last_and_begins_with_the_worst(self):
        (self.home / "lit_author.log").symlink_to("/dev/full")
        program = self.start_with("lit.bib")
        self.run_operation(program, "Journals")
        self.wait_for_text(program, "Journals:\n")
        self.run_operation(program, "Clean authors", "Error in function 'Clean authors'!")
        text = self.wait_for_text(program, "\n\nClean authors:\n")
        self.assertTrue(text.startswith("Journals:\n"), text)
        run = text.partition("Clean authors:\n")[2]
        self.assertTrue(run.startswith("Attention, an error occured!\n"), run)  # sic
        places = [run.index(part) for part in ("No space left", "Edwin", "lit_author.bib ")]
        self.assertEqual(places, sorted(places), "failures, warnings, all else")

    def test_a_further_run_is_seen(self):
        program = self.start_with("lit.bib")
        runs = 8  # more than the window has lines for
        for _ in range(runs):
            self.run_operation(program, "Clean authors")
            window = program.window(MESSAGES)
            program.wait_active(MAIN)
        text = self.text(program)
        self.assertEqual(text.count("Clean authors:\n"), runs)
        start = text.rindex("Clean authors:\n")
        node = program.find("text", MESSAGES)
        self.assertEqual(Atspi.Text.get_caret_offset(node), start)
        _, top, _, height = extents(node)

        def is_seen(offset):
            line = Atspi.Text.get_character_extents(node, offset, Atspi.CoordType.SCREEN)
            return top <= line.y and line.y + line.height <= top + height
        self.assertFalse(is_seen(0))
        for offset in (start, len(text) - 2):
            wait_for(f"the character {offset}", lambda: is_seen(offset))
        # The window stays where it is, and says that there is something new.
        self.assertIn("DEMANDS_ATTENTION", property_of(window, "_NET_WM_STATE"))

    def test_each_window_can_be_in_front(self):
        program = self.start_with("lit.bib")
        self.run_operation(program, "Clean authors")
        program.window(MESSAGES)
        program.open_preferences("Clean tags")
        for title in (MESSAGES, MAIN, PREFERENCES["Clean tags"], MESSAGES):
            output_of("xdotool", "windowactivate", "--sync", program.window(title))
            wait_for(f"'{title}' in front", lambda: self.window_in_front(program) == title)

    def window_in_front(self, program):
        stack = output_of("xprop", "-root", "_NET_CLIENT_LIST_STACKING").partition("# ")[2]
        return program.windows().get(str(int(stack.split(", ")[-1], 16)))

    def test_a_run_without_messages_opens_no_window(self):
        program = self.start_with("lit.bib", LIBRARY)
        self.run_operation(program, "Clean tags")
        self.settle(program)
        self.assertNotIn(MESSAGES, program.titles())

    def test_it_is_hidden_and_comes_back(self):
        program = self.start_with("lit.bib")
        for key in ("button", "Escape", "alt+F4"):
            self.run_operation(program, "Clean authors")
            program.window(MESSAGES)
            if key == "button":
                program.click(program.button("Close"))
            else:
                output_of("xdotool", "windowactivate", "--sync", program.window(MESSAGES))
                program.wait_active(MESSAGES)
                press(key)
            program.wait_gone(MESSAGES)
            program.wait_active(MAIN)
        self.run_operation(program, "Clean authors")
        program.window(MESSAGES)
        self.assertEqual(self.text(program).count("Clean authors:\n"), 4)
        # The program ends although the window is open.
        program.click(program.button("Quit"))
        self.assertEqual(program.process.wait(30), 0)

    def test_it_can_be_copied_and_saved(self):
        program = self.start_with("lit.bib")
        self.run_operation(program, "Clean authors")
        program.window(MESSAGES)
        text = self.text(program)
        program.click(program.button("Copy all"))
        wait_for("the text on the clipboard", lambda: clipboard_text() == text)

        # It is only read.
        program.click(program.find("text", MESSAGES))
        program.wait_active(MESSAGES)
        press("x", "BackSpace", "ctrl+a", "Delete")
        program.click(program.button("Save as ..."))
        program.wait_active("Save messages")
        target = self.home / "saved messages.txt"
        press("ctrl+a")
        output_of("xdotool", "type", "--delay", "20", str(target))
        press("Return")
        program.wait_gone("Save messages")
        wait_for("the saved file", target.exists)
        self.assertEqual(target.read_text(), text)
        self.assertEqual(self.text(program), text)

    def test_a_save_that_fails_is_told(self):
        program = self.start_with("lit.bib")
        self.run_operation(program, "Clean authors")
        program.window(MESSAGES)
        program.click(program.button("Save as ..."))
        program.wait_active("Save messages")
        press("ctrl+a")
        output_of("xdotool", "type", "--delay", "20", "/proc/messages.txt")
        press("Return")
        alert = program.find("alert")
        self.assertIn("Could not create the file '/proc/messages.txt': No such file or directory",
                      [node.get_name() for node in program.walk(alert)])
        program.answer("Save messages")
        program.wait_active(MESSAGES)

    def test_with_a_terminal_there_is_none(self):
        for stream in ("stdout", "stderr"):
            with self.subTest(stream):
                ours, its = os.openpty()
                program = self.start_with("lit.bib", **{stream: its})
                os.close(its)
                self.run_operation(program, "Clean authors")
                self.settle(program)
                self.assertNotIn(MESSAGES, program.titles())
                word = b"Harrow" if stream == "stderr" else b"lit_author.bib"
                self.assertIn(word, os.read(ours, 10000))
                program.stop()
                os.close(ours)

    def test_the_desktop_finds_its_file(self):
        program = self.start()
        entry = GLib.KeyFile()
        entry.load_from_file(str(DESKTOP_FILE), GLib.KeyFileFlags.NONE)
        window_class = property_of(program.window(MAIN), "WM_CLASS").split(", ")
        # The first is the name of the program, which Wayland knows windows by.
        self.assertEqual(window_class[0], f'"{DESKTOP_FILE.stem}"')
        self.assertEqual(entry.get_string("Desktop Entry", "StartupWMClass"), DESKTOP_FILE.stem)

    def test_the_action_of_the_desktop_file_starts_it_in_a_terminal(self):
        ran = self.home / "ran"
        programs = self.home / "bin"
        programs.mkdir()
        scripts = {"tarvel": f'[ -t 1 ] && [ -t 2 ] && echo "$#" >"{ran}"',
                   "x-terminal-emulator": 'shift; exec script -qec "$*" /dev/null'}
        for name, script in scripts.items():
            (programs / name).write_text(f"#!/bin/sh\n{script}\n")
            (programs / name).chmod(0o755)
        starter = f"""import gi
from gi.repository import Gio
app = Gio.DesktopAppInfo.new_from_filename("{DESKTOP_FILE}")
assert app.list_actions() == ["terminal"]
app.launch_action("terminal", None)"""
        environment = os.environ | {"PATH": f"{programs}:{os.environ['PATH']}"}
        subprocess.run(["/usr/bin/python3", "-c", starter], env=environment, check=True)
        wait_for("the start in a terminal", lambda: ran.exists() and ran.read_text() == "0\n")


if __name__ == "__main__":
    main()
