// An order office: it reads the month's orders, refuses the impossible ones, adds up, and hands out
// tables, XML, SQL, a report and an invoice.
//
//   order_office [--input FOLDER] [--output FOLDER] [--rates URL] [--rows COUNT] [--hold SECONDS]
//
// --rates  where the table of exchange rates is fetched, by default from a server on this machine:
//          python3 -m http.server --bind 127.0.0.1 --directory examples/order_office/input
// --rows   makes that many orders of the checked-in ones and takes them instead
// --hold   how long the form stays on the screen
//
// Everything that it makes, settings and logs too, lies below the output folder.
#include <veltgeneral/file_utility.h>

#include <cstdio>
#include <exception>
#include <stdexcept>

#include "office.h"

namespace {

namespace fs = std::filesystem;
using namespace office;

struct Options {
  fs::path input = "examples/order_office/input", output = "order_office";
  std::string rates = "http://127.0.0.1:8000/rates.csv";
  int rows = 0, hold = 0;
};

Options parse(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; i += 2) {
    const std::string name = argv[i], value = i + 1 < argc ? argv[i + 1] : "";
    if (value.empty()) throw std::invalid_argument("a value is missing behind " + name);
    if (name == "--input")
      options.input = value;
    else if (name == "--output")
      options.output = value;
    else if (name == "--rates")
      options.rates = value;
    else if (name == "--rows")
      options.rows = std::stoi(value);
    else if (name == "--hold")
      options.hold = std::stoi(value);
    else
      throw std::invalid_argument("no such option: " + name);
  }
  return options;
}

// What lies where. The pattern counts files as the system shows them, without folders.
void listFiles(const Office& office) {
  constexpr struct {
    const char *name, *what;
  } kFiles[] = {{"orders.csv", "the orders that were generated"},
                {"rates.csv", "exchange rates, as the server sent them"},
                {"accepted.csv", "the orders accepted, by customer and time"},
                {"totals.csv", "what each customer's orders come to"},
                {"orders.xml", "the same orders for other programs"},
                {"orders-oracle.sql", "the same for a database"},
                {"orders-msaccess.sql", "for another"},
                {"orders-sqlserver.sql", "and a third"},
                {"report.pdf", "the report as the printer gets it"},
                {"form.png", "its first page as the form shows it"},
                {"invoice.txt", "the commands of the invoice"},
                {"invoice.pdf", "the invoice"},
                {"log/office.log", "why orders were refused"},
                {"log/tarnview.log", "the common log"},
                {"log/Tarnview.dat", "the settings file: the last order"},
                {"settings/office.ini", "the report's settings, the window's place"},
                {"registry/machine.reg", "the registry: connection, log settings"}};
  std::int16_t count = 0;
  check(veltgeneral::FileUtility().numFileInDir(office.out("*.*"), count));
  std::printf("\n%s holds %d files, and folders for log, settings and registry:\n\n",
              office.output.c_str(), count);
  for (const auto& [name, what] : kFiles) {
    const fs::path file = office.output / name;
    if (fs::exists(file))
      std::printf("  %-22s %10ju  %s\n", name, std::uintmax_t{fs::file_size(file)}, what);
  }
}

void run(const Options& options) {
  Office office;
  office.input = fs::absolute(options.input);
  office.output = fs::absolute(options.output);
  office.ordersFile = office.in("orders.csv");
  settleBelow(office.output);
  loadSettings(office);
  if (options.rows > 0) generateOrders(office, options.rows);
  readCustomers(office);
  readCarriers(office);
  fetchRates(office, options.rates);
  readOrders(office);
  sortOrders(office);
  addUp(office);
  writeTables(office);
  writeXml(office);
  writeSql(office);
  const Report report = layOut(office);
  print(report);
  show(report, options.hold);
  makeInvoice(office);
  rememberLastOrder(office);
  listFiles(office);
}

}  // namespace

// Members that return a result are checked at once; the others raise a RuntimeError.
int main(int argc, char** argv) {
  try {
    run(parse(argc, argv));
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "\norder_office: %s\n", error.what());
    return 1;
  }
}
