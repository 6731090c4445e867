"""velt classes, describe and doctor: what there is and what is in force."""

import re

from velt_process import VeltTest


class Classes(VeltTest):
    def test_every_class_describes_itself(self):
        names = [each["name"] for each in self.answer("classes")]
        self.assertEqual(names[:2], ["ErrInfo", "FileUtility"])
        self.assertEqual([line.split()[0] for line in self.velt("classes").splitlines()], names)
        for name in names:
            said = self.answer("describe", name.upper())
            published = [name, *(each["name"] for each in said["members"])]
            for enumeration, values in said.get("enumerations", {}).items():
                published += [enumeration, *values]
            readable = self.velt("describe", "VeltGeneral." + name)
            self.assertEqual(re.findall(r"^ *(\w+)", readable, re.MULTILINE), published)

    def test_signatures(self):
        for target, line in [
            ("errinfo.stepinfo", "stepInfo -> variant"),
            ("FileUtility.readFile", "readFile(sFileName: text, in/out sTextFile: text) -> ErrInfo"),
            ("Funzioni.getBoolForDB", "getBoolForDB(lEngine: typeDataBaseEngine) -> int16"),
            ("cInifile.CLngDefault", "CLngDefault(sString: text, [lDefault: int32 = 0]) -> int32"),
        ]:
            self.assertEqual(self.velt("describe", target).splitlines()[1:], ["  " + line])


class Doctor(VeltTest):
    def test_who_said_so(self):
        registry, missing = self.path("registry/machine.reg"), self.path("veltgeneral-http.so (missing)")
        for environment, expected in [
            ({"LC_ALL": "it_IT"},
             {"locale": ("en_US", "VELTGENERAL_LOCALE"), "code page": ("CP1252", "default"),
              "drives": ("none", "default"), "machine registry": (registry, "VELTGENERAL_REGISTRY_DIR")}),
            ({"VELTGENERAL_LOCALE": "", "LC_ALL": "it_IT.UTF-8", "LC_NUMERIC": "en_US", "LC_TIME": "en_US"},
             {"locale": ("it_IT", "LC_ALL")}),
            ({"LC_ALL": "", "LC_NUMERIC": "", "LC_TIME": ""}, {"locale": ("en_US", "default")}),
            ({"LANG": "C", "LC_NUMERIC": "it_IT.UTF-8", "VELTGENERAL_DRIVE_Q": self.folder,
              "VELTGENERAL_FORM": "image:a.png", "VELTGENERAL_PRINTER": "pdf:a.pdf",
              "VELTGENERAL_CODEPAGE": "CP1250", "VELTGENERAL_MODULE_DIR": self.folder},
             {"locale": ("it_IT/en_US", "LC_NUMERIC, LANG"), "decimal mark": (",", "LC_NUMERIC"),
              "date order": ("month, day, year", "LANG"), "code page": ("CP1250", "VELTGENERAL_CODEPAGE"),
              "drive Q:": (self.folder, "VELTGENERAL_DRIVE_Q"),
              "report form": ("image:a.png", "VELTGENERAL_FORM"),
              "printer": ("pdf:a.pdf", "VELTGENERAL_PRINTER"),
              "HTTP module": (missing, "VELTGENERAL_MODULE_DIR")}),
        ]:
            self.environment |= environment
            found = {each["subject"]: (each["value"], each["source"]) for each in self.answer("doctor")}
            self.assertEqual(found | expected, found)
