// The month on paper: orders by customer, in framed pages with bands; the first page on the form.
#include <veltgeneral/funzioni.h>
#include <veltgeneral/reporting.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <span>
#include <thread>

#include "office.h"

namespace office {

namespace {

using veltgeneral::Reporting;

// Centimetres and points. A cell is 0.6 of the font's size wide; a line has 91 of them.
constexpr double kLeft = 1.4, kTop = 2.95, kRow = 0.5, kDrop = 0.07, kPoints = 9;
constexpr std::size_t kCells = 91;
constexpr double kRight = kLeft + kCells * kPoints * 0.6 * 2.54 / 72;
constexpr std::int32_t kHeadColor = 0xE8D3BD, kGroupColor = 0xF6ECDF, kBandColor = 0xF5F5F5;

Text columns(TextView order, TextView date, TextView article, TextView pieces, TextView price,
             TextView goods, TextView total) {
  return left(order, 8) + left(date, 11) + left(article, 29) + right(pieces, 5) + right(price, 13) +
         right(goods, 12) + right(total, 12) + u' ';
}

// The customer's orders with their notes, every other one on a band, and what they come to.
void appendGroup(std::vector<Line>& lines, const Customer& customer,
                 std::span<const Order> orders) {
  lines.push_back({Style::group, left(customer.code + u"  " + customer.name + u", " +
                                          customer.town + u" (" + customer.country + u")",
                                      kCells)});
  bool band = true;
  for (const Order& order : orders) {
    const auto price = static_cast<Cents>(std::floor(order.price * 100 + 0.5));
    lines.push_back(
        {Style::order,
         columns(order.number, day(order.placed), order.article, digits(order.pieces),
                 money(price) + u' ' + customer.currency, money(order.goods), money(order.total())),
         band});
    for (Text rest = order.note; !rest.empty();)
      lines.push_back({Style::note, Text(19, u' ') + Reporting().formattaStringa(rest, 72), band});
    band = !band;
  }
  lines.push_back({Style::total, columns(u"", u"", u"Totale", digits(customer.pieces), u"", u"",
                                         money(customer.total))});
  lines.push_back({});
}

std::vector<Line> linesOf(const Office& office) {
  std::vector<Line> lines;
  Cents total = 0;
  std::int64_t pieces = 0;
  for (auto first = office.orders.begin(); first != office.orders.end();) {
    const auto last = std::find_if(first, office.orders.end(), [&](const Order& order) {
      return order.customer != first->customer;
    });
    const Customer& customer = office.customers[first->customer];
    appendGroup(lines, customer, {first, last});
    total += customer.total;
    pieces += customer.pieces;
    first = last;
  }
  lines.push_back({Style::group,
                   columns(u"", u"", u"Totale generale", digits(pieces), u"", u"", money(total))});
  return lines;
}

// On paper the band is painted over the text, which therefore follows once more.
void onBand(Reporting& report, double y, const Text& text, std::int32_t color) {
  Variant points = kPoints;
  report.prtBoxWithTesto(kLeft, y, points, true, false, text, color, kRight - kLeft);
  if (report.outputMode() == veltgeneral::torPRINTER)
    report.prtTesto(kLeft, y + kDrop, points, true, false, text);
}

// A band holds an order and its notes, as far as they are on this page.
void drawLines(Reporting& report, std::span<const Line> lines) {
  Variant points = kPoints;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Line& line = lines[i];
    const double y = kTop + kRow * static_cast<double>(i);
    if (line.style == Style::group) onBand(report, y, line.text, kGroupColor);
    if (line.style == Style::group || line.style == Style::blank) continue;
    if (line.band && (line.style == Style::order || i == 0)) {
      std::size_t next = i + 1;
      while (next < lines.size() && lines[next].style == Style::note) ++next;
      report.prtBox(kLeft - 0.2, y, kRight, kTop + kRow * static_cast<double>(next), kBandColor);
    }
    report.prtTesto(kLeft, y + kDrop, points, line.style == Style::total, line.style == Style::note,
                    line.text);
  }
}

void drawPage(Reporting& report, const Report& what, std::size_t page) {
  const Text number = digits(static_cast<std::int64_t>(page)) + u" di " +
                      digits(static_cast<std::int64_t>(what.pages.size()));
  report.prtLayoutPaginaBase(what.title, what.firm, number, true, true);
  onBand(report, kTop - 0.7,
         columns(u"Ordine", u"Data", u"Articolo", u"Pezzi", u"Prezzo", u"Merce €", u"Totale €"),
         kHeadColor);
  drawLines(report, what.pages[page - 1]);
}

}  // namespace

// Cuts the lines into pages. A customer's name never stands last on one, nor a blank line first.
Report layOut(const Office& office) {
  Report report = {office.settings.title, office.settings.firm, linesOf(office), {}};
  const std::vector<Line>& lines = report.lines;
  const auto height = static_cast<std::size_t>(office.settings.linesOnPage);
  for (std::size_t first = 0; first < lines.size();) {
    std::size_t last = std::min(first + height, lines.size());
    if (last < lines.size() && last > first + 1 && lines[last - 1].style == Style::group) --last;
    report.pages.push_back(std::span(lines).subspan(first, last - first));
    while (last < lines.size() && lines[last].style == Style::blank) ++last;
    first = last;
  }
  return report;
}

void print(const Report& what) {
  Step step("print the report");
  Reporting report;
  report.setOutputMode(veltgeneral::torPRINTER);
  report.openReport();
  for (std::size_t page = 1; page <= what.pages.size(); ++page) {
    if (page > 1) report.newPage();
    drawPage(report, what, page);
    step.progress(static_cast<double>(page) / static_cast<double>(what.pages.size()));
  }
  report.closeReport();
  step.done(what.pages.size(), "pages", std::to_string(what.lines.size()) + " lines");
}

// A window where there is a display, else a picture of it.
void show(const Report& what, int seconds) {
  Step step("show it on the form");
  Reporting report;
  report.setOutputMode(veltgeneral::torFORM);
  report.openReport();
  drawPage(report, what, 1);
  step.done(1, "page");
  std::this_thread::sleep_for(std::chrono::seconds(seconds));
  report.closeReport();
}

}  // namespace office
