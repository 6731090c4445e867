#include "platform/linux/report/drawn_surface.h"

#include <algorithm>
#include <cmath>

#include "drawing/text.h"

namespace veltgeneral::platform {

namespace {

constexpr float kLargestFont = 2160;  // points

// Beyond every page, and still a number that the drawing library can count dots with.
double points(float twips) {
  constexpr double kFarAway = 50000;
  return std::clamp(twips * drawing::kPointsPerTwip, -kFarAway, kFarAway);
}

void requireNumber(float value) {
  if (!std::isfinite(value)) throw Failure(RunTime::invalidPropertyValue);
}

}  // namespace

ErrorNumber DrawnSurface::setFontName(TextView face) noexcept {
  return run([&] { request_.family = drawing::toUtf8(face); });
}

ErrorNumber DrawnSurface::setFontSize(float size) noexcept {
  return run([&] {
    if (!(size > 0 && size <= kLargestFont)) throw Failure(RunTime::invalidPropertyValue);
    size_ = size;
  });
}

ErrorNumber DrawnSurface::setFontBold(bool bold) noexcept {
  return run([&] { request_.bold = bold; });
}

ErrorNumber DrawnSurface::setFontItalic(bool italic) noexcept {
  return run([&] { request_.italic = italic; });
}

ErrorNumber DrawnSurface::setCurrentX(float twips) noexcept {
  return run([&] {
    requireNumber(twips);
    canvas();
    x_ = twips;
  });
}

ErrorNumber DrawnSurface::setCurrentY(float twips) noexcept {
  return run([&] {
    requireNumber(twips);
    canvas();
    y_ = twips;
  });
}

ErrorNumber DrawnSurface::getCurrentX(float& twips) noexcept {
  return run([&] { twips = x_; });
}

ErrorNumber DrawnSurface::getCurrentY(float& twips) noexcept {
  return run([&] { twips = y_; });
}

ErrorNumber DrawnSurface::printText(TextView text) noexcept {
  return run([&] {
    drawing::Canvas& page = canvas();
    const drawing::Font font{&faces_.face(request_), size_};
    const double left = points(x_);
    const double top = points(y_);
    const double width = page.text(font, {left, top + font.ascent()}, {}, text);
    x_ += static_cast<float>(width / drawing::kPointsPerTwip);
    // Slanted letters and those of other fonts reach a little out of their cells.
    touched({left - size_, top - size_, width + 2 * size_, font.height() + 2 * size_});
  });
}

ErrorNumber DrawnSurface::drawBox(float x1, float y1, float x2, float y2,
                                  std::int32_t color) noexcept {
  return run([&] {
    for (const float corner : {x1, y1, x2, y2}) requireNumber(corner);
    drawing::Canvas& page = canvas();
    const auto [left, right] = std::minmax({points(x1), points(x2)});
    const auto [top, bottom] = std::minmax({points(y1), points(y2)});
    const drawing::Rectangle area = covered({left, top, right - left, bottom - top});
    page.fill(area, drawing::Colour::fromBgr(static_cast<std::uint32_t>(color)));
    touched(area);
  });
}

}  // namespace veltgeneral::platform
