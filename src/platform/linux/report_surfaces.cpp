// Opens the module with the form and the printer.
#include "platform/report_surfaces.h"

#include <atomic>
#include <memory>

#include "platform/library.h"

namespace veltgeneral::platform {

namespace {

std::atomic<ReportSurfaces*> loaded = nullptr;

ReportSurfaces& load() {
  // Never closed: a document may outlive every object of ours at the end of the process.
  static const Library& library =
      *std::make_unique<Library>(modulePath("veltgeneral-report")).release();
  loaded = &library.entry<ReportSurfaces&() noexcept>("veltgeneralReportSurfaces")();
  return *loaded;
}

}  // namespace

ReportSurfaces& reportSurfaces() {
  static ReportSurfaces& surfaces = load();
  return surfaces;
}

void serviceReportForm() noexcept {
  if (ReportSurfaces* surfaces = loaded) static_cast<void>(surfaces->serviceEvents());
}

}  // namespace veltgeneral::platform
