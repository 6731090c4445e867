"""velt call: what arguments mean, what is printed, what the exit status says."""

import base64
import unittest

from velt_process import VeltTest

NEW = {"numberInfo": 0, "descriptionInfo": "", "typeInfo": 0, "locationInfo": "",
       "processInfo": "", "classInfo": "", "stepInfo": ""}
CLEARED = NEW | {"typeInfo": 4}


class Arguments(VeltTest):
    # The library's text of each, as it writes it to a file.
    AS_TEXT = [
        ("plain", "plain"), ("", ""), ("text:int16:5", "int16:5"), ("int16:-5", "-5"),
        ("int32:70000", "70000"), ("single:0.1", "0.1"), ("double:1e15", "1E+15"),
        ("currency:-19.99", "-19.99"), ("currency:922337203685477.5807", "922337203685477.5807"),
        ("decimal:79228162514264337593543950335", "79228162514264337593543950335"),
        ("decimal:-0.0000000000000000000000000001", "-0.0000000000000000000000000001"),
        ("date:2024-02-29", "2/29/2024"), ("date:13:45:00", "1:45:00 PM"),
        ("date:1899-12-29T12:00", "12/29/1899 12:00:00 PM"), ("boolean:true", "True"), ("empty:", ""),
        ("json:-7", "-7"), ("json:2147483648", "2147483648"),
        ('json:"caf\u00e9 \\u20ac"', "caf\u00e9 \u20ac"), ("[a,b]", "[a,b]"), ("++", "++"),
        ("call", "call"), ("-5", "-5"), ("http://host/", "http://host/"), ("@text.txt", "from a file\n"),
        ("@-", "from standard input"),
    ]

    def test_kinds(self):
        self.write("text.txt", b"from a file\n")
        for argument, text in self.AS_TEXT:
            with self.subTest(argument=argument):
                self.velt("call", "FileUtility.writeFile", "out.txt", "0", argument,
                          stdin=b"from standard input")
                self.assertEqual(self.content("out.txt").decode("cp1252"), text + "\r\n")

    REFUSED = [
        "int16:32768", "int16:", "int32:1.5", "double:1,5", "currency:1.23456",
        "currency:922337203685477.5808", "decimal:79228162514264337593543950336", "decimal:1e5",
        "date:2023-02-29", "date:24:00:00", "date:2024-01-31T", "boolean:True", "null:x",
        "bytes:A", "bytes:QUJ*", "json:", "json:[1]", 'json:[["a"],"b"]', "@nowhere", "json:@.",
    ]

    def test_refused_before_the_call(self):
        for argument in self.REFUSED:
            with self.subTest(argument=argument):
                said = self.velt("call", "FileUtility.writeFile", "out.txt", "0", argument, status=2)
                self.assertTrue(said.startswith("velt: "), said)
                self.assertRaises(FileNotFoundError, self.content, "out.txt")

    def test_dashes_stand_behind_two(self):
        self.velt("call", "FileUtility.writeFile", "out.txt", "0", "-x", status=2)
        self.velt("call", "FileUtility.writeFile", "--", "out.txt", "0", "--json")
        self.assertEqual(self.content("out.txt"), b"--json\r\n")


class Results(VeltTest):
    def test_in_out_arguments_and_records(self):
        table = 'json:[["a","b c"],["1"]]'
        said = self.answer("call", "FileUtility.getCsvStringFromArray", "--arg", "LNUMROWS=2",
                           "--arg", "sArrayValue=" + table, "--arg", "lNumColumns=2",
                           "--arg", "sDelim=")
        self.assertEqual(said, {"result": CLEARED, "arguments": {
            "sStringFile": '"a";"b c"\r\n1;\r\n', "sArrayValue": [["a", "b c"], ["1", ""]]}})

        self.write("table.csv", b"x;y\r\n\"1;2\";3\r\n")
        said = self.answer("call", "FileUtility.getArrayFromCsvFile", "table.csv", "json:[]", "2")
        self.assertEqual(said["arguments"],
                         {"sArrayValue": [["x", "y"], ["1;2", "3"]], "lNumColumns": 2})

        said = self.answer("call", "ErrInfo.clone")
        self.assertEqual(said, {"result": CLEARED, "arguments": {"oObject": NEW}})

        said = self.answer("call", "ErrInfo.ErrInfoNew", 'json:{"vntNumberInfo":12}')
        self.assertEqual(said, {"result": 0, "arguments": {"structErrInfo": {"vntNumberInfo": 12}}})

    # A number of every kind, as it comes back.
    COME_BACK = [
        ("int16:10", 10), ("single:10.1", 10.1), ("double:1e1", 10.0), ("10", "10"),
        ("currency:10.5000", "10.5"), ("decimal:10.50", "10.5"),
        ("decimal:79.228162514264337593543950335", "79.228162514264337593543950335"),
        ("date:1900-01-09", "1900-01-09"), ("date:1900-01-09T23:59:59", "1900-01-09T23:59:59"),
    ]

    def test_kinds(self):
        self.environment["VELTGENERAL_FORM"] = "image:form.png"
        for argument, expected in self.COME_BACK:
            with self.subTest(argument=argument):
                said = self.answer("call", "Reporting.prtTesto", "1", "1", argument, "false", "false", "x")
                self.assertEqual(said["arguments"], {"iSize": expected})

    def test_readable(self):
        self.write("text.txt", b"one\r\ntwo")
        for arguments, text in [
            (["Funzioni.isDateYYYYMMDD", "20240229"], "true\n"),
            (["errinfo.NUMBERINFO"], "0\n"),
            (["VeltGeneral.ErrInfo.clear"], ""),
            (["FileUtility.readFile", "text.txt"],
             "result:\n  numberInfo: 0\n  descriptionInfo:\n  typeInfo: 0\n  locationInfo:\n"
             "  processInfo:\n  classInfo:\n  stepInfo:\nsTextFile: one\r\ntwo\n"),
        ]:
            with self.subTest(arguments=arguments):
                self.assertEqual(self.velt("call", *arguments), text)

    def test_bytes(self):
        content = bytes(range(256)) * 3
        for size in (766, 767, 768):
            self.write("data", content[:size])
            said = self.answer("call", "FileUtility.readBinaryFile", "data")
            self.assertEqual(base64.b64decode(said["arguments"]["vntTextFile"]), content[:size])

    def test_output(self):
        self.write("data", b"\x00\x80\xff")
        call = ["call", "FileUtility.readBinaryFile", "data", "--output"]
        self.assertEqual(self.answer(*call, "copy"), {"result": NEW, "arguments": {}})
        self.assertEqual(self.content("copy"), b"\x00\x80\xff")
        # A text goes out in UTF-8.
        self.assertEqual(self.velt("call", "FileUtility.readFile", "data", "-o", "-"),
                         "\x00\u20ac\u00ff")
        # A failure leaves the file alone.
        self.velt("call", "FileUtility.readFile", "nowhere", "-o", "copy", status=1)
        self.assertEqual(self.content("copy"), b"\x00\x80\xff")
        self.velt("call", "Funzioni.isDateYYYYMMDD", "x", "-o", "copy", status=2)
        self.velt("call", "FileUtility.readFile", "data", "-o", "nowhere/copy", status=2)

    def test_failures(self):
        said = self.answer("call", "FileUtility.readFile", "nowhere", status=1)
        self.assertEqual(said["result"], {
            "numberInfo": 53, "descriptionInfo": "File not found", "typeInfo": 1,
            "locationInfo": "readFile", "processInfo": "VELTGENERAL", "classInfo": "FileUtility",
            "stepInfo": ""})
        for arguments, message in [
            (["Nobody.readFile"], "error 429: Cannot create object"),
            (["FileUtility.nothing"], "error 438: Object does not support this property or method"),
            (["FileUtility.readFile", "a", "--arg", "other=1"], "error 448: Named argument not found"),
            (["FileUtility.writeFile", "a", "null:", ""], "error 94: Invalid use of Null"),
            (["FileUtility.writeFile", "a", "0", "missing:"], "error 449: Argument not optional"),
            (["FileUtility"], "CLASS.MEMBER expected instead of 'FileUtility'"),
            (["ErrInfo.clear", "--set", "numberInfo=1"],
             "error 438: Object does not support this property or method"),
        ]:
            with self.subTest(arguments=arguments):
                self.assertEqual(self.velt("call", *arguments, status=2), f"velt: {message}\n")


if __name__ == "__main__":
    unittest.main()
