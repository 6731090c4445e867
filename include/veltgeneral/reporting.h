// Reporting: framed pages, boxes and single lines of text on the screen's form or the printer.
//
// Positions are centimetres from the top-left corner of a portrait A4 page, in any kind of number;
// the form shows everything at 70 % of its printed size. Text is set in "Courier New" or a face of
// the same cells. Colours are 0x00BBGGRR.
//
// A caller sets `outputMode`, calls `openReport`, draws page after page with `newPage` between
// them, and ends with `closeReport`. The form is one for the whole process; a printed document
// belongs to its object and is dropped with it when nobody has ended it.
//
// No member traps an error: RuntimeError reaches the caller with 482 where the print system has no
// printer or refuses the job, 57 where there is no display, 380 for a font size outside 0 to 2160,
// 6, 13 or 94 for an argument that is no number. What was drawn before the error stays drawn.
#pragma once

#include <cstdint>
#include <memory>

#include "veltgeneral/export.h"
#include "veltgeneral/text.h"
#include "veltgeneral/variant.h"

namespace veltgeneral {

namespace platform {
class ReportSurface;
class ReportSurfaces;
}  // namespace platform

// Where a report is drawn.
enum typeOutputReport : std::int32_t { torFORM = 1, torPRINTER = 2 };

class VELTGENERAL_API Reporting {
 public:
  Reporting() noexcept;
  // Draws on `surfaces`, borrowed, in place of the machine's own.
  explicit Reporting(platform::ReportSurfaces& surfaces) noexcept;
  Reporting(const Reporting&) = delete;
  Reporting& operator=(const Reporting&) = delete;
  ~Reporting();

  // Where the other members draw: on the printer for torPRINTER, for any other value (0 to begin
  // with) on the form. May change at any time.
  typeOutputReport outputMode() const noexcept { return outputMode_; }
  void setOutputMode(typeOutputReport outputMode) noexcept { outputMode_ = outputMode; }

  // A rectangle between two corners with a black outline, filled with `lColor` unless that is 0.
  void prtBox(const Variant& iX1, const Variant& iY1, const Variant& iX2, const Variant& iY2,
              std::int32_t lColor);

  // The frame of a page: a thin black one, or a heavier dark grey one where `bBoldLayout` is true;
  // over it a header in 14 points and under it a footer in 12, both with a rule and centred by
  // their number of characters; below the frame "Pagina: " with the page number, and the current
  // date and time where `bWithDate` is true. What is left out is not drawn.
  void prtLayoutPaginaBase(const Variant& vntHeader = Missing{},
                           const Variant& vntFooter = Missing{},
                           const Variant& vntPageNumber = Missing{},
                           const Variant& bWithDate = Missing{},
                           const Variant& bBoldLayout = Missing{});

  // Cuts the next line of at most `iLenght` characters off the front of `sStringa`, at the last
  // space that fits (which is dropped) or, where there is none, after `iLenght` characters. A text
  // of exactly `iLenght` characters is still cut at its last space; a shorter one comes whole.
  // Throws RuntimeError 5 for a negative `iLenght`, which leaves the text as it was.
  Text formattaStringa(Text& sStringa, std::int16_t iLenght);

  // A line of text whose top-left corner is (iX1, iY1); iY1 = 0 stays on the current line. The
  // current position is then just past its last cell. `iSize` is in points and left as it is.
  void prtTesto(const Variant& iX1, const Variant& iY1, Variant& iSize, bool bBold, bool bItalic,
                TextView sStringa);

  // A line of text on a band of `lBgkColor` that begins 0.2 cm left of it. On the form the band is
  // `iLenBox` long from the text's start and 0.04 cm high for each point; on the printer it ends
  // with the text, is 0.5 cm high, and is painted over the text.
  void prtBoxWithTesto(const Variant& iX1, const Variant& iY1, Variant& iSize, bool bBold,
                       bool bItalic, TextView sStringa, std::int32_t lBgkColor,
                       const Variant& iLenBox);

  // Shows the form; asks the printer for A4 paper.
  void openReport();
  // Starts a new printer page; the form keeps what it shows.
  void newPage();
  // Closes the form; sends the document to the printer. A page on which nothing was drawn since
  // the last `newPage` is not printed.
  void closeReport();

 private:
  static double reduceByPercent(double value, double percent) noexcept;

  bool onPrinter() const noexcept { return outputMode_ == torPRINTER; }
  platform::ReportSurfaces& surfaces();
  platform::ReportSurface& surface();
  float surfaceUnits(double centimetres) const;
  void drawBox(double x1, double y1, double x2, double y2, std::int32_t color);
  void drawText(const Variant& x, const Variant& y, const Variant& size, bool bold, bool italic,
                TextView text);
  void drawCentred(const Variant& text, double y, double size);
  // The form shows what a member has drawn when the member is done, all at once.
  void presentForm();

  typeOutputReport outputMode_{};
  platform::ReportSurfaces* surfaces_ = nullptr;
  std::unique_ptr<platform::ReportSurface> printer_;
};

}  // namespace veltgeneral
