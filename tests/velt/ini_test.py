"""velt ini: what a script reads and what it leaves in the file."""

import os
import unittest

from velt_process import VeltTest

FILE = (b"; comment\r\n[Main]\r\nName = \"Anna B\" \r\nEmpty=\r\nname=second\r\n\r\n"
        b"[Other]\r\nPrice=\x80 5\r\nLong=" + b"x" * 5000 + b"\r\n[main]\r\nlost=1\r\n")


class Ini(VeltTest):
    def setUp(self):
        super().setUp()
        self.write("app.ini", FILE)

    def test_get(self):
        for arguments, text, status in [
            (["MAIN", "name"], "Anna B\n", 0),
            (["Main", "Empty"], "\n", 0),
            (["Other", "Price"], "\u20ac 5\n", 0),
            (["Other", "Long"], "x" * 5000 + "\n", 0),
            (["Main", "lost"], "", 1),
            (["Main", "Empty", "-d", "no"], "\n", 0),
            (["Main", "lost", "-d", "[no]"], "[no]\n", 0),
            (["Nobody", "Name"], "", 1),
        ]:
            with self.subTest(arguments=arguments):
                self.assertEqual(self.velt("ini", "get", "app.ini", *arguments, status=status), text)
        self.assertEqual(self.velt("ini", "get", "nowhere.ini", "a", "b", status=1), "")
        self.assertIsNone(self.answer("ini", "get", "app.ini", "Main", "lost", status=1))

    def test_list(self):
        self.assertEqual(self.velt("ini", "list", "app.ini", "main"), "Name=Anna B\nEmpty=\nname=Anna B\n")
        self.assertIn("\n[Other]\nPrice=\u20ac 5\n", self.velt("ini", "list", "app.ini"))
        everything = self.answer("ini", "list", "app.ini")
        self.assertEqual(everything["Other"], {"Price": "\u20ac 5", "Long": "x" * 5000})

    def test_changes_touch_their_lines_alone(self):
        for arguments, before, after in [
            (["set", "app.ini", "main", "NAME", "[a]"], b"Name = \"Anna B\" \r\n", None),
            (["set", "app.ini", "Other", "New", ""], b"[main]", b"New=\r\n[main]"),
            (["delete", "app.ini", "Main", "empty"], b"Empty=\r\n", b""),
            (["delete", "app.ini", "Main", "nothing"], b"", b""),
            (["delete", "app.ini", "Other"], FILE[FILE.index(b"[Other]"):FILE.index(b"[main]")], b""),
        ]:
            with self.subTest(arguments=arguments):
                self.write("app.ini", FILE)
                self.velt("ini", *arguments)
                said = self.content("app.ini")
                if after is None:
                    self.assertRegex(said, rb"(?i)\r\nname ?= ?\[a\]\r\nEmpty=")
                else:
                    self.assertEqual(said, FILE.replace(before, after, 1) if before else FILE)

    def test_encodings(self):
        self.velt("ini", "set", "new.ini", "S", "K", "\u20ac")
        self.assertEqual(self.content("new.ini"), b"[S]\r\nK=\x80\r\n")
        self.velt("ini", "set", "new.ini", "S", "K", "\u4e2d", status=2)
        self.assertEqual(self.content("new.ini"), b"[S]\r\nK=\x80\r\n")
        self.velt("ini", "set", "wide.ini", "S", "K", "\u4e2d", "--utf16")
        self.velt("ini", "set", "wide.ini", "S", "L", "\u4e2d")
        self.assertEqual(self.content("wide.ini").decode("utf-16"), "[S]\r\nK=\u4e2d\r\nL=\u4e2d\r\n")
        self.assertEqual(self.velt("ini", "get", "wide.ini", "s", "l"), "\u4e2d\n")

    def test_refused(self):
        os.mkdir(self.path("folder"))
        for arguments in [["get", "app.ini", "", "a"], ["set", "app.ini", "a", "", "b"],
                          ["set", "app.ini", "a", "b", "c\nd=e"], ["set", "nowhere/a.ini", "a", "b", "c"],
                          ["get", "folder", "a", "b"], ["delete", "app.ini"]]:
            with self.subTest(arguments=arguments):
                self.assertTrue(self.velt("ini", *arguments, status=2).startswith("velt: "))
        self.assertEqual(self.content("app.ini"), FILE)
        os.chmod(self.path("app.ini"), 0o444)
        self.assertEqual(self.velt("ini", "set", "app.ini", "a", "b", "c", status=2),
                         "velt: cannot write app.ini\n")


if __name__ == "__main__":
    unittest.main()
