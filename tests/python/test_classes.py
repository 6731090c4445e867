"""Settings, windows, reports and the enumerations, as Python callers meet them."""

import enum
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest
from unittest import mock

import veltgeneral
from veltgeneral import AutomationError, CreateObject, TextArray


class HostTest(unittest.TestCase):
    """Drive C, the registry and the library's own folder lie in a temporary folder."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.put_in_force(VELTGENERAL_DRIVE_C=folder.name, VELTGENERAL_HOME=folder.name,
                          VELTGENERAL_REGISTRY_DIR=folder.name, VELTGENERAL_LOCALE="en_US")

    def put_in_force(self, **variables):
        change = mock.patch.dict(os.environ, variables)
        change.start()
        self.addCleanup(change.stop)

    def raises(self, number, action, *arguments):
        with self.assertRaises(AutomationError) as raised:
            action(*arguments)
        self.assertEqual(raised.exception.number, number)


class IniFiles(HostTest):
    def setUp(self):
        super().setUp()
        self.ini = CreateObject("cInifile")
        self.ini.Path = "C:\\app.ini"
        self.ini.section = "Main"

    def test_properties_are_attributes(self):
        ini = self.ini
        self.assertEqual((ini.Path, ini.SECTION, ini.key, ini.Value, ini.Success),
                         ("C:\\app.ini", "Main", "", "", False))
        ini.Default = "none"
        for name, text, kept in [("plain", "x", "x"), ("nul", "a\0b", "ab"), ("euro", "\u20ac", "\u20ac"),
                                 ("beyond", "\u4e2d", "?")]:
            ini.key = name
            self.assertEqual(ini.Value, "none")
            ini.Value = text
            self.assertEqual((ini.Value, ini.Success), (kept, True))
        self.assertEqual(ini.Sections, "Main\0")
        names, count = ini.EnumerateCurrentSection(TextArray(), 0)
        self.assertEqual((list(names), count), (["plain", "nul", "euro", "beyond"], 4))
        self.assertEqual((ini.SectionExists("Main"), ini.SectionExists("MAIN")), (True, False))
        ini.DeleteKey()
        self.assertEqual(ini.INISection, "plain\0nul\0euro\0")
        ini.INISection = "not used"
        self.assertEqual(ini.EnumerateAllSections(names, 7), (TextArray(), 0))
        ini.isNt = True
        self.assertIs(ini.isNt, True)
        ini.Path = "C:\\nowhere\\app.ini"
        ini.Value = "x"
        self.assertEqual((ini.LastReturnCode, ini.Success), (0, False))
        for wrong in ("Success", "LastReturnCode", "Sections"):
            self.raises(438, setattr, ini, wrong, 1)

        self.assertEqual([ini.CLngDefault("2.5"), ini.CLngDefault(ldefault=8, sString="-")], [2, 8])


class Window:
    """What an application's own window class might look like."""

    def __init__(self, state=0, left=1000.0, top=2000, width=5000.4, height=4000):
        self.windowState = state
        self.left, self.top, self.width, self.height = left, top, width, height
        self.moves = 0

    def move(self, *placement):
        self.left, self.top, self.width, self.height = placement
        self.moves += 1

    def __eq__(self, other):
        return vars(self) == vars(other)


@unittest.skipUnless(shutil.which("Xvfb"), "needs Xvfb")
class Windows(HostTest):
    """On a display of 12000 by 9000 twips, where four pixels are 60."""

    @classmethod
    def setUpClass(cls):
        ready, told = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(told), "-screen", "0", "800x600x24", "-dpi", "96", "-nolisten",
             "tcp", "-noreset"], pass_fds=[told], stderr=subprocess.DEVNULL)
        cls.addClassCleanup(server.wait)
        cls.addClassCleanup(server.terminate)
        os.close(told)
        with os.fdopen(ready) as number:
            cls.display = ":" + number.readline().strip()

    def setUp(self):
        super().setUp()
        self.put_in_force(DISPLAY=self.display)
        self.ini = CreateObject("cInifile")
        self.ini.Path, self.ini.section, self.ini.key = "C:\\w.ini", "win", "mine"

    def test_a_placement_is_saved_and_restored(self):
        saved = "[win]\r\nMaximised=0\r\nLeft=1000\r\nTop=2000\r\nWidth=5000.4\r\nHeight=4000\r\n"
        file = self.folder / "w.ini"
        self.ini.SaveFormPosition(Window(state=1))
        self.assertFalse(file.exists())
        self.ini.SaveFormPosition(Window())
        self.assertEqual(file.read_bytes().decode(), saved)
        self.ini.SaveFormPosition(Window(state=2, left=5))
        self.assertEqual(file.read_bytes().decode(), saved.replace("=0\r", "=1\r"))
        window = Window(0, 0, 0, 0, 0)
        self.assertIsNone(self.ini.LoadFormPosition(window))
        self.assertEqual(vars(window), vars(Window(2, 1000, 2000, 5000, 4000)) | {"moves": 1})
        self.assertTrue(self.ini.Success)
        (self.folder / "w.ini").write_text("[win]\nWidth=100\nHeight=9\nLeft=-5000\n", encoding="ascii")
        self.ini.LoadFormPosition(window, lMinHeight=50)
        self.assertEqual((window.left, window.width, window.height), (60, 3000, 50))


class Reports(HostTest):
    def draw(self, report):
        report.openReport()
        report.prtLayoutPaginaBase("Header", vntPageNumber=1, bWithDate=False)
        self.assertEqual(report.prtTesto(2, 3, 10, True, False, "text"), 10)
        self.assertEqual(report.formattaStringa("ab cd ef", 4), ("ab", "cd ef"))
        report.newPage()
        report.prtBoxWithTesto(2, 3.5, "12", False, False, "band", 0xC0FFC0, iLenBox=5)
        report.prtBox(1, 1, 2, 2, 255)

    def test_the_form_and_the_printer(self):
        picture, document = self.folder / "form.png", self.folder / "report.pdf"
        self.put_in_force(VELTGENERAL_FORM=f"image:{picture}", VELTGENERAL_PRINTER=f"pdf:{document}")
        report = CreateObject("Reporting")
        self.assertEqual(report.outputMode, 0)
        self.draw(report)
        report.closeReport()
        # Twips of the form's client area, 15 to a pixel.
        raw = picture.read_bytes()
        self.assertEqual((raw[:4], int.from_bytes(raw[16:20], "big"), int.from_bytes(raw[20:24], "big")),
                         (b"\x89PNG", 539, 740))
        self.assertFalse(document.exists())
        report.outputMode = veltgeneral.torPRINTER
        self.assertEqual(report.outputMode, veltgeneral.torPRINTER)
        self.draw(report)
        report.closeReport()
        raw = document.read_bytes()
        self.assertEqual((raw[:5], len(re.findall(rb"/Type /Page\b", raw))), (b"%PDF-", 2))


class Enumerations(unittest.TestCase):
    def test_they_are_attributes_of_the_package(self):
        for value, of in [(veltgeneral.eiABORTED, -2147220904), (veltgeneral.dbeuoNOTFOUND, 2),
                          (veltgeneral.gcmFunzioni["gcmfunzioniDATEINVALID"], -2147220704)]:
            self.assertIsInstance(value, enum.IntEnum)
            self.assertEqual(value, of)
        self.assertIn("torPRINTER", veltgeneral.__all__)
        self.assertIs(veltgeneral.typeOutputReport(2), veltgeneral.torPRINTER)
        self.assertEqual(CreateObject("Funzioni").getBoolForDB(veltgeneral.dbengineORACLE), -1)
        with self.assertRaises(AutomationError):
            getattr(CreateObject("VeltGlobal"), "eiABORTED")


if __name__ == "__main__":
    unittest.main()
