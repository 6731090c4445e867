// Whole files and records beside their floors: reading or writing the same bytes and one widening
// or narrowing loop, into fresh memory on huge pages.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "inputs.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

using namespace bench;

std::string fileOf(std::size_t size) {
  const std::string path = folder() + "/cut" + std::to_string(size);
  if (std::filesystem::exists(path)) return path;
  std::filesystem::copy_file(tableOfBytes(size), path);
  std::filesystem::resize_file(path, size);
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
  againstOnFile(
      state, fileOf(static_cast<std::size_t>(state.range(0))),
      [](const Text& name) {
        Text text;
        FileUtility().readFile(name, text);
        benchmark::DoNotOptimize(text.data());
      },
      [&](const std::string& path, std::size_t size) {
        readAndWiden(path, size, static_cast<Reading>(state.range(1)));
      });
}
BENCHMARK(readFile)->ArgNames({"", "sizeGiven"})->ArgsProduct(kWholeFiles)->UseManualTime();

void readBinaryFile(benchmark::State& state) {
  againstOnFile(
      state, fileOf(static_cast<std::size_t>(state.range(0))),
      [](const Text& name) {
        Variant bytes;
        FileUtility().readBinaryFile(name, bytes);
        benchmark::DoNotOptimize(bytes);
      },
      [&](const std::string& path, std::size_t size) {
        const Fresh<std::uint8_t> bytes(size);
        readInto(path, bytes.data, size, static_cast<Reading>(state.range(1)));
        benchmark::DoNotOptimize(bytes.data);
      });
}
BENCHMARK(readBinaryFile)->ArgNames({"", "sizeGiven"})->ArgsProduct(kWholeFiles)->UseManualTime();

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

// Four reads that a 16-bit count allows, beside reading the same bytes and widening them.
void readRecords(benchmark::State& state) {
  constexpr std::int32_t kRecords = 100'000;
  constexpr std::int16_t kAtOnce = 25'000;
  const auto length = static_cast<std::int16_t>(state.range(0));
  const std::string path = folder() + "/records" + std::to_string(length);
  {
    std::ofstream out(path, std::ios::binary);
    const std::string record = std::string(static_cast<std::size_t>(length), 'x') + "\r\n";
    for (int i = 0; i < kRecords; ++i) out << record;
  }
  againstOnFile(
      state, path,
      [&](const Text& name) {
        for (std::int32_t first = 1; first < kRecords; first += kAtOnce) {
          TextArray list(Bounds{1, kAtOnce});
          std::int16_t count = kAtOnce;
          FileUtility().ooReadFile(name, length, first, count, list);
          if (count != kAtOnce) std::abort();
          benchmark::DoNotOptimize(list);
        }
      },
      [](const std::string& file, std::size_t size) { readAndWiden(file, size, kGivenSize); });
  state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK(readRecords)->Arg(20)->Arg(150)->Arg(970)->UseManualTime();

}  // namespace
}  // namespace veltgeneral
