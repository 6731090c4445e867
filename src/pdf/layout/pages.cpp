#include "pdf/layout/pages.h"

#include "pdf/command_error.h"

namespace veltgeneral::pdf::layout {

void Pages::begin() {
  if (open_) return;
  const drawing::Size size =
      page_.landscape ? drawing::Size{drawing::kA4.height, drawing::kA4.width} : drawing::kA4;
  if (file_ != nullptr) file_->setPageSize(size);
  open_ = true;
  ++number_;
  left_ = margins_.left;
  right_ = size.width - margins_.right;
  y_ = top_ = margins_.top;
  bottom_ = size.height - margins_.bottom;
  paint(header_);
  paint(footer_);
}

void Pages::end() {
  begin();
  if (file_ != nullptr) file_->endPage();
  open_ = false;
}

void Pages::paint(const Block& block) {
  if (canvas() == nullptr) return;
  Style style = block.style;
  for (const Block::Item& item : block.items) {
    try {
      if (const auto* font = std::get_if<FontCommand>(&item.command))
        painter_.setFont(*font, style);
      else
        painter_.paint(*canvas(), item.command, style, numbers());
    } catch (CommandError& error) {
      error.setLine(item.line);
      throw;
    }
  }
}

}  // namespace veltgeneral::pdf::layout
