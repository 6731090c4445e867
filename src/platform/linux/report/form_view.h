// Where the form is seen: a window, or a picture on machines without a display.
#pragma once

#include <cairo.h>

#include "drawing/handles.h"

namespace veltgeneral::platform {

using Picture = drawing::Handle<cairo_surface_t, cairo_surface_destroy>;

// Dots of the form, from its top-left corner; empty where right <= left.
struct Dots {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

class FormView {
 public:
  FormView() = default;
  FormView(const FormView&) = delete;
  FormView& operator=(const FormView&) = delete;
  virtual ~FormView() = default;

  virtual double dotsPerInch() const = 0;
  // Makes the view of `page`, an image of 32 bits a dot that outlives this object, without
  // showing it yet.
  virtual void open(cairo_surface_t* page) = 0;
  virtual void show() = 0;
  // `changed` has new dots since the last call.
  virtual void update(const Dots& changed) = 0;
  // False once its user has closed it. Throws Failure where its display is lost.
  virtual bool isOpen() = 0;
  // The last picture is to be kept, where it is kept at all.
  virtual void close() = 0;
};

}  // namespace veltgeneral::platform
