// A hive: a `.reg` text, its keys and values found without regard to case, and edits that touch the
// lines they must touch and no other (order, comments, unknown values, line ends and encoding
// stay).
//
// A hive is read as an import would apply it, from the first line to the last: the last of equal
// values wins, "[-key]" and "name"=- undo what stands above them. Malformed lines say nothing.
// All work is linear in the text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/linux/settings/reg_lexer.h"
#include "platform/linux/settings/settings_text.h"
#include "platform/registry.h"

namespace veltgeneral::platform {

// The text of a file, and how to write it back.
struct RegText {
  Encoding encoding = Encoding::utf8;
  std::string inner;  // without the mark
};

// UTF-16LE by its mark, UTF-8 where it is well formed, else the code page.
RegText decodeReg(std::string_view bytes, const NarrowPage& page);
// A code page file that no longer fits its page becomes UTF-8.
std::string encodeReg(const RegText& text, const NarrowPage& page);

class RegistryFile {
 public:
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  RegistryFile(std::string_view bytes, const NarrowPage& page);
  RegistryFile(const RegistryFile&) = delete;
  RegistryFile& operator=(const RegistryFile&) = delete;

  // `path` is whole, with the root's full name. kNone where there is no such key.
  std::uint32_t find(TextView path) const;
  std::optional<RegistryValue> query(std::uint32_t key, TextView name) const;
  std::vector<Text> valueNames(std::uint32_t key) const;
  std::vector<Text> subKeyNames(std::uint32_t key) const;
  // The key with all below it, as version 5 text with CR LF.
  std::string exported(std::uint32_t key) const;

 private:
  struct Value {
    std::string_view name;  // escaped
    std::string_view data;
    bool live = true;
  };
  struct Key {
    std::string name;
    std::uint32_t parent = 0;
    bool live = true;
    std::vector<std::uint32_t> children;
    std::vector<std::uint32_t> values;
  };
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
      return std::hash<std::string_view>{}(text);
    }
  };
  using Index = std::unordered_map<std::string, std::uint32_t, Hash, std::equal_to<>>;

  std::uint32_t findOrAdd(std::string_view path);
  void remove(std::string_view path);
  void addValue(std::uint32_t key, const RegLine& line);
  void appendExport(std::uint32_t key, std::string& path, std::string& out) const;

  RegText text_;
  RegDialect dialect_;
  NarrowPage page_;
  std::vector<Key> keys_;  // 0 is above the roots
  std::vector<Value> values_;
  Index index_;  // key number, "K" or "V", folded name
};

struct RegChange {
  enum class Kind { createKey, removeKey, setValue, removeValue };
  Kind kind;
  std::string key;   // whole, with the root's full name; inner text
  std::string name;  // inner text; of a value
  RegistryValue value;
};

// The text after the changes, applied in order, in one pass. A root is never to be removed.
std::string editReg(std::string_view inner, const std::vector<RegChange>& changes,
                    const NarrowPage& page);

// The names of a path, without the empty ones between separators, joined again.
std::string regPath(std::string_view path);

// A root's name alone: cannot be removed.
bool isRegRoot(std::string_view path);

inline constexpr std::string_view kRegHeader = "Windows Registry Editor Version 5.00";
// A deeper path is none: it keeps the work for a hostile text linear.
inline constexpr std::size_t kRegDepth = 512;

}  // namespace veltgeneral::platform
