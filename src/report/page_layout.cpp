// The frame of a report page, and cutting text into its lines.
#include <utility>

#include "automation/calendar.h"
#include "automation/coerce.h"
#include "veltgeneral/reporting.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {

namespace {

constexpr std::int32_t kDarkGrey = 0x404040;
constexpr double kBar = 0.02;  // thickness of the heavy frame

bool given(const Variant& argument) { return kindOf(argument) != Kind::missing; }

bool givenAndTrue(const Variant& argument) { return given(argument) && toBoolean(argument); }

// Centring counts characters: 56 cells of 0.3 cm across the frame, whatever the font's size.
double centred(TextView text) {
  const std::int16_t length = toInt16(static_cast<double>(text.size()));
  return 2 + 0.3 * toInt16((56.0 - length) / 2);
}

}  // namespace

void Reporting::drawCentred(const Variant& text, double y, double size) {
  const Text line = toText(text);
  drawText(centred(line), y, size, true, false, line);
}

void Reporting::prtLayoutPaginaBase(const Variant& vntHeader, const Variant& vntFooter,
                                    const Variant& vntPageNumber, const Variant& bWithDate,
                                    const Variant& bBoldLayout) {
  const bool bold = givenAndTrue(bBoldLayout);
  const auto rule = [&](double y) { drawBox(1, y, 19, bold ? y + kBar : y, bold ? kDarkGrey : 0); };
  if (bold) {
    rule(1);
    rule(27);
    drawBox(1, 1, 1 + kBar, 27, kDarkGrey);
    drawBox(19, 1, 19 + kBar, 27, kDarkGrey);
  } else {
    drawBox(1, 1, 19, 27, 0);
  }
  if (given(vntHeader)) {
    rule(2);
    drawCentred(vntHeader, 1.2, 14);
  }
  if (given(vntFooter)) {
    rule(26);
    drawCentred(vntFooter, 26.2, 12);
  }
  if (given(vntPageNumber)) {
    drawText(16.0, 27.1, 10.0, false, false, u"Pagina: " + toText(vntPageNumber));
  }
  if (givenAndTrue(bWithDate)) {
    drawText(2.0, 27.1, 10.0, false, false, formatDate(now(), u"dd/mm/yyyy  hh:nn"));
  }
  presentForm();
}

Text Reporting::formattaStringa(Text& sStringa, std::int16_t iLenght) {
  if (iLenght < 0) throw RuntimeError(RunTime::invalidCall);
  const auto limit = static_cast<std::size_t>(iLenght);
  if (limit > sStringa.size()) return std::exchange(sStringa, Text());
  // The space may follow the line; the first character never ends one.
  const std::size_t space = sStringa.rfind(u' ', limit);
  const bool atSpace = space != Text::npos && space != 0;
  Text line = sStringa.substr(0, atSpace ? space : limit);
  sStringa.erase(0, atSpace ? space + 1 : limit);
  return line;
}

}  // namespace veltgeneral
