// Settings beside one `stat` of their file, which is what it takes to know that it is unchanged;
// changes beside reading, splicing, writing beside and renaming, and beside GLib's key file.
#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <thread>

#include "floor.h"
#include "platform/linux/settings/profile_file.h"
#include "support/test_host.h"
#include "veltgeneral/c_ini_file.h"
#include "veltgeneral/registry_utility.h"

namespace veltgeneral {
namespace {

using bench::against;

constexpr int kCalls = 1000;

void statFile(const std::string& path) {
  struct stat status {};
  for (int i = 0; i < kCalls; ++i) benchmark::DoNotOptimize(::stat(path.c_str(), &status));
}

// A file that was changed this moment is not yet trusted to stay as it is.
void letTheTickPass() { std::this_thread::sleep_for(std::chrono::milliseconds(20)); }

void atEverySize(benchmark::internal::Benchmark* bench) {
  bench->Arg(1 << 10)->Arg(60 << 10)->Arg(1 << 20)->UseManualTime()->Unit(benchmark::kMicrosecond);
}

void getKeyValue(benchmark::State& state) {
  const test::TestHost host;
  std::string values;
  for (int i = 0; i < state.range(0); ++i)
    values.append("\"value").append(std::to_string(i)).append("\"=\"text ").append("\"\n");
  host.setMachineKey("SOFTWARE\\Acme\\Application", values);
  letTheTickPass();
  auto root = static_cast<std::int32_t>(0x80000002);
  Text key = u"SOFTWARE\\Acme\\Application";
  Text name = u"value7";
  RegistryUtility registry;
  against(
      state,
      [&] {
        for (int i = 0; i < kCalls; ++i)
          benchmark::DoNotOptimize(registry.getKeyValue(root, key, name));
      },
      [path = host / "registry/machine.reg"] { statFile(path); });
}
BENCHMARK(getKeyValue)
    ->Arg(10)
    ->Arg(100000)
    ->UseManualTime()
    ->MinTime(0.5)
    ->Unit(benchmark::kMicrosecond);

// Sections of 20 keys, and the one that is asked in their middle.
std::string iniText(std::size_t size) {
  std::string text;
  for (int i = 0; text.size() < size; ++i) {
    const std::string number = std::to_string(i);
    if (i % 20 == 0) text.append("[section").append(number).append("]\r\n");
    text.append("key").append(number).append("=some value ").append(number).append("\r\n");
  }
  const std::size_t middle = text.find("\r\n[", text.size() / 2);
  return text.insert(middle == std::string::npos ? text.size() : middle + 2,
                     "[main]\r\nkey=0123456789\r\n");
}

struct Ini {
  explicit Ini(std::int64_t size) : content(iniText(static_cast<std::size_t>(size))) {
    test::setContent(path, content);
    file.setPath(u"C:\\a.ini");
    file.setSection(u"main");
    file.setKey(u"key");
    letTheTickPass();
  }
  test::TestHost host;
  std::string path = host / "drive/a.ini";
  std::string content;
  cInifile file;
};

void getValue(benchmark::State& state) {
  Ini ini(state.range(0));
  against(
      state,
      [&] {
        for (int i = 0; i < kCalls; ++i) benchmark::DoNotOptimize(ini.file.Value());
      },
      [&] { statFile(ini.path); });
}
BENCHMARK(getValue)->Apply(atEverySize)->MinTime(0.5);

std::string readAll(const std::string& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  ::fstat(file, &status);
  std::string content(static_cast<std::size_t>(status.st_size), '\0');
  benchmark::DoNotOptimize(::read(file, content.data(), content.size()));
  ::close(file);
  return content;
}

// The first look after another program's change.
void getChangedValue(benchmark::State& state) {
  Ini ini(state.range(0));
  const auto touch = [&] { ::utimensat(AT_FDCWD, ini.path.c_str(), nullptr, 0); };
  against(
      state,
      [&] {
        touch();
        benchmark::DoNotOptimize(ini.file.Value());
      },
      [&] {
        touch();
        const platform::NarrowPage& page = test::latin1();
        platform::ProfileFile index(readAll(ini.path), page);
        benchmark::DoNotOptimize(index.value(u"main", u"key"));
      });
}
BENCHMARK(getChangedValue)->Apply(atEverySize);

// A digit of the value, so that every put changes the file.
Text nextValue() {
  static int count = 0;
  return Text(u"012345678").append(1, static_cast<char16_t>(u'0' + ++count % 10));
}

void putFloor(const std::string& path, const std::string& beside) {
  std::string content = readAll(path);
  const std::size_t at = content.find("[main]\r\nkey=") + 12;
  content.replace(at, 10, toUtf8(nextValue()));
  const int file = ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  benchmark::DoNotOptimize(::write(file, content.data(), content.size()));
  ::close(file);
  std::rename(beside.c_str(), path.c_str());
}

// Our change beside another's of a file with the same content.
template <class Other>
void putBeside(benchmark::State& state, const Other& other) {
  Ini ini(state.range(0));
  const std::string path = ini.host / "drive/b.ini";
  test::setContent(path, ini.content);
  against(
      state,
      [&] {
        Text value = nextValue();
        ini.file.setValue(value);
      },
      [&] { other(path); });
}

void putValue(benchmark::State& state) {
  putBeside(state, [](const std::string& path) { putFloor(path, path + ".beside"); });
}
BENCHMARK(putValue)->Apply(atEverySize)->MinTime(0.5);

void putValueBesidePeer(benchmark::State& state) {
  putBeside(state, [](const std::string& path) {
    GKeyFile* file = g_key_file_new();
    g_key_file_load_from_file(file, path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
    g_key_file_set_string(file, "main", "key", toUtf8(nextValue()).c_str());
    g_key_file_save_to_file(file, path.c_str(), nullptr);
    g_key_file_free(file);
  });
}
BENCHMARK(putValueBesidePeer)
    ->Name("putValue/GKeyFile")
    ->Arg(60 << 10)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace veltgeneral
