// An INI text: sections and keys found without regard to case, and edits that touch the lines they
// must touch and no other (order, comments, blank lines, line ends and encoding stay).
//
// Lines end in LF, CR LF or CR, mixed at will. "[name]" (up to the last "]" of its line) begins a
// section; ";" first on a line makes a comment; a line without "=" is no key. Blanks around names
// and values do not count, nor does one pair of equal quotes around a value. What stands before the
// first section is out of reach.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/narrow_page.h"
#include "veltgeneral/text.h"

namespace veltgeneral::platform {

// How the bytes of one file are text: in the code page as they are, or as inner text
// (settings_text.h) where the file is UTF-16.
class ProfileText {
 public:
  ProfileText(std::string_view bytes, const NarrowPage& page);
  // A file that begins in UTF-16.
  static ProfileText newWide(const NarrowPage& page);

  const std::string& inner() const noexcept { return inner_; }
  std::string encode(const std::string& inner) const;

  bool isUtf16() const noexcept { return utf16_; }

  std::string toInnerText(TextView text) const;
  Text fromInnerText(std::string_view inner) const;
  // Equal for names that differ only in case. Replaces `out`.
  void fold(std::string_view inner, std::string& out) const;

 private:
  explicit ProfileText(const NarrowPage& page);

  const NarrowPage* page_;
  bool utf16_ = false;
  std::string inner_;
  std::string tail_;  // half a unit at the end
};

// The parts of one line; all views are into the text.
struct ProfileLine {
  std::size_t begin = 0;
  std::size_t contentEnd = 0;  // before the line end
  std::size_t end = 0;         // behind it
  bool isKey = false;
  std::string_view name = {};
  std::string_view value = {};  // without blanks, quotes still there
};
// The line that begins at `begin`, which must be before the end.
ProfileLine profileLine(std::string_view text, std::size_t begin);

struct ProfileSection {
  std::string_view name = {};
  std::size_t header = 0;  // where its line begins
  std::size_t begin = 0;   // behind that line
};
// The next section whose line begins at or behind `from`; nothing at the end.
std::optional<ProfileSection> nextProfileSection(std::string_view text, std::size_t from);

// One file as it was at one moment, indexed as far as it was asked. Not for several threads at
// once.
class ProfileFile {
 public:
  // `page` must outlive the object.
  ProfileFile(std::string_view bytes, const NarrowPage& page);
  ProfileFile(const ProfileFile&) = delete;
  ProfileFile& operator=(const ProfileFile&) = delete;

  bool isUtf16() const noexcept { return text_.isUtf16(); }
  std::optional<Text> value(TextView section, TextView key);
  // A NUL behind each name.
  Text sectionNames();
  Text keyNames(TextView section);

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
      return std::hash<std::string_view>{}(text);
    }
  };
  struct Section {
    std::string_view name = {};
    std::size_t begin = 0;
    std::size_t end = 0;
    bool indexed = false;
    std::unordered_map<std::string, std::string_view, Hash, std::equal_to<>> values = {};
  };

  // The name as the index has it, in folded_.
  std::string_view indexed(TextView name);
  Section* find(TextView section);
  void indexKeys(Section& section);

  ProfileText text_;
  std::vector<Section> sections_;
  std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>> index_;  // the first of each
  std::string folded_;                                                         // reused
};

// The whole file after one change; nothing where it stays as it is. Without `text` the key goes,
// without `key` the section. `wide` decides the encoding of a file that was empty.
std::optional<std::string> editProfile(std::string_view bytes, TextView section, const Text* key,
                                       const Text* text, bool wide, const NarrowPage& page);

}  // namespace veltgeneral::platform
