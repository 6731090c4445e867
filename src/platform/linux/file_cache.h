// Parsed files, known to be unchanged by one `stat`.
//
// A file is the same while its identity, size and change times are. Times move in ticks of the
// kernel's clock, so a file that changes twice within a tick can look unchanged: what was read
// within a tick of the last change is read again the next time, until the tick has passed.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace veltgeneral::platform {

struct FileStamp {
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = -1;
  std::int64_t modified = 0;  // nanoseconds
  std::int64_t changed = 0;
  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

FileStamp stampOf(const struct stat& status) noexcept;

struct FileReading {
  FileStamp stamp;
  std::string content;
  bool settled = false;  // read more than a tick after the last change
};

// Nothing where the path names no readable regular file.
std::unique_ptr<FileReading> readSettled(const std::string& path);

// Keeps the last few files parsed as `Parsed`, which is built from the file's bytes.
template <class Parsed>
class FileCache {
 public:
  // Null where there is no such file, or it cannot be read. `parse` makes a
  // std::shared_ptr<const Parsed> of the content.
  template <class Parse>
  std::shared_ptr<const Parsed> get(const std::string& path, const Parse& parse) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return nullptr;
    const FileStamp stamp = stampOf(status);
    const std::lock_guard lock(mutex_);
    auto entry = entries_.begin();
    while (entry != entries_.end() && entry->path != path) ++entry;
    const bool known = entry != entries_.end();
    if (known && entry->settled && entry->stamp == stamp) return entry->parsed;
    const auto reading = readSettled(path);
    if (!reading) return nullptr;
    if (!known) {
      if (entries_.size() == kKept) entries_.pop_back();
      entry = entries_.emplace(entries_.begin());
      entry->path = path;
    }
    // An unsettled file that reads the same keeps its parse.
    const bool same = entry->parsed && !entry->settled && entry->content == reading->content;
    if (!same) entry->parsed = parse(reading->content);
    entry->stamp = reading->stamp;
    entry->settled = reading->settled;
    entry->content = reading->settled ? std::string() : std::move(reading->content);
    return entry->parsed;
  }

 private:
  static constexpr std::size_t kKept = 16;

  struct Entry {
    std::string path;
    FileStamp stamp;
    bool settled = false;
    std::string content;  // while unsettled
    std::shared_ptr<const Parsed> parsed;
  };

  std::mutex mutex_;
  std::list<Entry> entries_;  // the latest to come first
};

}  // namespace veltgeneral::platform
