// An INI text of any bytes is read and edited without harm, narrow and UTF-16, and what is written
// into it reads back while the other keys stay.
#include "platform/linux/settings/profile_file.h"

#include "fuzz/fuzz_input.h"
#include "platform/linux/settings/settings_text.h"
#include "settings/support.h"

namespace veltgeneral {
namespace {

using platform::ProfileFile;

void check(const std::string& bytes) {
  const platform::NarrowPage& page = test::latin1();
  const Text shown = fromUtf8(bytes);
  const Text section = u"S\u00E8";
  const Text key = u"K";
  const Text value = u"it's \"quoted\" ;=[]";
  ProfileFile before(bytes, page);
  const Text sections = before.sectionNames();
  const Text keys = before.keyNames(section);

  const auto set = platform::editProfile(bytes, section, &key, &value, false, page);
  const std::string after = set.value_or(bytes);
  ProfileFile file(after, page);
  require(file.value(u"s\u00C8", u"k") == value, "what is set reads back", shown);
  require(file.sectionNames().starts_with(sections), "the sections stay", shown);
  require(file.keyNames(section).starts_with(keys), "the keys stay", shown);
  require(!platform::editProfile(after, section, &key, &value, false, page),
          "setting it again changes nothing", shown);

  std::string left = after;
  std::size_t rounds = 0;
  // Equal keys go one by one.
  while (const auto next = platform::editProfile(left, section, &key, nullptr, false, page)) {
    require(next->size() < left.size() && ++rounds <= after.size(), "deleting ends", shown);
    left = *next;
  }
  require(!ProfileFile(left, page).value(section, key), "what is deleted is gone", shown);
}

}  // namespace
}  // namespace veltgeneral

void veltgeneral::fuzz(std::string_view bytes) {
  check(std::string(bytes));
  check(std::string(platform::kUtf16Mark).append(bytes));
}
