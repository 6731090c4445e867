#include "pdf/layout/wrap.h"

#include <algorithm>

#include "drawing/text.h"

namespace veltgeneral::pdf::layout {
namespace {

// Sums of widths differ in their last bits from the width of the sum.
constexpr double kSlack = 1e-6;

// How many code units of `word` fit, at least one character.
std::size_t fitting(const drawing::Font& font, std::u16string_view word, double width) {
  double used = 0;
  for (std::size_t i = 0; i < word.size();) {
    const std::size_t units = drawing::codePointAt(word, i).units;
    used += drawing::textWidth(font, word.substr(i, units));
    if (used > width + kSlack && i > 0) return i;
    i += units;
  }
  return word.size();
}

// Lays the words of one paragraph line after line.
class Wrapper {
 public:
  Wrapper(const drawing::Font& font, std::u16string_view text, double width,
          std::vector<Line>& lines)
      : font_(font), text_(text), width_(width), lines_(lines) {}

  void run() {
    // Blanks at the start are an indent and belong to the first word.
    std::size_t wordEnd = endOfWord(endOfBlanks(0));
    place(0, wordEnd);
    while (wordEnd < text_.size()) {
      const std::size_t word = endOfBlanks(wordEnd);
      if (word == text_.size()) break;
      const std::size_t gap = wordEnd;
      wordEnd = endOfWord(word);
      const double more = drawing::textWidth(font_, text_.substr(gap, wordEnd - gap));
      if (lineWidth_ + more <= width_ + kSlack) {
        lineEnd_ = wordEnd;
        lineWidth_ += more;
      } else {
        close(false);
        place(word, wordEnd);
      }
    }
    close(true);
  }

 private:
  std::size_t endOfBlanks(std::size_t at) const {
    return std::min(text_.find_first_not_of(u' ', at), text_.size());
  }
  std::size_t endOfWord(std::size_t at) const {
    return std::min(text_.find(u' ', at), text_.size());
  }

  void close(bool endsParagraph) {
    lines_.push_back({text_.substr(lineStart_, lineEnd_ - lineStart_), lineWidth_, endsParagraph});
  }

  // Begins a line with a word, or several lines where it is too long for one.
  void place(std::size_t begin, std::size_t end) {
    lineStart_ = begin;
    lineEnd_ = end;
    lineWidth_ = drawing::textWidth(font_, text_.substr(begin, end - begin));
    while (lineWidth_ > width_ + kSlack) {
      const std::u16string_view word = text_.substr(lineStart_, end - lineStart_);
      const std::size_t cut = fitting(font_, word, width_);
      if (cut == word.size()) return;
      lineEnd_ = lineStart_ + cut;
      const double whole = lineWidth_;
      lineWidth_ = drawing::textWidth(font_, word.substr(0, cut));
      close(false);
      lineStart_ = lineEnd_;
      lineEnd_ = end;
      lineWidth_ = whole - lineWidth_;
    }
  }

  const drawing::Font& font_;
  std::u16string_view text_;
  double width_;
  std::vector<Line>& lines_;
  std::size_t lineStart_ = 0;
  std::size_t lineEnd_ = 0;
  double lineWidth_ = 0;
};

double startOf(Align align, double left, double width, double used) {
  if (align == Align::right) return left + width - used;
  if (align == Align::centre) return left + (width - used) / 2;
  return left;
}

void drawJustified(drawing::Canvas& canvas, const drawing::Font& font, drawing::Colour colour,
                   const Line& line, double left, double width, double baseline) {
  const std::u16string_view text = line.text;
  const std::size_t indent = std::min(text.find_first_not_of(u' '), text.size());
  const auto gaps =
      std::count(text.begin() + static_cast<std::ptrdiff_t>(indent), text.end(), u' ');
  const double extra = gaps > 0 ? (width - line.width) / static_cast<double>(gaps) : 0;
  double x = left;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(u' ', std::max(at, indent)), text.size() - 1) + 1;
    x += canvas.text(font, {x, baseline}, colour, text.substr(at, end - at)) + extra;
    at = end;
  }
}

}  // namespace

void wrap(const drawing::Font& font, std::u16string_view text, double width,
          std::vector<Line>& lines) {
  for (;;) {
    const std::size_t end = text.find(u'\n');
    Wrapper(font, text.substr(0, end), width, lines).run();
    if (end == std::u16string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

void drawLine(drawing::Canvas& canvas, const drawing::Font& font, drawing::Colour colour,
              const Line& line, Align align, double left, double width, double top) {
  const double baseline = top + font.ascent();
  if (align == Align::justify && !line.endsParagraph)
    drawJustified(canvas, font, colour, line, left, width, baseline);
  else
    canvas.text(font, {startOf(align, left, width, line.width), baseline}, colour, line.text);
}

}  // namespace veltgeneral::pdf::layout
