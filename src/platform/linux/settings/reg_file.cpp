#include "platform/linux/settings/reg_file.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace veltgeneral::platform {
namespace {

// Where an entry stands in the index: below which key, a key or a value, folded name. Reuses `out`.
void indexKey(std::uint32_t key, char kind, std::string_view folded, std::string& out) {
  out.resize(sizeof key + 1 + folded.size());
  std::memcpy(out.data(), &key, sizeof key);
  out[sizeof key] = kind;
  std::memcpy(out.data() + sizeof key + 1, folded.data(), folded.size());
}

// The same of a name that is nearly always ASCII, and then folded as it is copied.
void indexKey(std::uint32_t key, char kind, TextView name, std::string& out) {
  out.resize(sizeof key + 1 + name.size());
  std::memcpy(out.data(), &key, sizeof key);
  out[sizeof key] = kind;
  char* to = out.data() + sizeof key + 1;
  for (const char16_t c : name) {
    if (c >= 0x80) {
      std::string folded;
      foldText(name, folded);
      indexKey(key, kind, folded, out);
      return;
    }
    *to++ = static_cast<char>(c >= u'a' && c <= u'z' ? c - 32 : c);
  }
}

// Calls `use` with each name of a path until it answers false.
template <class Char, class Use>
bool eachName(std::basic_string_view<Char> path, Use use) {
  while (!path.empty()) {
    const std::size_t end = std::min(path.find(Char{'\\'}), path.size());
    if (end > 0 && !use(path.substr(0, end))) return false;
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return true;
}

}  // namespace

RegText decodeReg(std::string_view bytes, const NarrowPage& page) {
  if (bytes.starts_with(kUtf16Mark))
    return {Encoding::utf16Mark, innerOfUtf16(bytes.substr(kUtf16Mark.size()))};
  if (!isUtf8(bytes)) return {Encoding::codePage, innerOfPage(bytes, page)};
  if (bytes.starts_with(kUtf8Mark))
    return {Encoding::utf8Mark, std::string(bytes.substr(kUtf8Mark.size()))};
  return {Encoding::utf8, std::string(bytes)};
}

std::string encodeReg(const RegText& text, const NarrowPage& page) {
  switch (text.encoding) {
    case Encoding::utf16Mark:
      return std::string(kUtf16Mark) + utf16OfInner(text.inner);
    case Encoding::utf8Mark:
      return std::string(kUtf8Mark) + text.inner;
    case Encoding::codePage: {
      std::string bytes = pageOfInner(text.inner, page);
      if (!isUtf8(bytes) && innerOfPage(bytes, page) == text.inner) return bytes;
      break;
    }
    case Encoding::utf8:
      break;
  }
  return text.inner;
}

std::string regPath(std::string_view path) {
  std::string out;
  out.reserve(path.size());
  eachName(path, [&](std::string_view name) {
    if (!out.empty()) out += '\\';
    out.append(name);
    return true;
  });
  return out;
}

bool isRegRoot(std::string_view path) { return path.find('\\') == std::string_view::npos; }

RegistryFile::RegistryFile(std::string_view bytes, const NarrowPage& page)
    : text_(decodeReg(bytes, page)), page_(page) {
  dialect_ = regDialect(text_.inner, page_);
  keys_.emplace_back();
  const auto lines = std::ranges::count(text_.inner, '\n');
  index_.reserve(static_cast<std::size_t>(lines) + 1);
  std::uint32_t key = kNone;
  RegLexer lexer(text_.inner);
  for (RegLine line; lexer.next(line);) {
    switch (line.kind) {
      case RegStatement::key:
        key = findOrAdd(line.name);
        break;
      case RegStatement::removeKey:
        key = kNone;
        remove(line.name);
        break;
      case RegStatement::value:
      case RegStatement::removeValue:
        if (key != kNone) addValue(key, line);
        break;
      case RegStatement::malformed:
        if (line.beginsKey) key = kNone;  // nobody knows whose values follow
        break;
      default:
        break;
    }
  }
}

std::uint32_t RegistryFile::findOrAdd(std::string_view path) {
  if (std::ranges::count(path, '\\') >= static_cast<std::ptrdiff_t>(kRegDepth)) return kNone;
  std::uint32_t key = 0;
  std::string folded;
  std::string entry;
  eachName(path, [&](std::string_view name) {
    foldInner(name, folded);
    indexKey(key, 'K', folded, entry);
    const auto [place, added] = index_.try_emplace(entry, static_cast<std::uint32_t>(keys_.size()));
    if (added) {
      keys_[key].children.push_back(place->second);
      keys_.push_back({.name = std::string(name), .parent = key, .children = {}, .values = {}});
    }
    key = place->second;
    return true;
  });
  return key == 0 ? kNone : key;
}

void RegistryFile::remove(std::string_view path) {
  const std::uint32_t top = find(fromInner(path));
  if (top == kNone || keys_[top].parent == 0) return;
  std::string folded;
  std::string entry;
  // Each key and value is taken out once, however often texts say so.
  std::vector<std::uint32_t> left{top};
  while (!left.empty()) {
    Key& key = keys_[left.back()];
    const std::uint32_t number = left.back();
    left.pop_back();
    foldInner(key.name, folded);
    indexKey(key.parent, 'K', folded, entry);
    index_.erase(entry);
    key.live = false;
    for (const std::uint32_t value : key.values) {
      foldInner(unescapeReg(values_[value].name), folded);
      indexKey(number, 'V', folded, entry);
      index_.erase(entry);
    }
    key.values.clear();
    left.insert(left.end(), key.children.begin(), key.children.end());
    key.children.clear();
  }
}

void RegistryFile::addValue(std::uint32_t key, const RegLine& line) {
  std::string folded;
  std::string entry;
  foldInner(unescapeReg(line.name), folded);
  indexKey(key, 'V', folded, entry);
  if (line.kind == RegStatement::removeValue) {
    if (const auto found = index_.find(entry); found != index_.end()) {
      values_[found->second].live = false;
      index_.erase(found);
    }
    return;
  }
  const auto [place, added] = index_.try_emplace(entry, static_cast<std::uint32_t>(values_.size()));
  if (added) {
    keys_[key].values.push_back(place->second);
    values_.push_back({.name = line.name, .data = line.data});
  } else {
    values_[place->second].data = line.data;
  }
}

std::uint32_t RegistryFile::find(TextView path) const {
  std::uint32_t key = 0;
  std::string entry;
  const bool found = eachName(path, [&](TextView name) {
    indexKey(key, 'K', name, entry);
    const auto place = index_.find(std::string_view(entry));
    if (place == index_.end()) return false;
    key = place->second;
    return true;
  });
  return found && key != 0 ? key : kNone;
}

std::optional<RegistryValue> RegistryFile::query(std::uint32_t key, TextView name) const {
  std::string entry;
  indexKey(key, 'V', name, entry);
  const auto place = index_.find(std::string_view(entry));
  if (place == index_.end()) return std::nullopt;
  return parseRegData(values_[place->second].data, dialect_);
}

std::vector<Text> RegistryFile::valueNames(std::uint32_t key) const {
  std::vector<Text> names;
  for (const std::uint32_t value : keys_[key].values)
    if (values_[value].live && parseRegData(values_[value].data, dialect_))
      names.push_back(fromInner(unescapeReg(values_[value].name)));
  return names;
}

std::vector<Text> RegistryFile::subKeyNames(std::uint32_t key) const {
  std::vector<Text> names;
  for (const std::uint32_t child : keys_[key].children)
    if (keys_[child].live) names.push_back(fromInner(keys_[child].name));
  return names;
}

void RegistryFile::appendExport(std::uint32_t key, std::string& path, std::string& out) const {
  constexpr std::string_view kLineEnd = "\r\n";
  const RegDialect version5{false, &page_};
  out.append("[").append(path).append("]").append(kLineEnd);
  for (const std::uint32_t value : keys_[key].values) {
    const auto parsed = parseRegData(values_[value].data, dialect_);
    if (values_[value].live && parsed)
      out += formatRegValue(unescapeReg(values_[value].name), *parsed, version5, kLineEnd);
  }
  out.append(kLineEnd);
  for (const std::uint32_t child : keys_[key].children) {
    if (!keys_[child].live) continue;
    const std::size_t length = path.size();
    path.append("\\").append(keys_[child].name);
    appendExport(child, path, out);
    path.resize(length);
  }
}

std::string RegistryFile::exported(std::uint32_t key) const {
  std::string path;
  for (std::uint32_t at = key; at != 0; at = keys_[at].parent) {
    std::string above = keys_[at].name;
    if (!path.empty()) above.append("\\").append(path);
    path = std::move(above);
  }
  std::string out = std::string(kRegHeader) + "\r\n\r\n";
  appendExport(key, path, out);
  return out;
}

}  // namespace veltgeneral::platform
