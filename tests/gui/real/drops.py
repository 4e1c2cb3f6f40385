# SPDX-License-Identifier: MIT
"""Files dropped on the main dialog, by the drags of another program: drops.py PROGRAM"""

import os
from pathlib import Path

from window import (DOCUMENT, FIRST, LIBRARY, MAIN, SECOND, WindowTest, extents, main, middle,
                    press, uri_of, wait_for)

WINDOWS_LIBRARY = LIBRARY.replace(b"\n", b"\r\n")


class Drops(WindowTest):
    def test_files_are_picked_whatever_their_names(self):
        program = self.start()
        for name, shown in [("lit.bib", "lit.bib"), ("Größe übung.bib", "Größe übung.bib"),
                            (os.fsdecode(b"caf\xe9 x.bib"), "caf\ufffd x.bib (invalid encoding)")]:
            with self.subTest(shown):
                self.new_file(name)
                self.assertTrue(self.drag(uri_of(self.home / name), middle(program.picker(FIRST))))
                program.wait_shown(FIRST, shown)
                program.click(program.button("Clean tags"))
                program.answer("Done!")
                stem = os.fsencode(self.home / name).removesuffix(b".bib")
                self.assertIn(b"Tides", Path(os.fsdecode(stem + b"_tag.bib")).read_bytes())
        self.assertEqual(program.shown_file(SECOND), "(None)")
        self.assertEqual(program.errors(), "")

    def test_the_place_decides_about_the_picker(self):
        one, two, three = (self.new_file(f"{word}.bib") for word in ("one", "two", "three"))
        program = self.start()
        second_label = program.find("label", SECOND)
        self.assertTrue(self.drag(uri_of(one), middle(second_label)))
        program.wait_shown(SECOND, "one.bib")

        x, y, width, height = extents(program.picker(FIRST))
        between = (x + width // 2, (y + height + extents(program.picker(SECOND))[1]) // 2)
        self.assertTrue(self.drag(uri_of(two), between))
        program.wait_shown(FIRST, "two.bib")
        self.drag(uri_of(three), between)
        self.assertEqual(program.shown_file(FIRST), "two.bib")
        self.assertEqual(program.shown_file(SECOND), "one.bib")

        self.assertTrue(self.drag(uri_of(three), middle(program.find("label", FIRST))))
        program.wait_shown(FIRST, "three.bib")
        place = middle(program.button("Clean tags"))
        self.assertFalse(self.drag(uri_of(two), place, welcome=False))
        self.assertEqual(program.shown_file(SECOND), "one.bib")
        self.assertEqual(program.errors(), "")

    def test_only_files_of_this_machine_are_taken(self):
        program = self.start()
        place = middle(program.picker(FIRST))
        os.mkfifo(self.home / "fifo.bib")
        for uri in [uri_of(self.home), uri_of(self.home / "gone.bib"),
                    uri_of(self.home / "fifo.bib"), "http://tarvel.example/lit.bib"]:
            self.drag(uri, place)
            self.assertEqual(program.shown_file(FIRST), "(None)", uri)
        self.assertEqual(program.errors(), "")

    def test_none_is_taken_while_a_box_tells_of_a_conversion(self):
        windows = self.new_file("win.bib", WINDOWS_LIBRARY)
        other = self.new_file("more.bib")
        program = self.start()
        place = middle(program.picker(FIRST))
        self.assertTrue(self.drag(uri_of(windows), place))
        program.wait_active("File conversion")
        self.assertFalse(self.drag(uri_of(other), place, welcome=False))
        program.answer("File conversion")
        self.assertEqual(program.shown_file(FIRST), "win.bib")
        program.click(program.button("Clean tags"))
        program.answer("Done!")
        self.assertTrue((self.home / "win_linux_tag.bib").exists())
        self.assertFalse((self.home / "more_tag.bib").exists())

    def test_none_is_taken_between_the_check_and_the_run(self):
        library = self.new_file("more.bib")
        document = self.new_file("paper.tex", DOCUMENT)
        program = self.start()
        place = middle(program.picker(FIRST))
        self.assertTrue(self.drag(uri_of(library), place))
        program.wait_shown(FIRST, "more.bib")
        program.click(program.button("Clean doubles"))
        program.wait_active("Note!")
        self.assertFalse(self.drag(uri_of(document), place, welcome=False))
        program.answer("Note!")
        program.wait_active("Done!")
        self.assertFalse(self.drag(uri_of(document), place, welcome=False))
        program.answer("Done!")
        self.assertEqual(program.shown_file(FIRST), "more.bib")
        self.assertTrue((self.home / "more_double.bib").exists())
        self.assertFalse((self.home / "paper_double.bib").exists())

    def test_none_is_taken_while_a_file_dialog_or_a_help_text_is_open(self):
        library = self.new_file("more.bib")
        program = self.start()
        place = middle(program.picker(FIRST))
        for opener, title in [(program.picker(SECOND), "Select a file"),
                              (program.button("About"), "Tarvel v3.81 - Veldo Marsk")]:
            program.click(opener)
            program.wait_active(title)
            program.move(title, 0, place[1] + 100)  # what it covers would take the drop itself
            self.assertFalse(self.drag(uri_of(library), place, welcome=False))
            press("Escape")
            program.wait_gone(title)
            program.wait_active(MAIN)
        self.assertEqual(program.shown_file(FIRST), "(None)")
        self.assertEqual(program.shown_file(SECOND), "(None)")

    def test_a_drop_during_a_run_is_lost(self):
        entry = b"@ARTICLE{k%06d,\n  author = {Harrow, E.},\n  title = {Tides},\n  doi = {1}\n}\n\n"
        library = self.new_file("large.bib", b"".join(entry % i for i in range(60000)))
        other = self.new_file("more.bib")
        program = self.start()
        place = middle(program.picker(FIRST))
        self.assertTrue(self.drag(uri_of(library), place))
        program.wait_shown(FIRST, "large.bib")
        program.click(program.button("Clean tags"))
        wait_for("the start of the run", lambda: any(self.home.glob("large_tag*")) or
                 any(self.home.glob(".*")))
        self.assertFalse(self.drag(uri_of(other), place, welcome=False))
        program.answer("Done!")
        program.wait_active(MAIN)
        self.assertEqual(program.shown_file(FIRST), "large.bib")


if __name__ == "__main__":
    main()
