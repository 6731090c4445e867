// What comes in: semicolon tables in the code page, records of a fixed length, and a table from a
// server. Orders that cannot be right are refused, and the log says why.
#include <veltgeneral/c_ini_file.h>
#include <veltgeneral/file_utility.h>
#include <veltgeneral/funzioni.h>
#include <veltgeneral/velt_inet.h>

#include <stdexcept>

#include "office.h"

using namespace veltgeneral;

namespace {

// The fields of orders.csv.
enum Field : std::int32_t {
  kNumber = 1,
  kPlaced,
  kCustomer,
  kArticle,
  kPieces,
  kPrice,
  kUrgent,
  kDeliver,
  kNote
};

// Cells are addressed as (field, row); a blank line is a row of empty cells.
TextArray load(const Text& file, std::int32_t fields) {
  TextArray table;
  std::int32_t lines = 0;
  check(FileUtility().getArrayFromCsvFile(file, table, fields, lines));
  return table;
}

// The rows below the heading that are not blank.
std::vector<std::int32_t> rowsOf(const TextArray& table) {
  std::vector<std::int32_t> rows;
  for (std::int32_t row = 2; row <= table.bounds(2).upper; ++row)
    if (!table.at(1, row).empty()) rows.push_back(row);
  return rows;
}

// A warning goes to the office's own log and, from trace level 2 on, to the common one.
void refuse(Office& office, std::int32_t number, const Text& why) {
  ErrInfo refusal(number, why, eiWARNINGTYPE, u"readOrders", Text(u"Orders"), Text(u"OFFICE"));
  check(refusal.writeLog(office.out("log/office.log")));
  ++office.refused;
}

}  // namespace

// The checked-in orders over and over under new numbers: a large input of the same shape.
void generateOrders(Office& office, std::int32_t rows) {
  Step step("generate orders");
  const TextArray source = load(office.ordersFile, kNote);
  const std::vector<std::int32_t> from = rowsOf(source);
  TextArray orders(Bounds{1, kNote}, Bounds{1, rows + 1});
  for (std::int32_t row = 1; row <= rows + 1; ++row) {
    const std::int64_t count = row - 1;  // 0 is the heading
    const std::int32_t sourceRow = count == 0 ? 1 : from[(count - 1) % from.size()];
    for (std::int32_t field = 1; field <= kNote; ++field)
      orders.set(field, row, source.at(field, sourceRow));
    if (count == 0) continue;
    orders.set(kNumber, row, digits(200000 + count));
    orders.set(kPieces, row, digits(count * 7919 % 40 + 1));
  }
  office.ordersFile = office.out("orders.csv");
  check(FileUtility().writeCsvFileFromArray(office.ordersFile, orders, rows + 1, kNote));
  step.done(static_cast<std::size_t>(rows), "rows");
}

void readCustomers(Office& office) {
  Step step("read customers");
  const TextArray table = load(office.in("customers.csv"), 6);
  for (const std::int32_t row : rowsOf(table)) {
    const auto cell = [&](std::int32_t field) { return Text(table.at(field, row)); };
    office.customers.push_back({cell(1), cell(2), cell(3), cell(4), cell(5), cell(6)});
  }
  step.done(office.customers.size(), "rows");
}

// Records of 25 characters: country 2, name 16, price in cents 7.
void readCarriers(Office& office) {
  Step step("read carriers");
  TextArray records(Bounds{1, 100});
  std::int16_t count = 100;
  check(FileUtility().ooReadFile(office.in("carriers.txt"), 25, 1, count, records));
  for (std::int32_t i = 1; i <= count; ++i) {
    const TextView record = records.at(i);
    office.carriers[Text(record.substr(0, 2))] = {Text(record.substr(2, 16)),
                                                  cInifile().CLngDefault(record.substr(18))};
  }
  step.done(office.carriers.size(), "records");
}

void fetchRates(Office& office, const std::string& url) {
  Step step("fetch rates");
  VeltInet inet;
  std::int32_t session = 0, page = 0;
  Text address = fromUtf8(url), body;
  check(inet.IOpenExtended(session));  // without proxies: the server is our own
  check(inet.IOpenUrl(session, address, page));
  check(inet.IReadFile(page, body));
  inet.IClose(page);
  inet.IClose(session);
  // A page that says "not found" has a body too.
  if (!body.starts_with(u"currency;")) throw std::runtime_error(url + " has no rates");

  check(FileUtility().writeFile(office.out("rates.csv"), 0, body));
  const TextArray table = load(office.out("rates.csv"), 2);
  for (const std::int32_t row : rowsOf(table))
    office.rates[Text(table.at(1, row))] = Funzioni().getNumberFromXml(Text(table.at(2, row)));
  step.done(office.rates.size(), "rates", url);
}

void readOrders(Office& office) {
  Step step("read orders");
  const TextArray table = load(office.ordersFile, kNote);
  const std::vector<std::int32_t> rows = rowsOf(table);
  std::map<TextView, std::size_t> customers;
  for (std::size_t i = 0; i < office.customers.size(); ++i) customers[office.customers[i].code] = i;
  const Funzioni funzioni;
  for (const std::int32_t row : rows) {
    const auto cell = [&](Field field) { return Text(table.at(field, row)); };
    const Text placed = cell(kPlaced), deliver = cell(kDeliver);
    const auto customer = customers.find(table.at(kCustomer, row));
    Text what = u"order " + cell(kNumber);
    if (!funzioni.isDateYYYYMMDDHH24MISS(placed)) {
      refuse(office, gcmfunzioniDATEINVALID, what.append(u" is placed on ").append(placed));
    } else if (!funzioni.isDateYYYYMMDD(deliver) && !funzioni.isDateYYYYMMDDefault(deliver)) {
      refuse(office, gcmfunzioniDATEINVALID, what.append(u" is for ").append(deliver));
    } else if (customer == customers.end()) {
      refuse(office, eiNORECORD, what.append(u" has no customer ").append(cell(kCustomer)));
    } else {
      office.orders.push_back({cell(kNumber), placed, deliver, cell(kArticle), cell(kNote),
                               customer->second, cInifile().CLngDefault(cell(kPieces)),
                               funzioni.getNumberFromXml(cell(kPrice)),
                               funzioni.getBool2Xml(cell(kUrgent)) == 1});
    }
  }
  step.done(rows.size(), "rows", std::to_string(office.refused) + " refused, see the log");
}
