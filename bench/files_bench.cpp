// Whole files, tables and records beside their floors: reading or writing the same bytes and one
// widening or narrowing loop, into fresh memory on huge pages.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

#include "floor.h"
#include "platform/memory.h"
#include "platform/structural_scan.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

using bench::against;

template <class T>
struct Fresh {
  explicit Fresh(std::size_t count) : data(static_cast<T*>(std::malloc(count * sizeof(T)))) {
    platform::preferHugePages(data, count * sizeof(T));
  }
  ~Fresh() { std::free(data); }
  Fresh(const Fresh&) = delete;
  Fresh& operator=(const Fresh&) = delete;
  T* data;
};

const std::string& folder() {
  static const std::string path = [] {
    std::string name = (std::filesystem::temp_directory_path() / "veltgeneral-bench-XXXXXX");
    if (mkdtemp(name.data()) == nullptr) std::abort();
    std::atexit([] { std::filesystem::remove_all(folder()); });
    return name;
  }();
  return path;
}

// UnicodeData.txt with CR LF, repeated to at least `size` bytes, or cut there.
std::string tableFile(std::size_t size, bool cut = false) {
  const std::string path = folder() + "/table" + std::to_string(size) + (cut ? "cut" : "");
  if (std::filesystem::exists(path)) return path;
  std::ifstream in("/usr/share/unicode/UnicodeData.txt");
  std::string once;
  for (std::string line; std::getline(in, line);) once += line + "\r\n";
  std::ofstream out(path, std::ios::binary);
  for (std::size_t written = 0; written < size; written += once.size()) out << once;
  out.close();
  if (cut) std::filesystem::resize_file(path, size);
  return path;
}

// How the floor reads a file: like any reader that has to learn first how much memory to take; or
// with the size given, which no reader is.
enum Reading { kAsksSize, kGivenSize };

void readInto(const std::string& path, std::uint8_t* bytes, std::size_t size, Reading reading) {
  const int fd = open(path.c_str(), O_RDONLY);
  struct stat info {};
  if (reading == kAsksSize && fstat(fd, &info) != 0) std::abort();
  if (read(fd, bytes, size) != static_cast<ssize_t>(size)) std::abort();
  close(fd);
}

// What reading a file as text cannot do without.
void readAndWiden(const std::string& path, std::size_t size, Reading reading) {
  const Fresh<std::uint8_t> bytes(size);
  const Fresh<char16_t> text(size);
  readInto(path, bytes.data, size, reading);
  for (std::size_t i = 0; i < size; ++i) text.data[i] = bytes.data[i];
  benchmark::DoNotOptimize(text.data);
  benchmark::ClobberMemory();
}

const std::vector<std::vector<std::int64_t>> kWholeFiles{{4 << 10, 100 << 20},
                                                         {kAsksSize, kGivenSize}};

void readFile(benchmark::State& state) {
  const auto size = static_cast<std::size_t>(state.range(0));
  const std::string path = tableFile(size, true);
  const Text name = fromUtf8(path);
  against(
      state,
      [&] {
        Text text;
        FileUtility().readFile(name, text);
        benchmark::DoNotOptimize(text.data());
      },
      [&] { readAndWiden(path, size, static_cast<Reading>(state.range(1))); });
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(readFile)->ArgNames({"", "sizeGiven"})->ArgsProduct(kWholeFiles)->UseManualTime();

void writeFile(benchmark::State& state) {
  const auto size = static_cast<std::size_t>(state.range(0));
  const std::string path = folder() + "/written";
  const Text text(size, u'x');
  against(
      state, [&] { FileUtility().writeFile(fromUtf8(path), 0, text); },
      [&] {
        const Fresh<std::uint8_t> bytes(size + 2);
        for (std::size_t i = 0; i < size; ++i) bytes.data[i] = static_cast<std::uint8_t>(text[i]);
        std::memcpy(bytes.data + size, "\r\n", 2);
        const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
        if (write(fd, bytes.data, size + 2) < 0) std::abort();
        close(fd);
      });
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(writeFile)->Arg(4 << 10)->Arg(100 << 20)->UseManualTime();

void readBinaryFile(benchmark::State& state) {
  const auto size = static_cast<std::size_t>(state.range(0));
  const std::string path = tableFile(size, true);
  const Text name = fromUtf8(path);
  against(
      state,
      [&] {
        Variant bytes;
        FileUtility().readBinaryFile(name, bytes);
        benchmark::DoNotOptimize(bytes);
      },
      [&] {
        const Fresh<std::uint8_t> bytes(size);
        readInto(path, bytes.data, size, static_cast<Reading>(state.range(1)));
        benchmark::DoNotOptimize(bytes.data);
      });
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(readBinaryFile)->ArgNames({"", "sizeGiven"})->ArgsProduct(kWholeFiles)->UseManualTime();

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
  const std::string path = tableFile(static_cast<std::size_t>(state.range(0)));
  const std::size_t size = std::filesystem::file_size(path);
  const Text name = fromUtf8(path);
  std::int32_t rows = 0;
  against(
      state,
      [&] {
        TextArray table;
        FileUtility().getArrayFromCsvFile(name, table, 15, rows);
        benchmark::DoNotOptimize(table);
      },
      [&] { tableFloor(path, size); });
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
  state.SetItemsProcessed(state.iterations() * rows);
}
BENCHMARK(tableAgainstFloor)->Arg(1 << 20)->Arg(10 << 20)->Arg(100 << 20)->UseManualTime();

// The usual way: a byte loop into a vector of vectors of strings.
void tableAgainstPlainReader(benchmark::State& state) {
  const std::string path = tableFile(static_cast<std::size_t>(state.range(0)));
  const Text name = fromUtf8(path);
  against(
      state,
      [&] {
        TextArray table;
        std::int32_t rows = 0;
        FileUtility().getArrayFromCsvFile(name, table, 15, rows);
        benchmark::DoNotOptimize(table);
      },
      [&] {
        std::ifstream in(path, std::ios::binary);
        std::string bytes(std::filesystem::file_size(path), '\0');
        in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
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
      });
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(tableAgainstPlainReader)->Arg(100 << 20)->UseManualTime()->Iterations(3);

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

TextArray loaded(std::size_t size, std::int32_t& rows) {
  TextArray table;
  FileUtility().getArrayFromCsvFile(fromUtf8(tableFile(size)), table, 15, rows);
  return table;
}

void textOfTable(benchmark::State& state) {
  std::int32_t rows = 0;
  TextArray table = loaded(10 << 20, rows);
  against(
      state,
      [&] {
        Text text;
        FileUtility().getCsvStringFromArray(text, table, rows, 15, u";");
        benchmark::DoNotOptimize(text.data());
      },
      [&] { benchmark::DoNotOptimize(plainWriter(table)); });
}
BENCHMARK(textOfTable)->UseManualTime();

void writeTable(benchmark::State& state) {
  std::int32_t rows = 0;
  TextArray table = loaded(10 << 20, rows);
  const std::string path = folder() + "/written table";
  against(
      state, [&] { FileUtility().writeCsvFileFromArray(fromUtf8(path), table, rows, 15); },
      [&] { std::ofstream(path, std::ios::binary) << plainWriter(table); });
}
BENCHMARK(writeTable)->UseManualTime();

// Four reads that a 16-bit count allows, beside reading the same bytes and widening them.
void readRecords(benchmark::State& state) {
  constexpr std::int32_t kRecords = 100'000;
  constexpr std::int16_t kAtOnce = 25'000;
  const auto length = static_cast<std::size_t>(state.range(0));
  const std::size_t size = kRecords * (length + 2);
  const std::string path = folder() + "/records" + std::to_string(length);
  {
    std::ofstream out(path, std::ios::binary);
    for (int i = 0; i < kRecords; ++i) out << std::string(length - 1, 'x') << "y\r\n";
  }
  const Text name = fromUtf8(path);
  against(
      state,
      [&] {
        for (std::int32_t first = 1; first < kRecords; first += kAtOnce) {
          TextArray list(Bounds{1, kAtOnce});
          std::int16_t count = kAtOnce;
          FileUtility().ooReadFile(name, static_cast<std::int16_t>(length), first, count, list);
          if (count != kAtOnce) std::abort();
          benchmark::DoNotOptimize(list);
        }
      },
      [&] { readAndWiden(path, size, kGivenSize); });
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
  state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK(readRecords)->Arg(20)->Arg(150)->Arg(970)->UseManualTime();

}  // namespace
}  // namespace veltgeneral
