// An order office: it reads the month's orders, refuses the impossible ones, adds up, and hands out
// a table, XML, SQL, a report and an invoice. It uses every class of the library.
//
//   order_office [--input FOLDER] [--output FOLDER] [--rates URL]
//
// The script "run" starts it with settings and logs below the output folder, and makes large input.
#include <cstdio>
#include <filesystem>

#include "office.h"

namespace {

constexpr std::pair<const char*, Step*> kSteps[] = {{"load settings", loadSettings},
                                                    {"read customers", readCustomers},
                                                    {"read carriers", readCarriers},
                                                    {"fetch rates", fetchRates},
                                                    {"read orders", readOrders},
                                                    {"sort by customer and time", sortOrders},
                                                    {"write a table", writeTable},
                                                    {"write XML", writeXml},
                                                    {"write SQL for three engines", writeSql},
                                                    {"print the report", printReport},
                                                    {"make an invoice", makeInvoice},
                                                    {"keep the last order", rememberLastOrder}};

void takeSteps(Office& office) {
  using Clock = std::chrono::steady_clock;
  for (const auto& [what, take] : kSteps) {
    const Clock::time_point begin = Clock::now();
    const auto [count, unit, note] = take(office);
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    if (count == 0) continue;
    std::printf("  ok %-27s%8zu %-8s%8.1f ms%10.0f /s  %s\n", what, count, unit, seconds * 1000,
                static_cast<double>(count) / seconds, note.c_str());
  }
}

// What lies where.
void listFiles(const Office& office) {
  std::int16_t count = 0;
  check(FileUtility().numFileInDir(office.out(u"*.*"), count));
  std::printf("\n%s holds %d files beside its folders:\n\n", toUtf8(office.output).c_str(), count);
  eachRow<2>(office.in(u"contents.csv"), [&](const auto& cells) {
    const std::filesystem::path file = office.out(cells[0]);
    if (exists(file))
      std::printf("  %-21s%10ju  %s\n", toUtf8(cells[0]).c_str(), file_size(file),
                  toUtf8(cells[1]).c_str());
  });
}

}  // namespace

// Members that return a result are checked at once; the others raise a RuntimeError.
int main(int argc, char** argv) try {
  Office office;
  const std::map<std::string, Text*> options = {
      {"--input", &office.input}, {"--output", &office.output}, {"--rates", &office.ratesUrl}};
  for (int i = 1; i < argc; i += 2) {
    if (i + 1 == argc || !options.contains(argv[i]))
      throw std::runtime_error("no option or no value: " + std::string(argv[i]));
    *options.at(argv[i]) = fromUtf8(argv[i + 1]);
  }
  takeSteps(office);
  listFiles(office);
} catch (const std::exception& error) {
  std::fprintf(stderr, "\norder_office: %s\n", error.what());
  return 1;
}
