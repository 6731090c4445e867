"""velt registry and velt register, on a registry in the test's own folder."""

import os

from velt_process import VeltTest

KEY = "HKLM\\SOFTWARE\\Acme"
CLASS = "HKEY_CLASSES_ROOT\\VeltGeneral.ErrInfo\\InprocServer32"


class Values(VeltTest):
    TYPES = [  # type, data, JSON of it, text of it
        ("text", ["[\"caf\u00e9 \u4e2d\"]\\"], "[\"caf\u00e9 \u4e2d\"]\\", "[\"caf\u00e9 \u4e2d\"]\\\n"),
        ("expand", ["%TEMP%\\x"], "%TEMP%\\x", "%TEMP%\\x\n"),
        ("texts", ["one", "two"], ["one", "two"], "one\ntwo\n"), ("texts", [], [], "\n"),
        ("dword", ["4294967295"], 4294967295, "4294967295\n"), ("dword", ["0xFA000"], 1024000, "1024000\n"),
        ("dword-be", ["258"], 258, "258\n"),
        ("qword", ["0x123456789abcdef0"], 0x123456789ABCDEF0, "1311768467463790320\n"),
        ("binary", ["00ff10"], "00ff10", "00ff10\n"), ("none", [], "", "\n"),
    ]

    def test_every_type_in_the_registry_and_in_files(self):
        for kind, data, value, text in self.TYPES:
            with self.subTest(data, kind=kind):
                get = ["registry", "get", "hkey_local_machine\\software\\ACME", f"{kind} {value}"]
                self.velt("registry", "set", KEY, f"{kind} {value}", *data, "--type", kind)
                self.assertEqual((self.velt(*get), self.answer(*get)), (text, {"type": kind, "data": value}))
        before = self.answer("registry", "list", KEY)
        for option, mark in ([], b"Windows"), (["--utf16"], b"\xff\xfeW\0"):
            self.velt("registry", "export", KEY, "-o", "acme.reg", *option)
            self.assertTrue(self.content("acme.reg").startswith(mark))
            self.velt("registry", "import", "-",
                      stdin=b"REGEDIT4\n[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Acme]\n")
            self.velt("registry", "get", KEY, status=1)
            self.velt("registry", "import", "acme.reg")
            self.assertEqual(self.answer("registry", "list", KEY), before)

    def test_whole_keys(self):
        self.check(["registry"], [(["set", KEY, "@", "one"], ""), (["set", KEY, "a", "1"], ""),
                                  (["set", KEY + "\\Sub", "b", "2", "-t", "dword"], ""),
                                  (["get", KEY, "@"], "one\n"), (["delete", KEY, "@"], ""),
                                  (["get", KEY, "@"], "", 1)])
        a, b = {"a": {"type": "text", "data": "1"}}, {"b": {"type": "dword", "data": 2}}
        self.assertEqual(self.answer("registry", "get", KEY), a)
        self.assertEqual(self.velt("registry", "list", KEY),
                         "HKEY_LOCAL_MACHINE\\SOFTWARE\\Acme\n  a  text  1\n  [Sub]\n")
        self.assertEqual(self.answer("registry", "list", "HKLM\\SOFTWARE", "-r"), {"values": {}, "keys": {
            "Acme": {"values": a, "keys": {"Sub": {"values": b, "keys": {}}}}}})
        self.check(["registry"], [(["delete", KEY], ""), (["get", KEY], "", 1), (["export", KEY], "", 1),
                                  (["list", KEY + "\\Sub"], "", 1), (["delete", KEY], "", 1)])

    def test_refused(self):
        self.check_refused(["registry"], [
            ["get", "SOFTWARE\\Acme"], ["delete", "HKLM"], ["set", KEY, "a", "x", "-t", "dword"],
            ["set", KEY, "a", "4294967296", "-t", "dword"], ["set", KEY, "a", "1", "2"],
            ["set", KEY, "a", "0", "-t", "binary"], ["set", KEY, "a", "0g", "-t", "binary"],
            ["set", KEY, "a", "b", "", "-t", "texts"], ["set", KEY, "a", "1", "-t", "word"],
            ["import", "nowhere.reg"], ["set", "HKLM\\a\nb", "a", "1"]])
        self.write("bad.reg", b"REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\A]\n\"a\"=\"2\"\nnonsense\n")
        self.assertRegex(self.velt("registry", "import", "bad.reg", status=2), r"^velt: bad\.reg:5: \w")
        self.assertFalse(os.path.exists(self.path("registry/machine.reg")))
        os.makedirs(self.path("registry/machine.reg"))
        for arguments in ["get", KEY], ["set", KEY, "a", "1"], ["delete", KEY], ["export", KEY]:
            self.assertIn("machine.reg", self.velt("registry", *arguments, status=2))


class Registration(VeltTest):
    def test_register_and_unregister(self):
        library = {each["subject"]: each["value"] for each in self.answer("doctor")}["library"]
        self.assertIn(library, self.velt("register"))
        self.check([], [(["registry", "get", CLASS, "@"], library + "\n"), ("unregister --quiet", ""),
                        (["registry", "get", CLASS], "", 1)])
        os.remove(self.path("registry/machine.reg"))
        os.makedirs(self.path("registry/machine.reg"))
        self.assertIn("velt: error 75: ", self.velt("register", status=2))
