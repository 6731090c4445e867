// What is printed: the orders by customer in framed pages, their first page on the form, and an
// invoice for the best customer.
#include <veltgeneral/funzioni.h>
#include <veltgeneral/reporting.h>

#include <algorithm>
#include <span>
#include <thread>

#include "office.h"

namespace {

// In centimetres; a line has 90 cells in 9 points.
constexpr double kLeft = 1.4, kRight = 18.7, kTop = 2.25, kRow = 0.5, kDrop = 0.07;
constexpr std::int32_t kHeadColor = 0xE8D3BD, kGroupColor = 0xF6ECDF, kBandColor = 0xF0F0F0;

struct Line {
  Text text;
  std::int32_t color = 0;  // of the band below it; 0 for none
  bool bold = false, italic = false;
};

Text columns(const std::array<Text, 7>& cells) {
  constexpr int kWidths[] = {-8, -12, -31, 5, 12, 11, 11};  // below 0: aligned to the left
  Text line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const auto width = static_cast<std::size_t>(std::abs(kWidths[i]));
    const Text cell = cells[i].substr(0, width), blanks(width - cell.size(), u' ');
    line += kWidths[i] < 0 ? cell + blanks : blanks + cell;
  }
  return line;
}

std::span<const Order> ordersOf(const Office& office, const Text& code) {
  const auto first = std::ranges::lower_bound(office.orders, code, {}, &Order::customer);
  return {first, std::ranges::upper_bound(office.orders, code, {}, &Order::customer)};
}

std::array<Text, 7> cells(const Order& order) {
  return {order.number,       day(order.placed),     order.article,       toText(order.pieces),
          money(order.goods), money(order.carriage), money(order.total())};
}

// Every customer's orders with their notes, every other one on a band, and what they come to.
std::vector<Line> layOut(const Office& office) {
  std::vector<Line> lines;
  const auto put = [&](const Line& line) {
    if (lines.size() % office.linesOnPage == 0)  // a page begins
      lines.push_back(
          {columns({u"Ordine", u"Data", u"Articolo", u"Pezzi", u"Merce", u"Trasporto", u"Totale"}),
           kHeadColor, true});
    lines.push_back(line);
  };
  for (const auto& [code, customer] : office.customers) {
    const auto orders = ordersOf(office, code);
    if (orders.empty()) continue;
    if ((lines.size() + 1) % office.linesOnPage == 0) put({});  // the name would stand last
    put({columns({code, customer.country, customer.name}), kGroupColor, true});
    std::int32_t color = 0;
    for (const Order& order : orders) {
      color = kBandColor - color;
      put({columns(cells(order)), color});
      for (Text note = order.note; !note.empty();)
        put({Text(20, u' ') + Reporting().formattaStringa(note, 70), color, false, true});
    }
    put({columns({u"", u"", u"Totale", u"", u"", u"", money(customer.total)}), 0, true});
    put({});
  }
  return lines;
}

}  // namespace

// Its first page on the form (a window, or a picture where there is no display), all on paper.
Done printReport(Office& office) {
  const std::vector<Line> lines = layOut(office);
  const std::size_t each = office.linesOnPage, pages = (lines.size() + each - 1) / each;
  for (const typeOutputReport mode : {torFORM, torPRINTER}) {
    Reporting report;
    report.setOutputMode(mode);
    report.openReport();
    for (std::size_t i = 0; i < (mode == torFORM ? std::min(each, lines.size()) : lines.size());
         ++i) {
      if (i % each == 0) {
        if (i > 0) report.newPage();
        const Text number = digits(i / each + 1) + u" di " + digits(pages);
        report.prtLayoutPaginaBase(office.title, office.firm, number, true, true);
      }
      const auto& [text, color, bold, italic] = lines[i];
      const double y = kTop + kRow * static_cast<double>(i % each);
      Variant points = 9;
      if (color != 0) report.prtBox(kLeft - 0.2, y, kRight, y + kRow, color);
      report.prtTesto(kLeft, y + kDrop, points, bold, italic, text);
    }
    if (mode == torFORM) std::this_thread::sleep_for(office.timeOnForm);
    report.closeReport();
  }
  return {pages, "pages", "the first one on the form too"};
}

// The newest orders of the best customer. Their texts take the place of the words behind a dollar
// sign in a file of commands.
Done makeInvoice(Office& office) {
  const auto& [code, customer] = *std::ranges::max_element(
      office.customers, {}, [](const auto& each) { return each.second.total; });
  const std::span<const Order> all = ordersOf(office, code);
  const auto orders = all.last(std::min<std::size_t>(all.size(), 20));
  if (orders.empty()) return {};
  const auto argument = [](Text text) {
    for (std::size_t at = 0; (at = text.find_first_of(u"\"\\{", at)) != Text::npos; at += 2)
      text.insert(at, 1, u'\\');
    return u'"' + text + u'"';
  };
  Text rows;
  Cents total = 0;
  for (const Order& order : orders) {
    rows += u"row";
    for (const Text& cell : cells(order)) rows += u' ' + argument(cell);
    rows += u"\r\n";
    total += order.total();
  }
  const std::pair<TextView, Text> values[] = {
      // in the form's order
      {u"$name", argument(customer.name)},
      {u"$street", argument(customer.street)},
      {u"$town", argument(customer.town + u" (" + customer.country + u')')},
      {u"$date", argument(day(orders.back().placed))},
      {u"$code", argument(code)},
      {u"$rows", rows},
      {u"$total", argument(money(total))}};
  Text form;
  check(FileUtility().readFile(office.in(u"invoice.txt"), form));
  for (std::size_t at = 0; const auto& [name, value] : values) {
    at = form.find(name, at);
    form.replace(at, name.size(), value);
    at += value.size();
  }
  check(FileUtility().writeFile(office.out(u"invoice.txt"), 0, form));
  check(Funzioni().createPdfFile(office.out(u"invoice.txt"), office.out(u"invoice.pdf")));
  return {orders.size(), "orders", toUtf8(customer.name)};
}
