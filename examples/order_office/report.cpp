// The month on paper: orders by customer, in framed pages with bands; the first page on the form.
#include <veltgeneral/reporting.h>

#include <algorithm>
#include <thread>

#include "office.h"

using namespace veltgeneral;

namespace {

// Centimetres and points. A cell is 0.6 of the font's size wide; a line has 91 of them.
constexpr double kLeft = 1.4, kTop = 2.95, kRow = 0.5, kDrop = 0.07, kPoints = 9;
constexpr std::size_t kCells = 91;
constexpr double kRight = kLeft + kCells * kPoints * 0.6 * 2.54 / 72;
constexpr std::int32_t kHeadColor = 0xE8D3BD, kGroupColor = 0xF6ECDF, kBandColor = 0xF0F0F0;

enum class Style { group, order, note, total, blank };

struct Line {
  Style style = Style::blank;
  Text text{};
  bool band = false;
};

using Page = std::vector<Line>;

Text columns(TextView order, TextView date, TextView article, TextView pieces, TextView price,
             TextView goods, TextView total) {
  return left(order, 8) + left(date, 11) + left(article, 29) + right(pieces, 5) + right(price, 13) +
         right(goods, 12) + right(total, 12) + u' ';
}

// A customer's name never stands last on a page, nor a blank line first.
void add(std::vector<Page>& pages, std::size_t linesOnPage, const Line& line) {
  const std::size_t needed = line.style == Style::group ? 2 : 1;
  if (pages.empty() || pages.back().size() + needed > linesOnPage) pages.emplace_back();
  if (line.style != Style::blank || !pages.back().empty()) pages.back().push_back(line);
}

// Every customer's orders with their notes, every other one on a band, and what they come to.
std::vector<Page> layOut(const Office& office) {
  std::vector<Page> pages;
  const auto put = [&](Style style, const Text& text, bool band = false) {
    add(pages, office.linesOnPage, {style, text, band});
  };
  const auto putTotal = [&](Style style, TextView what, std::int64_t pieces, Cents total) {
    put(style, columns(u"", u"", what, digits(pieces), u"", u"", money(total)));
  };
  std::int64_t pieces = 0;
  Cents total = 0;
  bool band = false;
  for (auto order = office.orders.begin(); order != office.orders.end(); ++order) {
    const Customer& customer = office.customers[order->customer];
    const bool first = order == office.orders.begin() || (order - 1)->customer != order->customer;
    const bool last = order + 1 == office.orders.end() || (order + 1)->customer != order->customer;
    if (first) {
      const Text place = customer.town + u" (" + customer.country + u")";
      put(Style::group, left(customer.code + u"  " + customer.name + u", " + place, kCells));
    }
    band = first || !band;
    const Text price = money(cents(order->price)) + u' ' + customer.currency;
    put(Style::order,
        columns(order->number, day(order->placed), order->article, digits(order->pieces), price,
                money(order->goods), money(order->goods + order->carriage)),
        band);
    for (Text rest = order->note; !rest.empty();)
      put(Style::note, Text(19, u' ') + Reporting().formattaStringa(rest, 71), band);
    if (!last) continue;
    putTotal(Style::total, u"Totale", customer.pieces, customer.total);
    put(Style::blank, u"");
    pieces += customer.pieces;
    total += customer.total;
  }
  putTotal(Style::group, u"Totale generale", pieces, total);
  return pages;
}

// The band comes first, with blanks for its text: on paper it is as long as that, and lies over it.
// In this size it is as high as a row on the form as well, and 65 blanks are as long as a line.
void drawOnBand(Reporting& report, double y, const Text& text, std::int32_t color) {
  Variant bandPoints = kPoints * kCells / 65, points = kPoints;
  report.prtBoxWithTesto(kLeft, y, bandPoints, true, false, Text(65, u' '), color, kRight - kLeft);
  report.prtTesto(kLeft, y + kDrop, points, true, false, text);
}

void draw(Reporting& report, const Office& office, const std::vector<Page>& pages,
          std::size_t number) {
  const auto count = [](std::size_t value) { return digits(static_cast<std::int64_t>(value)); };
  report.prtLayoutPaginaBase(office.title, office.firm,
                             count(number) + u" di " + count(pages.size()), true, true);
  drawOnBand(report, kTop - 0.7,
             columns(u"Ordine", u"Data", u"Articolo", u"Pezzi", u"Prezzo", u"Merce €", u"Totale €"),
             kHeadColor);
  Variant points = kPoints;
  double y = kTop;
  const Page& page = pages[number - 1];
  for (auto line = page.begin(); line != page.end(); ++line, y += kRow) {
    const auto [style, text, band] = *line;
    if (style == Style::blank) continue;
    if (style == Style::group) {
      drawOnBand(report, y, text, kGroupColor);
      continue;
    }
    if (band && (style == Style::order || line == page.begin())) {
      const auto next = std::find_if(line + 1, page.end(),
                                     [](const Line& each) { return each.style != Style::note; });
      const double height = kRow * static_cast<double>(next - line);  // of the notes too
      report.prtBox(kLeft - 0.2, y, kRight, y + height, kBandColor);
    }
    report.prtTesto(kLeft, y + kDrop, points, style == Style::total, style == Style::note, text);
  }
}

}  // namespace

void printReport(const Office& office, int secondsOnForm) {
  Step printing("print the report");
  const std::vector<Page> pages = layOut(office);
  Reporting report;
  report.setOutputMode(torPRINTER);
  report.openReport();
  for (std::size_t number = 1; number <= pages.size(); ++number) {
    if (number > 1) report.newPage();
    draw(report, office, pages, number);
    printing.progress(static_cast<double>(number) / static_cast<double>(pages.size()));
  }
  report.closeReport();
  printing.done(pages.size(), "pages");

  Step showing("show it on the form");  // a window, or a picture where there is no display
  report.setOutputMode(torFORM);
  report.openReport();
  draw(report, office, pages, 1);
  showing.done(1, "page");
  std::this_thread::sleep_for(std::chrono::seconds(secondsOnForm));
  report.closeReport();
}
