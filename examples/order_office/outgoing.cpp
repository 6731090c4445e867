// What goes out to other programs: tables, XML, and SQL for three engines.
#include <veltgeneral/file_utility.h>
#include <veltgeneral/funzioni.h>

#include "office.h"

using namespace veltgeneral;

namespace {

double euro(Cents amount) { return static_cast<double>(amount) / 100; }

void writeTable(const Text& file, const std::vector<std::vector<Text>>& rows) {
  const auto height = static_cast<std::int32_t>(rows.size());
  const auto width = static_cast<std::int32_t>(rows.front().size());
  TextArray table(Bounds{1, width}, Bounds{1, height});
  for (std::int32_t row = 1; row <= height; ++row)
    for (std::int32_t field = 1; field <= width; ++field)
      table.set(field, row, rows[row - 1][field - 1]);
  check(FileUtility().writeCsvFileFromArray(file, table, height, width));
}

}  // namespace

void writeTables(const Office& office) {
  Step step("write tables");
  std::vector<std::vector<Text>> accepted = {
      {u"order", u"placed", u"customer", u"article", u"pieces", u"goods", u"carriage", u"note"}};
  for (const Order& order : office.orders)
    accepted.push_back({order.number, order.placed, office.customers[order.customer].name,
                        order.article, digits(order.pieces), money(order.goods),
                        money(order.carriage), order.note});
  writeTable(office.out("accepted.csv"), accepted);

  std::vector<std::vector<Text>> totals = {{u"customer", u"name", u"orders", u"pieces", u"total"}};
  for (const Customer& customer : office.customers)
    totals.push_back({customer.code, customer.name, digits(customer.orders),
                      digits(customer.pieces), money(customer.total)});
  writeTable(office.out("totals.csv"), totals);
  step.done(accepted.size() + totals.size() - 2, "rows");
}

void writeXml(const Office& office) {
  Step step("write XML");
  const Funzioni funzioni;
  Text xml = u"<?xml version=\"1.0\" encoding=\"windows-1252\"?>\r\n<orders>\r\n", safe;
  const auto element = [&](TextView name, TextView value) {
    xml.append(u"<").append(name).append(u">").append(value);
    xml.append(u"</").append(name).append(u">");
  };
  const auto textElement = [&](TextView name, TextView value) {
    check(funzioni.normStringForXML(value, safe));
    element(name, safe);
  };
  for (const Order& order : office.orders) {
    xml.append(u"<order number=\"").append(order.number).append(u"\">");
    element(u"placed", funzioni.getDate2Xml(order.placed));
    element(u"deliver", funzioni.getDate2Xml(order.deliver + u"000000"));  // none: empty
    textElement(u"customer", office.customers[order.customer].name);
    textElement(u"article", order.article);
    textElement(u"note", order.note);
    element(u"urgent", digits(funzioni.getBool2Xml(order.urgent)));
    element(u"pieces", written(funzioni.getNumber2Xml(order.pieces)));
    element(u"total", written(funzioni.getNumber2Xml(euro(order.goods + order.carriage))));
    element(u"packing", funzioni.getWork2Xml(order.pieces * 250));  // thousandths of a minute
    xml.append(u"</order>\r\n");
  }
  check(FileUtility().writeFile(office.out("orders.xml"), 0, xml + u"</orders>"));
  step.done(office.orders.size(), "orders");
}

void writeSql(const Office& office) {
  constexpr std::pair<typeDataBaseEngine, const char*> kEngines[] = {
      {dbengineORACLE, "orders-oracle.sql"},
      {dbengineMSACCESS, "orders-msaccess.sql"},
      {dbengineSQLSERVER, "orders-sqlserver.sql"}};
  Step step("write SQL for three engines");
  const Funzioni funzioni;
  for (const auto& [engine, file] : kEngines) {
    Text sql, safe;
    const auto literal = [&](const Variant& value) { sql.append(u", ").append(written(value)); };
    const auto textLiteral = [&](TextView value) {
      check(funzioni.normStringForDb(value, safe));
      sql.append(u", '").append(safe).append(u"'");
    };
    for (const Order& order : office.orders) {
      Variant urgent = order.urgent, total = euro(order.goods + order.carriage);
      sql.append(u"INSERT INTO orders VALUES (").append(order.number);
      literal(funzioni.getDataForDB(engine, order.placed));
      literal(funzioni.getDataForDB(engine, order.deliver + u"000000"));  // none: no value
      textLiteral(office.customers[order.customer].name);
      textLiteral(order.article);
      textLiteral(order.note);
      literal(funzioni.getBoolForDBx(engine, urgent));
      literal(funzioni.getNumberForDB(engine, total));
      sql.append(u");\r\n");
    }
    check(FileUtility().writeFile(office.out(file), 0, sql));
  }
  step.done(office.orders.size() * 3, "rows");
}
