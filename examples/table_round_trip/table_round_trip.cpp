// A host that knows the library by name only: it loads a real table of tens of thousands of rows,
// writes it back, reads that, and compares every cell.
//
//   table_round_trip TABLE [FOLDER]
//
// TABLE is semicolon-delimited with line ends of any kind, FOLDER where the files go (default: the
// current folder). Exit status 0 when every cell survived.
#include <veltgeneral/component.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

using namespace veltgeneral;

namespace {

// One line on the terminal for every step: what is being done, then what came of it and how long it
// took.
class Step {
 public:
  explicit Step(const char* what) : what_(what) {
    std::printf("  .. %-34s\r", what_);
    std::fflush(stdout);
  }
  void done(const std::string& outcome) const {
    const std::chrono::duration<double, std::milli> taken = Clock::now() - begin_;
    std::printf("  ok %-34s %9.1f ms   %s\n", what_, taken.count(), outcome.c_str());
  }

 private:
  using Clock = std::chrono::steady_clock;
  const char* what_;
  Clock::time_point begin_ = Clock::now();
};

// Calls a member that returns a result object and stops the program when that is a failure.
template <std::size_t N>
void run(Object& object, TextView member, Variant (&arguments)[N]) {
  const ObjectRef result = std::get<ObjectRef>(object.call(member, CallKind::method, arguments));
  if (std::get<bool>(result->call(u"isSuccess", CallKind::method, {}))) return;
  const Text why = std::get<Text>(result->call(u"descriptionInfo", CallKind::propertyGet, {}));
  std::fprintf(stderr, "\n%s: %s\n", toUtf8(member).c_str(), toUtf8(why).c_str());
  std::exit(1);
}

// The table dialect ends rows with CR LF.
Text withCrLf(TextView text) {
  Text out;
  out.reserve(text.size() + text.size() / 16);
  for (const char16_t c : text) {
    if (c == u'\n' && !out.ends_with(u'\r')) out.push_back(u'\r');
    out.push_back(c);
  }
  return out;
}

std::int32_t fieldsOfFirstLine(TextView text) {
  const TextView line = text.substr(0, text.find_first_of(u"\r\n"));
  return static_cast<std::int32_t>(std::ranges::count(line, u';')) + 1;
}

std::string inWords(std::int32_t rows, std::int32_t fields) {
  return std::to_string(rows) + " rows of " + std::to_string(fields) + " fields";
}

// The table in a file, by `getArrayFromCsvFile`; its published argument names say rows for fields.
TextArray load(Object& files, const Text& path, std::int32_t fields, std::int32_t& rows) {
  Variant arguments[] = {path, TextArray(), fields, std::int32_t{0}};
  run(files, u"getArrayFromCsvFile", arguments);
  rows = std::get<std::int32_t>(arguments[3]);
  return std::get<TextArray>(std::move(arguments[1]));
}

std::int64_t differences(const TextArray& one, const TextArray& other, std::int32_t fields,
                         std::int32_t rows) {
  std::int64_t count = 0;
  for (std::int32_t row = 1; row <= rows; ++row) {
    for (std::int32_t field = 1; field <= fields; ++field) {
      count += one.at(field, row) != other.at(field, row);
    }
  }
  return count;
}

int roundTrip(const Text& source, const Text& folder) {
  const ObjectRef files = createObject(u"VeltGeneral.FileUtility");
  const Text table = folder + u"/table.csv";
  const Text written = folder + u"/table written.csv";

  const Step reading("reading the source");
  Variant content[] = {source, Text()};
  run(*files, u"readFile", content);
  const Text text = withCrLf(std::get<Text>(content[1]));
  const std::int32_t fields = fieldsOfFirstLine(text);
  reading.done(std::to_string(text.size()) + " characters");

  const Step copying("writing it with CR LF");
  Variant copy[] = {table, std::int32_t{0}, text};
  run(*files, u"writeFile", copy);
  copying.done(toUtf8(table));

  const Step loading("loading the table");
  std::int32_t rows = 0;
  const TextArray first = load(*files, table, fields, rows);
  loading.done(inWords(rows, fields));

  const Step writing("writing the table");
  Variant out[] = {written, first, rows, fields};
  run(*files, u"writeCsvFileFromArray", out);
  writing.done(toUtf8(written));

  const Step again("loading what was written");
  std::int32_t rowsAgain = 0;
  const TextArray second = load(*files, written, fields, rowsAgain);
  again.done(inWords(rowsAgain, fields));

  const Step comparing("comparing every cell");
  const std::int64_t different = rows == rowsAgain ? differences(first, second, fields, rows) : -1;
  comparing.done(std::to_string(std::int64_t{rows} * fields) + " cells, " +
                 std::to_string(different) + " differ");
  return different == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s TABLE [FOLDER]\n", argv[0]);
    return 2;
  }
  return roundTrip(fromUtf8(argv[1]), fromUtf8(argc > 2 ? argv[2] : "."));
}
