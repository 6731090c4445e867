// One row a keyword, one small function a row.
#include "pdf/commands.h"

#include <algorithm>
#include <array>

#include "pdf/arguments.h"
#include "pdf/command_error.h"

namespace veltgeneral::pdf {
namespace {

// A page is far smaller; what lies beyond its edges is cut off.
constexpr double kFarCm = 100;

drawing::Point point(Arguments& args) {
  const double x = args.cm("a place in cm", -kFarCm, kFarCm);
  const double y = args.cm("a place in cm", -kFarCm, kFarCm);
  return {x, y};
}

double length(Arguments& args, std::string_view name) { return args.cm(name, 0.01, kFarCm); }

std::optional<Align> takeAlign(Arguments& args) {
  if (args.take("left")) return Align::left;
  if (args.take("centre") || args.take("center")) return Align::centre;
  if (args.take("right")) return Align::right;
  return std::nullopt;
}

bool takeStroke(Arguments& args, Stroke& stroke) {
  if (args.take("thick")) {
    stroke.thickness = args.number("a thickness in points", 0.05, 100);
  } else if (const auto colour = args.takeColour()) {
    stroke.colour = *colour;
  } else {
    return false;
  }
  return true;
}

Command title(Arguments& args) { return TitleCommand{args.text("a quoted title")}; }
Command author(Arguments& args) { return AuthorCommand{args.text("a quoted author")}; }

Command page(Arguments& args) {
  if (args.take("landscape")) return PageCommand{true};
  if (!args.take("portrait")) args.fail("portrait or landscape");
  return PageCommand{false};
}

Command margins(Arguments& args) {
  const auto margin = [&] { return args.cm("a margin in cm", 0, 10); };
  const double left = margin();
  if (args.atEnd()) return MarginsCommand{left, left, left, left};
  const double top = margin();
  const double right = margin();
  return MarginsCommand{left, top, right, margin()};
}

template <class Bare>
Command bare(Arguments&) {
  return Bare{};
}

Command font(Arguments& args) {
  FontCommand command;
  command.family = args.text("a quoted font name");
  if (command.family.empty()) throw CommandError("expected a font name, found an empty text");
  command.size = args.number("a font size in points", 1, 500);
  while (!args.atEnd()) {
    if (args.take("bold"))
      command.bold = true;
    else if (args.take("italic"))
      command.italic = true;
    else if (const auto colour = args.takeColour())
      command.colour = *colour;
    else
      args.fail("bold, italic or a colour");
  }
  return command;
}

Command spacing(Arguments& args) { return SpacingCommand{args.number("a factor", 0.5, 5)}; }

Command text(Arguments& args) {
  TextCommand command;
  command.at = point(args);
  command.text = args.textWithMarks("a quoted text");
  command.align = takeAlign(args).value_or(Align::left);
  args.finish("left, centre or right");
  return command;
}

Command paragraph(Arguments& args) {
  ParagraphCommand command;
  command.text = args.text("a quoted text");
  while (!args.atEnd()) {
    if (const auto align = takeAlign(args))
      command.align = *align;
    else if (args.take("justify"))
      command.align = Align::justify;
    else if (args.take("from"))
      command.from = args.cm("a place in cm", -kFarCm, kFarCm);
    else if (args.take("to"))
      command.to = args.cm("a place in cm", -kFarCm, kFarCm);
    else
      args.fail("left, centre, right, justify, from or to");
  }
  return command;
}

Command space(Arguments& args) { return SpaceCommand{args.cm("a height in cm", 0, kFarCm)}; }
Command move(Arguments& args) { return MoveCommand{args.cm("a place in cm", 0, kFarCm)}; }

Command line(Arguments& args) {
  LineCommand command;
  command.from = point(args);
  command.to = point(args);
  while (!args.atEnd())
    if (!takeStroke(args, command.stroke)) args.fail("thick or a colour");
  return command;
}

Command box(Arguments& args) {
  BoxCommand command;
  const drawing::Point at = point(args);
  const double width = length(args, "a width in cm");
  command.area = {at.x, at.y, width, length(args, "a height in cm")};
  Stroke stroke;
  bool outlined = true;
  while (!args.atEnd()) {
    if (args.take("fill"))
      command.fill = args.colour();
    else if (args.take("noline"))
      outlined = false;
    else if (!takeStroke(args, stroke))
      args.fail("fill, thick, noline or a colour");
  }
  command.stroke = outlined ? std::optional(stroke) : std::nullopt;
  return command;
}

Command image(Arguments& args) {
  ImageCommand command;
  command.file = args.text("a quoted file name");
  command.at = point(args);
  command.width = length(args, "a width in cm");
  if (!args.atEnd()) command.height = length(args, "a height in cm");
  return command;
}

bool takeTableOption(Arguments& args, TableCommand& command) {
  if (args.take("grid"))
    command.rules = Rules::all;
  else if (args.take("rules"))
    command.rules = Rules::horizontal;
  else if (args.take("plain"))
    command.rules = Rules::none;
  else if (args.take("from"))
    command.from = args.cm("a place in cm", -kFarCm, kFarCm);
  else
    return takeStroke(args, command.stroke);
  return true;
}

Command table(Arguments& args) {
  TableCommand command;
  do {
    Column column{args.cm("a column width in cm", 0.5, kFarCm)};
    column.align = takeAlign(args).value_or(Align::left);
    command.columns.push_back(column);
  } while (args.atNumber());
  while (!args.atEnd())
    if (!takeTableOption(args, command))
      args.fail("a column width, grid, rules, plain, thick, from or a colour");
  return command;
}

RowCommand cells(Arguments& args, bool head) {
  RowCommand command;
  command.head = command.bold = head;
  do {
    command.cells.push_back(args.text("a quoted cell"));
  } while (args.atText());
  while (!args.atEnd()) {
    if (args.take("bold"))
      command.bold = true;
    else if (args.take("fill"))
      command.fill = args.colour();
    else
      args.fail("a quoted cell, bold or fill");
  }
  return command;
}

Command head(Arguments& args) { return cells(args, true); }
Command row(Arguments& args) { return cells(args, false); }

struct Keyword {
  std::string_view name;
  Command (*parse)(Arguments&);
};

// In the order of use: the first row of a long table is found first.
constexpr Keyword kKeywords[] = {
    {"row", row},
    {"text", text},
    {"paragraph", paragraph},
    {"line", line},
    {"box", box},
    {"font", font},
    {"image", image},
    {"space", space},
    {"move", move},
    {"newpage", bare<NewPageCommand>},
    {"table", table},
    {"head", head},
    {"header", bare<HeaderCommand>},
    {"footer", bare<FooterCommand>},
    {"end", bare<EndCommand>},
    {"spacing", spacing},
    {"page", page},
    {"margins", margins},
    {"title", title},
    {"author", author},
};

}  // namespace

std::optional<Command> parseCommand(std::string_view line, const CodePage& codePage) {
  Arguments args(line, codePage);
  if (args.atEnd() || args.atComment()) return std::nullopt;
  for (const Keyword& keyword : kKeywords) {
    if (!args.take(keyword.name)) continue;
    Command command = keyword.parse(args);
    args.finish();
    return command;
  }
  args.fail("a command");
}

std::string_view keywordOf(const Command& command) {
  // In the order of the variant's kinds.
  constexpr std::string_view kNames[] = {"title",     "author", "page",  "margins", "header",
                                         "footer",    "end",    "font",  "spacing", "text",
                                         "paragraph", "space",  "move",  "newpage", "line",
                                         "box",       "image",  "table", "row"};
  static_assert(std::size(kNames) == std::variant_size_v<Command>);
  const auto* row = std::get_if<RowCommand>(&command);
  return row != nullptr && row->head ? "head" : kNames[command.index()];
}

}  // namespace veltgeneral::pdf
