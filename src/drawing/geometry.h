// Places, sizes and colours on a page.
//
// Every length is in points (1/72 inch), measured from the page's top left corner, y downwards.
#pragma once

#include <cstdint>

namespace veltgeneral::drawing {

constexpr double kPointsPerCm = 72 / 2.54;
constexpr double kPointsPerTwip = 1.0 / 20;

struct Point {
  double x = 0;
  double y = 0;
};

struct Size {
  double width = 0;
  double height = 0;
};

struct Rectangle {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
};

constexpr Size kA4{21.0 * kPointsPerCm, 29.7 * kPointsPerCm};

struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  // 0x00BBGGRR, as the report members take it; the top byte is ignored.
  static constexpr Colour fromBgr(std::uint32_t value) {
    return {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
            static_cast<std::uint8_t>(value >> 16)};
  }
  friend bool operator==(const Colour&, const Colour&) = default;
};

}  // namespace veltgeneral::drawing
