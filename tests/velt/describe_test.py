"""velt classes, describe, doctor, completion, and the program's own command line."""

import subprocess
import unittest

from velt_process import VeltTest


class Classes(VeltTest):
    def test_every_class_describes_itself(self):
        names = [each["name"] for each in self.answer("classes")]
        self.assertEqual(names[:2], ["ErrInfo", "FileUtility"])
        self.assertEqual([line.split()[0] for line in self.velt("classes").splitlines()], names)
        for name in names:
            said = self.answer("describe", name.upper())
            self.assertEqual(said["name"], name)
            lines = self.velt("describe", "VeltGeneral." + name).splitlines()
            published = [each["name"] for each in said["members"]]
            for enumeration, values in said.get("enumerations", {}).items():
                published += [enumeration, *(f"{key} = {value}" for key, value in values.items())]
            self.assertEqual(len(lines), 1 + len(published))
            for line, member in zip(lines[1:], published):
                self.assertIn(member, line)

    def test_signatures(self):
        for target, line in [
            ("ErrInfo.ErrInfo",
             "ErrInfo(lNumberInfo: int32, sDescriptionInfo: text, iTypeInfo: typeInfoCostant, "
             "sLocationInfo: text, [vntClassInfo: variant], [vntProcessInfo: variant], "
             "[vntStepInfo: variant]) -> int16"),
            ("ErrInfo.clear", "clear()"),
            ("errinfo.stepinfo", "stepInfo -> variant"),
            ("FileUtility.readFile",
             "readFile(sFileName: text, in/out sTextFile: text) -> ErrInfo"),
        ]:
            with self.subTest(target=target):
                self.assertEqual(self.velt("describe", target).splitlines()[1:], ["  " + line])
        member = self.answer("describe", "FileUtility.numFileInDir")["members"][0]
        self.assertEqual(member, {
            "name": "numFileInDir", "kind": "method", "result": "ErrInfo", "parameters": [
                {"name": "sDirectory", "type": "text", "inOut": False, "optional": False},
                {"name": "iNumFile", "type": "int16", "inOut": True, "optional": False}]})

    def test_unknown(self):
        self.assertIn("error 429", self.velt("describe", "Nobody", status=2))
        self.assertIn("error 438", self.velt("describe", "ErrInfo.nothing", status=2))


class CommandLine(VeltTest):
    def test_helps_show_examples(self):
        for path, text in self.helps():
            with self.subTest(path=path):
                self.assertIn("Examples:\n  ", text)

    def test_errors_are_on_standard_error(self):
        for arguments in [[], ["nothing"], ["classes", "more"], ["classes", "--nothing"], ["call"],
                          ["completion", "tcsh"], ["describe"]]:
            with self.subTest(arguments=arguments):
                self.assertTrue(self.velt(*arguments, status=2).startswith("velt: "))
        self.assertRegex(self.velt("--version"), r"^velt \d+\.\d+\.\d+\n$")


class Completion(VeltTest):
    def offered(self, *words):
        script = self.write("velt.bash", self.velt("completion", "bash").encode())
        line = " ".join(f"'{word}'" for word in words)
        done = subprocess.run(
            ["bash", "-c", f"source {script}; COMP_WORDS=({line}); COMP_CWORD={len(words) - 1}; "
                           "_velt; printf '%s\\n' \"${COMPREPLY[@]}\""],
            capture_output=True, text=True, check=True)
        return done.stdout.split()

    def test_bash(self):
        for words, offered in [
            (["velt", "desc"], ["describe"]),
            (["velt", "classes", "--j"], ["--json"]),
            (["velt", "describe", "--json", "ErrI"], ["ErrInfo"]),
            (["velt", "call", "FileUtility.readF"], ["FileUtility.readFile"]),
            (["velt", "completion", "b"], ["bash"]),
        ]:
            with self.subTest(words=words):
                self.assertEqual(self.offered(*words), offered)

    def test_zsh_and_fish(self):
        script = self.write("velt.zsh", self.velt("completion", "zsh").encode())
        # What the completion would hand to the shell's own functions, which need a terminal.
        done = subprocess.run(
            ["zsh", "-f", "-c", "_describe() { print -rl -- $offered }; compadd() { print -rl -- $plain }; "
             "_files() { }; compdef() { }; "
             f"source {script}; words=(velt describe x); CURRENT=3; _velt"],
            capture_output=True, text=True, check=True, cwd=self.folder)
        self.assertIn("--json:Print JSON on one line", done.stdout.splitlines())
        self.assertIn("ErrInfo", done.stdout.splitlines())
        script = self.write("velt.fish", self.velt("completion", "fish").encode())
        done = subprocess.run(["fish", "--no-config", "-c",
                               f"source {script}; complete -C 'velt registry g'"],
                              capture_output=True, text=True, check=True, cwd=self.folder,
                              env=self.environment | {"HOME": self.folder, "XDG_CONFIG_HOME": self.folder})
        self.assertEqual(done.stdout, "get\tPrint one value, or all values of a key\n")


class Doctor(VeltTest):
    def test_who_said_so(self):
        other = dict(VELTGENERAL_LOCALE="", LANG="C", LC_NUMERIC="it_IT.UTF-8",
                     VELTGENERAL_DRIVE_Q=self.folder, VELTGENERAL_FORM="image:a.png",
                     VELTGENERAL_PRINTER="pdf:a.pdf", VELTGENERAL_CODEPAGE="CP1250",
                     VELTGENERAL_MODULE_DIR=self.folder)
        for environment, expected in [
            ({}, {"locale": ("en_US", "VELTGENERAL_LOCALE"), "code page": ("CP1252", "default"),
                  "drives": ("none", "default"),
                  "machine registry": (self.path("registry/machine.reg"), "VELTGENERAL_REGISTRY_DIR"),
                  "library's own folder": (self.folder, "VELTGENERAL_HOME")}),
            (other, {"decimal mark": (",", "LC_NUMERIC"), "date order": ("month, day, year", "LANG"),
                     "drive Q:": (self.folder, "VELTGENERAL_DRIVE_Q"),
                     "report form": ("image:a.png", "VELTGENERAL_FORM"),
                     "printer": ("pdf:a.pdf", "VELTGENERAL_PRINTER"),
                     "code page": ("CP1250", "VELTGENERAL_CODEPAGE"),
                     "HTTP module": (self.path("veltgeneral-http.so (missing)"), "VELTGENERAL_MODULE_DIR")}),
        ]:
            found = {each["subject"]: (each["value"], each["source"])
                     for each in self.answer("doctor", **environment)}
            self.assertEqual(found | expected, found)
            self.assertEqual(found["PDF generator"][1], "VELTGENERAL_MODULE_DIR")


if __name__ == "__main__":
    unittest.main()
