// The form as an X11 window that needs no event loop: the page is its background, so the server
// repaints it by itself.
#pragma once

#include <xcb/xcb.h>

#include <vector>

#include "drawing/handles.h"
#include "platform/linux/report/form_view.h"

namespace veltgeneral::platform {

class Window : public FormView {
 public:
  // Connects to the display of the environment. Throws Failure 57 where there is none, or one that
  // shows no true colours.
  Window();
  ~Window() override;

  double dotsPerInch() const override;
  void open(cairo_surface_t* page) override;
  void show() override;
  void update(const Dots& changed) override;
  bool isOpen() override;
  void close() override {}

 private:
  struct Layout {
    unsigned bitsPerDot = 0;
    unsigned padBits = 0;
    bool lowByteFirst = true;
    const xcb_visualtype_t* visual = nullptr;
  };

  void readLayout();
  void describe(int width, int height);
  void setText(xcb_atom_t property, xcb_atom_t type, std::string_view text);
  void putDots(xcb_pixmap_t target, const Dots& area);
  std::size_t packRow(const std::uint32_t* dots, int count, std::uint8_t* out) const;
  void flush();

  drawing::Handle<xcb_connection_t, xcb_disconnect> connection_;
  const xcb_screen_t* screen_ = nullptr;
  Layout layout_;
  cairo_surface_t* page_ = nullptr;
  xcb_window_t window_ = 0;
  xcb_gcontext_t pen_ = 0;
  xcb_pixmap_t background_ = 0;
};

}  // namespace veltgeneral::platform
