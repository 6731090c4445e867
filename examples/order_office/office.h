// An order office: what it knows, the steps that it takes, and what these share.
#pragma once

#include <veltgeneral/file_utility.h>

#include <array>
#include <chrono>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

using namespace veltgeneral;

using Cents = std::int64_t;  // of euro

struct Customer {
  Text name, street, town, country, currency;
  Cents total = 0;  // of the orders accepted
};

struct Order {
  Text number, placed, deliver, customer, article, note;  // YYYYMMDDHHNNSS, YYYYMMDD, code
  std::int32_t pieces = 0;
  bool urgent = false;
  Cents goods = 0, carriage = 0;
  Cents total() const { return goods + carriage; }
  double euro() const { return static_cast<double>(total()) / 100; }
};

struct Office {
  Text input = u"examples/order_office/input", output = u"order_office";
  Text ratesUrl = u"http://127.0.0.1:8000/rates.csv", title, firm;
  std::chrono::seconds timeOnForm{};
  std::size_t linesOnPage = 0;
  std::map<Text, Customer> customers;  // by code
  std::map<Text, Cents> carriage;      // by country
  std::map<Text, double> rates;        // by currency, for one euro
  std::vector<Order> orders;           // those accepted

  Text in(TextView file) const { return (input + u'/').append(file); }
  Text out(TextView file) const { return (output + u'/').append(file); }
};

// What a step has done, for its line on the terminal. Nothing is not shown.
struct Done {
  std::size_t count = 0;
  const char* unit = "";
  std::string note{};
};

using Step = Done(Office& office);
Step loadSettings, rememberLastOrder;                                  // settings
Step readCustomers, readCarriers, fetchRates, readOrders, sortOrders;  // incoming
Step writeTable, writeXml, writeSql;                                   // outgoing
Step printReport, makeInvoice;                                         // paper

// Stops the program with the message of a result that is no success.
inline void check(const ErrInfo& result) {
  if (result.isSuccess()) return;
  throw std::runtime_error(toUtf8(result.locationInfo() + u": " + result.descriptionInfo()));
}

inline Text digits(std::size_t number) { return fromUtf8(std::to_string(number)); }

// 123456 as "1.234,56"
inline Text money(Cents amount) {
  Text text = digits(amount / 100);
  for (std::size_t at = text.size(); at > 3;) text.insert(at -= 3, 1, u'.');
  return text + u',' + digits(amount % 100 + 100).substr(1);
}

// "20261118093000" as "18/11/2026"
inline Text day(const Text& date) {
  return date.substr(6, 2) + u'/' + date.substr(4, 2) + u'/' + date.substr(0, 4);
}

// Calls `use` with the cells of every row of a semicolon table but its heading and blank ones.
template <std::size_t fields, class Use>
void eachRow(const Text& file, Use use) {
  TextArray table;  // addressed as (field, row)
  std::int32_t lines = 0;
  check(FileUtility().getArrayFromCsvFile(file, table, fields, lines));
  std::array<Text, fields> cells;
  for (std::int32_t row = 2; row <= table.bounds(2).upper; ++row) {
    for (std::int32_t field = 0; auto& cell : cells) cell = table.at(++field, row);
    if (!cells[0].empty()) use(cells);
  }
}
