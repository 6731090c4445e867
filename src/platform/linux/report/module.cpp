// The module's one entry.
#include <string>

#include "platform/environment.h"
#include "platform/linux/report/failure.h"
#include "platform/linux/report/form.h"
#include "platform/linux/report/printer.h"
#include "platform/report_surfaces.h"

namespace veltgeneral::platform {

namespace {

class Surfaces : public ReportSurfaces {
 public:
  ReportSurface& form() noexcept override { return form_; }

  ErrorNumber openPrinter(std::int16_t size,
                          std::unique_ptr<ReportSurface>& printer) noexcept override {
    return answer(RunTime::printerError, [&] {
      if (size != kPaperA4) throw Failure(RunTime::invalidPropertyValue);
      printer = std::make_unique<Printer>(environment("VELTGENERAL_PRINTER").value_or(""));
    });
  }

  ErrorNumber serviceEvents() noexcept override { return form_.service(); }

 private:
  Form form_;
};

}  // namespace

}  // namespace veltgeneral::platform

extern "C" __attribute__((visibility("default"))) veltgeneral::platform::ReportSurfaces&
veltgeneralReportSurfaces() noexcept {
  static veltgeneral::platform::Surfaces surfaces;
  return surfaces;
}
