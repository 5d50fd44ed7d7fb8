"""Exchanges files with other programs through the clipboard of a real desktop."""
import os
import subprocess
import unittest

from support import PATIENCE, Desktop, main, prepared_program, wait_until

URLS = "text/uri-list"
COPIED = "x-special/gnome-copied-files"
CUT = "application/x-kde-cutselection"
NAMES = ("účet 100%.pdf".encode(), b"bytes \xe8\xff", b"line\nfeed")


def setUpModule():
    Clipboard.program = prepared_program()
    Clipboard.desktop = Desktop()


class Clipboard(unittest.TestCase):
    desktop = None
    program = None

    def ask(self, *command):
        return subprocess.run(command, env=self.desktop.environment, check=True,
                              capture_output=True, timeout=PATIENCE).stdout

    def put(self, content, target):
        """As another program does; it has only one format."""
        subprocess.run(["xclip", "-selection", "clipboard", "-target", target], input=content,
                       env=self.desktop.environment, check=True, timeout=PATIENCE,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def content(self, target):
        return self.ask("xclip", "-selection", "clipboard", "-out", "-target", target)

    def test_other_programs_find_the_files_in_every_format(self):
        paths = [b"/srv/" + name for name in NAMES]
        printed = self.desktop.new_folder() / "printed"
        with open(printed, "wb") as output:
            program = self.desktop.spawn([os.fsencode(self.program), b"put", *paths], stdout=output)
        self.addCleanup(program.wait)
        self.addCleanup(program.kill)
        wait_until(lambda: printed.read_bytes(), "the files are in the clipboard")
        urls = [b"file:///srv/%C3%BA%C4%8Det%20100%25.pdf", b"file:///srv/bytes%20%E8%FF",
                b"file:///srv/line%0Afeed"]
        self.assertEqual(self.content(URLS), b"".join(url + b"\r\n" for url in urls))
        self.assertEqual(self.content(COPIED), b"\n".join([b"copy", *urls]))
        self.assertEqual(self.content(CUT), b"0")
        self.assertEqual(self.content("text/plain"), b"\n".join(paths))
        # Another run of the program is another program too.
        self.assertEqual(self.ask(self.program, "files"),
                         b"copy\n" + b"".join(p + b"\n" for p in paths))

    def test_reads_the_files_of_other_programs(self):
        for target, content, found in (
                (URLS, b"file:///srv/a%20b\r\nfile:///srv/%E8\r\n", b"copy\n/srv/a b\n/srv/\xe8\n"),
                (COPIED, b"cut\nfile:///srv/a\nfile:///srv/b/", b"cut\n/srv/a\n/srv/b\n"),
                (COPIED, b"copy\nfile:///srv/a", b"copy\n/srv/a\n"),
                ("UTF8_STRING", "/srv/účet\n/srv/b".encode(), "copy\n/srv/účet\n/srv/b\n".encode()),
                ("UTF8_STRING", b"only /srv/words", b"copy\n"),
                (URLS, b"https://example.org/a\r\n", b"copy\n")):
            with self.subTest(target=target, content=content):
                self.put(content, target)
                self.assertEqual(self.ask(self.program, "files"), found)


if __name__ == "__main__":
    main()
