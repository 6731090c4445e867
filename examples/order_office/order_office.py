"""The order office from Python: the same steps as the C++ program, and the same files.

    order_office.py [--input FOLDER] [--output FOLDER] [--rates URL] [--rows COUNT] [--form SECONDS]

The C++ sources say what each step is for. Members' in/out arguments come back behind the result.
"""
import argparse
import math
import os
import pathlib
import re
import sys
import time
from dataclasses import dataclass, field

import veltgeneral
from veltgeneral import CreateObject, TextArray


# ---- What the office knows ----

@dataclass
class Customer:
    code: str
    name: str
    street: str
    town: str
    country: str
    currency: str
    orders: int = 0
    pieces: int = 0
    total: int = 0  # in cents, as all amounts


@dataclass
class Order:
    number: str
    placed: str   # YYYYMMDDHHNNSS
    deliver: str  # YYYYMMDD
    article: str
    note: str
    customer: Customer
    pieces: int
    price: float  # in the customer's currency
    urgent: bool
    goods: int = 0
    carriage: int = 0


@dataclass
class Office:
    input: pathlib.Path
    output: pathlib.Path
    title: str = ""
    firm: str = ""
    lines: int = 0
    customers: list = field(default_factory=list)
    orders: list = field(default_factory=list)
    carriers: dict = field(default_factory=dict)
    rates: dict = field(default_factory=dict)
    refused: int = 0

    def at(self, name):
        return str(self.output / name)


# ---- Results, lines on the terminal, short texts ----

def check(answer):
    """The in/out arguments behind a result; a failure ends the program with its message."""
    result, *changed = answer if isinstance(answer, tuple) else (answer,)
    if not result.isSuccess():
        raise RuntimeError(f"{result.locationInfo}: {result.descriptionInfo}")
    return changed[0] if len(changed) == 1 else changed


class Step:
    def __init__(self, what):
        self.what, self.begin, self.drawn = what, time.monotonic(), 0.0

    def progress(self, share):
        now = time.monotonic()
        if now - self.drawn > 0.02 and sys.stdout.isatty():
            self.drawn = now
            print(f"  .. {self.what:27}[{'#' * int(min(share, 1) * 30):30}]", end="\r", flush=True)

    def done(self, count, unit, note=""):
        seconds = time.monotonic() - self.begin
        print(f"  ok {self.what:27}{count:8} {unit:8}{seconds * 1000:8.1f} ms"
              f"{count / seconds:10.0f} /s  {note}")


def cents(amount):
    return math.floor(amount * 100 + 0.5)


def money(amount):
    return f"{amount // 100:,}".replace(",", ".") + f",{amount % 100:02}"


def day(date):
    return f"{date[6:8]}/{date[4:6]}/{date[:4]}"


# ---- Settings ----

class OrderWindow:
    """A window as far as its placement goes."""
    WindowState, Left, Top, Width, Height = 0, 1200, 900, 9000, 6000

    def Move(self, left, top, width, height):
        self.Left, self.Top, self.Width, self.Height = left, top, width, height


def settle_below(output):
    """Before the first object is created: the library reads its environment then."""
    for folder in ("registry", "settings", "log"):
        (output / folder).mkdir(parents=True, exist_ok=True)
    (output / "registry").chmod(0o700)
    os.environ.update({
        "VELTGENERAL_REGISTRY_DIR": str(output / "registry"),
        "VELTGENERAL_WINDOWS_DIR": str(output / "settings"),
        "VELTGENERAL_HOME": str(output / "log"),
        "VELTGENERAL_CODEPAGE": "CP1252",
        "VELTGENERAL_LOCALE": "it_IT",
        "VELTGENERAL_PRINTER": f"pdf:{output / 'report.pdf'}"})
    if "DISPLAY" not in os.environ:
        os.environ["VELTGENERAL_FORM"] = f"image:{output / 'form.png'}"
    hive = output / "registry" / "machine.reg"
    if not hive.exists():
        check(CreateObject("FileUtility").writeFile(
            str(hive), 0, "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Zoltra\\LogSystem]\r\n"
                          f'"Path"="{output / "log"}"\r\n"Trace"="2"'))


def load_settings(office):
    step = Step("load settings")
    registry = CreateObject("RegistryUtility")
    if not registry.isRegistryInWritePermission():
        raise RuntimeError("the registry is closed")
    check(registry.saveInfoForConnection("OrderOffice", "orders", "clerk", "Però, 1887"))
    database, user, _ = check(registry.getInfoForConnection("OrderOffice", "", "", ""))

    ini = CreateObject("cInifile")
    ini.Path = "office.ini"

    def setting(key, otherwise):
        ini.key, ini.Default = key, otherwise
        ini.Value = value = ini.Value
        return value

    ini.section = "Report"
    office.title = setting("Title", "Ordini di novembre 2026")
    office.firm = setting("Firm", "Cartiera Montelume S.r.l.")
    office.lines = ini.CLngDefault(setting("Lines", "45"), 45)
    window = OrderWindow()
    ini.section = "Window"
    ini.LoadFormPosition(window)
    ini.SaveFormPosition(window)
    if not ini.Success:
        raise RuntimeError("office.ini cannot be written")
    step.done(3, "stores", f"{user} at {database}")


def remember_last_order(office):
    step = Step("keep the last order")
    registry = CreateObject("RegistryUtility")
    if not registry.isTarnviewDatInWritePermission():
        raise RuntimeError("no settings file")
    last = max((order.number for order in office.orders), default="")
    check(registry.setTarnviewConfValue("OrderOffice", "LastOrder", last))
    kept = check(registry.getTarnviewConfValue("OrderOffice", "LastOrder", ""))[-1]
    if kept != last:
        raise RuntimeError("the settings file did not keep the last order")
    step.done(1, "entry", kept)


# ---- Incoming ----

def load(path, fields):
    """The heading of a table, then its other rows; blank lines are left out."""
    table, _ = check(CreateObject("FileUtility").getArrayFromCsvFile(str(path), TextArray(), fields, 0))
    last = table.bounds[1][1]
    rows = [[table[at, row] for at in range(1, fields + 1)] for row in range(1, last + 1)]
    return rows[0], [row for row in rows[1:] if row[0]]


def write_table(path, rows):
    table = TextArray((1, len(rows[0])), (1, len(rows)))
    for number, row in enumerate(rows, 1):
        for at, cell in enumerate(row, 1):
            table[at, number] = str(cell)
    check(CreateObject("FileUtility").writeCsvFileFromArray(path, table, len(rows), len(rows[0])))


def generate_orders(office, count):
    step = Step("generate orders")
    heading, source = load(office.input / "orders.csv", 9)
    rows = [heading]
    for number in range(1, count + 1):
        row = list(source[(number - 1) % len(source)])
        row[0], row[4] = str(200000 + number), str(number * 7919 % 40 + 1)
        rows.append(row)
    write_table(office.at("orders.csv"), rows)
    step.done(count, "rows")


def read_customers(office):
    step = Step("read customers")
    office.customers = [Customer(*row) for row in load(office.input / "customers.csv", 6)[1]]
    step.done(len(office.customers), "rows")


def read_carriers(office):
    step = Step("read carriers")
    numbers = CreateObject("cInifile")
    count, records = check(CreateObject("FileUtility").ooReadFile(
        str(office.input / "carriers.txt"), 25, 1, 100, TextArray((1, 100))))
    for record in list(records)[:count]:
        office.carriers[record[:2]] = numbers.CLngDefault(record[18:])
    step.done(len(office.carriers), "records")


def fetch_rates(office, url):
    step = Step("fetch rates")
    inet, funzioni = CreateObject("VeltInet"), CreateObject("Funzioni")
    session = check(inet.IOpenExtended(0))
    session, _, page = check(inet.IOpenUrl(session, url, 0))
    body = check(inet.IReadFile(page, ""))
    inet.IClose(page)
    inet.IClose(session)
    if not body.startswith("currency;"):
        raise RuntimeError(f"{url} has no rates")
    check(CreateObject("FileUtility").writeFile(office.at("rates.csv"), 0, body))
    for currency, rate in load(office.at("rates.csv"), 2)[1]:
        office.rates[currency] = funzioni.getNumberFromXml(rate)
    step.done(len(office.rates), "rates", url)


def read_orders(office, path):
    step = Step("read orders")
    funzioni, numbers = CreateObject("Funzioni"), CreateObject("cInifile")
    refusal = CreateObject("ErrInfo")
    customers = {customer.code: customer for customer in office.customers}

    def refuse(number, why):
        refusal.ErrInfo(number, why, veltgeneral.eiWARNINGTYPE, "readOrders", "Orders", "OFFICE")
        check(refusal.writeLog(office.at("log/office.log")))
        office.refused += 1

    rows = load(path, 9)[1]
    for number, placed, code, article, pieces, price, urgent, deliver, note in rows:
        if not funzioni.isDateYYYYMMDDHH24MISS(placed):
            refuse(veltgeneral.gcmfunzioniDATEINVALID, f"order {number} is placed on {placed}")
        elif not funzioni.isDateYYYYMMDD(deliver) and not funzioni.isDateYYYYMMDDefault(deliver):
            refuse(veltgeneral.gcmfunzioniDATEINVALID, f"order {number} is for {deliver}")
        elif code not in customers:
            refuse(veltgeneral.eiNORECORD, f"order {number} has no customer {code}")
        else:
            office.orders.append(Order(
                number, placed, deliver, article, note, customers[code], numbers.CLngDefault(pieces),
                funzioni.getNumberFromXml(price), funzioni.getBool2Xml(urgent) == 1))
    step.done(len(rows), "rows", f"{office.refused} refused, see the log")


# ---- Ledger ----

def sort_orders(office):
    key_length, count = 6 + 14 + 6, len(office.orders)
    if not count:
        return
    step, passes = Step("sort by customer and time"), 0
    expected = count * math.log(max(count, 2)) / 3

    def passed():
        nonlocal passes
        passes += 1
        if passes % 256 == 0:
            step.progress(passes / expected)

    keys = TextArray.of([f"{order.customer.code}{order.placed}{order.number}{at}"
                         for at, order in enumerate(office.orders)])
    veltgeneral.set_host_events(passed)
    check(CreateObject("Funzioni").quickSortArray(keys, 1, count, 1, key_length, True))
    veltgeneral.set_host_events(None)
    office.orders = [office.orders[int(key[key_length:])] for key in keys]
    step.done(count, "orders", f"{passes} passes")


def add_up(office):
    step = Step("join and add up")
    for order in office.orders:
        customer = order.customer
        order.goods = cents(order.pieces * order.price / office.rates[customer.currency])
        order.carriage = office.carriers[customer.country] * (2 if order.urgent else 1)
        customer.orders += 1
        customer.pieces += order.pieces
        customer.total += order.goods + order.carriage
    step.done(len(office.orders), "orders")


# ---- Outgoing ----

def write_tables(office):
    step = Step("write tables")
    write_table(office.at("accepted.csv"), [
        ["order", "placed", "customer", "article", "pieces", "goods", "carriage", "note"],
        *([order.number, order.placed, order.customer.name, order.article, order.pieces,
           money(order.goods), money(order.carriage), order.note] for order in office.orders)])
    write_table(office.at("totals.csv"), [
        ["customer", "name", "orders", "pieces", "total"],
        *([each.code, each.name, each.orders, each.pieces, money(each.total)]
          for each in office.customers)])
    step.done(len(office.orders) + len(office.customers), "rows")


def write_xml(office):
    step, funzioni = Step("write XML"), CreateObject("Funzioni")

    def text(value):
        return check(funzioni.normStringForXML(value, ""))

    lines = ['<?xml version="1.0" encoding="windows-1252"?>', "<orders>"]
    for order in office.orders:
        total = (order.goods + order.carriage) / 100
        elements = {"placed": funzioni.getDate2Xml(order.placed),
                    "deliver": funzioni.getDate2Xml(order.deliver + "000000"),
                    "customer": text(order.customer.name),
                    "article": text(order.article),
                    "note": text(order.note),
                    "urgent": funzioni.getBool2Xml(order.urgent),
                    "pieces": funzioni.getNumber2Xml(order.pieces),
                    "total": funzioni.getNumber2Xml(total),
                    "packing": funzioni.getWork2Xml(order.pieces * 250)}
        body = "".join(f"<{name}>{value}</{name}>" for name, value in elements.items())
        lines.append(f'<order number="{order.number}">{body}</order>')
    lines.append("</orders>")
    check(CreateObject("FileUtility").writeFile(office.at("orders.xml"), 0, "\r\n".join(lines)))
    step.done(len(office.orders), "orders")


def write_sql(office):
    step, funzioni = Step("write SQL for three engines"), CreateObject("Funzioni")

    def text(value):
        return f"'{check(funzioni.normStringForDb(value, ''))}'"

    for engine, name in ((veltgeneral.dbengineORACLE, "orders-oracle.sql"),
                         (veltgeneral.dbengineMSACCESS, "orders-msaccess.sql"),
                         (veltgeneral.dbengineSQLSERVER, "orders-sqlserver.sql")):
        statements = []
        for order in office.orders:
            total, _ = funzioni.getNumberForDB(engine, (order.goods + order.carriage) / 100)
            urgent, _ = funzioni.getBoolForDBx(engine, order.urgent)
            values = (order.number, funzioni.getDataForDB(engine, order.placed),
                      funzioni.getDataForDB(engine, order.deliver + "000000"),
                      text(order.customer.name), text(order.article), text(order.note), urgent, total)
            statements.append(f"INSERT INTO orders VALUES ({', '.join(map(str, values))});\r\n")
        check(CreateObject("FileUtility").writeFile(office.at(name), 0, "".join(statements)))
    step.done(len(office.orders) * 3, "rows")


# ---- Report: centimetres and points ----

LEFT, TOP, ROW, DROP, POINTS, CELLS = 1.4, 2.95, 0.5, 0.07, 9.0, 91
RIGHT = LEFT + CELLS * POINTS * 0.6 * 2.54 / 72
HEAD_COLOR, GROUP_COLOR, BAND_COLOR = 0xE8D3BD, 0xF6ECDF, 0xF0F0F0


def columns(order, date, article, pieces, price, goods, total):
    return (f"{order:8.8}{date:11.11}{article:29.29}{pieces:>5.5}{price:>13.13}"
            f"{goods:>12.12}{total:>12.12} ")


def lay_out(office):
    """The pages as lists of (style, text, band)."""
    report, pages, pieces, total, band = CreateObject("Reporting"), [[]], 0, 0, False

    def put(style, text="", band=False):
        if len(pages[-1]) + (style == "group") >= office.lines:
            pages.append([])
        if style != "blank" or pages[-1]:
            pages[-1].append((style, text, band))

    def put_total(style, what, count, amount):
        put(style, columns("", "", what, str(count), "", "", money(amount)))

    for at, order in enumerate(office.orders):
        customer = order.customer
        first = at == 0 or office.orders[at - 1].customer is not customer
        last = at + 1 == len(office.orders) or office.orders[at + 1].customer is not customer
        if first:
            heading = f"{customer.code}  {customer.name}, {customer.town} ({customer.country})"
            put("group", f"{heading:{CELLS}.{CELLS}}")
        band = first or not band
        put("order", columns(order.number, day(order.placed), order.article, str(order.pieces),
                             f"{money(cents(order.price))} {customer.currency}", money(order.goods),
                             money(order.goods + order.carriage)), band)
        rest = order.note
        while rest:
            line, rest = report.formattaStringa(rest, 71)
            put("note", " " * 19 + line, band)
        if last:
            put_total("total", "Totale", customer.pieces, customer.total)
            put("blank")
            pieces, total = pieces + customer.pieces, total + customer.total
    put_total("group", "Totale generale", pieces, total)
    return pages


def draw(report, office, pages, number):
    def on_band(y, text, color):
        band_points = POINTS * CELLS / 65
        report.prtBoxWithTesto(LEFT, y, band_points, True, False, " " * 65, color, RIGHT - LEFT)
        report.prtTesto(LEFT, y + DROP, POINTS, True, False, text)

    report.prtLayoutPaginaBase(office.title, office.firm, f"{number} di {len(pages)}", True, True)
    on_band(TOP - 0.7, columns("Ordine", "Data", "Articolo", "Pezzi", "Prezzo", "Merce €", "Totale €"),
            HEAD_COLOR)
    page = pages[number - 1]
    for at, (style, text, band) in enumerate(page):
        y = TOP + at * ROW
        if style == "group":
            on_band(y, text, GROUP_COLOR)
        elif style != "blank":
            if band and (style == "order" or at == 0):
                rows = next((i for i, each in enumerate(page[at + 1:], 1) if each[0] != "note"),
                            len(page) - at)
                report.prtBox(LEFT - 0.2, y, RIGHT, y + rows * ROW, BAND_COLOR)
            report.prtTesto(LEFT, y + DROP, POINTS, style == "total", style == "note", text)


def print_report(office, seconds_on_form):
    step = Step("print the report")
    pages, report = lay_out(office), CreateObject("Reporting")
    report.outputMode = veltgeneral.torPRINTER
    report.openReport()
    for number in range(1, len(pages) + 1):
        if number > 1:
            report.newPage()
        draw(report, office, pages, number)
        step.progress(number / len(pages))
    report.closeReport()
    step.done(len(pages), "pages")

    step = Step("show it on the form")
    report.outputMode = veltgeneral.torFORM
    report.openReport()
    draw(report, office, pages, 1)
    step.done(1, "page")
    time.sleep(seconds_on_form)
    report.closeReport()


# ---- Invoice ----

def argument(text):
    return '"' + re.sub(r'(["\\{])', r"\\\1", text) + '"'


def make_invoice(office):
    step, files = Step("make the invoice"), CreateObject("FileUtility")
    best = max(office.customers, key=lambda customer: customer.total)
    orders = [order for order in office.orders if order.customer is best][-20:]
    if not orders:
        return
    rows = ["row " + " ".join(map(argument, (
        order.number, day(order.placed), order.article, str(order.pieces), money(order.carriage),
        money(order.goods)))) + "\r\n" for order in orders]
    goods = sum(order.goods for order in orders)
    carriage = sum(order.carriage for order in orders)
    home = best.country == "IT"
    tax = (goods + carriage) * 22 // 100 if home else 0
    values = {"name": best.name, "street": best.street, "town": f"{best.town} ({best.country})",
              "date": day(orders[-1].placed), "code": best.code, "goods": money(goods),
              "carriage": money(carriage), "taxed": "IVA 22 %" if home else "IVA non imponibile",
              "tax": money(tax), "total": money(goods + carriage + tax)}
    commands = {name: argument(text) for name, text in values.items()} | {"rows": "".join(rows)}
    form = check(files.readFile(str(office.input / "invoice.txt"), ""))
    filled = re.sub(r"\$([a-z]+)", lambda match: commands[match[1]], form)
    check(files.writeFile(office.at("invoice.txt"), 0, filled))
    check(CreateObject("Funzioni").createPdfFile(office.at("invoice.txt"), office.at("invoice.pdf")))
    step.done(len(orders), "orders", best.name)


def main():
    here = pathlib.Path(__file__).resolve().parent
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--input", type=pathlib.Path, default=here / "input")
    parser.add_argument("--output", type=pathlib.Path, default="order_office")
    parser.add_argument("--rates", default="http://127.0.0.1:8000/rates.csv")
    parser.add_argument("--rows", type=int, default=0)
    parser.add_argument("--form", type=int, default=0)
    options = parser.parse_args()
    office = Office(options.input.resolve(), options.output.resolve())
    settle_below(office.output)
    load_settings(office)
    if options.rows:
        generate_orders(office, options.rows)
    read_customers(office)
    read_carriers(office)
    fetch_rates(office, options.rates)
    read_orders(office, office.at("orders.csv") if options.rows else office.input / "orders.csv")
    sort_orders(office)
    add_up(office)
    write_tables(office)
    write_xml(office)
    write_sql(office)
    print_report(office, options.form)
    make_invoice(office)
    remember_last_order(office)
    print(f"\n{office.output}\n")
    for path in sorted(office.output.rglob("*.*")):
        print(f"  {str(path.relative_to(office.output)):21}{path.stat().st_size:10}")


if __name__ == "__main__":
    try:
        main()
    except (RuntimeError, veltgeneral.AutomationError) as error:
        sys.exit(f"\norder_office: {error}")
