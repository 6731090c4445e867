// What a report is drawn on: the form of the process and the pages of a printed document.
//
// Lengths are twips (1/1440 inch, 567 to the centimetre) from the top-left corner of the form or
// page, y downwards. Colours are 0x00BBGGRR. Every call answers with a run-time error number, 0
// when it is done, and throws nothing: the surfaces live in a module of their own, and no exception
// crosses its border.
#pragma once

#include <cstdint>
#include <memory>

#include "veltgeneral/runtime_error.h"
#include "veltgeneral/text.h"

namespace veltgeneral::platform {

using ErrorNumber = std::int32_t;

class ReportSurface {
 public:
  ReportSurface() = default;
  ReportSurface(const ReportSurface&) = delete;
  ReportSurface& operator=(const ReportSurface&) = delete;
  virtual ~ReportSurface() = default;

  [[nodiscard]] virtual ErrorNumber setFontName(TextView face) noexcept = 0;
  // 380 unless above 0 and not above 2160 points.
  [[nodiscard]] virtual ErrorNumber setFontSize(float points) noexcept = 0;
  [[nodiscard]] virtual ErrorNumber setFontBold(bool bold) noexcept = 0;
  [[nodiscard]] virtual ErrorNumber setFontItalic(bool italic) noexcept = 0;

  // Where the top-left corner of the next text goes.
  [[nodiscard]] virtual ErrorNumber setCurrentX(float twips) noexcept = 0;
  [[nodiscard]] virtual ErrorNumber setCurrentY(float twips) noexcept = 0;
  [[nodiscard]] virtual ErrorNumber getCurrentX(float& twips) noexcept = 0;
  [[nodiscard]] virtual ErrorNumber getCurrentY(float& twips) noexcept = 0;

  // Leaves the current x just past the last cell and the current y as it was.
  [[nodiscard]] virtual ErrorNumber printText(TextView text) noexcept = 0;
  // Filled with `color`, between any two opposite corners; a line where it has no width or height.
  [[nodiscard]] virtual ErrorNumber drawBox(float x1, float y1, float x2, float y2,
                                            std::int32_t color) noexcept = 0;

  // Printer only: ends the page; the next one begins at (0, 0) with the font as it is.
  [[nodiscard]] virtual ErrorNumber newPage() noexcept = 0;
  // Printer only: ends the document and sends it. Nothing is sent where nothing was drawn.
  [[nodiscard]] virtual ErrorNumber endDocument() noexcept = 0;

  // Form only: makes it visible; closes it and forgets what was drawn.
  [[nodiscard]] virtual ErrorNumber show() noexcept = 0;
  [[nodiscard]] virtual ErrorNumber unload() noexcept = 0;
};

// The platform's number for A4 paper, 210 × 297 mm.
inline constexpr std::int16_t kPaperA4 = 9;

class ReportSurfaces {
 public:
  ReportSurfaces() = default;
  ReportSurfaces(const ReportSurfaces&) = delete;
  ReportSurfaces& operator=(const ReportSurfaces&) = delete;
  virtual ~ReportSurfaces() = default;

  // The one form of the process. It comes to be when something is first drawn on it, and again
  // after it was closed, by `unload` or by its user; it is seen from `show` on.
  virtual ReportSurface& form() noexcept = 0;

  // A new document for the printer in force on paper `size`; destroying it drops what was not
  // ended. Answers 482 where there is no such printer, 380 for a paper it cannot take.
  [[nodiscard]] virtual ErrorNumber openPrinter(
      std::int16_t size, std::unique_ptr<ReportSurface>& printer) noexcept = 0;

  // Shows what was drawn on the form since the last call and learns whether its user closed it.
  // Does nothing where there is no form.
  [[nodiscard]] virtual ErrorNumber serviceEvents() noexcept = 0;
};

// This machine's surfaces, for good; their module is loaded by the first call. Throws RuntimeError:
// 53 the module is not there, 48 it cannot be loaded.
ReportSurfaces& reportSurfaces();

// `serviceEvents` where this process has a form, for whoever works long on the caller's thread;
// loads nothing and lets no failure reach that work.
void serviceReportForm() noexcept;

}  // namespace veltgeneral::platform
