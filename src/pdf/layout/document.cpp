#include "pdf/layout/document.h"

#include "pdf/command_error.h"

namespace veltgeneral::pdf::layout {
namespace {

// Until a command says otherwise.
const FontCommand kFirstFont{u"Arial", 10, false, false, {}};

template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

[[noreturn]] void refuse(std::string_view expected, const Command& found) {
  throw CommandError("expected " + std::string(expected) + ", found " +
                     std::string(keywordOf(found)));
}

}  // namespace

Document::Document(drawing::PdfFile* file, int pageCount, const std::filesystem::path& folder)
    : file_(file), painter_(folder), pages_(file, pageCount, painter_) {}

void Document::execute(const Command& command, int line) {
  try {
    // At the first command and not before, so that a missing font is a line's fault.
    if (style_.font.face == nullptr) painter_.setFont(kFirstFont, style_);
    dispatch(command, line);
  } catch (CommandError& error) {
    error.setLine(line);
    throw;
  }
}

void Document::dispatch(const Command& command, int line) {
  if (std::holds_alternative<EndCommand>(command)) return close();
  switch (open_) {
    case Open::header:
    case Open::footer:
      return inBlock(command, line);
    case Open::table:
      return inTable(command);
    case Open::nothing:
      openedIn_ = line;
      return onPage(command);
  }
}

void Document::close() {
  switch (open_) {
    case Open::nothing:
      throw CommandError("expected a command, found end without header, footer or table");
    case Open::header:
      pages_.setHeader(std::move(block_));
      break;
    case Open::footer:
      pages_.setFooter(std::move(block_));
      break;
    case Open::table:
      table_->end();
      table_.reset();
      break;
  }
  open_ = Open::nothing;
}

void Document::inBlock(const Command& command, int line) {
  const bool fits = std::holds_alternative<FontCommand>(command) ||
                    std::holds_alternative<TextCommand>(command) ||
                    std::holds_alternative<LineCommand>(command) ||
                    std::holds_alternative<BoxCommand>(command) ||
                    std::holds_alternative<ImageCommand>(command);
  if (!fits) refuse("font, text, line, box, image or end", command);
  block_.items.push_back({line, command});
}

void Document::inTable(const Command& command) {
  if (const auto* row = std::get_if<RowCommand>(&command))
    table_->add(*row, style_);
  else if (const auto* font = std::get_if<FontCommand>(&command))
    painter_.setFont(*font, style_);
  else
    refuse("head, row, font or end", command);
}

void Document::open(Open what) {
  open_ = what;
  block_ = {style_, {}};
}

void Document::onPage(const Command& command) {
  std::visit(Overloaded{
                 [&](const TitleCommand& c) {
                   if (file_ != nullptr) file_->setTitle(c.text);
                 },
                 [&](const AuthorCommand& c) {
                   if (file_ != nullptr) file_->setAuthor(c.text);
                 },
                 [&](const PageCommand& c) { pages_.setPage(c); },
                 [&](const MarginsCommand& c) { pages_.setMargins(c); },
                 [&](const HeaderCommand&) { open(Open::header); },
                 [&](const FooterCommand&) { open(Open::footer); },
                 [&](const FontCommand& c) { painter_.setFont(c, style_); },
                 [&](const SpacingCommand& c) { style_.spacing = c.factor; },
                 [&](const ParagraphCommand& c) { paragraph(c); },
                 [&](const SpaceCommand& c) {
                   pages_.begin();
                   pages_.moveTo(pages_.y() + c.height);
                 },
                 [&](const MoveCommand& c) {
                   pages_.begin();
                   pages_.moveTo(c.y);
                 },
                 [&](const NewPageCommand&) { pages_.end(); },
                 [&](const TableCommand& c) {
                   table_.emplace(c, pages_);
                   open(Open::table);
                 },
                 [&](const RowCommand&) { refuse("table before its rows", command); },
                 [&](const auto&) { placed(command); },
             },
             command);
}

void Document::placed(const Command& command) {
  pages_.begin();
  if (pages_.canvas() != nullptr)
    painter_.paint(*pages_.canvas(), command, style_, pages_.numbers());
}

void Document::paragraph(const ParagraphCommand& command) {
  pages_.begin();
  const double left = command.from.value_or(pages_.left());
  const double width = command.to.value_or(pages_.right()) - left;
  if (width < drawing::kPointsPerCm / 2)
    throw CommandError("expected a paragraph at least 0.5 cm wide, found a narrower one");
  lines_.clear();
  wrap(style_.font, command.text, width, lines_);
  for (const Line& line : lines_) {
    if (!pages_.fits(style_.font.height())) {
      pages_.end();
      pages_.begin();
    }
    if (pages_.canvas() != nullptr)
      drawLine(*pages_.canvas(), style_.font, style_.colour, line, command.align, left, width,
               pages_.y());
    pages_.moveTo(pages_.y() + style_.lineHeight());
  }
}

int Document::finish() {
  if (open_ != Open::nothing)
    throw CommandError("expected end before the end of the file, found none", openedIn_);
  if (pages_.isOpen() || pages_.numbers().page == 0) pages_.end();
  return pages_.numbers().page;
}

}  // namespace veltgeneral::pdf::layout
