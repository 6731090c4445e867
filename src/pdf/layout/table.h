// Table: rows of wrapped cells, page after page, the head repeated on each.
//
// A row stays together unless it is taller than a page. Rows are drawn as they come and forgotten;
// only the rules of the page at hand wait, so that no fill covers them.
#pragma once

#include <string>
#include <vector>

#include "pdf/layout/pages.h"
#include "pdf/layout/wrap.h"

namespace veltgeneral::pdf::layout {

class Table {
 public:
  // Begins at the flow position. Throws CommandError where the columns do not fit the page.
  Table(TableCommand command, Pages& pages);

  // Throws CommandError: the number of cells is not that of the columns, a head row after other
  // rows, or a head that leaves no room.
  void add(const RowCommand& row, const Style& style);
  // Draws what waits and moves the flow below the table.
  void end();

 private:
  // A row, its cells cut into lines; the texts are the row's own.
  struct Laid {
    RowCommand row;
    drawing::Font font;
    drawing::Colour colour;
    double lineHeight = 0;
    std::vector<std::vector<Line>> cells;  // one a column
    std::size_t lineCount = 0;

    double height(std::size_t lines) const;
    double height() const { return height(lineCount); }
    // How many lines fit `room`, at most all.
    std::size_t linesWithin(double room) const;
  };

  void layOut(const Style& style, Laid& laid) const;
  double headHeight() const;
  // Whether `laid` is taller than a page has room below the head.
  bool mustSplit(const Laid& laid) const;
  void place(const Laid& laid);
  void draw(const Laid& laid, std::size_t first, std::size_t count);
  void nextPage();
  // A part is what stands on one page: head, rows and rules.
  void beginPart();
  void endPart();

  TableCommand command_;
  Pages& pages_;
  double width_ = 0;
  std::vector<Laid> head_;
  Laid current_;               // reused from row to row
  std::vector<double> rules_;  // y of the waiting horizontal rules, the table's top first
  bool bodyBegun_ = false;
};

}  // namespace veltgeneral::pdf::layout
