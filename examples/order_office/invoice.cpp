// An invoice for the best customer: a file of commands with our texts filled in, and the document
// that the PDF generator makes of it.
#include <veltgeneral/file_utility.h>
#include <veltgeneral/funzioni.h>

#include <algorithm>

#include "office.h"

using namespace veltgeneral;

namespace {

// A text as an argument of a command.
Text argument(TextView text) {
  Text out = u"\"";
  for (const char16_t c : text) {
    if (c == u'"' || c == u'\\' || c == u'{') out += u'\\';
    out += c;
  }
  return out + u'"';
}

// The form with a value in the place of every "$name".
Text fill(TextView form, const std::map<TextView, Text>& values) {
  Text out;
  for (std::size_t at = 0; (at = form.find(u'$')) != TextView::npos;) {
    out.append(form.substr(0, at));
    form.remove_prefix(at + 1);
    const TextView name = form.substr(0, form.find_first_not_of(u"abcdefghijklmnopqrstuvwxyz"));
    out.append(values.at(name));
    form.remove_prefix(name.size());
  }
  return out.append(form);
}

}  // namespace

void makeInvoice(const Office& office) {
  constexpr std::ptrdiff_t kMostRows = 20;
  Step step("make the invoice");
  const auto best =
      std::max_element(office.customers.begin(), office.customers.end(),
                       [](const auto& one, const auto& other) { return one.total < other.total; });
  std::vector<Order> orders;  // the newest of this customer
  for (const Order& order : office.orders)
    if (&office.customers[order.customer] == &*best) orders.push_back(order);
  orders.erase(orders.begin(), orders.end() - std::min(std::ssize(orders), kMostRows));
  if (orders.empty()) return;

  Text rows;
  Cents goods = 0, carriage = 0;
  for (const Order& order : orders) {
    rows += u"row";
    for (const Text& cell : {order.number, day(order.placed), order.article, digits(order.pieces),
                             money(order.carriage), money(order.goods)})
      rows += u' ' + argument(cell);
    rows += u"\r\n";
    goods += order.goods;
    carriage += order.carriage;
  }
  const bool home = best->country == u"IT";
  const Cents tax = home ? (goods + carriage) * 22 / 100 : 0;

  Text form;
  check(FileUtility().readFile(office.in("invoice.txt"), form));
  const Text commands =
      fill(form, {{u"name", argument(best->name)},
                  {u"street", argument(best->street)},
                  {u"town", argument(best->town + u" (" + best->country + u")")},
                  {u"date", argument(day(orders.back().placed))},
                  {u"code", argument(best->code)},
                  {u"rows", rows},
                  {u"goods", argument(money(goods))},
                  {u"carriage", argument(money(carriage))},
                  {u"taxed", argument(home ? u"IVA 22 %" : u"IVA non imponibile")},
                  {u"tax", argument(money(tax))},
                  {u"total", argument(money(goods + carriage + tax))}});
  check(FileUtility().writeFile(office.out("invoice.txt"), 0, commands));
  check(Funzioni().createPdfFile(office.out("invoice.txt"), office.out("invoice.pdf")));
  step.done(orders.size(), "orders", toUtf8(best->name));
}
