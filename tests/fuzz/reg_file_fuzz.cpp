// A `.reg` text of any bytes is read, edited and exported without harm, and what is written into it
// reads back while all else stays.
#include "platform/linux/settings/reg_file.h"

#include "fuzz/fuzz_input.h"
#include "support/test_host.h"

void veltgeneral::fuzz(std::string_view bytes) {
  using platform::RegistryFile;
  using Kind = platform::RegChange::Kind;
  const platform::NarrowPage& page = test::latin1();
  constexpr TextView kKey = u"HKEY_LOCAL_MACHINE\\k";
  constexpr TextView kName = u"n\"\\";
  const platform::RegistryValue value{.text = u"a\\\"\n"};

  platform::RegText text = platform::decodeReg(bytes, page);
  const bool wholeUnits = bytes.size() % 2 == 0 || text.encoding != platform::Encoding::utf16Mark;
  require(!wholeUnits || platform::encodeReg(text, page) == bytes, "encodes back");

  const auto edited = [&](Kind kind) {
    return platform::editReg(
        text.inner, {{kind, platform::toInner(kKey), platform::toInner(kName), value}}, page);
  };
  const auto found = [&]() -> std::optional<platform::RegistryValue> {
    const RegistryFile file(platform::encodeReg(text, page), page);
    const std::uint32_t key = file.find(kKey);
    return key == RegistryFile::kNone ? std::nullopt : file.query(key, kName);
  };
  text.inner = edited(Kind::setValue);
  require(found() == value, "what is set reads back");
  require(edited(Kind::setValue) == text.inner, "setting it again changes nothing");
  const auto exported = [&](const std::string& of) {
    const RegistryFile file(of, page);
    return file.exported(file.find(u"HKEY_LOCAL_MACHINE"));
  };
  const std::string once = exported(platform::encodeReg(text, page));
  require(exported(once) == once, "exports the same again");
  text.inner = edited(Kind::removeValue);
  require(!found(), "what is removed is gone");
}
