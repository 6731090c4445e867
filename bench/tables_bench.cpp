// Tables: reading them beside what cannot be avoided and beside the usual loop, from few rows to
// many; the memory they take; writing them beside the usual loop.
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <cstring>
#include <ctime>

#include "inputs.h"
#include "platform/structural_scan.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

using namespace bench;

constexpr std::int32_t kColumns = 15;

TextArray loaded(const Text& name, std::int32_t& rows) {
  TextArray table;
  if (!FileUtility().getArrayFromCsvFile(name, table, kColumns, rows).isSuccess()) std::abort();
  return table;
}

void load(const Text& name) {
  std::int32_t rows = 0;
  benchmark::DoNotOptimize(loaded(name, rows));
}

// Reading, finding every separator and line end, and widening: what no table reader can do without.
void tableFloor(const std::string& path, std::size_t size) {
  constexpr std::size_t kPiece = 128 << 10;
  const int fd = open(path.c_str(), O_RDONLY);
  const Fresh<char16_t> text(size);
  const Fresh<std::uint32_t> positions(size / 2);
  static std::uint8_t bytes[kPiece];
  std::size_t done = 0;
  std::size_t found = 0;
  for (ssize_t got = read(fd, bytes, kPiece); got > 0; got = read(fd, bytes, kPiece)) {
    const auto count = static_cast<std::size_t>(got);
    found += platform::findBytes({bytes, count}, ';', '"', '\r', positions.data + found);
    for (std::size_t i = 0; i < count; ++i) text.data[done + i] = bytes[i];
    done += count;
  }
  benchmark::DoNotOptimize(text.data);
  benchmark::DoNotOptimize(positions.data);
  benchmark::ClobberMemory();
  close(fd);
}

void tableAgainstFloor(benchmark::State& state) {
  againstOnFile(state, tableOfBytes(static_cast<std::size_t>(state.range(0))), load, tableFloor);
}
BENCHMARK(tableAgainstFloor)->Arg(1 << 20)->Arg(10 << 20)->Arg(100 << 20)->UseManualTime();

// The usual way: a byte loop into a vector of vectors of strings.
void plainReader(const std::string& path, std::size_t size) {
  std::ifstream in(path, std::ios::binary);
  std::string bytes(size, '\0');
  in.read(bytes.data(), static_cast<std::streamsize>(size));
  std::vector<std::vector<std::u16string>> table(1);
  std::u16string field;
  for (const char c : bytes) {
    if (c == ';' || c == '\r') {
      table.back().push_back(std::move(field));
      field.clear();
      if (c == '\r') table.emplace_back();
    } else if (c != '\n') {
      field.push_back(static_cast<unsigned char>(c));
    }
  }
  benchmark::DoNotOptimize(table);
}

void tableAgainstPlainReader(benchmark::State& state) {
  const std::string path = tableOfBytes(static_cast<std::size_t>(state.range(0)));
  againstOnFile(state, path, load, plainReader);
}
BENCHMARK(tableAgainstPlainReader)->Arg(100 << 20)->UseManualTime()->Iterations(3);

// A table beside as many rows in tables of ten thousand: the ratio of their times a row.
void tableOfManyRows(benchmark::State& state) {
  constexpr std::size_t kFew = 10'000;
  const auto rows = static_cast<std::size_t>(state.range(0));
  const Text many = fromUtf8(tableOfRows(rows));
  const Text few = fromUtf8(tableOfRows(kFew));
  against(
      state, [&] { load(many); },
      [&] {
        for (std::size_t done = 0; done < rows; done += kFew) load(few);
      });
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(tableOfManyRows)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->UseManualTime();

// A field of /proc/self/status, in bytes.
std::size_t statusOf(const std::string& field) {
  std::ifstream in("/proc/self/status");
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with(field)) return std::stoul(line.substr(field.size() + 1)) << 10;
  }
  std::abort();
}

// The most memory in use at any moment of loading, beside the table and the file's bytes.
void tableMemory(benchmark::State& state) {
  const std::string path = tableOfBytes(static_cast<std::size_t>(state.range(0)));
  const Text name = fromUtf8(path);
  double grown = 0;
  double table = 0;
  for (auto _ : state) {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;  // the peak begins anew
    const std::size_t before = statusOf("VmRSS:");
    std::int32_t rows = 0;
    const TextArray cells = loaded(name, rows);
    grown = static_cast<double>(statusOf("VmHWM:") - before);
    table = static_cast<double>(cells.size() * sizeof(std::uint64_t) +
                                cells.characters() * sizeof(char16_t));
  }
  state.counters["peak_MB"] = grown / 1e6;
  state.counters["table_MB"] = table / 1e6;
  state.counters["ratio"] = grown / (table + static_cast<double>(std::filesystem::file_size(path)));
}
BENCHMARK(tableMemory)->Arg(10 << 20)->Arg(100 << 20)->Iterations(1);

// One string that is appended to, every cell tested with the C library.
std::string plainWriter(const TextArray& table) {
  std::string out;
  const std::int32_t columns = table.bounds(1).upper;
  for (std::int32_t row = 1; row <= table.bounds(2).upper; ++row) {
    for (std::int32_t column = 1; column <= columns; ++column) {
      const std::string cell = toUtf8(table.at(column, row));
      char* end = nullptr;
      std::strtod(cell.c_str(), &end);
      tm parts{};
      const bool plain = cell.empty() || *end == '\0' || strptime(cell.c_str(), "%d/%m/%Y", &parts);
      if (!plain) out += '"';
      for (const char c : cell) {
        if (c == '"') out += c;
        out += c;
      }
      if (!plain) out += '"';
      if (column < columns) out += ';';
    }
    out += "\r\n";
  }
  return out;
}

void textOfTable(benchmark::State& state) {
  std::int32_t rows = 0;
  TextArray table = loaded(fromUtf8(tableOfBytes(10 << 20)), rows);
  against(
      state,
      [&] {
        Text text;
        FileUtility().getCsvStringFromArray(text, table, rows, kColumns, u";");
        benchmark::DoNotOptimize(text.data());
      },
      [&] { benchmark::DoNotOptimize(plainWriter(table)); });
}
BENCHMARK(textOfTable)->UseManualTime();

void writeTable(benchmark::State& state) {
  std::int32_t rows = 0;
  TextArray table = loaded(fromUtf8(tableOfBytes(10 << 20)), rows);
  const std::string path = folder() + "/written table";
  against(
      state, [&] { FileUtility().writeCsvFileFromArray(fromUtf8(path), table, rows, kColumns); },
      [&] { std::ofstream(path, std::ios::binary) << plainWriter(table); });
}
BENCHMARK(writeTable)->UseManualTime();

}  // namespace
}  // namespace veltgeneral
