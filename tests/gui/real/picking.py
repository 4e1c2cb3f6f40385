# SPDX-License-Identifier: MIT
"""Files picked in the file dialogs: picking.py PROGRAM"""

import os
from pathlib import Path

from window import (DOCUMENT, FIRST, LIBRARY, MAIN, SECOND, WindowTest, main, middle, output_of,
                    press, uri_of)

# As the toolkit shows the name.
LATIN_1_NAME = os.fsdecode(b"caf\xe9.bib")
LATIN_1_SHOWN = "caf\ufffd.bib (invalid encoding)"


class Picking(WindowTest):
    def clean_tags(self, program):
        program.click(program.button("Clean tags"))
        program.answer("Done!")

    def test_a_name_that_is_not_utf8_is_picked(self):
        self.new_file(LATIN_1_NAME)
        for environment in [{}, {"LC_ALL": "C"}, {"LC_ALL": "C.UTF-8"},
                            {"G_FILENAME_ENCODING": "ISO-8859-1"}]:
            with self.subTest(environment):
                program = self.start(environment=environment)
                shown = "café.bib" if "G_FILENAME_ENCODING" in environment else LATIN_1_SHOWN
                program.pick(FIRST, shown)
                self.clean_tags(program)
                result = self.home / os.fsdecode(b"caf\xe9_tag.bib")
                self.assertIn(b"Tides", result.read_bytes())
                result.unlink()
                self.assertEqual(program.errors(), "")
                program.stop()

    def test_it_takes_the_place_of_another_file(self):
        self.new_file("lit.bib")
        self.new_file(LATIN_1_NAME)
        program = self.start()
        program.pick(FIRST, "lit.bib")
        program.pick(FIRST, LATIN_1_SHOWN)
        self.clean_tags(program)
        self.assertTrue((self.home / os.fsdecode(b"caf\xe9_tag.bib")).exists())
        self.assertFalse((self.home / "lit_tag.bib").exists())

    def test_the_second_dialog_opens_where_the_first_file_lies(self):
        elsewhere = self.home / os.fsdecode(b"\xfcbung")
        elsewhere.mkdir()
        (elsewhere / "paper.tex").write_bytes(DOCUMENT)
        (elsewhere / "lit.bib").write_bytes(LIBRARY)
        program = self.start()
        program.pick(FIRST, "\ufffdbung (invalid encoding)", "paper.tex")
        program.pick(SECOND, "lit.bib")
        program.click(program.button("Extract"))
        program.answer("Done!")
        self.assertTrue((elsewhere / "lit_extract.bib").exists())
        self.assertNotRegex(program.errors(), "Gtk|GLib|Gdk")  # the operation has its warnings

    def test_the_first_dialog_opens_where_the_second_file_lies_until_it_has_one(self):
        folders = [self.home / name for name in ("one", "two")]
        for folder in folders:
            folder.mkdir()
            (folder / f"{folder.name}.bib").write_bytes(LIBRARY)
        program = self.start()
        for folder in folders:
            self.drag(uri_of(folder / f"{folder.name}.bib"), middle(program.picker(SECOND)))
            program.wait_shown(SECOND, f"{folder.name}.bib")
        program.pick(FIRST, "two.bib")
        self.drag(uri_of(folders[0] / "one.bib"), middle(program.picker(SECOND)))
        program.wait_shown(SECOND, "one.bib")
        program.pick(FIRST, "two.bib")

    def test_a_name_without_a_dot_is_not_listed_but_can_be_typed(self):
        folder = self.home / "v1.2"
        folder.mkdir()
        (folder / "library").write_bytes(LIBRARY)
        (folder / "other.bib").write_bytes(LIBRARY)
        program = self.start()
        program.choose(FIRST, "v1.2")
        program.find("table cell", "other.bib")
        listed = [node.get_name() for node in program.walk(program.active_window("Select a file"))]
        self.assertNotIn("library", listed)
        output_of("xdotool", "type", "--delay", "20", str(folder / "library"))
        press("Return")
        program.wait_shown(FIRST, "library")
        self.clean_tags(program)
        self.assertTrue((self.home / "v1_tag.bib").exists())

    def test_a_copy_that_cannot_be_made_leaves_the_picked_file(self):
        (self.home / "win_linux.bib").mkdir()  # in its place
        self.new_file("win.bib", LIBRARY.replace(b"\n", b"\r\n"))
        program = self.start()
        program.pick(FIRST, "win.bib")  # no box
        self.clean_tags(program)
        self.assertTrue((self.home / "win_tag.bib").exists())

    def test_a_path_that_is_too_long_ends_the_program_with_a_line(self):
        # The second is that of a file which is converted, to a copy with a longer name.
        for size, used, kind in ((1001, 1001, LIBRARY),
                                 (996, 1002, LIBRARY.replace(b"\n", b"\r\n"))):
            with self.subTest(size):
                library = self.long_path(size)
                library.write_bytes(kind)
                program = self.start()
                self.drag(uri_of(library), middle(program.picker(FIRST)))
                if used != size:
                    program.answer("File conversion")
                self.assertEqual(program.process.wait(30), 1)
                self.assertEqual(program.errors(), "tarvel: the path of the first file is "
                                 f"{used} bytes long; 1000 are the most\n")

    def long_path(self, size):
        """A file name of that many bytes in directories that exist."""
        folder = str(self.home)
        while size - len(folder) > 250:
            folder += "/" + "d" * 100
        os.makedirs(folder, exist_ok=True)
        return Path(folder) / ("f" * (size - len(folder) - 5) + ".bib")

    def test_cancel_keeps_what_is_picked(self):
        self.new_file("lit.bib")
        self.new_file("other.bib")
        program = self.start()
        program.pick(FIRST, "lit.bib")
        program.choose(FIRST)
        program.click(program.find("table cell", "other.bib"))
        press("Escape")
        program.wait_active(MAIN)
        self.assertEqual(program.shown_file(FIRST), "lit.bib")
        self.clean_tags(program)
        self.assertTrue((self.home / "lit_tag.bib").exists())


if __name__ == "__main__":
    main()
