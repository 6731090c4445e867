// What goes out to other programs: a table, XML, and SQL for three engines.
#include <veltgeneral/funzioni.h>

#include "office.h"

Done writeTable(Office& office) {
  constexpr std::int32_t kFields = 8;
  const auto rows = static_cast<std::int32_t>(office.orders.size()) + 1;
  TextArray table(Bounds{1, kFields}, Bounds{1, rows});
  std::int32_t row = 0;
  const auto put = [&](const std::array<Text, kFields>& cells) {
    ++row;
    for (std::int32_t field = 0; const Text& cell : cells) table.set(++field, row, cell);
  };
  put({u"order", u"placed", u"customer", u"article", u"pieces", u"goods", u"carriage", u"note"});
  for (const Order& order : office.orders)
    put({order.number, order.placed, office.customers[order.customer].name, order.article,
         toText(order.pieces), money(order.goods), money(order.carriage), order.note});
  check(FileUtility().writeCsvFileFromArray(office.out(u"accepted.csv"), table, rows, kFields));
  return {office.orders.size(), "rows"};
}

Done writeXml(Office& office) {
  const Funzioni funzioni;
  const auto safe = [&](Text text) {
    check(funzioni.normStringForXML(text, text));
    return text;
  };
  Text xml = u"<?xml version=\"1.0\" encoding=\"windows-1252\"?>\r\n<orders>\r\n";
  for (const Order& order : office.orders) {
    const std::pair<TextView, Text> elements[] = {
        {u"placed", funzioni.getDate2Xml(order.placed)},
        {u"deliver", funzioni.getDate2Xml(order.deliver + u"000000")},  // none: empty
        {u"customer", safe(office.customers[order.customer].name)},
        {u"article", safe(order.article)},
        {u"note", safe(order.note)},
        {u"urgent", toText(funzioni.getBool2Xml(order.urgent))},
        {u"pieces", toText(funzioni.getNumber2Xml(order.pieces))},
        {u"total", toText(funzioni.getNumber2Xml(order.euro()))},
        {u"packing", funzioni.getWork2Xml(order.pieces * 250)}};  // thousandths of a minute
    xml.append(u"<order number=\"").append(order.number).append(u"\">");
    for (const auto& [name, value] : elements) {
      xml.append(u"<").append(name).append(u">").append(value);
      xml.append(u"</").append(name).append(u">");
    }
    xml.append(u"</order>\r\n");
  }
  check(FileUtility().writeFile(office.out(u"orders.xml"), 0, xml + u"</orders>"));
  return {office.orders.size(), "orders"};
}

Done writeSql(Office& office) {
  constexpr std::pair<typeDataBaseEngine, TextView> kEngines[] = {
      {dbengineORACLE, u"orders-oracle.sql"},
      {dbengineMSACCESS, u"orders-msaccess.sql"},
      {dbengineSQLSERVER, u"orders-sqlserver.sql"}};
  const Funzioni funzioni;
  const auto quoted = [&](Text text) {
    check(funzioni.normStringForDb(text, text));
    return u'\'' + text + u'\'';
  };
  for (const auto& [engine, file] : kEngines) {
    Text sql;
    for (const Order& order : office.orders) {
      Variant urgent = order.urgent, total = order.euro();
      const Text values[] = {
          toText(funzioni.getDataForDB(engine, order.placed)),
          toText(funzioni.getDataForDB(engine, order.deliver + u"000000")),  // none: no value
          quoted(office.customers[order.customer].name),
          quoted(order.article),
          quoted(order.note),
          toText(funzioni.getBoolForDBx(engine, urgent)),
          toText(funzioni.getNumberForDB(engine, total))};
      sql.append(u"INSERT INTO orders VALUES (").append(order.number);
      for (const Text& value : values) sql.append(u", ").append(value);
      sql.append(u");\r\n");
    }
    check(FileUtility().writeFile(office.out(file), 0, sql));
  }
  return {office.orders.size() * std::size(kEngines), "rows"};
}
