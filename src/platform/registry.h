// The registry: values of several types under keys under a few roots, shared by the machine.
//
// Key paths are names joined by "\", below a root; empty names between separators count for
// nothing. Key and value names match without regard to case. The value named "" is the key's
// default value. Texts are whole and Unicode here; callers that need them in the code page narrow
// them.
//
// On Linux the hives are text files in the `.reg` format: `machine.reg` and `user.reg` in the
// folder VELTGENERAL_REGISTRY_DIR, else in /etc/veltgeneral and in the user's XDG configuration
// folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/narrow_page.h"
#include "veltgeneral/export.h"
#include "veltgeneral/text.h"

namespace veltgeneral::platform {

// The predefined keys, by their published numbers. Classes are the machine's SOFTWARE\Classes.
enum class RegistryRoot : std::uint32_t {
  classes = 0x80000000,
  currentUser = 0x80000001,
  localMachine = 0x80000002,
  users = 0x80000003,
  currentConfig = 0x80000005,
};

enum class RegistryType : std::uint32_t {
  none = 0,
  text = 1,
  expandableText = 2,
  binary = 3,
  number = 4,
  bigEndianNumber = 5,
  texts = 7,
  number64 = 11,
};

// Any 32-bit number may stand as a type. `text` serves text and expandableText (without final NUL)
// and texts (a NUL after each); `bytes` serves the others, numbers little-endian.
struct RegistryValue {
  RegistryType type = RegistryType::text;
  Text text = {};
  std::vector<std::uint8_t> bytes = {};
  friend bool operator==(const RegistryValue&, const RegistryValue&) = default;
};

class RegistryFile;  // one hive as it was at one moment

// A key of one moment: what is read through it fits together, whatever others write meanwhile.
class VELTGENERAL_API RegistryKey {
 public:
  // Nothing where there is no such key or root, or where its hive cannot be read. Costs one `stat`
  // as long as the hive's file does not change.
  static std::optional<RegistryKey> open(RegistryRoot root, TextView path, const NarrowPage& page);

  std::optional<RegistryValue> query(TextView name) const;
  // In the file's order, as written there.
  std::vector<Text> valueNames() const;
  std::vector<Text> subKeyNames() const;

  // The same key at the same moment: every answer is the same.
  friend bool operator==(const RegistryKey&, const RegistryKey&) = default;

 private:
  RegistryKey(std::shared_ptr<const RegistryFile> file, std::uint32_t node);

  std::shared_ptr<const RegistryFile> file_;
  std::uint32_t node_;
};

// What changes throw; the hive is then as it was. `line` counts from 1 in a text that was
// imported and is 0 otherwise. what() says the reason and the hive's file, not the line.
class VELTGENERAL_API RegistryError : public std::runtime_error {
 public:
  explicit RegistryError(const std::string& reason, std::size_t line = 0)
      : std::runtime_error(reason), line_(line) {}
  std::size_t line() const noexcept { return line_; }

 private:
  std::size_t line_;
};

// Creates the key where needed.
VELTGENERAL_API void setRegistryValue(RegistryRoot root, TextView path, TextView name,
                                      const RegistryValue& value, const NarrowPage& page);
// False where there was none; a hive that cannot be read is an error.
VELTGENERAL_API bool removeRegistryValue(RegistryRoot root, TextView path, TextView name,
                                         const NarrowPage& page);
// With its sub-keys. False where there was none; a root itself is never removed.
VELTGENERAL_API bool removeRegistryKey(RegistryRoot root, TextView path, const NarrowPage& page);

// The registry writer's one operation: sets a text value, creating the key; false where it failed.
bool writeRegistryText(RegistryRoot root, TextView path, TextView name, TextView value,
                       const NarrowPage& page) noexcept;

// Takes over a whole `.reg` text (version 5 or REGEDIT4, UTF-8, UTF-16LE with its mark, or the code
// page), deletions included. A malformed text changes nothing; where the user's hive cannot be
// changed, the machine's already is.
VELTGENERAL_API void importRegistry(std::string_view text, const NarrowPage& page);
// A key with all below it as version 5 text, in UTF-16LE with a mark (as other systems expect it)
// or in UTF-8. Nothing where there is no such key, or where its hive cannot be read.
VELTGENERAL_API std::optional<std::string> exportRegistry(RegistryRoot root, TextView path,
                                                          bool utf16, const NarrowPage& page);

// "HKEY_LOCAL_MACHINE" or "HKLM", in any case; nothing for another name.
VELTGENERAL_API std::optional<RegistryRoot> registryRoot(TextView name);
// The full name; empty for a number that is no root.
VELTGENERAL_API TextView registryRootName(RegistryRoot root) noexcept;
// The file of the hive that a root lives in; need not exist.
VELTGENERAL_API std::string registryFile(RegistryRoot root);

}  // namespace veltgeneral::platform
