#include "pdf/arguments.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "drawing/text.h"
#include "pdf/code_page.h"
#include "pdf/command_error.h"
#include "pdf/commands.h"

namespace veltgeneral::pdf {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::size_t kMostFound = 24;  // characters of the line that a message repeats

constexpr std::pair<std::string_view, drawing::Colour> kColours[] = {
    {"black", {0, 0, 0}},   {"white", {255, 255, 255}},  {"grey", {128, 128, 128}},
    {"red", {192, 0, 0}},   {"silver", {224, 224, 224}}, {"green", {0, 128, 0}},
    {"blue", {0, 64, 192}}, {"navy", {16, 40, 96}},
};

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool sameWord(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower(x) == lower(y); });
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<drawing::Colour> colourOf(std::string_view word) {
  for (const auto& [name, colour] : kColours)
    if (sameWord(word, name)) return colour;
  if (word.size() != 7 || word[0] != '#') return std::nullopt;
  std::uint32_t rgb = 0;
  const auto [end, error] = std::from_chars(word.data() + 1, word.data() + 7, rgb, 16);
  if (error != std::errc{} || end != word.data() + 7) return std::nullopt;
  return drawing::Colour{static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8),
                         static_cast<std::uint8_t>(rgb)};
}

}  // namespace

Arguments::Arguments(std::string_view line, const CodePage& codePage)
    : rest_(trimmed(line)), codePage_(codePage) {}

std::string_view Arguments::next() const { return rest_.substr(0, rest_.find_first_of(kBlanks)); }

bool Arguments::atNumber() const {
  return !atEnd() && (rest_[0] == '.' || rest_[0] == '-' || (rest_[0] >= '0' && rest_[0] <= '9'));
}

void Arguments::drop(std::size_t count) {
  rest_.remove_prefix(count);
  rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
}

bool Arguments::take(std::string_view word) {
  if (!sameWord(next(), word)) return false;
  drop(word.size());
  return true;
}

std::optional<drawing::Colour> Arguments::takeColour() {
  const std::optional<drawing::Colour> found = colourOf(next());
  if (found) drop(next().size());
  return found;
}

drawing::Colour Arguments::colour() {
  const std::optional<drawing::Colour> found = takeColour();
  if (!found) fail("a colour such as red or #C00000");
  return *found;
}

double Arguments::number(std::string_view expected, double low, double high) {
  const std::string_view found = next();
  double value = 0;
  const auto [end, error] =
      std::from_chars(found.data(), found.data() + found.size(), value, std::chars_format::fixed);
  // Written so that what is no number at all fails it too.
  const bool inRange = value >= low && value <= high;
  if (error != std::errc{} || end != found.data() + found.size() || !inRange) {
    char range[64];
    char* at = range;
    for (const double bound : {low, high}) {
      if (bound == high) at = std::copy_n(" to ", 4, at);
      at = std::to_chars(at, std::end(range), bound).ptr;
    }
    fail(std::string(expected) + " from " + std::string(range, at));
  }
  drop(found.size());
  return value;
}

double Arguments::cm(std::string_view expected, double low, double high) {
  return number(expected, low, high) * drawing::kPointsPerCm;
}

std::u16string Arguments::text(std::string_view expected) { return quoted(expected, false); }

std::u16string Arguments::textWithMarks(std::string_view expected) {
  return quoted(expected, true);
}

char16_t Arguments::escape(std::size_t at) const {
  const char c = at < rest_.size() ? rest_[at] : '\0';
  if (c == 'n') return u'\n';
  if (c == '"' || c == '\\' || c == '{') return static_cast<char16_t>(c);
  throw CommandError(R"(expected \\, \", \{ or \n, found a backslash before something else)");
}

std::u16string Arguments::quoted(std::string_view expected, bool marks) {
  constexpr std::array<std::pair<std::string_view, char16_t>, 2> kMarks{
      {{"{page}", kPageMark}, {"{pages}", kPagesMark}}};
  if (!atText()) fail(expected);
  std::u16string text;
  std::size_t i = 1;
  for (; i < rest_.size() && rest_[i] != '"'; ++i) {
    if (rest_[i] == '\\') {
      text.push_back(escape(++i));
      continue;
    }
    const auto mark = std::find_if(kMarks.begin(), kMarks.end(), [&](const auto& known) {
      return marks && rest_.substr(i).starts_with(known.first);
    });
    if (mark == kMarks.end()) {
      text.push_back(codePage_.decode(rest_[i]));
    } else {
      text.push_back(mark->second);
      i += mark->first.size() - 1;
    }
  }
  const bool closed = i < rest_.size();
  if (!closed || (i + 1 < rest_.size() && kBlanks.find(rest_[i + 1]) == std::string_view::npos))
    throw CommandError(closed ? "expected a blank after the closing \", found another character"
                              : "expected a closing \", found the end of the line");
  drop(i + 1);
  return text;
}

void Arguments::fail(std::string_view expected) const {
  std::string found = "the end of the line";
  if (!atEnd()) {
    std::u16string shown = codePage_.decode(atText() ? rest_ : next());
    if (shown.size() > kMostFound) shown = shown.substr(0, kMostFound) + u"...";
    std::replace_if(
        shown.begin(), shown.end(), [](char16_t c) { return c < 0x20; }, u' ');
    found = atText() ? drawing::toUtf8(shown) : "\"" + drawing::toUtf8(shown) + "\"";
  }
  throw CommandError("expected " + std::string(expected) + ", found " + found);
}

void Arguments::finish(std::string_view expected) const {
  if (!atEnd()) fail(expected);
}

}  // namespace veltgeneral::pdf
