"""Both programs of the order office make the same files, and what these say follows from the input."""

import collections
import csv
import datetime
import functools
import http.server
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import threading
import unittest
import xml.etree.ElementTree

EXAMPLE = pathlib.Path(__file__).resolve().parents[2] / "examples/order_office"
PROGRAMS = {"C++": [os.environ["ORDER_OFFICE"]], "Python": [sys.executable, EXAMPLE / "order_office.py"]}
SAME = ["accepted.csv", "orders.xml", "orders-oracle.sql", "orders-msaccess.sql", "orders-sqlserver.sql",
        "invoice.txt", "rates.csv", "settings/office.ini", "log/Tarnview.dat"]


def table(path):
    with open(path, encoding="cp1252", newline="") as file:
        rows = [row for row in csv.reader(file, delimiter=";") if row and row[0].strip()]
    return [dict(zip(rows[0], row)) for row in rows[1:]]


def is_time(text, form):
    try:
        return text.isdigit() and bool(datetime.datetime.strptime(text, form))
    except ValueError:
        return False


def in_euro(amount):
    return float(amount.replace(".", "").replace(",", "."))


class OrderOffice(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        serve = functools.partial(http.server.SimpleHTTPRequestHandler, directory=EXAMPLE / "input")
        cls.server = cls.enterClassContext(http.server.ThreadingHTTPServer(("127.0.0.1", 0), serve))
        threading.Thread(target=cls.server.serve_forever).start()
        cls.addClassCleanup(cls.server.shutdown)
        cls.folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        cls.outputs = {}
        for rows in (0, 300):
            for language in PROGRAMS:
                done, cls.outputs[language, rows] = cls.run_office(language, rows)
                assert done.returncode == 0, done.stderr

    @classmethod
    def run_office(cls, language, rows, page="rates.csv"):
        output = pathlib.Path(cls.folder, f"{language} {rows} {page}")
        url = f"http://127.0.0.1:{cls.server.server_port}/{page}"
        command = [EXAMPLE / "run", "--rows", str(rows), output, *PROGRAMS[language], "--rates", url]
        without_display = {k: v for k, v in os.environ.items() if k != "DISPLAY"}
        return subprocess.run(command, env=without_display, capture_output=True, text=True,
                              timeout=120), output

    def test_files_are_the_same(self):
        for rows in (0, 300):
            for name in SAME:
                cpp, python = (self.outputs[language, rows] / name for language in PROGRAMS)
                self.assertEqual(cpp.read_bytes(), python.read_bytes(), (name, rows))

    def test_impossible_orders_are_refused_and_logged(self):
        customers = {row["code"] for row in table(EXAMPLE / "input/customers.csv")}
        orders = table(EXAMPLE / "input/orders.csv")
        bad = [row["order"] for row in orders
               if not is_time(row["placed"], "%Y%m%d%H%M%S") or row["customer"] not in customers
               or not (row["deliver"] == "00000000" or is_time(row["deliver"], "%Y%m%d"))]
        self.assertGreater(len(bad), 0)
        for language in PROGRAMS:
            output = self.outputs[language, 0]
            self.assertEqual({row["order"] for row in table(output / "accepted.csv")},
                             {row["order"] for row in orders}.difference(bad))
            for log in ("log/office.log", "log/tarnview.log"):
                self.assertEqual(re.findall(r"\[readOrders\] .* \[order (\d+) ",
                                            (output / log).read_text("cp1252")), bad)

    def test_totals_agree(self):
        for (language, rows), output in self.outputs.items():
            accepted = table(output / "accepted.csv")
            self.assertEqual(len(accepted) > 200, rows == 300)
            expected = collections.Counter()
            for row in accepted:
                expected[row["customer"]] += in_euro(row["goods"]) + in_euro(row["carriage"])
            document = xml.etree.ElementTree.parse(output / "orders.xml")
            self.assertAlmostEqual(sum(float(each.text) for each in document.iter("total")),
                                   sum(expected.values()))
            report = subprocess.run(["pdftotext", "-layout", output / "report.pdf", "-"],
                                    check=True, capture_output=True, text=True).stdout
            totals = map(in_euro, re.findall(r"^ *Totale +([\d.,]+)$", report, re.M))
            for printed, (customer, total) in zip(totals, expected.items(), strict=True):
                self.assertAlmostEqual(printed, total, msg=(language, rows, customer))
            pages = report.count("\f")
            self.assertGreater(pages, 1)
            self.assertIn(f"Pagina: {pages} di {pages}", report)
            for name in ("form.png", "invoice.pdf"):
                self.assertGreater((output / name).stat().st_size, 1000)

    def test_a_failing_step_ends_the_program(self):
        for language in PROGRAMS:
            done, output = self.run_office(language, 0, "nothing.csv")
            self.assertEqual(done.returncode, 1)
            self.assertIn("nothing.csv has no rates", done.stderr)
            self.assertFalse((output / "orders.xml").exists())


if __name__ == "__main__":
    unittest.main()
