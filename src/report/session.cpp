// A report's beginning and end, and the surface that its members draw on.
#include "platform/report_surfaces.h"
#include "report/surface_call.h"
#include "veltgeneral/reporting.h"

namespace veltgeneral {

Reporting::Reporting() noexcept = default;

Reporting::Reporting(platform::ReportSurfaces& surfaces) noexcept : surfaces_(&surfaces) {}

Reporting::~Reporting() = default;

platform::ReportSurfaces& Reporting::surfaces() {
  if (surfaces_ == nullptr) surfaces_ = &platform::reportSurfaces();
  return *surfaces_;
}

platform::ReportSurface& Reporting::surface() {
  if (!onPrinter()) return surfaces().form();
  if (!printer_) require(surfaces().openPrinter(platform::kPaperA4, printer_));
  return *printer_;
}

void Reporting::presentForm() {
  if (!onPrinter()) require(surfaces().serviceEvents());
}

void Reporting::openReport() {
  // A printer is asked for its paper when it is opened, before anything is drawn.
  platform::ReportSurface& target = surface();
  if (onPrinter()) return;
  require(target.show());
  presentForm();
}

void Reporting::newPage() {
  if (onPrinter()) require(surface().newPage());
}

void Reporting::closeReport() {
  if (!onPrinter()) return require(surface().unload());
  surface();
  // Whether it is sent or not, this document is over.
  const auto document = std::move(printer_);
  require(document->endDocument());
}

}  // namespace veltgeneral
