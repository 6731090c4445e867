#include "platform/linux/settings/profile_file.h"

#include <algorithm>
#include <utility>

#include "platform/linux/settings/settings_text.h"

namespace veltgeneral::platform {
namespace {

std::size_t offsetIn(std::string_view text, std::string_view part) {
  return static_cast<std::size_t>(part.data() - text.data());
}

std::string_view unquoted(std::string_view value) {
  const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                      value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

// Where the line ends that goes on at `from`: before its end and behind it.
std::pair<std::size_t, std::size_t> lineEnd(std::string_view text, std::size_t from) {
  const std::size_t newline = std::min(text.find('\n', from), text.size());
  const std::size_t length = newline - from;
  const std::size_t carriage = text.substr(from, length).find('\r');
  if (carriage == std::string_view::npos) return {newline, std::min(newline + 1, text.size())};
  const std::size_t at = from + carriage;
  const bool both = at + 1 == newline && newline < text.size();
  return {at, both ? newline + 1 : at + 1};
}

// The case of a code page's bytes: that of their characters, where the page has both.
std::uint8_t foldByte(std::uint8_t byte, const NarrowPage& page) {
  const char16_t upper = foldUnit(page.characters[byte]);
  const std::uint8_t folded = page.byte(upper);
  return page.characters[folded] == upper ? folded : byte;
}

}  // namespace

ProfileText::ProfileText(const NarrowPage& page) : page_(&page) {}

ProfileText::ProfileText(std::string_view bytes, const NarrowPage& page)
    : page_(&page), utf16_(bytes.starts_with(kUtf16Mark)) {
  if (!utf16_) {
    inner_ = bytes;
    return;
  }
  bytes.remove_prefix(kUtf16Mark.size());
  inner_ = innerOfUtf16(bytes);
  if (bytes.size() % 2 != 0) tail_ = bytes.back();
}

ProfileText ProfileText::newWide(const NarrowPage& page) {
  ProfileText text(page);
  text.utf16_ = true;
  return text;
}

std::string ProfileText::encode(const std::string& inner) const {
  return utf16_ ? std::string(kUtf16Mark) + utf16OfInner(inner) + tail_ : inner;
}

std::string ProfileText::toInnerText(TextView text) const {
  if (utf16_) return toInner(text);
  std::string out(text.size(), '\0');
  std::ranges::transform(text, out.begin(), [&](char16_t c) {
    return static_cast<char>(c < 0x80 ? static_cast<std::uint8_t>(c) : page_->byte(c));
  });
  return out;
}

Text ProfileText::fromInnerText(std::string_view inner) const {
  if (utf16_) return fromInner(inner);
  Text out(inner.size(), u'\0');
  std::ranges::transform(inner, out.begin(),
                         [&](char c) { return page_->characters[static_cast<unsigned char>(c)]; });
  return out;
}

void ProfileText::fold(std::string_view inner, std::string& out) const {
  if (utf16_) {
    foldInner(inner, out);
    return;
  }
  out.resize(inner.size());
  for (std::size_t i = 0; i < inner.size(); ++i) {
    const char c = inner[i];
    if (static_cast<unsigned char>(c) < 0x80) {
      out[i] = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    } else {
      out[i] = static_cast<char>(foldByte(static_cast<std::uint8_t>(c), *page_));
    }
  }
}

ProfileLine profileLine(std::string_view text, std::size_t begin) {
  ProfileLine line{.begin = begin};
  std::tie(line.contentEnd, line.end) = lineEnd(text, begin);
  const std::string_view content = trimmed(text.substr(begin, line.contentEnd - begin));
  if (content.empty() || content.front() == ';') return line;
  const std::size_t equals = content.find('=');
  if (equals == std::string_view::npos) return line;
  line.isKey = true;
  line.name = trimmed(content.substr(0, equals));
  line.value = trimmed(content.substr(equals + 1));
  return line;
}

std::optional<ProfileSection> nextProfileSection(std::string_view text, std::size_t from) {
  for (std::size_t at = text.find('[', from); at != std::string_view::npos;
       at = text.find('[', at + 1)) {
    std::size_t begin = at;
    while (begin > from && isBlank(text[begin - 1])) --begin;
    if (begin > 0 && text[begin - 1] != '\n' && text[begin - 1] != '\r') continue;
    const auto [contentEnd, end] = lineEnd(text, at);
    const std::string_view line = text.substr(at, contentEnd - at);
    const std::size_t close = line.rfind(']');
    if (close == std::string_view::npos) continue;
    return ProfileSection{trimmed(line.substr(1, close - 1)), begin, end};
  }
  return std::nullopt;
}

ProfileFile::ProfileFile(std::string_view bytes, const NarrowPage& page) : text_(bytes, page) {
  const std::string& text = text_.inner();
  for (auto found = nextProfileSection(text, 0); found;) {
    sections_.push_back({.name = found->name, .begin = found->begin, .end = text.size()});
    text_.fold(found->name, folded_);
    index_.try_emplace(folded_, sections_.size() - 1);
    found = nextProfileSection(text, found->begin);
    if (found) sections_.back().end = found->header;
  }
}

std::string_view ProfileFile::indexed(TextView name) {
  // Nearly always ASCII without blanks at its ends, and then folded as it is copied.
  folded_.resize(name.size());
  bool plain = !name.empty() && name.front() > u' ' && name.back() > u' ';
  for (std::size_t i = 0; i < name.size() && plain; ++i) {
    const char16_t c = name[i];
    plain = c < 0x80;
    folded_[i] = static_cast<char>(c >= u'a' && c <= u'z' ? c - 32 : c);
  }
  if (!plain) text_.fold(trimmed(text_.toInnerText(name)), folded_);
  return folded_;
}

ProfileFile::Section* ProfileFile::find(TextView section) {
  const auto found = index_.find(indexed(section));
  if (found == index_.end()) return nullptr;
  Section& place = sections_[found->second];
  if (!place.indexed) indexKeys(place);
  return &place;
}

void ProfileFile::indexKeys(Section& section) {
  const std::string_view text = std::string_view(text_.inner()).substr(0, section.end);
  for (std::size_t at = section.begin; at < text.size();) {
    const ProfileLine line = profileLine(text, at);
    if (line.isKey) {
      text_.fold(line.name, folded_);
      section.values.try_emplace(folded_, unquoted(line.value));
    }
    at = line.end;
  }
  section.indexed = true;
}

std::optional<Text> ProfileFile::value(TextView section, TextView key) {
  const Section* place = find(section);
  if (place == nullptr) return std::nullopt;
  const auto found = place->values.find(indexed(key));
  if (found == place->values.end()) return std::nullopt;
  return text_.fromInnerText(found->second);
}

Text ProfileFile::sectionNames() {
  Text names;
  for (const Section& section : sections_) {
    names += text_.fromInnerText(section.name);
    names += u'\0';
  }
  return names;
}

Text ProfileFile::keyNames(TextView section) {
  Text names;
  const Section* place = find(section);
  if (place == nullptr) return names;
  const std::string_view text = std::string_view(text_.inner()).substr(0, place->end);
  for (std::size_t at = place->begin; at < text.size();) {
    const ProfileLine line = profileLine(text, at);
    if (line.isKey) {
      names += text_.fromInnerText(line.name);
      names += u'\0';
    }
    at = line.end;
  }
  return names;
}

namespace {

class ProfileEditor {
 public:
  ProfileEditor(const ProfileText& text, std::string_view section) : text_(text) {
    std::string wanted;
    text_.fold(section, wanted);
    std::string name;
    const std::string_view all = text_.inner();
    for (auto at = nextProfileSection(all, 0); at; at = nextProfileSection(all, at->begin)) {
      text_.fold(at->name, name);
      if (name != wanted) continue;
      section_ = at;
      break;
    }
    if (!section_) return;
    const auto next = nextProfileSection(all, section_->begin);
    end_ = next ? next->header : all.size();
  }

  std::optional<std::string> set(std::string_view section, std::string_view key,
                                 std::string_view value);
  std::optional<std::string> removeKey(std::string_view key);
  std::optional<std::string> removeSection();

 private:
  // The first line of the key; where there is none, behind the last key.
  std::optional<ProfileLine> findKey(std::string_view key, std::size_t& behindKeys) const;
  std::string spliced(std::size_t begin, std::size_t end, std::string_view text) const;
  std::string_view lineEndBefore(std::size_t at) const;

  const ProfileText& text_;
  std::optional<ProfileSection> section_;
  std::size_t end_ = 0;
};

std::string ProfileEditor::spliced(std::size_t begin, std::size_t end,
                                   std::string_view text) const {
  const std::string_view all = text_.inner();
  std::string out;
  out.reserve(all.size() - (end - begin) + text.size());
  return out.append(all.substr(0, begin)).append(text).append(all.substr(end));
}

// The line end that stands before `at`; where none does, that of the first line.
std::string_view ProfileEditor::lineEndBefore(std::size_t at) const {
  const std::string_view all = text_.inner();
  if (at > 1 && all.substr(at - 2, 2) == "\r\n") return "\r\n";
  if (at > 0 && all[at - 1] == '\n') return "\n";
  if (at > 0 && all[at - 1] == '\r') return "\r";
  const auto [contentEnd, end] = lineEnd(all, 0);
  return contentEnd == end ? "\r\n" : all.substr(contentEnd, end - contentEnd);
}

std::optional<ProfileLine> ProfileEditor::findKey(std::string_view key,
                                                  std::size_t& behindKeys) const {
  const std::string_view all = std::string_view(text_.inner()).substr(0, end_);
  std::string wanted;
  std::string name;
  text_.fold(key, wanted);
  behindKeys = section_->begin;
  for (std::size_t at = section_->begin; at < all.size();) {
    const ProfileLine line = profileLine(all, at);
    at = line.end;
    if (!line.isKey) continue;
    behindKeys = line.end;
    if (line.name.size() != key.size() && isAscii(line.name)) continue;
    text_.fold(line.name, name);
    if (name == wanted) return line;
  }
  return std::nullopt;
}

std::optional<std::string> ProfileEditor::set(std::string_view section, std::string_view key,
                                              std::string_view value) {
  const std::string_view all = text_.inner();
  std::size_t at = all.size();
  std::string added;
  if (section_) {
    if (const auto line = findKey(key, at)) {
      // Blanks before the value stay, unless the new one brings its own.
      const bool ownBlanks = !value.empty() && isBlank(value.front());
      const std::size_t from =
          ownBlanks ? all.find('=', line->begin) + 1 : offsetIn(all, line->value);
      if (all.substr(from, line->contentEnd - from) == value) return std::nullopt;
      return spliced(from, line->contentEnd, value);
    }
  }
  const std::string_view end = lineEndBefore(at);
  if (at > 0 && all[at - 1] != '\n' && all[at - 1] != '\r') added.append(end);
  if (!section_) added.append("[").append(section).append("]").append(end);
  added.append(key).append("=").append(value).append(end);
  return spliced(at, at, added);
}

std::optional<std::string> ProfileEditor::removeKey(std::string_view key) {
  std::size_t behindKeys = 0;
  const auto line = section_ ? findKey(key, behindKeys) : std::nullopt;
  if (!line) return std::nullopt;
  return spliced(line->begin, line->end, {});
}

// With its keys, what stands among them, and the blank lines behind; comments behind the last key
// lead the next section and stay.
std::optional<std::string> ProfileEditor::removeSection() {
  if (!section_) return std::nullopt;
  const std::string_view all = std::string_view(text_.inner()).substr(0, end_);
  std::size_t last = section_->begin;
  for (std::size_t at = section_->begin; at < all.size();) {
    const ProfileLine line = profileLine(all, at);
    const bool blank = trimmed(all.substr(at, line.contentEnd - at)).empty();
    if (line.isKey || (blank && last == at)) last = line.end;
    at = line.end;
  }
  return spliced(section_->header, last, {});
}

}  // namespace

std::optional<std::string> editProfile(std::string_view bytes, TextView section, const Text* key,
                                       const Text* text, bool wide, const NarrowPage& page) {
  const ProfileText before =
      bytes.empty() && wide ? ProfileText::newWide(page) : ProfileText(bytes, page);
  const std::string innerSection = before.toInnerText(section);
  const std::string_view sectionName = trimmed(innerSection);
  ProfileEditor editor(before, sectionName);
  std::optional<std::string> after;
  if (key == nullptr) {
    after = editor.removeSection();
  } else {
    const std::string innerKey = before.toInnerText(*key);
    const std::string_view keyName = trimmed(innerKey);
    after = text == nullptr ? editor.removeKey(keyName)
                            : editor.set(sectionName, keyName, before.toInnerText(*text));
  }
  if (!after) return std::nullopt;
  return before.encode(*after);
}

}  // namespace veltgeneral::platform
