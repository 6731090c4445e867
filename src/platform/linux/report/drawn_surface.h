// What form and printer have in common: the font, the current position, and drawing with them.
#pragma once

#include <mutex>

#include "drawing/canvas.h"
#include "drawing/face.h"
#include "drawing/geometry.h"
#include "platform/linux/report/failure.h"
#include "platform/report_surfaces.h"

namespace veltgeneral::platform {

class DrawnSurface : public ReportSurface {
 public:
  ErrorNumber setFontName(TextView face) noexcept override;
  ErrorNumber setFontSize(float points) noexcept override;
  ErrorNumber setFontBold(bool bold) noexcept override;
  ErrorNumber setFontItalic(bool italic) noexcept override;
  ErrorNumber setCurrentX(float twips) noexcept override;
  ErrorNumber setCurrentY(float twips) noexcept override;
  ErrorNumber getCurrentX(float& twips) noexcept override;
  ErrorNumber getCurrentY(float& twips) noexcept override;
  ErrorNumber printText(TextView text) noexcept override;
  ErrorNumber drawBox(float x1, float y1, float x2, float y2, std::int32_t color) noexcept override;

  // Not every surface has every one of these.
  ErrorNumber newPage() noexcept override { return kNotHere; }
  ErrorNumber endDocument() noexcept override { return kNotHere; }
  ErrorNumber show() noexcept override { return kNotHere; }
  ErrorNumber unload() noexcept override { return kNotHere; }

 protected:
  static constexpr auto kNotHere = static_cast<ErrorNumber>(RunTime::invalidCall);

  // `device`: the error where the system gives no reason.
  explicit DrawnSurface(RunTime device) : device_(device) {}

  template <class Body>
  ErrorNumber run(Body&& body) noexcept {
    return answer(device_, [&] {
      const auto alone = hold();
      body();
    });
  }

  // Keeps other threads away, where the surface is shared.
  virtual std::unique_lock<std::mutex> hold() { return {}; }
  // Where to draw, made when it is first asked for. Throws where there is no such place.
  virtual drawing::Canvas& canvas() = 0;
  // The dots that a box covers; a line is a box without width or height.
  virtual drawing::Rectangle covered(const drawing::Rectangle& box) const = 0;
  // Told of every area, in points, after something was drawn in it.
  virtual void touched(const drawing::Rectangle& area) = 0;

  void moveToOrigin() noexcept { x_ = y_ = 0; }

 private:
  RunTime device_;
  drawing::FaceBook faces_;
  drawing::FontRequest request_{.family = "Courier New", .fixedPitch = true};
  double size_ = 8;  // points
  float x_ = 0;      // twips
  float y_ = 0;
};

}  // namespace veltgeneral::platform
