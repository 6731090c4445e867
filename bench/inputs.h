// What the benchmarks of files share: their folder, a real table, memory for floors.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "floor.h"
#include "platform/memory.h"
#include "veltgeneral/text.h"

namespace veltgeneral::bench {

// Fresh memory on huge pages, for floors.
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

// Gone at the end of the program.
inline const std::string& folder() {
  static const std::string path = [] {
    std::string name = (std::filesystem::temp_directory_path() / "veltgeneral-bench-XXXXXX");
    if (mkdtemp(name.data()) == nullptr) std::abort();
    std::atexit([] { std::filesystem::remove_all(folder()); });
    return name;
  }();
  return path;
}

// The rows of UnicodeData.txt with CR LF, over and over, as long as `more(bytes, rows)` has it.
template <class More>
std::string tableFile(const std::string& name, More&& more) {
  std::string path = folder() + "/" + name;
  if (std::filesystem::exists(path)) return path;
  std::ofstream out(path, std::ios::binary);
  std::size_t bytes = 0;
  std::size_t rows = 0;
  while (more(bytes, rows)) {
    std::ifstream in("/usr/share/unicode/UnicodeData.txt");
    if (!in) std::abort();
    for (std::string line; more(bytes, rows) && std::getline(in, line); ++rows) {
      out << line << "\r\n";
      bytes += line.size() + 2;
    }
  }
  return path;
}

inline std::string tableOfBytes(std::size_t size) {
  return tableFile("bytes" + std::to_string(size),
                   [size](std::size_t bytes, std::size_t /*rows*/) { return bytes < size; });
}

inline std::string tableOfRows(std::size_t count) {
  return tableFile("rows" + std::to_string(count),
                   [count](std::size_t /*bytes*/, std::size_t rows) { return rows < count; });
}

// Times `ours(name)` beside `other(path, size)`, which do the same with one file.
template <class Ours, class Other>
void againstOnFile(benchmark::State& state, const std::string& path, Ours&& ours, Other&& other) {
  const std::size_t size = std::filesystem::file_size(path);
  const Text name = fromUtf8(path);
  against(
      state, [&] { ours(name); }, [&] { other(path, size); });
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

}  // namespace veltgeneral::bench
