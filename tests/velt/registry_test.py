"""velt registry and velt register, on a registry in the test's own folder."""

import os
import unittest

from velt_process import VeltTest

KEY = "HKLM\\SOFTWARE\\Acme"
CLASS = "HKEY_CLASSES_ROOT\\VeltGeneral.ErrInfo\\InprocServer32"


class Values(VeltTest):
    TYPES = [  # type, data, JSON of it, text of it
        ("text", ["[a, \"b\"]\\"], "[a, \"b\"]\\", "[a, \"b\"]\\\n"),
        ("text", ["caf\u00e9 \u4e2d"], "caf\u00e9 \u4e2d", "caf\u00e9 \u4e2d\n"),
        ("expand", ["%TEMP%\\x"], "%TEMP%\\x", "%TEMP%\\x\n"),
        ("texts", ["one", "two"], ["one", "two"], "one\ntwo\n"), ("texts", [], [], "\n"),
        ("dword", ["4294967295"], 4294967295, "4294967295\n"), ("dword", ["0xFA000"], 1024000, "1024000\n"),
        ("dword-be", ["258"], 258, "258\n"),
        ("qword", ["0x123456789abcdef0"], 0x123456789ABCDEF0, "1311768467463790320\n"),
        ("binary", ["00ff10"], "00ff10", "00ff10\n"), ("none", [], "", "\n"),
    ]

    def test_set_get_delete(self):
        for kind, data, value, text in self.TYPES:
            with self.subTest(kind=kind, data=data):
                self.velt("registry", "set", KEY, "@", *data, "--type", kind)
                get = ["registry", "get", "hkey_local_machine\\software\\ACME", "@"]
                self.assertEqual(self.velt(*get), text)
                self.assertEqual(self.answer(*get), {"type": kind, "data": value})
                self.velt("registry", "delete", KEY, "@")
                self.assertEqual(self.velt(*get, status=1), "")

    def test_whole_keys(self):
        self.velt("registry", "set", KEY, "a", "1")
        self.velt("registry", "set", KEY + "\\Sub", "b", "2", "-t", "dword")
        self.assertEqual(self.answer("registry", "get", KEY), {"a": {"type": "text", "data": "1"}})
        self.assertEqual(self.velt("registry", "list", KEY),
                         "HKEY_LOCAL_MACHINE\\SOFTWARE\\Acme\n  a  text  1\n  [Sub]\n")
        self.assertEqual(self.answer("registry", "list", "HKLM\\SOFTWARE", "-r"), {
            "values": {}, "keys": {"Acme": {
                "values": {"a": {"type": "text", "data": "1"}},
                "keys": {"Sub": {"values": {"b": {"type": "dword", "data": 2}}, "keys": {}}}}}})
        self.velt("registry", "delete", KEY)
        for command in (["get", KEY], ["list", KEY + "\\Sub"], ["delete", KEY], ["export", KEY]):
            self.velt("registry", *command, status=1)

    def test_export_and_import(self):
        for kind, data, value, _ in self.TYPES:
            self.velt("registry", "set", KEY, f"{kind} {value}", *data, "-t", kind)
        before = self.answer("registry", "list", KEY)
        for option, mark in ([], b"Windows"), (["--utf16"], b"\xff\xfeW\0"):
            self.velt("registry", "export", KEY, "-o", "acme.reg", *option)
            self.assertTrue(self.content("acme.reg").startswith(mark))
            self.velt("registry", "delete", KEY)
            self.velt("registry", "import", "acme.reg")
            self.assertEqual(self.answer("registry", "list", KEY), before)
        self.velt("registry", "import", "-",
                  stdin=b"REGEDIT4\n[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Acme]\n")
        self.velt("registry", "get", KEY, status=1)

    def test_a_malformed_import_changes_nothing(self):
        self.velt("registry", "set", KEY, "a", "1")
        before = self.content("registry/machine.reg")
        head = b"Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Acme]\r\n"
        for text, line in [
            (b"", 1),
            (b"[HKEY_LOCAL_MACHINE\\SOFTWARE]\n", 1),
            (head + b"\"a\"=\"2\"\r\n\"b\"=dword:xyz\r\n", 5),
            (head + b"\"a\"=\"2\"\r\nnonsense\r\n", 5),
            (head + b"[HKEY_NOWHERE\\A]\r\n", 4),
        ]:
            with self.subTest(text=text):
                self.write("bad.reg", text)
                self.assertRegex(self.velt("registry", "import", "bad.reg", status=2),
                                 rf"^velt: bad\.reg:{line}: \w")
                self.assertEqual(self.content("registry/machine.reg"), before)

    def test_refused(self):
        for arguments in [
            ["get", "SOFTWARE\\Acme"], ["delete", "HKLM"], ["set", KEY, "a", "x", "-t", "dword"],
            ["set", KEY, "a", "4294967296", "-t", "dword"], ["set", KEY, "a", "1", "2"],
            ["set", KEY, "a", "0", "-t", "binary"], ["set", KEY, "a", "0g", "-t", "binary"],
            ["set", KEY, "a", "b", "", "-t", "texts"], ["set", KEY, "a", "1", "-t", "word"],
            ["import", "nowhere.reg"], ["set", "HKLM\\a\nb", "a", "1"],
        ]:
            with self.subTest(arguments=arguments):
                self.assertTrue(self.velt("registry", *arguments, status=2).startswith("velt: "))
        self.assertFalse(os.path.exists(self.path("registry/machine.reg")))
        os.makedirs(self.path("registry/machine.reg"))
        for arguments in ["get", KEY], ["set", KEY, "a", "1"], ["delete", KEY], ["export", KEY]:
            self.assertIn("machine.reg", self.velt("registry", *arguments, status=2))


class Members(VeltTest):
    def test_each_answers(self):
        root, key = "int32:-2147483646", "SOFTWARE\\Acme\\DbAccess"
        for member, given, result, came_back in [
            ("saveInfoForConnection", ["Acme", "db ", "me", "pw"], 0, {}),
            ("getInfoForConnection", ["Acme", "", "", ""], 0,
             {"sConnectionDbName": "db", "sConnectionUser": "me", "sConnectionPassword": "pw"}),
            ("getKeyValue", [root, key, "connectionUser"], "me",
             {"KeyRoot": -2147483646, "KeyName": key, "SubKeyRef": "connectionUser"}),
            ("isRegistryInWritePermission", [], True, {}),
            ("setTarnviewConfValue", ["S", "k", "v"], 0,
             {"sSection": "S", "sKeyName": "k", "sValue": "v"}),
            ("getTarnviewConfValue", ["s", "K", ""], 0,
             {"sSection": "s", "sKeyName": "K", "sValue": "v"}),
            ("setTarnviewDatFileValue", ["whole"], 0, {}),
            ("isTarnviewDatInWritePermission", [], True, {}),
        ]:
            with self.subTest(member=member):
                self.velt("registry", "set", "HKLM\\SOFTWARE\\Zoltra\\LogSystem", "Path",
                          self.folder + "\\")
                said = self.answer("call", "RegistryUtility." + member, *given)
                answered = said["result"]
                self.assertEqual(answered["numberInfo"] if isinstance(answered, dict) else answered, result)
                self.assertEqual(said.get("arguments", {}), came_back)
        self.assertEqual(self.content("Tarnview.dat"), b"whole\r\n[License]\r\nWriteTest=\r\n")


class Registration(VeltTest):
    def test_register_and_unregister(self):
        library = {each["subject"]: each["value"] for each in self.answer("doctor")}["library"]
        self.assertIn(library, self.velt("register"))
        self.assertEqual(self.velt("registry", "get", CLASS, "@"), library + "\n")
        self.assertEqual(self.velt("unregister", "--quiet"), "")
        self.velt("registry", "get", CLASS, status=1)
        os.remove(self.path("registry/machine.reg"))
        os.makedirs(self.path("registry/machine.reg"))
        self.assertIn("velt: error 75: ", self.velt("register", status=2))


if __name__ == "__main__":
    unittest.main()
