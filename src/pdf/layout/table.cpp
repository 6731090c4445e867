#include "pdf/layout/table.h"

#include <algorithm>
#include <cmath>

#include "pdf/command_error.h"

namespace veltgeneral::pdf::layout {
namespace {

constexpr double kPadX = 0.12 * drawing::kPointsPerCm;
constexpr double kPadY = 0.1 * drawing::kPointsPerCm;
constexpr double kSlack = 1e-6;

}  // namespace

double Table::Laid::height(std::size_t lines) const {
  // The space between lines does not follow the last one.
  return static_cast<double>(lines - 1) * lineHeight + font.height() + 2 * kPadY;
}

std::size_t Table::Laid::linesWithin(double room) const {
  const double more = room - height(1) + kSlack;
  if (more < 0) return 0;
  return static_cast<std::size_t>(
      std::min(static_cast<double>(lineCount), 1 + std::floor(more / lineHeight)));
}

Table::Table(TableCommand command, Pages& pages) : command_(std::move(command)), pages_(pages) {
  pages_.begin();
  for (const Column& column : command_.columns) width_ += column.width;
  const double left = command_.from.value_or(pages_.left());
  if (left + width_ > pages_.right() + kSlack)
    throw CommandError("expected columns that end before the right margin, found wider ones");
}

void Table::layOut(const Style& style, Laid& laid) const {
  laid.font = laid.row.bold ? style.boldFont : style.font;
  laid.colour = style.colour;
  laid.lineHeight = style.lineHeight();
  laid.cells.resize(laid.row.cells.size());
  laid.lineCount = 1;
  for (std::size_t i = 0; i < laid.cells.size(); ++i) {
    laid.cells[i].clear();
    wrap(laid.font, laid.row.cells[i], command_.columns[i].width - 2 * kPadX, laid.cells[i]);
    laid.lineCount = std::max(laid.lineCount, laid.cells[i].size());
  }
}

void Table::add(const RowCommand& row, const Style& style) {
  if (row.cells.size() != command_.columns.size())
    throw CommandError("expected " + std::to_string(command_.columns.size()) + " cells, found " +
                       std::to_string(row.cells.size()));
  if (row.head && bodyBegun_) throw CommandError("expected head rows first, found one after rows");
  if (row.head) {
    Laid& laid = head_.emplace_back();
    laid.row = row;
    layOut(style, laid);
    return;
  }
  current_.row = row;
  layOut(style, current_);
  if (!bodyBegun_) {
    // The head stays with its first row.
    if (!pages_.fits(headHeight() +
                     current_.height(mustSplit(current_) ? 1 : current_.lineCount))) {
      pages_.end();
      pages_.begin();
    }
    beginPart();
    bodyBegun_ = true;
  }
  place(current_);
}

double Table::headHeight() const {
  double height = 0;
  for (const Laid& head : head_) height += head.height();
  return height;
}

bool Table::mustSplit(const Laid& laid) const {
  return laid.height() > pages_.height() - headHeight() + kSlack;
}

void Table::nextPage() {
  endPart();
  pages_.end();
  pages_.begin();
  beginPart();
}

void Table::place(const Laid& laid) {
  bool fresh = false;  // on a page that holds no more than the head
  for (std::size_t first = 0; first < laid.lineCount;) {
    const std::size_t left = laid.lineCount - first;
    const std::size_t count = std::min(left, laid.linesWithin(pages_.bottom() - pages_.y()));
    if (count == left || (count > 0 && (fresh || mustSplit(laid)))) {
      draw(laid, first, count);
      first += count;
      fresh = false;
    } else if (fresh) {
      throw CommandError("expected room for a line of the row below the head, found none");
    } else {
      nextPage();
      fresh = true;
    }
  }
}

void Table::draw(const Laid& laid, std::size_t first, std::size_t count) {
  const double top = pages_.y();
  const double height = laid.height(count);
  pages_.moveTo(top + height);
  if (pages_.canvas() == nullptr) return;
  drawing::Canvas& canvas = *pages_.canvas();
  double x = command_.from.value_or(pages_.left());
  if (laid.row.fill) canvas.fill({x, top, width_, height}, *laid.row.fill);
  for (std::size_t i = 0; i < laid.cells.size(); ++i) {
    const Column& column = command_.columns[i];
    double y = top + kPadY;
    for (std::size_t k = first; k < std::min(first + count, laid.cells[i].size()); ++k) {
      drawLine(canvas, laid.font, laid.colour, laid.cells[i][k], column.align, x + kPadX,
               column.width - 2 * kPadX, y);
      y += laid.lineHeight;
    }
    x += column.width;
  }
  rules_.push_back(top + height);
}

void Table::beginPart() {
  rules_.assign(1, pages_.y());
  for (const Laid& head : head_) draw(head, 0, head.lineCount);
}

void Table::endPart() {
  if (pages_.canvas() == nullptr || rules_.size() < 2 || command_.rules == Rules::none) return;
  drawing::Canvas& canvas = *pages_.canvas();
  const auto [thickness, colour] = command_.stroke;
  double x = command_.from.value_or(pages_.left());
  for (const double y : rules_) canvas.line({x, y}, {x + width_, y}, thickness, colour);
  if (command_.rules != Rules::all) return;
  // Half a line further at both ends, so that the corners are whole.
  const double top = rules_.front() - thickness / 2;
  const double bottom = rules_.back() + thickness / 2;
  canvas.line({x, top}, {x, bottom}, thickness, colour);
  for (const Column& column : command_.columns) {
    x += column.width;
    canvas.line({x, top}, {x, bottom}, thickness, colour);
  }
}

void Table::end() {
  if (!bodyBegun_) {
    if (!pages_.fits(headHeight())) {
      pages_.end();
      pages_.begin();
    }
    beginPart();
  }
  endPart();
}

}  // namespace veltgeneral::pdf::layout
