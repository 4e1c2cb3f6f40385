# SPDX-License-Identifier: MIT
"""What a large library looks like while it is worked on: long_runs.py PROGRAM

A run is stopped by a signal as soon as it has begun, so that it lasts as long as the test wants.
"""

import ctypes
import os
import signal
from pathlib import Path

import gi

from window import (FIRST, LIBRARY, MAIN, SENSITIVE, WindowTest, extents, has_state, main, middle,
                    output_of, point_at, press, uri_of, wait_for)

gi.require_version("Gdk", "3.0")
from gi.repository import Gdk  # noqa: E402

ENTRY = LIBRARY.replace(b"harrow2009", b"k%06d")


class CursorImage(ctypes.Structure):
    """XFixesCursorImage"""
    _fields_ = [("x", ctypes.c_short), ("y", ctypes.c_short), ("width", ctypes.c_ushort),
                ("height", ctypes.c_ushort), ("xhot", ctypes.c_ushort), ("yhot", ctypes.c_ushort),
                ("serial", ctypes.c_ulong), ("pixels", ctypes.POINTER(ctypes.c_ulong))]


def cursor():
    """The pixels of the mouse pointer as it is shown."""
    x11 = ctypes.CDLL("libX11.so.6")
    fixes = ctypes.CDLL("libXfixes.so.3")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    fixes.XFixesGetCursorImage.restype = ctypes.POINTER(CursorImage)
    display = ctypes.c_void_p(x11.XOpenDisplay(None))
    image = fixes.XFixesGetCursorImage(display).contents
    pixels = image.pixels[:image.width * image.height]
    x11.XCloseDisplay(display)
    return pixels


def picture(area):
    """The pixels of what is shown there."""
    root = Gdk.Screen.get_default().get_root_window()
    return Gdk.pixbuf_get_from_window(root, *area).get_pixels()


class LongRuns(WindowTest):
    def start_with(self, entries):
        library = self.new_file("large.bib", b"".join(ENTRY % i for i in range(entries)))
        program = self.start()
        self.assertTrue(self.drag(uri_of(library), middle(program.picker(FIRST))))
        program.wait_shown(FIRST, "large.bib")
        return program

    def picture_when_still(self, area):
        """What is shown there, when the theme is done with saying that the mouse is over it."""
        pictures = [picture(area)]

        def still():
            pictures.append(picture(area))
            return len(pictures) > 20 and len(set(pictures[-20:])) == 1

        wait_for("a picture that stays", still)
        return pictures[-1]

    def has_open_file(self, program):
        """Whether the program has a file open that stands beside the library."""
        try:
            return any(os.readlink(link).startswith(str(self.home))
                       for link in Path(f"/proc/{program.process.pid}/fd").iterdir())
        except FileNotFoundError:  # just closed
            return False

    def stop_in_run(self, program):
        wait_for("the start of the run", lambda: self.has_open_file(program))
        program.process.send_signal(signal.SIGSTOP)

    def test_the_window_says_that_it_works(self):
        program = self.start_with(60000)
        button = program.button("Clean tags")
        place = middle(button)
        point_at(place)
        area = extents(button)
        before = self.picture_when_still(area)
        pointer = cursor()
        output_of("xdotool", "click", "1")
        self.stop_in_run(program)
        try:
            self.assertNotEqual(picture(area), before, "the button is painted disabled")
            self.assertNotEqual(cursor(), pointer, "the pointer is a busy one")
        finally:
            program.process.send_signal(signal.SIGCONT)
        program.answer("Done!")
        program.wait_active(MAIN)
        self.assertTrue(has_state(program.button("Clean tags"), SENSITIVE))
        press("space")  # the button still has the focus
        program.answer("Done!")

    def test_what_is_pressed_meanwhile_does_nothing(self):
        program = self.start_with(60000)
        doubles = program.button("Clean doubles")
        other = middle(program.button("Clean tags"))
        program.click(doubles)
        program.answer("Note!")
        self.stop_in_run(program)
        press("space", "Return", "Escape")
        output_of("xdotool", "click", "--repeat", "4", "--delay", "20", "1")
        point_at(other)
        output_of("xdotool", "click", "--repeat", "2", "--delay", "20", "1")
        program.process.send_signal(signal.SIGCONT)
        program.answer("Done!")
        program.wait_active(MAIN)
        press("alt+a")  # after all that came before
        program.answer("Tarvel v3.81 - Veldo Marsk")
        program.wait_active(MAIN)
        made = {path.name for path in self.home.iterdir()}
        self.assertEqual(made, {"large.bib", "large_double.bib", "large_double.log"})

    def test_a_key_pressed_meanwhile_closes_no_box(self):
        program = self.start_with(60000)
        program.click(program.button("Clean doubles"))
        program.answer("Note!")
        self.stop_in_run(program)
        press("space")
        program.process.send_signal(signal.SIGCONT)
        program.answer("Done!")

    def test_a_double_click_runs_once(self):
        program = self.start_with(2000)
        program.wait_active(MAIN)
        point_at(middle(program.button("Clean tags")))
        output_of("xdotool", "click", "--repeat", "2", "--delay", "40", "1")
        program.answer("Done!")
        program.wait_active(MAIN)
        press("alt+a")
        program.answer("Tarvel v3.81 - Veldo Marsk")


if __name__ == "__main__":
    main()
