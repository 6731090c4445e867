// Edits of a hive's text: what the changes come to for each key, found in one pass over the text
// and put into effect by splices.
#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "platform/linux/settings/reg_file.h"

namespace veltgeneral::platform {
namespace {

struct Splice {
  std::size_t begin;
  std::size_t end;
  std::string text;
};

struct PendingValue {
  std::string name;                    // as given
  std::optional<RegistryValue> value;  // nothing: to be removed
  std::size_t lastBegin = std::string::npos;
  std::size_t lastEnd = 0;
  std::string_view comment;                                 // behind the data, in the last line
  std::vector<std::pair<std::size_t, std::size_t>> others;  // earlier lines of the same name
};

struct PendingKey {
  std::string path;          // as given
  std::size_t sequence = 0;  // of its first change
  bool create = false;
  bool seen = false;
  std::size_t insertAt = 0;        // behind the last value of the last section
  std::vector<std::string> order;  // folded names
  std::unordered_map<std::string, PendingValue> values;

  void forget() {
    seen = false;
    for (auto& [name, pending] : values) {
      pending.lastBegin = std::string::npos;
      pending.comment = {};
      pending.others.clear();
    }
  }
};

std::string lineEndOf(std::string_view content) {
  const std::size_t newline = content.find('\n');
  const bool bare =
      newline != std::string_view::npos && (newline == 0 || content[newline - 1] != '\r');
  return bare ? "\n" : "\r\n";
}

std::string folded(std::string_view text) {
  std::string out;
  foldInner(text, out);
  return out;
}

class Editor {
 public:
  Editor(std::string_view content, const NarrowPage& page)
      : content_(content), lineEnd_(lineEndOf(content)), dialect_(regDialect(content, page)) {}

  void take(const RegChange& change);
  std::string run();

 private:
  using Keys = std::map<std::string, PendingKey, std::less<>>;

  PendingKey& pending(const std::string& path);
  Keys::iterator endOf(const std::string& foldedPath, Keys::iterator from);
  bool isRemoved(std::string_view foldedPath) const;
  void readSection(std::size_t begin, std::size_t end);
  void readValues(PendingKey& key, std::size_t begin, std::size_t end);
  void removeSection(std::size_t begin, std::size_t end);
  void spliceValues(PendingKey& key);
  std::string newSections() const;
  std::string spliced();

  std::string_view content_;
  std::string lineEnd_;
  RegDialect dialect_;
  Keys keys_;  // by folded path
  std::size_t sequence_ = 0;
  std::set<std::string, std::less<>> removedKeys_;  // folded paths
  std::vector<Splice> splices_;
};

PendingKey& Editor::pending(const std::string& path) {
  const auto [place, added] = keys_.try_emplace(folded(path));
  if (added) {
    place->second.path = path;
    place->second.sequence = sequence_++;
  }
  return place->second;
}

// Behind the keys below `path`, of which `from` is the first.
Editor::Keys::iterator Editor::endOf(const std::string& path, Keys::iterator from) {
  const std::string below = path + "\\";
  while (from != keys_.end() && from->first.starts_with(below)) ++from;
  return from;
}

void Editor::take(const RegChange& change) {
  if (change.kind == RegChange::Kind::removeKey) {
    const std::string path = folded(change.key);
    // What earlier changes wanted at and below this key is void.
    keys_.erase(path);
    const auto from = keys_.lower_bound(path + "\\");
    keys_.erase(from, endOf(path, from));
    removedKeys_.insert(path);
    return;
  }
  PendingKey& key = pending(change.key);
  if (change.kind == RegChange::Kind::createKey) {
    key.create = true;
    return;
  }
  std::string name = folded(change.name);
  const auto [place, added] = key.values.try_emplace(name);
  if (added) {
    place->second.name = change.name;
    key.order.push_back(std::move(name));
  }
  const bool set = change.kind == RegChange::Kind::setValue;
  place->second.value = set ? std::optional(change.value) : std::nullopt;
  key.create = key.create || set;
}

bool Editor::isRemoved(std::string_view path) const {
  if (removedKeys_.empty()) return false;
  for (;;) {
    if (removedKeys_.contains(path)) return true;
    const std::size_t separator = path.rfind('\\');
    if (separator == std::string_view::npos) return false;
    path = path.substr(0, separator);
  }
}

// The section goes with its values and the comments among them; comments behind its last value
// lead the next section and stay.
void Editor::removeSection(std::size_t begin, std::size_t end) {
  RegLexer lexer(content_.substr(0, end), begin);
  std::size_t last = begin;
  bool blankTaken = false;
  for (RegLine line; lexer.next(line);) {
    if (line.kind != RegStatement::blank) {
      last = line.end;
      blankTaken = false;
    } else if (!blankTaken && line.begin == last &&
               content_.substr(line.begin, line.end - line.begin).find(';') ==
                   std::string_view::npos) {
      last = line.end;
      blankTaken = true;
    }
  }
  splices_.push_back({begin, last, {}});
}

void Editor::readValues(PendingKey& key, std::size_t begin, std::size_t end) {
  RegLexer lexer(content_.substr(0, end), begin);
  std::string name;
  for (RegLine line; lexer.next(line);) {
    if (line.kind == RegStatement::key || line.kind == RegStatement::malformed)
      key.insertAt = line.end;
    if (line.kind != RegStatement::value && line.kind != RegStatement::removeValue) continue;
    key.insertAt = line.end;
    foldInner(unescapeReg(line.name), name);
    const auto found = key.values.find(name);
    if (found == key.values.end()) continue;
    PendingValue& value = found->second;
    if (value.lastBegin != std::string::npos)
      value.others.emplace_back(value.lastBegin, value.lastEnd);
    value.lastBegin = line.begin;
    value.lastEnd = line.end;
    value.comment = regComment(line.data);
  }
}

void Editor::readSection(std::size_t begin, std::size_t end) {
  RegLexer lexer(content_.substr(0, end), begin);
  RegLine header;
  if (!lexer.next(header)) return;
  if (header.kind != RegStatement::key && header.kind != RegStatement::removeKey) return;
  const std::string path = folded(regPath(header.name));
  if (isRemoved(path)) {
    removeSection(begin, end);
    return;
  }
  if (header.kind == RegStatement::removeKey) {
    if (isRegRoot(path)) return;  // says nothing
    // What stands above for this key and for those below it is dead and not to be edited.
    if (const auto found = keys_.find(path); found != keys_.end()) found->second.forget();
    const auto from = keys_.lower_bound(path + "\\");
    for (auto key = from, to = endOf(path, from); key != to; ++key) key->second.forget();
    return;
  }
  if (const auto found = keys_.find(path); found != keys_.end()) {
    found->second.seen = true;
    readValues(found->second, begin, end);
  }
}

void Editor::spliceValues(PendingKey& key) {
  std::string added;
  for (const std::string& name : key.order) {
    PendingValue& value = key.values.at(name);
    const bool there = value.lastBegin != std::string::npos;
    for (const auto& [begin, end] : value.others) splices_.push_back({begin, end, {}});
    std::string text;
    if (value.value) {
      text = formatRegValue(value.name, *value.value, dialect_, lineEnd_);
      text.insert(text.size() - lineEnd_.size(), value.comment);
    }
    if (!there) {
      added += text;
    } else if (content_.substr(value.lastBegin, value.lastEnd - value.lastBegin) != text) {
      splices_.push_back({value.lastBegin, value.lastEnd, std::move(text)});
    }
  }
  if (added.empty()) return;
  const bool open = key.insertAt > 0 && content_[key.insertAt - 1] != '\n';
  splices_.push_back({key.insertAt, key.insertAt, open ? lineEnd_ + added : added});
}

std::string Editor::newSections() const {
  std::vector<const PendingKey*> fresh;
  for (const auto& [name, key] : keys_)
    if (!key.seen && key.create) fresh.push_back(&key);
  std::ranges::sort(fresh, {}, &PendingKey::sequence);
  std::string out;
  for (const PendingKey* pendingKey : fresh) {
    const PendingKey& key = *pendingKey;
    out.append("[").append(key.path).append("]").append(lineEnd_);
    for (const std::string& valueName : key.order) {
      const PendingValue& value = key.values.at(valueName);
      if (value.value) out += formatRegValue(value.name, *value.value, dialect_, lineEnd_);
    }
    out += lineEnd_;
  }
  return out;
}

std::string Editor::spliced() {
  // An insertion comes before a removal that begins where it stands.
  std::ranges::stable_sort(splices_, {}, [](const Splice& s) { return std::pair(s.begin, s.end); });
  std::size_t extra = 0;
  for (const Splice& splice : splices_) extra += splice.text.size();
  std::string out;
  out.reserve(content_.size() + extra + 64);
  std::size_t at = 0;
  for (const Splice& splice : splices_) {
    out.append(content_.substr(at, splice.begin - at)).append(splice.text);
    at = splice.end;
  }
  return out.append(content_.substr(at));
}

std::string Editor::run() {
  for (std::size_t begin = nextSection(content_, 0); begin != std::string_view::npos;) {
    // Counted from behind the bracket, which blanks may precede.
    const std::size_t end = nextSection(content_, content_.find('[', begin) + 1);
    readSection(begin, std::min(end, content_.size()));
    begin = end;
  }
  for (auto& [name, key] : keys_)
    if (key.seen) spliceValues(key);
  std::string out = spliced();
  const std::string added = newSections();
  if (!added.empty()) {
    if (out.empty()) {
      out.append(kRegHeader).append(lineEnd_).append(lineEnd_);
    } else {
      if (out.back() != '\n') out += lineEnd_;
      const std::string_view text = out;
      const bool blank = text.ends_with("\n\n") || text.ends_with("\n\r\n");
      if (!blank) out += lineEnd_;
    }
    out += added;
  }
  return out;
}

}  // namespace

std::string editReg(std::string_view inner, const std::vector<RegChange>& changes,
                    const NarrowPage& page) {
  Editor editor(inner, page);
  for (const RegChange& change : changes) editor.take(change);
  return editor.run();
}

}  // namespace veltgeneral::platform
