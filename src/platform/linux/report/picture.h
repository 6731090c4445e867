// The form as a PNG file, for machines without a display. The file is written when the form is
// shown and when it is closed, whole or not at all.
#pragma once

#include <string>

#include "platform/linux/report/form_view.h"

namespace veltgeneral::platform {

class PictureView : public FormView {
 public:
  explicit PictureView(std::string file) : file_(std::move(file)) {}

  double dotsPerInch() const override { return 96; }
  void open(cairo_surface_t* page) override { page_ = page; }
  void show() override { write(); }
  void update(const Dots&) override {}
  bool isOpen() override { return true; }
  void close() override { write(); }

 private:
  void write() const;

  std::string file_;
  cairo_surface_t* page_ = nullptr;
};

}  // namespace veltgeneral::platform
