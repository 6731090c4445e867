// Arguments: the words, numbers and quoted texts of one line, taken from left to right.
//
// Whatever is not as expected is a CommandError that says what was expected and what was found.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "drawing/geometry.h"

namespace veltgeneral::pdf {

class CodePage;

class Arguments {
 public:
  // Both are borrowed.
  Arguments(std::string_view line, const CodePage& codePage);

  bool atEnd() const { return rest_.empty(); }
  bool atText() const { return rest_.starts_with('"'); }
  bool atComment() const { return rest_.starts_with('#'); }
  bool atNumber() const;

  // Takes the word if it comes next, in capitals or small letters; an argument never matches in
  // part.
  bool take(std::string_view word);
  std::optional<drawing::Colour> takeColour();

  double number(std::string_view expected, double low, double high);
  // A number of centimetres, in points.
  double cm(std::string_view expected, double low, double high);
  drawing::Colour colour();
  // A quoted text: \" \\ \n \{ for a quote, a backslash, a line end, a brace.
  std::u16string text(std::string_view expected);
  // The same, with {page} and {pages} as their marks.
  std::u16string textWithMarks(std::string_view expected);

  [[noreturn]] void fail(std::string_view expected) const;
  void finish(std::string_view expected = "the end of the line") const;

 private:
  std::string_view next() const;
  void drop(std::size_t count);
  std::u16string quoted(std::string_view expected, bool marks);
  char16_t escape(std::size_t at) const;

  std::string_view rest_;
  const CodePage& codePage_;
};

}  // namespace veltgeneral::pdf
