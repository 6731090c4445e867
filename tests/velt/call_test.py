"""velt call: what arguments mean, what is printed, what the exit status says."""

import base64

from velt_process import VeltTest

NEW = {"numberInfo": 0, "descriptionInfo": "", "typeInfo": 0, "locationInfo": "",
       "processInfo": "", "classInfo": "", "stepInfo": ""}


class Arguments(VeltTest):
    # The library's text of each, as it writes it to a file.
    AS_TEXT = {each: each for each in ("", "[a,b]", "++", "-5", "http://host/")} | {
        "text:int16:5": "int16:5", "int16:-5": "-5", "int32:70000": "70000", "single:0.1": "0.1",
        "double:1e15": "1E+15", "boolean:true": "True", "empty:": "",
        "currency:-19.99": "-19.99", "currency:922337203685477.5807": "922337203685477.5807",
        "decimal:79228162514264337593543950335": "79228162514264337593543950335",
        "decimal:-0.0000000000000000000000000001": "-0.0000000000000000000000000001",
        "date:2024-02-29": "2/29/2024", "date:1899-12-29T13:45": "12/29/1899 1:45:00 PM",
        "date:13:45:00": "1:45:00 PM", "json:2147483648": "2147483648", "json:-7": "-7",
        'json:"caf\u00e9 \\u20ac"': "caf\u00e9 \u20ac", "@text.txt": "from a file\n",
        "@-": "from standard input"}
    REFUSED = [
        "int16:32768", "int16:", "int32:1.5", "double:1,5", "currency:1.23456",
        "currency:922337203685477.5808", "decimal:79228162514264337593543950336", "decimal:1e5",
        "date:2023-02-29", "date:24:00:00", "date:2024-01-31T", "boolean:True", "null:x",
        "bytes:A", "bytes:QUJ*", "json:", "json:[1]", 'json:[["a"],"b"]', "@nowhere", "json:@.", "-x"]

    def test_kinds(self):
        self.write("text.txt", b"from a file\n")
        for argument, text in self.AS_TEXT.items():
            with self.subTest(argument):
                self.velt("call", "FileUtility.writeFile", "out.txt", "0", argument,
                          stdin=b"from standard input")
                self.assertEqual(self.content("out.txt").decode("cp1252"), text + "\r\n")
        self.velt("call", "FileUtility.writeFile", "--", "out.txt", "0", "--json")
        self.assertEqual(self.content("out.txt"), b"--json\r\n")

    def test_refused_before_the_call(self):
        self.check_refused(["call", "FileUtility.writeFile", "out.txt", "0"],
                           [[each] for each in self.REFUSED])
        self.assertRaises(FileNotFoundError, self.content, "out.txt")


class Results(VeltTest):
    def test_in_out_arguments_and_records(self):
        cleared = NEW | {"typeInfo": 4}
        for arguments, result, in_out in [
            (["FileUtility.getCsvStringFromArray", "--arg", "LNUMROWS=2", "--arg",
              'sArrayValue=json:[["a","b c"],["1"]]', "--arg", "lNumColumns=2", "--arg", "sDelim="],
             cleared, {"sStringFile": '"a";"b c"\r\n1;\r\n', "sArrayValue": [["a", "b c"], ["1", ""]]}),
            (["ErrInfo.clone"], cleared, {"oObject": NEW}),
            (["ErrInfo.ErrInfoNew", 'json:{"vntNumberInfo":12}'], 0, {"structErrInfo": {"vntNumberInfo": 12}}),
        ]:
            self.assertEqual(self.answer("call", *arguments), {"result": result, "arguments": in_out})

    def test_numbers_of_every_kind_come_back(self):
        self.environment["VELTGENERAL_FORM"] = "image:form.png"
        for argument, expected in {
            "int16:10": 10, "single:10.1": 10.1, "double:1e1": 10.0, "10": "10", "currency:10.5000": "10.5",
            "decimal:79.228162514264337593543950335": "79.228162514264337593543950335",
            "date:1900-01-09": "1900-01-09", "date:1900-01-09T23:59:59": "1900-01-09T23:59:59",
        }.items():
            said = self.answer("call", "Reporting.prtTesto", "1", "1", argument, "false", "false", "x")
            self.assertEqual(said["arguments"], {"iSize": expected})

    def test_readable(self):
        self.write("text.txt", b"one\r\ntwo")
        self.check(["call"], [
            ("Funzioni.isDateYYYYMMDD 20240229", "true\n"),
            ("errinfo.NUMBERINFO", "0\n"),
            ("VeltGeneral.ErrInfo.clear", ""),
            ("FileUtility.readFile text.txt",
             "result:\n  numberInfo: 0\n  descriptionInfo:\n  typeInfo: 0\n  locationInfo:\n"
             "  processInfo:\n  classInfo:\n  stepInfo:\nsTextFile: one\r\ntwo\n"),
        ])

    def test_a_code_page_without_ascii(self):
        self.environment["VELTGENERAL_CODEPAGE"] = "CP037"
        for member, given, changed in [("simpleEncrypt", "abz", {"sEncrypted": "\u00bb\u00f0\u00b7"}),
                                       ("simpleDecrypt", "\u00bb\u00f0\u00b7", {"sDecrypted": "abz"})]:
            self.assertEqual(self.answer("call", "Funzioni." + member, given)["arguments"], changed)

    def test_bytes_and_output(self):
        content = bytes(range(256)) * 3
        for size in (766, 767, 768):  # with every padding
            self.write("data", content[:size])
            said = self.answer("call", "FileUtility.readBinaryFile", "data")
            self.assertEqual(base64.b64decode(said["arguments"]["vntTextFile"]), content[:size])
        self.write("data", b"\x00\x80\xff")
        self.assertEqual(self.answer("call", "FileUtility.readBinaryFile", "data", "--output", "copy"),
                         {"result": NEW, "arguments": {}})
        # A text goes out in UTF-8.
        self.check(["call"], [("FileUtility.readFile data -o -", "\x00\u20ac\u00ff")])
        self.velt("call", "FileUtility.readFile", "nowhere", "-o", "copy", status=1)
        self.check_refused(["call"], ["Funzioni.isDateYYYYMMDD x -o copy",
                                      "FileUtility.readFile data -o nowhere/copy"])
        # A failure has left the file alone.
        self.assertEqual(self.content("copy"), b"\x00\x80\xff")

    def test_failures(self):
        said = self.answer("call", "FileUtility.readFile", "nowhere", status=1)
        self.assertEqual(said["result"], NEW | {
            "numberInfo": 53, "descriptionInfo": "File not found", "typeInfo": 1,
            "locationInfo": "readFile", "processInfo": "VELTGENERAL", "classInfo": "FileUtility"})
        for arguments, message in {
            "Nobody.readFile": "error 429: Cannot create object\n",
            "FileUtility.readFile null: --arg other=1": "error 448: ",
            "FileUtility.writeFile a 0 missing:": "error 449: ",
            "ErrInfo.clear --set numberInfo=1": "error 438: ",
            "FileUtility": "CLASS.MEMBER expected instead of 'FileUtility'\n",
        }.items():
            said = self.velt("call", *arguments.split(), status=2)
            self.assertTrue(said.startswith("velt: " + message), said)
