"""velt ini: what a script reads and what it leaves in the file."""

import os

from velt_process import VeltTest

FILE = (b"; comment\r\n[Main]\r\nName = \"Anna B\" \r\nEmpty=\r\nname=second\r\n\r\n"
        b"[Other]\r\nPrice=\x80 5\r\nLong=" + b"x" * 5000 + b"\r\n[main]\r\nlost=1\r\n")


class Ini(VeltTest):
    def setUp(self):
        super().setUp()
        self.write("app.ini", FILE)

    def test_reading(self):
        main = "Name=Anna B\nEmpty=\nname=Anna B\n"
        self.check(["ini"], [
            ("get app.ini MAIN name", "Anna B\n"),
            ("get app.ini Main lost", "", 1),
            ("get app.ini Main lost --json", "null\n", 1),
            ("get app.ini Main Empty -d no", "\n"),
            ("get app.ini Main lost -d [no]", "[no]\n"),
            ("get nowhere.ini a b", "", 1),
            ("list app.ini main", main),
            ("list app.ini", f"[Main]\n{main}[Other]\nPrice=\u20ac 5\nLong={'x' * 5000}\n[main]\n{main}"),
        ])
        self.assertEqual(self.answer("ini", "list", "app.ini")["Other"],
                         {"Price": "\u20ac 5", "Long": "x" * 5000})

    def test_changes_touch_their_lines_alone(self):
        other = FILE[FILE.index(b"[Other]"):FILE.index(b"[main]")]
        for arguments, before, after in [
            (["set", "app.ini", "main", "NAME", "[a]"], b"Name = \"Anna B\" \r\n", b"Name = [a]\r\n"),
            (["delete", "app.ini", "Main", "empty"], b"Empty=\r\n", b""),
            (["delete", "app.ini", "Main", "nothing"], b"", b""),
            (["delete", "app.ini", "Other"], other, b""),
        ]:
            self.write("app.ini", FILE)
            self.velt("ini", *arguments)
            self.assertEqual(self.content("app.ini"), FILE.replace(before, after, 1), arguments)

    def test_encodings(self):
        self.velt("ini", "set", "new.ini", "S", "K", "\u20ac")
        self.velt("ini", "set", "new.ini", "S", "K", "\u4e2d", status=2)
        self.assertEqual(self.content("new.ini"), b"[S]\r\nK=\x80\r\n")
        self.velt("ini", "set", "wide.ini", "S", "K", "\u4e2d", "--utf16")
        self.velt("ini", "set", "wide.ini", "S", "L", "\u4e2d")
        self.assertEqual(self.content("wide.ini").decode("utf-16"), "[S]\r\nK=\u4e2d\r\nL=\u4e2d\r\n")
        self.check(["ini"], [("get wide.ini s l", "\u4e2d\n")])

    def test_refused(self):
        os.mkdir(self.path("folder"))
        self.check_refused(["ini"], [
            ["get", "app.ini", "", "a"], ["set", "app.ini", "a", "", "b"],
            ["set", "app.ini", "a", "b", "c\nd=e"], "set nowhere/a.ini a b c", "get folder a b",
            "delete app.ini"])
        self.assertEqual(self.content("app.ini"), FILE)
        os.chmod(self.path("app.ini"), 0o444)
        self.check(["ini"], [("set app.ini a b c", "velt: cannot write app.ini\n", 2)])
