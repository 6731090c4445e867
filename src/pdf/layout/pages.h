// Pages: the sequence of pages, where on them the next thing goes, and what stands on each of them.
//
// A page begins when something first needs it; orientation, margins, header and footer are those
// in force at that moment. Without a file the pages are only counted: canvas() is then null.
#pragma once

#include <vector>

#include "drawing/pdf_file.h"
#include "pdf/layout/painter.h"

namespace veltgeneral::pdf::layout {

// A header or footer: drawn with the style that was in force where it was written.
struct Block {
  struct Item {
    int line = 0;
    Command command;
  };
  Style style;
  std::vector<Item> items;
};

class Pages {
 public:
  // `file` may be null; `pageCount` is what {pages} stands for.
  Pages(drawing::PdfFile* file, int pageCount, Painter& painter)
      : file_(file), pageCount_(pageCount), painter_(painter) {}

  // In force from the next page that begins.
  void setPage(const PageCommand& command) { page_ = command; }
  void setMargins(const MarginsCommand& command) { margins_ = command; }
  void setHeader(Block block) { header_ = std::move(block); }
  void setFooter(Block block) { footer_ = std::move(block); }

  // Begins a page unless one is open.
  void begin();
  // Ends the open page, or begins and ends an empty one.
  void end();

  bool isOpen() const { return open_; }
  drawing::Canvas* canvas() { return file_ != nullptr ? &file_->canvas() : nullptr; }
  PageNumbers numbers() const { return {number_, pageCount_}; }

  // Of the open page: where the flow goes on, and between which edges.
  double y() const { return y_; }
  void moveTo(double y) { y_ = y; }
  double left() const { return left_; }
  double right() const { return right_; }
  double bottom() const { return bottom_; }
  double height() const { return bottom_ - top_; }
  // Whether a line of this height still fits; one that fits no page fits at the top of any.
  bool fits(double height) const { return y_ + height <= bottom_ + 1e-6 || y_ <= top_; }

 private:
  void paint(const Block& block);

  drawing::PdfFile* file_;
  int pageCount_;
  Painter& painter_;
  PageCommand page_;
  MarginsCommand margins_{kMargin, kMargin, kMargin, kMargin};
  Block header_, footer_;
  int number_ = 0;
  bool open_ = false;
  double y_ = 0, left_ = 0, top_ = 0, right_ = 0, bottom_ = 0;

  static constexpr double kMargin = 2 * drawing::kPointsPerCm;
};

}  // namespace veltgeneral::pdf::layout
