// An order office: it reads the month's orders, refuses the impossible ones, adds up, and hands out
// tables, XML, SQL, a report and an invoice. It uses every class of the library.
//
//   order_office [--input FOLDER] [--output FOLDER] [--rates URL] [--rows COUNT] [--form SECONDS]
//
// --rates  where the exchange rates are fetched, by default from a server on this machine:
//          python3 -m http.server --bind 127.0.0.1 --directory examples/order_office/input
// --rows   makes that many orders of the checked-in ones and takes them instead
// --form   how long the report stays on the screen
//
// Everything that it makes, settings and logs too, lies below the output folder.
#include <veltgeneral/file_utility.h>

#include <cstdio>
#include <exception>

#include "office.h"

namespace {

namespace fs = std::filesystem;

// What lies where.
void listFiles(const Office& office) {
  constexpr std::pair<const char*, const char*> kFiles[] = {
      {"orders.csv", "the orders that were generated"},
      {"rates.csv", "exchange rates, as the server sent them"},
      {"accepted.csv", "the orders accepted, by customer and time"},
      {"totals.csv", "what each customer's orders come to"},
      {"orders.xml", "the orders for other programs"},
      {"orders-oracle.sql", "the orders for one database"},
      {"orders-msaccess.sql", "another"},
      {"orders-sqlserver.sql", "and a third"},
      {"report.pdf", "the report as the printer gets it"},
      {"form.png", "its first page on the form, where there is no display"},
      {"invoice.txt", "the commands of the invoice"},
      {"invoice.pdf", "the invoice"},
      {"log/office.log", "why orders were refused"},
      {"log/tarnview.log", "the common log"},
      {"log/Tarnview.dat", "the settings file: the last order"},
      {"settings/office.ini", "the report's settings, the window's place"},
      {"registry/machine.reg", "the registry: connection, log settings"}};
  std::int16_t count = 0;
  check(veltgeneral::FileUtility().numFileInDir(office.out("*.*"), count));
  std::printf("\n%s holds %d files and three folders:\n\n", office.output.c_str(), count);
  for (const auto& [name, what] : kFiles) {
    const fs::path file = office.output / name;
    if (fs::exists(file)) std::printf("  %-21s%10ju  %s\n", name, fs::file_size(file), what);
  }
}

void run(std::map<std::string, std::string>& options) {
  Office office;
  office.input = fs::absolute(options["--input"]);
  office.output = fs::absolute(options["--output"]);
  office.ordersFile = office.in("orders.csv");
  settleBelow(office.output);
  loadSettings(office);
  if (const int rows = std::stoi(options["--rows"]); rows > 0) generateOrders(office, rows);
  readCustomers(office);
  readCarriers(office);
  fetchRates(office, options["--rates"]);
  readOrders(office);
  sortOrders(office);
  addUp(office);
  writeTables(office);
  writeXml(office);
  writeSql(office);
  printReport(office, std::stoi(options["--form"]));
  makeInvoice(office);
  rememberLastOrder(office);
  listFiles(office);
}

}  // namespace

// Members that return a result are checked at once; the others raise a RuntimeError.
int main(int argc, char** argv) {
  try {
    std::map<std::string, std::string> options = {{"--input", "examples/order_office/input"},
                                                  {"--output", "order_office"},
                                                  {"--rates", "http://127.0.0.1:8000/rates.csv"},
                                                  {"--rows", "0"},
                                                  {"--form", "0"}};
    for (int i = 1; i + 1 < argc; i += 2) options.at(argv[i]) = argv[i + 1];
    run(options);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "\norder_office: %s\n", error.what());
    return 1;
  }
}
