// The registry text reader that the whole library reads its settings with.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/registry.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

inline constexpr std::int32_t kLocalMachine = static_cast<std::int32_t>(0x80000002);

// A key of the registry as its texts are read: one moment's state, however many values are asked.
class RegistryTexts {
 public:
  // `root` is a predefined key's number. A key that is not there has no values.
  RegistryTexts(std::int32_t root, TextView key);

  // A value of at most 1024 bytes in the code page, a text's final NUL included, cut before its
  // first NUL: a text as it is, without environment expansion; a 32-bit number by way of its bytes
  // in hexadecimal, without leading zeros and only up to the lowest byte that is 0, as decimal text
  // ("&h" alone where the lowest byte is 0); the empty text for any other type.
  //
  // Nothing where the value is missing or longer.
  std::optional<Text> read(TextView name) const;

  // Nothing has changed between the one and the other.
  friend bool operator==(const RegistryTexts&, const RegistryTexts&) = default;

 private:
  std::optional<platform::RegistryKey> key_;
};

}  // namespace veltgeneral
