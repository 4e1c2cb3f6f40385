# SPDX-License-Identifier: MIT
"""What single keys do: keys.py PROGRAM"""

from window import CHECKED, HELP_TITLE, MAIN, PREFERENCES, WindowTest, has_state, main, press

HELPS = ["Extract", "Compare", "Text", "Journals", "Clean doubles", "Clean authors",
         "Clean characters", "Clean tags"]


class Keys(WindowTest):
    def box_text(self, program):
        """The text of the open box, which is then closed."""
        program.wait_active(HELP_TITLE)
        text = next(node.get_name() for node in program.walk(program.find("alert"))
                    if node.get_role_name() == "label")
        press("Escape")
        program.wait_gone(HELP_TITLE)
        program.wait_active(MAIN)
        return text

    def test_escape_and_enter_close_the_preferences_as_done_does(self):
        program = self.start()
        for operation, title in PREFERENCES.items():
            for key in ("Escape", "Return", "KP_Enter"):
                program.open_preferences(operation)
                press(key)
                program.wait_gone(title)
        program.open_preferences("Extract")
        program.click(program.find("radio button", "Nature"))
        press("Escape")
        program.wait_gone(PREFERENCES["Extract"])
        program.open_preferences("Text")
        self.assertTrue(has_state(program.find("radio button", "Nature"), CHECKED))
        self.assertEqual(program.errors(), "")

    def test_enter_presses_the_button_that_has_the_focus(self):
        program = self.start()
        program.open_preferences("Clean tags")
        press("shift+Tab", "shift+Tab")  # from the first box to "Unselect all"
        press("Return")
        program.wait_for_state(program.find("check box", "DOI"), CHECKED, False)
        self.assertIn(PREFERENCES["Clean tags"], program.titles())

    def test_escape_leaves_the_main_dialog_open(self):
        program = self.start()
        press("Escape", "alt+a")  # one after the other
        self.assertIn("Veldo Marsk", self.box_text(program))

    def test_f1_shows_the_help_of_the_row_that_has_the_focus(self):
        program = self.start()
        texts = {}
        for operation in HELPS:
            program.click(program.button("Help", f"Help for {operation}"))
            texts[operation] = self.box_text(program)
            press("F1")  # that button has the focus
            self.assertEqual(self.box_text(program), texts[operation])
        self.assertEqual(len(set(texts.values())), len(HELPS))
        # The last row to its end, and two rows by all of their buttons.
        program.click(program.button("Help", "Help for Extract"))
        self.box_text(program)
        for operation in ("Extract", "Extract", "Compare", "Compare", "Text", "Text", "Text"):
            press("Tab", "F1")
            self.assertEqual(self.box_text(program), texts[operation])
        press("shift+Tab", "shift+Tab", "shift+Tab", "shift+Tab", "F1")
        self.assertEqual(self.box_text(program), texts["Compare"])

    def test_f1_does_nothing_outside_of_the_rows(self):
        program = self.start()
        press("F1")  # on the first picker
        press("Tab", "F1")
        press("shift+Tab", "shift+Tab", "F1")  # on "Quit"
        press("alt+a")
        self.assertIn("Veldo Marsk", self.box_text(program))
        program.open_preferences("Extract")
        press("F1", "Escape")
        program.wait_gone(PREFERENCES["Extract"])
        program.wait_active(MAIN)


if __name__ == "__main__":
    main()
