// What comes in: semicolon tables in the code page, records of a fixed length, and a table from a
// server. Orders that cannot be right are refused, and the log says why.
#include <unistd.h>
#include <veltgeneral/c_ini_file.h>
#include <veltgeneral/funzioni.h>
#include <veltgeneral/host_events.h>
#include <veltgeneral/velt_inet.h>

#include <cmath>
#include <cstdio>

#include "office.h"

Done readCustomers(Office& office) {
  eachRow<6>(office.in(u"customers.csv"), [&](const auto& cells) {
    const auto& [code, name, street, town, country, currency] = cells;
    office.customers[code] = {name, street, town, country, currency};
  });
  return {office.customers.size(), "rows"};
}

// Records of 25 characters: country 2, name 16, price in cents 7.
Done readCarriers(Office& office) {
  TextArray records(Bounds{1, 100});
  std::int16_t count = 100;
  check(FileUtility().ooReadFile(office.in(u"carriers.txt"), 25, 1, count, records));
  for (std::int32_t i = 1; i <= count; ++i) {
    const TextView record = records.at(i);
    office.carriage[Text(record.substr(0, 2))] = cInifile().CLngDefault(record.substr(18));
  }
  return {office.carriage.size(), "records"};
}

Done fetchRates(Office& office) {
  VeltInet inet;
  std::int32_t session = 0, page = 0;
  Text body;
  check(inet.IOpenExtended(session));  // without proxies: the server is our own
  check(inet.IOpenUrl(session, office.ratesUrl, page));
  check(inet.IReadFile(page, body));
  inet.IClose(page);
  inet.IClose(session);
  const std::string url = toUtf8(office.ratesUrl);
  // A page that says "not found" has a body too.
  if (!body.starts_with(u"currency;")) throw std::runtime_error(url + " has no rates");
  check(FileUtility().writeFile(office.out(u"rates.csv"), 0, body));
  eachRow<2>(office.out(u"rates.csv"), [&](const auto& cells) {
    office.rates[cells[0]] = Funzioni().getNumberFromXml(cells[1]);
  });
  return {office.rates.size(), "rates", url};
}

Done readOrders(Office& office) {
  const Funzioni funzioni;
  std::size_t rows = 0, refused = 0;
  const auto refuse = [&](std::int32_t error, const Text& why) {
    ErrInfo refusal(error, why, eiWARNINGTYPE, u"readOrders", Text(u"Orders"), Text(u"OFFICE"));
    check(refusal.writeLog(office.out(u"log/office.log")));
    ++refused;
  };
  const auto read = [&](const auto& cells) {
    const auto& [number, placed, customer, article, pieces, price, urgent, deliver, note] = cells;
    const Text what = u"order " + number;
    ++rows;
    if (!funzioni.isDateYYYYMMDDHH24MISS(placed))
      return refuse(gcmfunzioniDATEINVALID, what + u" is placed on " + placed);
    if (!funzioni.isDateYYYYMMDD(deliver) && !funzioni.isDateYYYYMMDDefault(deliver))
      return refuse(gcmfunzioniDATEINVALID, what + u" is for " + deliver);
    if (!office.customers.contains(customer))
      return refuse(eiNORECORD, what + u" has no customer " + customer);

    Order order = {number, placed, deliver, customer, article, note};
    Customer& buyer = office.customers[customer];
    order.pieces = cInifile().CLngDefault(pieces);
    order.urgent = funzioni.getBool2Xml(urgent) == 1;
    const double euro =
        order.pieces * funzioni.getNumberFromXml(price) / office.rates.at(buyer.currency);
    order.goods = static_cast<Cents>(std::floor(euro * 100 + 0.5));
    order.carriage = office.carriage.at(buyer.country) * (order.urgent ? 2 : 1);
    buyer.total += order.total();
    office.orders.push_back(std::move(order));
  };
  eachRow<9>(office.in(u"orders.csv"), read);
  return {rows, "rows", std::to_string(refused) + " refused, see the log"};
}

// By customer, then by time. The key is the first part of each text; behind it stands which order
// it is. The sort serves the host's pending events once a pass, which draws a bar on the terminal.
Done sortOrders(Office& office) {
  constexpr std::int16_t kKeyLength = 6 + 14 + 6;  // customer, placed, number
  if (office.orders.empty()) return {};
  const auto count = static_cast<std::int32_t>(office.orders.size());
  TextArray keys(Bounds{1, count});
  for (std::int32_t i = 1; i <= count; ++i) {
    const Order& order = office.orders[i - 1];
    keys.set(i, order.customer + order.placed + order.number + toText(i));
  }
  const bool terminal = isatty(STDOUT_FILENO) == 1;
  const double expected = count * std::log(count) / 3;
  std::size_t passes = 0, drawn = 0;
  const ScopedHostEvents progress([&] {
    const auto bar = static_cast<std::size_t>(30 * static_cast<double>(++passes) / expected);
    if (!terminal || bar <= drawn || bar > 30) return;
    std::printf("  .. [%-30s]\r", std::string(drawn = bar, '#').c_str());
    std::fflush(stdout);
  });
  check(Funzioni().quickSortArray(keys, 1, count, 1, kKeyLength, true));

  std::vector<Order> sorted;
  for (std::int32_t i = 1; i <= count; ++i)
    sorted.push_back(
        std::move(office.orders[cInifile().CLngDefault(keys.at(i).substr(kKeyLength)) - 1]));
  office.orders = std::move(sorted);
  return {office.orders.size(), "orders", std::to_string(passes) + " passes"};
}
