// An INI text of any bytes is read and edited without harm, narrow and UTF-16, and what is written
// into it reads back while the other keys stay.
#include "platform/linux/settings/profile_file.h"

#include "fuzz/fuzz_input.h"
#include "platform/linux/settings/settings_text.h"
#include "support/test_host.h"

namespace veltgeneral {
namespace {

void check(const std::string& bytes) {
  const Text section = u"S\u00E8";
  const Text key = u"K";
  const Text value = u"it's \"quoted\" ;=[]";
  const auto edited = [&](const std::string& text, const Text* to) {
    return platform::editProfile(text, section, &key, to, false, test::latin1());
  };
  const auto file = [](const std::string& text) {
    return platform::ProfileFile(text, test::latin1());
  };
  const std::string after = edited(bytes, &value).value_or(bytes);
  require(file(after).value(u"s\u00C8", u"k") == value, "what is set reads back");
  require(file(after).sectionNames().starts_with(file(bytes).sectionNames()), "sections stay");
  require(file(after).keyNames(section).starts_with(file(bytes).keyNames(section)), "keys stay");
  require(!edited(after, &value), "setting it again changes nothing");

  std::string left = after;
  std::size_t rounds = 0;
  // Equal keys go one by one.
  while (const auto next = edited(left, nullptr)) {
    require(next->size() < left.size() && ++rounds <= after.size(), "deleting ends");
    left = *next;
  }
  require(!file(left).value(section, key), "what is deleted is gone");
}

}  // namespace
}  // namespace veltgeneral

void veltgeneral::fuzz(std::string_view bytes) {
  check(std::string(bytes));
  check(std::string(platform::kUtf16Mark).append(bytes));
}
