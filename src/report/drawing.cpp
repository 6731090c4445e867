// Boxes and lines of text: from centimetres on the page to twips on the surface.
#include "automation/coerce.h"
#include "platform/report_surfaces.h"
#include "report/surface_call.h"
#include "veltgeneral/reporting.h"

namespace veltgeneral {

namespace {

constexpr double kTwipsPerCentimetre = 567;
constexpr double kScreenReduction = 30;
constexpr std::int32_t kBlack = 0;

}  // namespace

double Reporting::reduceByPercent(double value, double percent) noexcept {
  return value - (value * percent) / 100;
}

float Reporting::surfaceUnits(double centimetres) const {
  const double twips = centimetres * kTwipsPerCentimetre;
  return toSingle(onPrinter() ? twips : reduceByPercent(twips, kScreenReduction));
}

void Reporting::drawBox(double x1, double y1, double x2, double y2, std::int32_t color) {
  const float left = surfaceUnits(x1);
  const float top = surfaceUnits(y1);
  const float right = surfaceUnits(x2);
  const float bottom = surfaceUnits(y2);
  platform::ReportSurface& target = surface();
  if (color != kBlack) require(target.drawBox(left, top, right, bottom, color));
  require(target.drawBox(left, top, left, bottom, kBlack));
  require(target.drawBox(left, top, right, top, kBlack));
  require(target.drawBox(right, top, right, bottom, kBlack));
  require(target.drawBox(left, bottom, right, bottom, kBlack));
}

void Reporting::drawText(const Variant& x, const Variant& y, const Variant& size, bool bold,
                         bool italic, TextView text) {
  platform::ReportSurface& target = surface();
  require(target.setFontName(u"Courier New"));
  const double points = toDouble(size);
  require(target.setFontSize(
      toSingle(onPrinter() ? points : reduceByPercent(points, kScreenReduction))));
  require(target.setFontBold(bold));
  require(target.setFontItalic(italic));
  require(target.setCurrentX(surfaceUnits(toDouble(x))));
  // Zero means the line of the text before.
  if (const double line = toDouble(y); line != 0) require(target.setCurrentY(surfaceUnits(line)));
  require(target.printText(text));
}

void Reporting::prtBox(const Variant& iX1, const Variant& iY1, const Variant& iX2,
                       const Variant& iY2, std::int32_t lColor) {
  drawBox(toDouble(iX1), toDouble(iY1), toDouble(iX2), toDouble(iY2), lColor);
  presentForm();
}

void Reporting::prtTesto(const Variant& iX1, const Variant& iY1, Variant& iSize, bool bBold,
                         bool bItalic, TextView sStringa) {
  drawText(iX1, iY1, iSize, bBold, bItalic, sStringa);
  presentForm();
}

void Reporting::prtBoxWithTesto(const Variant& iX1, const Variant& iY1, Variant& iSize, bool bBold,
                                bool bItalic, TextView sStringa, std::int32_t lBgkColor,
                                const Variant& iLenBox) {
  const auto text = [&] { drawText(iX1, iY1, iSize, bBold, bItalic, sStringa); };
  text();
  const double left = toDouble(iX1);
  const double top = toDouble(iY1);
  if (onPrinter()) {
    float x = 0;
    float y = 0;
    require(surface().getCurrentX(x));
    require(surface().getCurrentY(y));
    drawBox(left - 0.2, top, x / kTwipsPerCentimetre, y / kTwipsPerCentimetre + 0.5, lBgkColor);
    return;
  }
  drawBox(left - 0.2, top, left + toDouble(iLenBox), top + toDouble(iSize) * 0.04, lBgkColor);
  text();
  presentForm();
}

}  // namespace veltgeneral
