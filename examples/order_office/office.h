// The order office: what it knows, and the steps that it takes.
#pragma once

#include <filesystem>
#include <map>
#include <span>
#include <vector>

#include "steps.h"

namespace office {

struct Customer {
  Text code, name, street, town, country, currency;
  // Of the orders accepted; in euro.
  std::int64_t orders = 0, pieces = 0;
  Cents total = 0;
};

struct Order {
  Text number, placed, article, deliver, note;  // placed: YYYYMMDDHHNNSS, deliver: YYYYMMDD
  std::size_t customer = 0;
  std::int32_t pieces = 0;
  double price = 0;  // in the customer's currency
  bool urgent = false;
  Cents goods = 0, carriage = 0;  // in euro

  Cents total() const { return goods + carriage; }
};

struct Carrier {
  Text name;
  Cents price = 0;
};

struct Settings {
  Text title, firm, database;
  std::int32_t linesOnPage = 0;
};

struct Office {
  std::filesystem::path input, output;
  Text ordersFile;
  Settings settings;
  std::vector<Customer> customers;
  std::vector<Order> orders;         // accepted ones, by customer and time once they are sorted
  std::map<Text, Carrier> carriers;  // by country
  std::map<Text, double> rates;      // by currency, for one euro
  std::size_t refused = 0;

  Text in(const char* name) const { return fromUtf8((input / name).native()); }
  Text out(const char* name) const { return fromUtf8((output / name).native()); }
};

// A line of the report; a band lies behind some of them.
enum class Style { group, order, note, total, blank };

struct Line {
  Style style = Style::blank;
  Text text{};
  bool band = false;
};

struct Report {
  Text title, firm;
  std::vector<Line> lines;
  std::vector<std::span<const Line>> pages;  // of these lines
};

// settings.cpp
void settleBelow(const std::filesystem::path& output);
void loadSettings(Office& office);
void rememberLastOrder(const Office& office);

// tables.cpp
void generateOrders(Office& office, std::int32_t rows);
void readCustomers(Office& office);
void readCarriers(Office& office);
void fetchRates(Office& office, const std::string& url);
void readOrders(Office& office);

// ledger.cpp
void sortOrders(Office& office);
void addUp(Office& office);

// exports.cpp
void writeTables(const Office& office);
void writeXml(const Office& office);
void writeSql(const Office& office);

// report.cpp
Report layOut(const Office& office);
void print(const Report& report);
void show(const Report& report, int seconds);

// invoice.cpp
void makeInvoice(const Office& office);

}  // namespace office
