# SPDX-License-Identifier: MIT
"""Every control of every dialog, as a screen reader meets it: accessibility.py PROGRAM"""

from window import (CHECKED, FIRST, HELP_TITLE, LIBRARY, MAIN, PREFERENCES, SECOND, SENSITIVE,
                    Atspi, WindowTest, has_state, main, middle, press, uri_of)

OPERATIONS = {  # the label before an operation, its name, whether it has preferences
    "Extract bibitems": ("Extract", True),
    "Compare two libraries": ("Compare", False),
    "Create text file": ("Text", True),
    "Change journal names": ("Journals", True),
    "Remove double entries": ("Clean doubles", False),
    "Correct author names": ("Clean authors", False),
    "Find bad characters": ("Clean characters", False),
    "Remove tags": ("Clean tags", True),
}
KEPT_TAGS = "Author Title Journal Year Volume Pages".split()
REMOVED_TAGS = """Month Abstract Notes Owner Timestamp URL Comment Eid Number Keywords Crossref
    Review DOI File Editor Publisher Address Edition School Series Citeseerurl Type Booktitle
    Chapter Nationality Yearfiled Organization Institution""".split()
STATES = {CHECKED: "checked", Atspi.StateType.IS_DEFAULT: "default",
          Atspi.StateType.FOCUSED: "focused", Atspi.StateType.MODAL: "modal",
          Atspi.StateType.EDITABLE: "editable"}
CONTAINERS = ("filler", "panel", "frame", "dialog", "alert", "scroll pane")


def label(text):
    return ("label", text, "", "")


def button(name, description="", states=""):
    return ("push button", name, description, states)


def radio(name, states=""):
    return ("radio button", name, "", states)


def box(name, states="", description=""):
    return ("check box", name, description, states)


def style_controls():
    return [label("Journal Style"), radio("American Physical Society", "checked focused"),
            radio("American Chemical Society"), radio("Institute of Physics"), radio("Nature"),
            radio("Wiley"), radio("Springer_Comp_Sci"), label("Options"),
            radio("Range of pages"), radio("Only first page"), box("Title ", "checked")]


def main_controls(shown="(None)"):
    controls = [label(FIRST), button(shown, FIRST, "focused"),
                label(SECOND), button("(None)", SECOND)]
    for text, (operation, has_preferences) in OPERATIONS.items():
        controls += [label(text), button("Help", f"Help for {operation}"), button(operation)]
        if has_preferences:
            controls.append(button("Preferences", f"Preferences for {operation}"))
    return controls + [button("About"), button("Quit")]


PREFERENCE_CONTROLS = {
    "Extract": style_controls() + [button("Done", states="default")],
    "Text": style_controls() + [box("Print name of bibitem?"), box("Use LaTeX code?"),
                                button("Done", states="default")],
    "Journals": [label("Journal Style"), radio("Abbreviation"),
                 radio("Full names", "checked focused"), label("Options"),
                 box("Load own .tvl file"), button("Help", "Help for the journal-name list"),
                 button("Done", states="default")],
    "Clean tags": (
        [label("Remove tags"), box("Author", "focused", "Remove tag: Author")] +
        [box(tag, "", f"Remove tag: {tag}") for tag in KEPT_TAGS[1:]] +
        [box(tag, "checked", f"Remove tag: {tag}") for tag in REMOVED_TAGS] +
        [label("Options"), box("Remove empty entries (recommended)", "checked"),
         box("Remove journal strings", "checked"), box("Remove JabRef structure", "checked"),
         button("Select all"), button("Unselect all"), button("Done", states="default")]),
}


class Accessibility(WindowTest):
    maxDiff = None

    def controls(self, program, title):
        """What is shown in a window but what only holds others together."""
        window = program.find("frame", title)
        found = []
        for node in program.walk(window):
            if node.get_role_name() not in CONTAINERS:
                self.assertTrue(has_state(node, SENSITIVE), node.get_name())
                states = [word for state, word in STATES.items() if has_state(node, state)]
                found.append((node.get_role_name(), node.get_name(), node.get_description(),
                              " ".join(states)))
        return found

    def test_the_main_dialog(self):
        library = self.new_file("lit.bib")
        program = self.start()
        self.assertEqual(program.root.get_name(), "tarvel")
        self.assertEqual(self.controls(program, MAIN), main_controls())
        self.drag(uri_of(library), middle(program.picker(FIRST)))
        program.wait_shown(FIRST, "lit.bib")
        self.assertEqual(self.controls(program, MAIN), main_controls("lit.bib"))

    def test_the_preferences(self):
        program = self.start()
        for operation, title in PREFERENCES.items():
            program.open_preferences(operation)
            self.assertEqual(self.controls(program, title), PREFERENCE_CONTROLS[operation], title)
            press("Escape")
            program.wait_gone(title)

    def test_a_message_box(self):
        program = self.start()
        program.click(program.button("About"))
        program.wait_active(HELP_TITLE)
        alert = program.find("alert")
        self.assertTrue(has_state(alert, Atspi.StateType.MODAL))
        shown = [(node.get_role_name(), node.get_name()) for node in program.walk(alert)
                 if node.get_role_name() not in CONTAINERS]
        self.assertEqual([role for role, _ in shown], ["label", "push button"])
        self.assertTrue(shown[0][1].startswith(HELP_TITLE), shown)
        self.assertEqual(shown[1][1], "OK")

    def test_the_messages(self):
        library = self.new_file("lit.bib", LIBRARY.replace(b"Harrow, E.", b"Harrow"))
        program = self.start()
        self.drag(uri_of(library), middle(program.picker(FIRST)))
        program.wait_shown(FIRST, "lit.bib")
        program.click(program.button("Clean authors"))
        program.answer("Done!")
        program.window("Messages")
        names = [control[:2] + control[3:] for control in self.controls(program, "Messages")
                 if control[0] != "scroll bar"]
        self.assertEqual(names, [("text", "Messages", ""), ("push button", "Copy all", ""),
                                 ("push button", "Save as ...", ""), ("push button", "Close", "")])


if __name__ == "__main__":
    main()
