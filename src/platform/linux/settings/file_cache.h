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

// What was read of a file, and how to know that it still holds.
template <class Parsed>
struct KnownFile {
  std::shared_ptr<const Parsed> parsed;  // null where there is no such file, or it cannot be read
  FileStamp stamp;
  bool settled = false;

  // Costs one `stat`. A file that is not there is never known.
  bool holds(const std::string& path) const noexcept {
    struct stat status {};
    return settled && ::stat(path.c_str(), &status) == 0 && stampOf(status) == stamp;
  }
};

// Keeps the last few files parsed as `Parsed`, which is built from the file's bytes.
template <class Parsed>
class FileCache {
 public:
  // `parse` makes a std::shared_ptr<const Parsed> of the content.
  template <class Parse>
  KnownFile<Parsed> get(const std::string& path, const Parse& parse) {
    const std::lock_guard lock(mutex_);
    auto entry = entries_.begin();
    while (entry != entries_.end() && entry->path != path) ++entry;
    const bool listed = entry != entries_.end();
    if (listed && entry->known.holds(path)) return entry->known;
    const auto reading = readSettled(path);
    if (!reading) return {};
    if (!listed) {
      if (entries_.size() == kKept) entries_.pop_back();
      entry = entries_.emplace(entries_.begin());
      entry->path = path;
    }
    KnownFile<Parsed>& known = entry->known;
    // An unsettled file that reads the same keeps its parse.
    const bool same = known.parsed && !known.settled && entry->content == reading->content;
    if (!same) known.parsed = parse(reading->content);
    known.stamp = reading->stamp;
    known.settled = reading->settled;
    entry->content = reading->settled ? std::string() : std::move(reading->content);
    return known;
  }

 private:
  static constexpr std::size_t kKept = 16;

  struct Entry {
    std::string path;
    KnownFile<Parsed> known;
    std::string content;  // while unsettled
  };

  std::mutex mutex_;
  std::list<Entry> entries_;  // the latest to come first
};

}  // namespace veltgeneral::platform
