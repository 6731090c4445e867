// A `.reg` text of any bytes is read, edited and exported without harm, and what is written into it
// reads back while all else stays.
#include "platform/linux/settings/reg_file.h"

#include "fuzz/fuzz_input.h"
#include "settings/support.h"

namespace veltgeneral {
namespace {

using platform::RegChange;
using platform::RegistryFile;
using platform::RegistryValue;

constexpr TextView kKey = u"HKEY_LOCAL_MACHINE\\k";
constexpr TextView kName = u"n\"\\";

std::optional<RegistryValue> ask(std::string_view bytes) {
  const RegistryFile file(bytes, test::latin1());
  const std::uint32_t key = file.find(kKey);
  return key == RegistryFile::kNone ? std::nullopt : file.query(key, kName);
}

void check(std::string_view bytes) {
  const platform::NarrowPage& page = test::latin1();
  const Text shown = fromUtf8(bytes);
  platform::RegText text = platform::decodeReg(bytes, page);
  const bool wholeUnits = bytes.size() % 2 == 0 || text.encoding != platform::Encoding::utf16Mark;
  require(!wholeUnits || platform::encodeReg(text, page) == bytes, "encodes back", shown);

  const RegistryValue value{.text = u"a\\\"\n"};
  const std::string key = platform::toInner(kKey);
  const std::string name = platform::toInner(kName);
  text.inner = platform::editReg(text.inner, {{RegChange::Kind::setValue, key, name, value}}, page);
  const std::string set = platform::encodeReg(text, page);
  require(ask(set) == value, "what is set reads back", shown);
  require(platform::editReg(text.inner, {{RegChange::Kind::setValue, key, name, value}}, page) ==
              text.inner,
          "setting it again changes nothing", shown);
  text.inner = platform::editReg(text.inner, {{RegChange::Kind::removeValue, key, name, {}}}, page);
  require(!ask(platform::encodeReg(text, page)), "what is removed is gone", shown);

  const RegistryFile file(set, page);
  const std::uint32_t root = file.find(u"HKEY_LOCAL_MACHINE");
  const std::string exported = file.exported(root);
  const RegistryFile again(exported, page);
  require(again.exported(again.find(u"HKEY_LOCAL_MACHINE")) == exported, "exports the same again",
          shown);
}

}  // namespace
}  // namespace veltgeneral

void veltgeneral::fuzz(std::string_view bytes) { check(bytes); }
