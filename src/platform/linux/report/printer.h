// The printer: pages stream into a PDF, which becomes a job for the print system or a file.
#pragma once

#include <optional>
#include <string>

#include "drawing/pdf_file.h"
#include "platform/linux/report/drawn_surface.h"
#include "platform/linux/report/print_queue.h"
#include "platform/linux/report/private_folder.h"

namespace veltgeneral::platform {

class Printer : public DrawnSurface {
 public:
  // `destination`: "pdf:FILE.pdf", the name of a queue, an "ipp://" or "ipps://" address, or
  // nothing for the print system's default queue. Throws Failure 482 where there is none.
  explicit Printer(const std::string& destination);

  ErrorNumber newPage() noexcept override;
  ErrorNumber endDocument() noexcept override;

 protected:
  drawing::Canvas& canvas() override;
  drawing::Rectangle covered(const drawing::Rectangle& box) const override;
  void touched(const drawing::Rectangle&) override { pageBegun_ = true; }

 private:
  void endPage();

  std::string file_;  // the document's place; empty where it goes to the queue
  std::optional<PrintQueue> queue_;
  std::optional<PrivateFolder> spool_;
  std::optional<drawing::PdfFile> document_;
  bool pageBegun_ = false;  // something was drawn on the current page
};

}  // namespace veltgeneral::platform
