// The command language: what one line of a command file says (docs/pdf-commands.md).
//
// Here lengths are in points, whatever the line's units; texts are UTF-16.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "drawing/geometry.h"

namespace veltgeneral::pdf {

class CodePage;

enum class Align { left, centre, right, justify };

// Stand in texts for the number of the page and of pages; no code page has them.
constexpr char16_t kPageMark = 0xFDD0;
constexpr char16_t kPagesMark = 0xFDD1;

struct Stroke {
  double thickness = 0.5;
  drawing::Colour colour;
};

struct TitleCommand {
  std::u16string text;
};
struct AuthorCommand {
  std::u16string text;
};
struct PageCommand {
  bool landscape = false;
};
struct MarginsCommand {
  double left = 0, top = 0, right = 0, bottom = 0;
};
struct HeaderCommand {};
struct FooterCommand {};
struct EndCommand {};
struct FontCommand {
  std::u16string family;
  double size = 0;
  bool bold = false;
  bool italic = false;
  drawing::Colour colour;
};
struct SpacingCommand {
  double factor = 0;  // of the font's own line height
};
struct TextCommand {
  drawing::Point at;  // the line's top left corner, middle or right corner, as `align` says
  std::u16string text;
  Align align = Align::left;
};
struct ParagraphCommand {
  std::u16string text;
  Align align = Align::left;
  std::optional<double> from, to;  // from the page's left edge; absent: the margins
};
struct SpaceCommand {
  double height = 0;
};
struct MoveCommand {
  double y = 0;
};
struct NewPageCommand {};
struct LineCommand {
  drawing::Point from, to;
  Stroke stroke;
};
struct BoxCommand {
  drawing::Rectangle area;
  std::optional<drawing::Colour> fill;
  std::optional<Stroke> stroke = Stroke{};
};
struct ImageCommand {
  std::u16string file;
  drawing::Point at;
  double width = 0;
  std::optional<double> height;  // absent: in the picture's proportion
};

enum class Rules { none, horizontal, all };
struct Column {
  double width = 0;
  Align align = Align::left;
};
struct TableCommand {
  std::vector<Column> columns;
  Rules rules = Rules::horizontal;
  Stroke stroke{0.5, {160, 160, 160}};
  std::optional<double> from;  // the left edge; absent: the margin
};
struct RowCommand {
  bool head = false;
  std::vector<std::u16string> cells;
  bool bold = false;
  std::optional<drawing::Colour> fill;
};

using Command =
    std::variant<TitleCommand, AuthorCommand, PageCommand, MarginsCommand, HeaderCommand,
                 FooterCommand, EndCommand, FontCommand, SpacingCommand, TextCommand,
                 ParagraphCommand, SpaceCommand, MoveCommand, NewPageCommand, LineCommand,
                 BoxCommand, ImageCommand, TableCommand, RowCommand>;

// The command in `line` (without its line end); none in a blank line or a comment. Throws
// CommandError, without a line number.
std::optional<Command> parseCommand(std::string_view line, const CodePage& codePage);

// The keyword that the command is written with.
std::string_view keywordOf(const Command& command);

}  // namespace veltgeneral::pdf
