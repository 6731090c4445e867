"""The order office from Python: the same steps as the C++ program, and the same files.

    order_office.py [--input FOLDER] [--output FOLDER] [--rates URL]

The script "run" starts it with settings and logs below the output folder, and makes large input.
Members' in/out arguments come back behind the result.
"""
import argparse
import math
import os
import re
import sys
import time
from dataclasses import dataclass, field

import veltgeneral
from veltgeneral import CreateObject, TextArray

files, funzioni = CreateObject("FileUtility"), CreateObject("Funzioni")
registry, ini = CreateObject("RegistryUtility"), CreateObject("cInifile")


# ---- What the office knows; amounts are in cents ----

@dataclass
class Customer:
    name: str
    street: str
    town: str
    country: str
    currency: str
    total: int = 0  # of the orders accepted


@dataclass
class Order:
    number: str
    placed: str   # YYYYMMDDHHNNSS
    deliver: str  # YYYYMMDD
    customer: str
    article: str
    note: str
    pieces: int
    urgent: bool
    goods: int
    carriage: int

    @property
    def total(self):
        return self.goods + self.carriage


@dataclass
class Office:
    input: str
    output: str
    rates_url: str
    title: str = ""
    firm: str = ""
    lines_on_page: int = 0
    seconds_on_form: int = 0
    customers: dict = field(default_factory=dict)  # by code
    carriage: dict = field(default_factory=dict)   # by country
    rates: dict = field(default_factory=dict)      # by currency
    orders: list = field(default_factory=list)

    def file(self, name):
        return f"{self.output}/{name}"


# ---- Results, tables, short texts ----

def check(answer):
    """The in/out arguments behind a result; a failure ends the program with its message."""
    result, *changed = answer if isinstance(answer, tuple) else (answer,)
    if not result.isSuccess():
        raise RuntimeError(f"{result.locationInfo}: {result.descriptionInfo}")
    return changed[0] if len(changed) == 1 else changed


def rows_of(path, fields):
    """The rows of a semicolon table, without its heading and blank ones."""
    table, _ = check(files.getArrayFromCsvFile(path, TextArray(), fields, 0))
    return [row for row in list(table.rows())[1:] if row[0]]


def money(amount):
    return f"{amount // 100:,}".replace(",", ".") + f",{amount % 100:02}"


def day(date):
    return f"{date[6:8]}/{date[4:6]}/{date[:4]}"


# ---- Settings ----

def load_settings(office):
    if not registry.isRegistryInWritePermission():
        raise RuntimeError("the registry is closed")
    check(registry.saveInfoForConnection("OrderOffice", "orders", "clerk", "Però, 1887"))
    database, user, _ = check(registry.getInfoForConnection("OrderOffice", "", "", ""))

    ini.Path, ini.section = "office.ini", "Report"

    def setting(key, otherwise):
        ini.key, ini.Default = key, otherwise
        ini.Value = value = ini.Value
        if not ini.Success:
            raise RuntimeError(f"cannot write {ini.Path}")
        return value

    office.title = setting("Title", "Ordini di novembre 2026")
    office.firm = setting("Firm", "Cartiera Montelume S.r.l.")
    office.lines_on_page = max(2, ini.CLngDefault(setting("Lines", "45"), 45))
    office.seconds_on_form = ini.CLngDefault(setting("SecondsOnForm", "0"))
    return 7, "settings", f"{user} at {database}"


def remember_last_order(office):
    if not registry.isTarnviewDatInWritePermission():
        raise RuntimeError("no settings file")
    last = max((order.number for order in office.orders), default="")
    check(registry.setTarnviewConfValue("OrderOffice", "LastOrder", last))
    kept = check(registry.getTarnviewConfValue("OrderOffice", "LastOrder", ""))[-1]
    return 1, "setting", kept


# ---- Incoming ----

def read_customers(office):
    rows = rows_of(f"{office.input}/customers.csv", 6)
    office.customers = {code: Customer(*rest) for code, *rest in sorted(rows)}
    return len(rows), "rows", ""


def read_carriers(office):
    """Records of 25 characters: country 2, name 16, price in cents 7."""
    count, records = check(files.ooReadFile(
        f"{office.input}/carriers.txt", 25, 1, 100, TextArray((1, 100))))
    for record in list(records)[:count]:
        office.carriage[record[:2]] = ini.CLngDefault(record[18:])
    return count, "records", ""


def fetch_rates(office):
    inet = CreateObject("VeltInet")
    session = check(inet.IOpenExtended(0))
    session, _, page = check(inet.IOpenUrl(session, office.rates_url, 0))
    body = check(inet.IReadFile(page, ""))
    inet.IClose(page)
    inet.IClose(session)
    if not body.startswith("currency;"):
        raise RuntimeError(f"{office.rates_url} has no rates")
    check(files.writeFile(office.file("rates.csv"), 0, body))
    for currency, rate in rows_of(office.file("rates.csv"), 2):
        office.rates[currency] = funzioni.getNumberFromXml(rate)
    return len(office.rates), "rates", office.rates_url


def read_orders(office):
    refusal, refused = CreateObject("ErrInfo"), 0

    def refuse(error, why):
        nonlocal refused
        refusal.ErrInfo(error, why, veltgeneral.eiWARNINGTYPE, "readOrders", "Orders", "OFFICE")
        check(refusal.writeLog(office.file("log/office.log")))
        refused += 1

    rows = rows_of(f"{office.input}/orders.csv", 9)
    for number, placed, customer, article, pieces, price, urgent, deliver, note in rows:
        if not funzioni.isDateYYYYMMDDHH24MISS(placed):
            refuse(veltgeneral.gcmfunzioniDATEINVALID, f"order {number} is placed on {placed}")
        elif not funzioni.isDateYYYYMMDD(deliver) and not funzioni.isDateYYYYMMDDefault(deliver):
            refuse(veltgeneral.gcmfunzioniDATEINVALID, f"order {number} is for {deliver}")
        elif customer not in office.customers:
            refuse(veltgeneral.eiNORECORD, f"order {number} has no customer {customer}")
        else:
            buyer = office.customers[customer]
            count, hurry = ini.CLngDefault(pieces), funzioni.getBool2Xml(urgent) == 1
            euro = count * funzioni.getNumberFromXml(price) / office.rates[buyer.currency]
            order = Order(number, placed, deliver, customer, article, note, count, hurry,
                          goods=math.floor(euro * 100 + 0.5),
                          carriage=office.carriage[buyer.country] * (2 if hurry else 1))
            buyer.total += order.total
            office.orders.append(order)
    return len(rows), "rows", f"{refused} refused, see the log"


def sort_orders(office):
    key_length, passes, drawn = 6 + 14 + 6, 0, 0
    count, terminal = len(office.orders), sys.stdout.isatty()
    if not count:
        return 0, "", ""
    keys = TextArray.of([f"{order.customer}{order.placed}{order.number}{at}"
                         for at, order in enumerate(office.orders)])

    def passed():
        nonlocal passes, drawn
        passes += 1
        share = int(30 * passes / (count * math.log(count) / 3)) if count > 1 else 30
        if terminal and drawn < share <= 30:
            drawn = share
            print(f"  .. [{'#' * drawn:30}]", end="\r", flush=True)

    veltgeneral.set_host_events(passed)
    check(funzioni.quickSortArray(keys, 1, count, 1, key_length, True))
    veltgeneral.set_host_events(None)
    office.orders = [office.orders[int(key[key_length:])] for key in keys]
    return count, "orders", f"{passes} passes"


# ---- Outgoing ----

def write_table(office):
    rows = [("order", "placed", "customer", "article", "pieces", "goods", "carriage", "note")]
    rows += [(order.number, order.placed, office.customers[order.customer].name, order.article,
              str(order.pieces), money(order.goods), money(order.carriage), order.note)
             for order in office.orders]
    check(files.writeCsvFileFromArray(
        office.file("accepted.csv"), TextArray.of_rows(rows), len(rows), len(rows[0])))
    return len(office.orders), "rows", ""


def write_xml(office):
    def safe(text):
        return check(funzioni.normStringForXML(text, ""))

    lines = ['<?xml version="1.0" encoding="windows-1252"?>', "<orders>"]
    for order in office.orders:
        elements = {"placed": funzioni.getDate2Xml(order.placed),
                    "deliver": funzioni.getDate2Xml(order.deliver + "000000"),
                    "customer": safe(office.customers[order.customer].name),
                    "article": safe(order.article),
                    "note": safe(order.note),
                    "urgent": funzioni.getBool2Xml(order.urgent),
                    "pieces": funzioni.getNumber2Xml(order.pieces),
                    "total": funzioni.getNumber2Xml(order.total / 100),
                    "packing": funzioni.getWork2Xml(order.pieces * 250)}
        body = "".join(f"<{name}>{value}</{name}>" for name, value in elements.items())
        lines.append(f'<order number="{order.number}">{body}</order>')
    check(files.writeFile(office.file("orders.xml"), 0, "\r\n".join([*lines, "</orders>"])))
    return len(office.orders), "orders", ""


def write_sql(office):
    def quoted(text):
        return f"'{check(funzioni.normStringForDb(text, ''))}'"

    for engine, name in ((veltgeneral.dbengineORACLE, "orders-oracle.sql"),
                         (veltgeneral.dbengineMSACCESS, "orders-msaccess.sql"),
                         (veltgeneral.dbengineSQLSERVER, "orders-sqlserver.sql")):
        statements = []
        for order in office.orders:
            values = (order.number,
                      funzioni.getDataForDB(engine, order.placed),
                      funzioni.getDataForDB(engine, order.deliver + "000000"),
                      quoted(office.customers[order.customer].name),
                      quoted(order.article),
                      quoted(order.note),
                      funzioni.getBoolForDBx(engine, order.urgent)[0],
                      funzioni.getNumberForDB(engine, order.total / 100)[0])
            statements.append(f"INSERT INTO orders VALUES ({', '.join(map(str, values))});\r\n")
        check(files.writeFile(office.file(name), 0, "".join(statements)))
    return len(office.orders) * 3, "rows", ""


# ---- Paper: centimetres; a line has 90 cells in 9 points ----

LEFT, RIGHT, TOP, ROW, DROP = 1.4, 18.7, 2.25, 0.5, 0.07
HEAD_COLOR, GROUP_COLOR, BAND_COLOR = 0xE8D3BD, 0xF6ECDF, 0xF0F0F0


def columns(cells):
    widths = ("8.8", "12.12", "31.31", ">5.5", ">12.12", ">11.11", ">11.11")
    return "".join(f"{cell:{width}}" for cell, width in zip(cells, widths))


def cells_of(order):
    return (order.number, day(order.placed), order.article, str(order.pieces),
            money(order.goods), money(order.carriage), money(order.total))


def lay_out(office):
    """The report's lines as (text, colour of the band, bold, italic)."""
    lines = []

    def put(text="", color=0, bold=False, italic=False):
        if len(lines) % office.lines_on_page == 0:
            lines.append((columns(("Ordine", "Data", "Articolo", "Pezzi", "Merce", "Trasporto",
                                   "Totale")), HEAD_COLOR, True, False))
        lines.append((text, color, bold, italic))

    for code, customer in office.customers.items():
        orders = [order for order in office.orders if order.customer == code]
        if not orders:
            continue
        if (len(lines) + 1) % office.lines_on_page == 0:
            put()
        put(columns((code, customer.country, customer.name, "", "", "", "")), GROUP_COLOR, True)
        color = 0
        for order in orders:
            color, note = BAND_COLOR - color, order.note
            put(columns(cells_of(order)), color)
            while note:
                line, note = CreateObject("Reporting").formattaStringa(note, 70)
                put(" " * 20 + line, color, False, True)
        put(columns(("", "", "Totale", "", "", "", money(customer.total))), 0, True)
        put()
    return lines


def print_report(office):
    lines, each = lay_out(office), office.lines_on_page
    pages = -(-len(lines) // each)
    for mode in (veltgeneral.torFORM, veltgeneral.torPRINTER):
        report = CreateObject("Reporting")
        report.outputMode = mode
        report.openReport()
        for at, (text, color, bold, italic) in enumerate(lines):
            if at % each == 0:
                if at > 0 and mode == veltgeneral.torFORM:
                    break
                if at > 0:
                    report.newPage()
                report.prtLayoutPaginaBase(office.title, office.firm,
                                           f"{at // each + 1} di {pages}", True, True)
            y = TOP + ROW * (at % each)
            if color:
                report.prtBox(LEFT - 0.2, y, RIGHT, y + ROW, color)
            report.prtTesto(LEFT, y + DROP, 9, bold, italic, text)
        if mode == veltgeneral.torFORM:
            time.sleep(office.seconds_on_form)
        report.closeReport()
    return pages, "pages", "the first one on the form too"


def make_invoice(office):
    code, customer = max(office.customers.items(), key=lambda each: each[1].total)
    orders = [order for order in office.orders if order.customer == code][-20:]
    if not orders:
        return 0, "", ""

    def argument(text):
        return '"' + re.sub(r'(["\\{])', r"\\\1", text) + '"'

    rows = [f"row {' '.join(map(argument, cells_of(order)))}\r\n" for order in orders]
    values = {"name": argument(customer.name),
              "street": argument(customer.street),
              "town": argument(f"{customer.town} ({customer.country})"),
              "date": argument(day(orders[-1].placed)),
              "code": argument(code),
              "rows": "".join(rows),
              "total": argument(money(sum(order.total for order in orders)))}
    form = check(files.readFile(f"{office.input}/invoice.txt", ""))
    commands = re.sub(r"\$([a-z]+)", lambda match: values[match[1]], form)
    check(files.writeFile(office.file("invoice.txt"), 0, commands))
    check(funzioni.createPdfFile(office.file("invoice.txt"), office.file("invoice.pdf")))
    return len(orders), "orders", customer.name


# ---- All steps, and what lies where ----

STEPS = {"load settings": load_settings,
         "read customers": read_customers,
         "read carriers": read_carriers,
         "fetch rates": fetch_rates,
         "read orders": read_orders,
         "sort by customer and time": sort_orders,
         "write a table": write_table,
         "write XML": write_xml,
         "write SQL for three engines": write_sql,
         "print the report": print_report,
         "make an invoice": make_invoice,
         "keep the last order": remember_last_order}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--input", default="examples/order_office/input")
    parser.add_argument("--output", default="order_office")
    parser.add_argument("--rates", default="http://127.0.0.1:8000/rates.csv")
    options = parser.parse_args()
    office = Office(options.input, options.output, options.rates)
    for what, step in STEPS.items():
        begin = time.monotonic()
        count, unit, note = step(office)
        seconds = time.monotonic() - begin
        if count:
            print(f"  ok {what:27}{count:8} {unit:8}{seconds * 1000:8.1f} ms"
                  f"{count / seconds:10.0f} /s  {note}")
    count = check(files.numFileInDir(office.file("*.*"), 0))
    print(f"\n{office.output} holds {count} files beside its folders:\n")
    for name, what in rows_of(f"{office.input}/contents.csv", 2):
        if os.path.exists(office.file(name)):
            print(f"  {name:21}{os.path.getsize(office.file(name)):10}  {what}")


if __name__ == "__main__":
    try:
        main()
    except (RuntimeError, veltgeneral.AutomationError) as error:
        sys.exit(f"\norder_office: {error}")
