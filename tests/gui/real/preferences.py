# SPDX-License-Identifier: MIT
"""Several preference dialogs of one kind: preferences.py PROGRAM"""

from window import (CHECKED, FIRST, PREFERENCES, Atspi, WindowTest, extents, has_state, main,
                    middle, output_of, uri_of, wait_for)

TITLE = PREFERENCES["Clean tags"]
BOXES = 37
AT_START = 31  # ticked


class Preferences(WindowTest):
    def dialogs(self, program):
        """The open ones, the oldest first: each stands a little to the right of the one before."""
        found = []
        for index in range(program.root.get_child_count()):
            node = program.root.get_child_at_index(index)
            if node and node.get_name() == TITLE:
                found.append(node)
        return sorted(found, key=lambda node: extents(node)[0])

    def ticked(self, program, dialog):
        boxes = [node for node in program.walk(dialog) if node.get_role_name() == "check box"]
        self.assertEqual(len(boxes), BOXES)
        return sum(has_state(box, CHECKED) for box in boxes)

    def press_in(self, program, dialog, name):
        """Presses a button, which another dialog may cover."""
        Atspi.Action.do_action(program.find("push button", name, inside=dialog), 0)

    def wait_ticked(self, program, dialog, count):
        wait_for(f"{count} ticked boxes", lambda: self.ticked(program, dialog) == count)

    def wait_for_dialogs(self, program, count):
        wait_for(f"{count} dialogs", lambda: len(self.dialogs(program)) == count)

    def test_the_newest_that_is_open_shows_what_select_all_sets(self):
        library = self.new_file("lit.bib")
        program = self.start()
        for _ in range(3):
            program.open_preferences("Clean tags")
        self.wait_for_dialogs(program, 3)
        old, middle_one, new = self.dialogs(program)
        self.press_in(program, old, "Unselect all")
        self.wait_ticked(program, new, 0)
        self.assertEqual(self.ticked(program, middle_one), AT_START)

        self.press_in(program, new, "Done")
        self.wait_for_dialogs(program, 2)
        self.press_in(program, old, "Select all")
        self.wait_ticked(program, middle_one, BOXES)
        self.assertEqual(self.ticked(program, old), AT_START)

        self.press_in(program, middle_one, "Done")
        self.wait_for_dialogs(program, 1)
        self.press_in(program, old, "Unselect all")
        self.wait_ticked(program, old, 0)

        # What it shows is what counts.
        program.raise_main()
        output_of("xdotool", "windowmove", "--sync", program.window(TITLE), "0", "0")
        self.assertTrue(self.drag(uri_of(library), middle(program.picker(FIRST))))
        program.wait_shown(FIRST, "lit.bib")
        program.click(program.button("Clean tags"))
        program.answer("Done!")
        self.assertIn(b"doi = {1}", (self.home / "lit_tag.bib").read_bytes())


if __name__ == "__main__":
    main()
