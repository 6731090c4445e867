#include "platform/linux/report/printer.h"

#include <cerrno>  // program_invocation_short_name

namespace veltgeneral::platform {

namespace {

constexpr std::string_view kFilePrefix = "pdf:";
constexpr double kLineWidth = 0.5;  // points

std::string jobTitle() { return "Report from " + std::string(program_invocation_short_name); }

}  // namespace

Printer::Printer(const std::string& destination) : DrawnSurface(RunTime::printerError) {
  if (destination.starts_with(kFilePrefix))
    file_ = destination.substr(kFilePrefix.size());
  else
    queue_.emplace(destination);
}

drawing::Canvas& Printer::canvas() {
  if (!document_) {
    if (queue_) spool_.emplace();
    document_.emplace(queue_ ? spool_->file("report.pdf") : file_, drawing::kA4);
    document_->setTitle(u"Report");
  }
  return document_->canvas();
}

drawing::Rectangle Printer::covered(const drawing::Rectangle& box) const {
  if (box.width > 0 && box.height > 0) return box;
  return {box.x - kLineWidth / 2, box.y - kLineWidth / 2, box.width + kLineWidth,
          box.height + kLineWidth};
}

void Printer::endPage() {
  canvas();
  document_->endPage();
  pageBegun_ = false;
  moveToOrigin();
}

ErrorNumber Printer::newPage() noexcept {
  return run([&] { endPage(); });
}

ErrorNumber Printer::endDocument() noexcept {
  return run([&] {
    if (!document_) return;
    if (pageBegun_) endPage();
    document_->commit();
    document_.reset();
    if (queue_) queue_->print(spool_->file("report.pdf"), jobTitle());
    spool_.reset();
  });
}

}  // namespace veltgeneral::platform
