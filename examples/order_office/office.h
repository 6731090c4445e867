// An order office: what it knows and the steps that it takes, each in the file named above it.
#pragma once

#include <veltgeneral/err_info.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

using veltgeneral::ErrInfo;
using veltgeneral::fromUtf8;
using veltgeneral::Text;
using veltgeneral::TextView;
using veltgeneral::toUtf8;
using veltgeneral::Variant;

using Cents = std::int64_t;

struct Customer {
  Text code, name, street, town, country, currency;
  std::int64_t orders = 0, pieces = 0;  // of the orders accepted
  Cents total = 0;
};

struct Order {
  Text number, placed, deliver, article, note;  // placed: YYYYMMDDHHNNSS, deliver: YYYYMMDD
  std::size_t customer = 0;
  std::int32_t pieces = 0;
  double price = 0;  // in the customer's currency
  bool urgent = false;
  Cents goods = 0, carriage = 0;  // in euro
};

struct Carrier {
  Text name;
  Cents price = 0;
};

struct Office {
  std::filesystem::path input, output;
  Text ordersFile, title, firm;
  std::size_t linesOnPage = 0;
  std::vector<Customer> customers;
  std::vector<Order> orders;         // those accepted
  std::map<Text, Carrier> carriers;  // by country
  std::map<Text, double> rates;      // by currency, for one euro
  std::size_t refused = 0;

  Text in(const char* name) const { return fromUtf8((input / name).native()); }
  Text out(const char* name) const { return fromUtf8((output / name).native()); }
};

// settings.cpp
void settleBelow(const std::filesystem::path& output);
void loadSettings(Office& office);
void rememberLastOrder(const Office& office);

// incoming.cpp
void generateOrders(Office& office, std::int32_t rows);
void readCustomers(Office& office);
void readCarriers(Office& office);
void fetchRates(Office& office, const std::string& url);
void readOrders(Office& office);

// ledger.cpp
void sortOrders(Office& office);
void addUp(Office& office);

// outgoing.cpp
void writeTables(const Office& office);
void writeXml(const Office& office);
void writeSql(const Office& office);

// report.cpp, invoice.cpp
void printReport(const Office& office, int secondsOnForm);
void makeInvoice(const Office& office);

// helpers.cpp

// Stops the program with the result's message where it is no success.
void check(const ErrInfo& result);

// A line on the terminal for every step: what is done, how much of it and how fast.
class Step {
 public:
  explicit Step(const char* what) : what_(what) { progress(0); }
  void progress(double share);  // draws a bar, on a terminal
  void done(std::size_t count, const char* unit, const std::string& note = {});

 private:
  using Clock = std::chrono::steady_clock;
  const char* what_;
  Clock::time_point begin_ = Clock::now(), drawn_{};
};

Cents cents(double amount);
Text digits(std::int64_t number);
Text money(Cents amount);    // 123456 as "1.234,56"
Text day(const Text& date);  // "20261118093000" as "18/11/2026"
// Cut or filled with blanks to exactly `width`.
Text left(TextView text, std::size_t width);
Text right(TextView text, std::size_t width);
// What a codec answers with: a text, or an integer.
Text written(const Variant& answer);
