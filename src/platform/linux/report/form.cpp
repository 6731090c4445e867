#include "platform/linux/report/form.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include "platform/environment.h"
#include "platform/linux/report/picture.h"
#include "platform/linux/report/window.h"

namespace veltgeneral::platform {

namespace {

constexpr double kWidth = 8085 * drawing::kPointsPerTwip;
constexpr double kHeight = 11100 * drawing::kPointsPerTwip;
constexpr drawing::Colour kWhite{255, 255, 255};

std::unique_ptr<FormView> viewInForce() {
  constexpr std::string_view kPicturePrefix = "image:";
  const std::string choice = environment("VELTGENERAL_FORM").value_or("");
  if (choice.starts_with(kPicturePrefix))
    return std::make_unique<PictureView>(choice.substr(kPicturePrefix.size()));
  return std::make_unique<Window>();
}

int dots(double points, double dotsPerPoint) {
  return static_cast<int>(std::lround(points * dotsPerPoint));
}

}  // namespace

Form::Page::Page(std::unique_ptr<FormView> shownBy)
    : view(std::move(shownBy)),
      dotsPerPoint(view->dotsPerInch() / 72),
      image(cairo_image_surface_create(CAIRO_FORMAT_RGB24, dots(kWidth, dotsPerPoint),
                                       dots(kHeight, dotsPerPoint))),
      canvas(image.get(), dotsPerPoint) {
  canvas.fill({0, 0, kWidth + 1, kHeight + 1}, kWhite);
  canvas.flush();
  view->open(image.get());
}

Form::~Form() {
  // The process ends: what nobody closed is kept as it is.
  static_cast<void>(Form::unload());
}

// A view that fails is gone, and what was drawn with it.
template <class Body>
auto Form::onView(Body&& body) {
  try {
    return body();
  } catch (...) {
    forget();
    throw;
  }
}

Form::Page& Form::page() {
  // Its user may have closed it since it was last shown; what comes now belongs to a new one.
  if (page_ && page_->changed.right == 0)
    if (!onView([&] { return page_->view->isOpen(); })) forget();
  if (!page_) page_.emplace(viewInForce());
  return *page_;
}

void Form::forget() noexcept {
  page_.reset();
  moveToOrigin();
}

drawing::Canvas& Form::canvas() { return page().canvas; }

// Whole dots only, so that lines are sharp. A line is one dot thick at 96 dots per inch, and what
// is not quite a line is thicker by at least one.
drawing::Rectangle Form::covered(const drawing::Rectangle& box) const {
  const double scale = page_->dotsPerPoint;
  const double pen = std::max(1.0, std::round(scale * 0.75));
  const auto span = [&](double from, double length) {
    const double first = std::round(from * scale);
    const double last = std::round((from + length) * scale);
    return std::pair(first, std::max(last - first, length > 0 ? 1.0 : 0.0) + pen);
  };
  const auto [left, width] = span(box.x, box.width);
  const auto [top, height] = span(box.y, box.height);
  return {left / scale, top / scale, width / scale, height / scale};
}

void Form::touched(const drawing::Rectangle& area) {
  const double scale = page_->dotsPerPoint;
  const int width = cairo_image_surface_get_width(page_->image.get());
  const int height = cairo_image_surface_get_height(page_->image.get());
  const auto within = [scale](double points, int limit) {
    return std::clamp(static_cast<int>(points * scale), 0, limit);
  };
  const Dots dots{within(area.x, width), within(area.y, height),
                  within(area.x + area.width + 1, width), within(area.y + area.height + 1, height)};
  if (dots.left >= dots.right || dots.top >= dots.bottom) return;
  Dots& changed = page_->changed;
  if (changed.right == 0) {
    changed = dots;
    return;
  }
  changed = {std::min(changed.left, dots.left), std::min(changed.top, dots.top),
             std::max(changed.right, dots.right), std::max(changed.bottom, dots.bottom)};
}

void Form::present() {
  page_->canvas.flush();
  cairo_surface_flush(page_->image.get());
  if (const Dots changed = std::exchange(page_->changed, {}); changed.right != 0)
    page_->view->update(changed);
}

ErrorNumber Form::show() noexcept {
  return run([&] {
    FormView& view = *page().view;
    onView([&] {
      view.show();
      present();
    });
  });
}

ErrorNumber Form::unload() noexcept {
  return run([&] {
    if (!page_) return;
    onView([&] {
      present();
      page_->view->close();
    });
    forget();
  });
}

ErrorNumber Form::service() noexcept {
  return run([&] {
    if (!page_) return;
    const bool open = onView([&] {
      present();
      return page_->view->isOpen();
    });
    if (!open) forget();
  });
}

}  // namespace veltgeneral::platform
