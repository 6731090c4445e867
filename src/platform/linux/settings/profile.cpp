#include "platform/profile.h"

#include <sys/stat.h>

#include <mutex>

#include "platform/linux/settings/file_cache.h"
#include "platform/linux/settings/profile_file.h"
#include "platform/linux/settings/replace_file.h"

namespace veltgeneral::platform {
namespace {

// A file's index grows as it is asked, so it carries its own lock.
struct SharedProfile {
  SharedProfile(std::string_view bytes, const NarrowPage& page) : file(bytes, page) {}
  mutable std::mutex mutex;
  mutable ProfileFile file;
};

FileCache<SharedProfile>& profiles() {
  static auto* const kProfiles = new FileCache<SharedProfile>;  // outlives every late caller
  return *kProfiles;
}

KnownFile<SharedProfile> knownProfile(const std::string& file, const NarrowPage& page) {
  return profiles().get(file, [&](std::string_view bytes) {
    return std::make_shared<const SharedProfile>(bytes, page);
  });
}

// The file that a thread read last.
struct RecentProfile {
  std::string file;
  KnownFile<SharedProfile> known;
};

TextView untilNul(const Text& text) { return TextView(text).substr(0, text.find(u'\0')); }

Text asNarrow(Text text, const NarrowPage& page) {
  for (char16_t& c : text)
    if (c >= 0x80) c = page.characters[page.byte(c)];
  return text;
}

Text cut(Text text, std::size_t length) {
  if (text.size() > length) text.resize(length);
  return text;
}

}  // namespace

Text readProfile(ProfileCall call, const Text* section, const Text* key, const Text* defaultText,
                 std::size_t size, const std::string& file, const NarrowPage& page) {
  if (size < 2) return {};
  thread_local RecentProfile recent;
  if (recent.file != file || !recent.known.holds(file))
    recent = {.file = file, .known = knownProfile(file, page)};
  const auto& cached = recent.known.parsed;
  std::optional<Text> found;
  // What a file in the code page holds, and what it is asked for, are in the code page anyway.
  bool narrow = call == ProfileCall::narrow;
  if (cached) {
    const std::lock_guard lock(cached->mutex);
    ProfileFile& profile = cached->file;
    narrow = narrow && profile.isUtf16();
    const auto name = [&](const Text& text) {
      return narrow ? asNarrow(Text(untilNul(text)), page) : Text();
    };
    const auto given = [&](const Text& text, const Text& changed) {
      return narrow ? TextView(changed) : untilNul(text);
    };
    if (section == nullptr) {
      found = profile.sectionNames();
    } else {
      const Text sectionName = name(*section);
      const TextView inSection = given(*section, sectionName);
      if (key == nullptr) {
        found = profile.keyNames(inSection);
      } else {
        const Text keyName = name(*key);
        found = profile.value(inSection, given(*key, keyName));
      }
    }
  }
  const bool list = section == nullptr || key == nullptr;
  if (!found && !list && defaultText != nullptr) {
    found = untilNul(*defaultText);
    narrow = call == ProfileCall::narrow;
  }
  if (!found) return {};
  Text text = narrow ? asNarrow(std::move(*found), page) : std::move(*found);
  const bool whole = text.size() < size;
  return whole ? text : cut(std::move(text), list ? size - 2 : size - 1);
}

bool writeProfile(ProfileCall call, const Text* section, const Text* key, const Text* text,
                  const std::string& file, const NarrowPage& page) {
  if (section == nullptr || file.empty()) return false;
  const bool narrow = call == ProfileCall::narrow;
  const auto given = [&](const Text* from) -> std::optional<Text> {
    if (from == nullptr) return std::nullopt;
    return narrow ? asNarrow(Text(untilNul(*from)), page) : Text(untilNul(*from));
  };
  const auto sectionName = given(section);
  const auto keyName = given(key);
  const auto value = given(text);
  constexpr mode_t kAnyone = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
  try {
    return !changeFile(file, kAnyone, [&](std::string_view before) {
      return editProfile(before, *sectionName, keyName ? &*keyName : nullptr,
                         value ? &*value : nullptr, !narrow, page);
    });
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace veltgeneral::platform
