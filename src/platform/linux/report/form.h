// The form: one page of the process, drawn in memory and shown by a window or a picture.
//
// Members of many objects on many threads may draw on it, so every call holds its lock.
#pragma once

#include <memory>
#include <mutex>
#include <optional>

#include "drawing/canvas.h"
#include "platform/linux/report/drawn_surface.h"
#include "platform/linux/report/form_view.h"

namespace veltgeneral::platform {

class Form : public DrawnSurface {
 public:
  Form() : DrawnSurface(RunTime::deviceIo) {}
  ~Form() override;

  ErrorNumber show() noexcept override;
  ErrorNumber unload() noexcept override;
  // Shows what was drawn since the last call, and learns whether the user has closed the form.
  ErrorNumber service() noexcept;

 protected:
  std::unique_lock<std::mutex> hold() override { return std::unique_lock(mutex_); }
  drawing::Canvas& canvas() override;
  drawing::Rectangle covered(const drawing::Rectangle& box) const override;
  void touched(const drawing::Rectangle& area) override;

 private:
  struct Page {
    explicit Page(std::unique_ptr<FormView> shownBy);

    std::unique_ptr<FormView> view;
    double dotsPerPoint;
    drawing::Handle<cairo_surface_t, cairo_surface_destroy> image;
    drawing::Canvas canvas;
    Dots changed;
  };

  template <class Body>
  auto onView(Body&& body);
  Page& page();
  void forget() noexcept;
  void present();

  std::mutex mutex_;
  std::optional<Page> page_;
};

}  // namespace veltgeneral::platform
