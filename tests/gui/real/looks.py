# SPDX-License-Identifier: MIT
"""Where things stand, and whether they fit: looks.py PROGRAM"""

import os

from window import (FIRST, HELP_TITLE, MAIN, PREFERENCES, SECOND, WindowTest, extents,
                    main, place_of, press, property_of)

SCREEN = tuple(int(size) for size in os.environ["TARVEL_SCREEN"].split("x")[:2])
HELPS = ["Extract", "Compare", "Text", "Journals", "Clean doubles", "Clean authors",
         "Clean characters", "Clean tags"]


def frame_of(window):
    """The place and the size of a window with its title bar: left, top, right, bottom."""
    x, y, width, height = place_of(window)
    left, right, top, bottom = (int(value) for value in
                                property_of(window, "_NET_FRAME_EXTENTS").split(", "))
    return x - left, y - top, x + width + right, y + height + bottom


class FitTest(WindowTest):
    def assert_on_screen(self, box, what):
        left, top, right, bottom = box
        self.assertTrue(left >= 0 and top >= 0 and right <= SCREEN[0] and bottom <= SCREEN[1],
                        f"{what}: {box}")

    def assert_fits(self, program, title):
        """Whether a window and all that it shows can be seen, and nothing covers anything else."""
        frame = frame_of(program.window(title))
        self.assert_on_screen(frame, title)
        nodes = [node for node in program.walk(program.active_window(title))
                 if node.get_role_name() in ("push button", "radio button", "check box", "label")]
        boxes = []
        for node in nodes:
            x, y, width, height = extents(node)
            box = (x, y, x + width, y + height)
            self.assertTrue(box[0] >= frame[0] and box[1] >= frame[1] and box[2] <= frame[2] and
                            box[3] <= frame[3], f"{title}: {node.get_name()}: {box} in {frame}")
            for other, name in boxes:
                self.assertFalse(box[0] < other[2] and other[0] < box[2] and
                                 box[1] < other[3] and other[1] < box[3],
                                 f"{title}: '{node.get_name()}' {box} over '{name}' {other}")
            boxes.append((box, node.get_name()))

    def assert_dialogs_fit(self, program):
        self.assert_fits(program, MAIN)
        for operation, title in PREFERENCES.items():
            program.open_preferences(operation)
            self.assert_fits(program, title)
            press("Escape")
            program.wait_gone(title)
            program.wait_active(MAIN)


class Looks(FitTest):
    def test_dialogs_and_boxes_with_large_letters_fit_a_small_screen(self):
        program = self.start(environment={"GDK_DPI_SCALE": "1.5"})
        self.assert_dialogs_fit(program)
        for operation in HELPS:
            program.click(program.button("Help", f"Help for {operation}"))
            program.wait_active(HELP_TITLE)
            with self.subTest(f"help for {operation}"):
                self.assert_fits(program, HELP_TITLE)
            press("Escape")
            program.wait_gone(HELP_TITLE)
            program.wait_active(MAIN)

    def test_one_left_edge_and_gaps(self):
        program = self.start()
        second_column = [program.picker(FIRST), program.picker(SECOND), program.button("About")]
        second_column += [program.button("Help", f"Help for {operation}") for operation in HELPS]
        self.assertEqual(len({extents(node)[0] for node in second_column}), 1)
        for operation in ("Extract", "Text"):
            program.open_preferences(operation)
            names = [("radio button", "Range of pages"), ("radio button", "Only first page"),
                     ("check box", "Title ")]
            tops = [extents(program.find(role, name))[1] for role, name in names]
            self.assertGreater(tops[2] - tops[1], tops[1] - tops[0], "a gap before the options")
            press("Escape")
            program.wait_gone(PREFERENCES[operation])

    def test_further_preferences_stand_apart(self):
        program = self.start()
        for operation, title in PREFERENCES.items():
            for _ in range(3):
                program.open_preferences(operation)
            places = {frame_of(number)[:2] for number, shown in program.windows().items()
                      if shown == title}
            self.assertEqual(len(places), 3, title)
            for number, shown in program.windows().items():
                if shown == title:
                    self.assert_on_screen(frame_of(number), title)

    def test_a_box_belongs_to_the_main_window_whatever_is_in_front(self):
        program = self.start()
        main_window = program.window(MAIN)
        program.open_preferences("Clean tags")
        program.raise_main()
        program.click(program.button("Clean authors"))
        program.wait_active("Load BibTeX file")
        self.assertEqual(self.owner_of(program, "Load BibTeX file"), main_window)
        program.answer("Load BibTeX file")

    def test_the_journal_note_belongs_to_its_dialog(self):
        program = self.start()
        program.open_preferences("Journals")
        owner = program.window(PREFERENCES["Journals"])
        program.click(program.button("Help", "Help for the journal-name list"))
        program.wait_active(HELP_TITLE)
        self.assertEqual(self.owner_of(program, HELP_TITLE), owner)
        program.answer(HELP_TITLE)

    def test_a_box_stands_over_the_file_dialog(self):
        library = self.new_file("win.bib", b"@ARTICLE{a,\r\n}\r\n")
        program = self.start()
        main_window = program.window(MAIN)
        program.choose(FIRST, "win.bib")
        program.wait_active("File conversion")
        self.assertEqual(self.owner_of(program, "File conversion"), main_window)
        program.answer("File conversion")
        program.wait_shown(FIRST, library.name)

    def owner_of(self, program, title):
        """The number of the window over which another stands."""
        return str(int(property_of(program.window(title), "WM_TRANSIENT_FOR").split()[-1], 16))


if __name__ == "__main__":
    main()
