// Document: carries out commands one after the other.
#pragma once

#include <filesystem>
#include <optional>

#include "drawing/pdf_file.h"
#include "pdf/commands.h"
#include "pdf/layout/pages.h"
#include "pdf/layout/painter.h"
#include "pdf/layout/table.h"
#include "pdf/layout/wrap.h"

namespace veltgeneral::pdf::layout {

class Document {
 public:
  // Writes to `file`; a null one makes a trial run that only counts pages. `pageCount` is what
  // {pages} stands for. Relative picture names start from `folder`.
  Document(drawing::PdfFile* file, int pageCount, const std::filesystem::path& folder);

  // Throws CommandError with its line, or drawing::Error where the file refuses.
  void execute(const Command& command, int line);
  // After the last command: ends the last page and returns the number of pages, at least 1.
  int finish();

 private:
  // What waits for its `end`.
  enum class Open { nothing, header, footer, table };

  void dispatch(const Command& command, int line);
  void inBlock(const Command& command, int line);
  void inTable(const Command& command);
  void onPage(const Command& command);

  void open(Open what);
  void placed(const Command& command);
  void paragraph(const ParagraphCommand& command);
  void close();

  drawing::PdfFile* file_;
  Painter painter_;
  Pages pages_;
  Style style_;
  Open open_ = Open::nothing;
  int openedIn_ = 0;  // the line that opened it
  Block block_;
  std::optional<Table> table_;
  std::vector<Line> lines_;  // reused from paragraph to paragraph
};

}  // namespace veltgeneral::pdf::layout
