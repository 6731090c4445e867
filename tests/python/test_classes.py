"""Settings, windows, reports and the enumerations, as Python callers meet them."""

import enum
import os
import shutil
import subprocess
import unittest

import veltgeneral
from support import AutomationTest, HostTest
from veltgeneral import CreateObject, TextArray


class IniFiles(HostTest):
    def test_properties_are_attributes(self):
        ini = CreateObject("cInifile")
        ini.Path, ini.section, ini.Default, ini.isNt = "C:\\app.ini", "Main", "none", True
        self.assertEqual((ini.SECTION, ini.key, ini.Success), ("Main", "", False))
        self.assertIs(ini.isNt, True)
        for ini.key, text in [("plain", "x"), ("euro", "\u20ac")]:
            ini.Value = text
            self.assertEqual((ini.Value, ini.Success), (text, True))
        names, count = ini.EnumerateCurrentSection(TextArray(), 0)
        self.assertEqual((list(names), count), (["plain", "euro"], 2))
        self.assertEqual([ini.CLngDefault("2.5"), ini.CLngDefault(ldefault=8, sString="-")], [2, 8])
        for wrong in ("Success", "LastReturnCode", "Sections"):
            self.raises(438, setattr, ini, wrong, 1)


class Window:
    """What an application's own window class might look like."""

    def __init__(self):
        self.windowState = 0
        self.move(1000.0, 2000, 5000.4, 4000)

    def move(self, *placement):
        self.left, self.top, self.width, self.height = placement


@unittest.skipUnless(shutil.which("Xvfb"), "needs Xvfb")
class Windows(HostTest):
    def setUp(self):
        super().setUp()
        ready, told = os.pipe()
        # It would begin anew, and refuse callers meanwhile, whenever its last caller leaves.
        server = subprocess.Popen(["Xvfb", "-displayfd", str(told), "-noreset", "-dpi", "96", "-screen",
                                   "0", "800x600x24"], pass_fds=[told], stderr=subprocess.DEVNULL)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        os.close(told)
        with os.fdopen(ready) as number:
            self.put_in_force(DISPLAY=":" + number.readline().strip())

    def test_a_placement_is_saved_and_restored(self):
        ini, window = CreateObject("cInifile"), Window()
        ini.Path, ini.section = "C:\\w.ini", "win"
        self.assertIsNone(ini.SaveFormPosition(window))
        window.windowState = 2
        ini.SaveFormPosition(window)
        self.assertIn(b"Maximised=1\r\nLeft=1000\r\n", (self.folder / "w.ini").read_bytes())
        window.move(0, 0, 0, 0)
        ini.LoadFormPosition(window, lMinHeight=4500)
        placed = {"windowState": 2, "left": 1000, "top": 2000, "width": 5000, "height": 4500}
        self.assertEqual(vars(window), placed)
        fields = placed | {"windowState": 0, "move": None}
        ini.LoadFormPosition(fields)
        self.assertEqual(fields["windowState"], 2)


class Reports(HostTest):
    def test_a_page_is_drawn(self):
        document = self.folder / "report.pdf"
        self.put_in_force(VELTGENERAL_PRINTER=f"pdf:{document}")
        report = CreateObject("Reporting")
        report.outputMode = veltgeneral.torPRINTER
        report.openReport()
        self.assertEqual(report.prtTesto(2, 3, 10, True, False, "text"), 10)
        self.assertEqual(report.formattaStringa("ab cd ef", 4), ("ab", "cd ef"))
        self.raises(380, report.prtTesto, 1, 1, -1, False, False, "text")
        report.closeReport()
        self.assertTrue(document.read_bytes().startswith(b"%PDF-"))


class Enumerations(AutomationTest):
    def test_they_are_attributes_of_the_package(self):
        for value, of in [(veltgeneral.eiABORTED, -2147220904), (veltgeneral.dbeuoNOTFOUND, 2),
                          (veltgeneral.gcmFunzioni["gcmfunzioniDATEINVALID"], -2147220704)]:
            self.assertIsInstance(value, enum.IntEnum)
            self.assertEqual(value, of)
        self.assertIn("torPRINTER", veltgeneral.__all__)
        self.assertIs(veltgeneral.typeOutputReport(2), veltgeneral.torPRINTER)
        self.assertEqual(CreateObject("Funzioni").getBoolForDB(veltgeneral.dbengineORACLE), -1)
        self.raises(438, getattr, CreateObject("VeltGlobal"), "eiABORTED")
