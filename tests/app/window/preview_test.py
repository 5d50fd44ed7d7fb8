"""Looks at files with the quick preview and asks for information, with real keys."""
import os
import struct
import zipfile
import zlib

from support import LEFT, RIGHT, WindowTest, main, row_name, set_up_desktop, stays_so

setUpModule = set_up_desktop


def make_picture(path, width, height):
    """A PNG in grey."""
    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data
                + struct.pack(">I", zlib.crc32(kind + data)))
    rows = (b"\0" + b"\x80" * width) * height
    path.write_bytes(b"\x89PNG\r\n\x1a\n"
                     + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0))
                     + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


class Preview(WindowTest):
    def setUp(self):
        self.left = self.new_folder("Složka/")
        (self.left / "a.txt").write_bytes("Příliš žluťoučký kůň\n".encode("cp1250"))
        make_picture(self.left / "b.png", 40, 20)
        os.mkfifo(self.left / "c.roura")
        with zipfile.ZipFile(self.left / "d.zip", "w") as archive:
            archive.writestr("uvnitř.txt", "v archivu")
        self.fennik = self.start(self.left, self.new_folder())
        self.fennik.expect_table(LEFT, f"{self.left.name}, 5 položek")

    def preview(self):
        return next((part for part in self.fennik.in_view()
                     if part.get_name().startswith("Náhled, ")), None)

    def expect_preview(self, name, description):
        def told():
            preview = self.preview()
            return preview and (preview.get_name(), description in preview.get_description())
        self.fennik.expect("the preview", told, (f"Náhled, {name}", True))

    def test_goes_with_the_cursor_and_leaves_the_keyboard_in_the_panel(self):
        self.fennik.press("Down", "Down", "Space")
        self.expect_preview("a.txt", "Kódování: windows-1250")
        self.fennik.expect("the text", lambda: self.fennik.text("Text"), "Příliš žluťoučký kůň\n")
        self.assertEqual(self.fennik.keyboard_side(), LEFT)
        self.fennik.press("Down")
        self.expect_preview("b.png", "Druh: Obrázek PNG")
        self.expect_preview("b.png", "Rozměry: 40 × 20")
        self.fennik.press("Down")
        self.expect_preview("c.roura", "Druh: Zvláštní soubor")
        self.fennik.press("Right")
        self.expect_preview("d.zip", "Obsah: 1 soubor")
        self.fennik.expect("the list", lambda: self.fennik.list_items("Obsah"),
                           ["uvnitř.txt, textový dokument, 9\u00a0B"])
        self.fennik.press("Enter")
        self.fennik.expect_cursor("nadřazená složka")
        self.fennik.press("Down")
        self.expect_preview("uvnitř.txt", "Kódování: UTF-8")
        self.fennik.expect("the text", lambda: self.fennik.text("Text"), "v archivu")
        self.fennik.press("Esc")
        self.fennik.wait(lambda: not self.preview(), "the preview is closed")
        self.assertEqual(self.fennik.keyboard_side(), LEFT)

    def test_gives_way_to_the_other_panel(self):
        self.fennik.press("Down", "F3")
        self.expect_preview("Složka", "Druh: Složka")
        self.fennik.press("Tab")
        self.fennik.expect("the panel with the keyboard", self.fennik.keyboard_side, RIGHT)
        self.fennik.wait(lambda: not self.preview(), "the preview is closed")
        stays_so(lambda: not self.preview(), "the preview stays closed")

    def test_information_tells_what_is_in_a_folder(self):
        (self.left / "Složka" / "x").write_bytes(b"12345")
        self.fennik.press("Down", "Ctrl+I")
        dialog = self.fennik.wait(self.fennik.dialog, "the dialog is open")
        self.assertEqual((dialog.get_name(), dialog.get_description()), ("Složka", "Složka"))

        def labels():
            return [label.get_name() for label in self.fennik.shown("label", dialog)]
        self.fennik.wait(lambda: "5\u00a0B (5 bajtů)" in labels(), lambda: f"the size: {labels()}")
        self.assertIn("1 soubor, 0 složek", labels())
        self.fennik.expect("the focused control", self.fennik.focused, "Zavřít")
        self.fennik.press("Enter")
        self.fennik.wait(lambda: not self.fennik.dialog(), "the dialog is closed")
        self.assertEqual(row_name(self.fennik.cursor()), "Složka")


if __name__ == "__main__":
    main()
