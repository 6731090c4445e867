// The X11 display that DISPLAY names. Its client library is loaded by the first who asks.
#include "platform/screen.h"

#include <xcb/xcb.h>

#include <cmath>
#include <memory>

#include "platform/library.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::platform {
namespace {

struct Client {
  Library library{"libxcb.so.1"};
  decltype(&xcb_connect) connect = library.entry<decltype(xcb_connect)>("xcb_connect");
  decltype(&xcb_connection_has_error) hasError =
      library.entry<decltype(xcb_connection_has_error)>("xcb_connection_has_error");
  decltype(&xcb_get_setup) setup = library.entry<decltype(xcb_get_setup)>("xcb_get_setup");
  decltype(&xcb_setup_roots_iterator) roots =
      library.entry<decltype(xcb_setup_roots_iterator)>("xcb_setup_roots_iterator");
  decltype(&xcb_screen_next) next = library.entry<decltype(xcb_screen_next)>("xcb_screen_next");
  decltype(&xcb_disconnect) disconnect = library.entry<decltype(xcb_disconnect)>("xcb_disconnect");
};

// Whole pixels an inch: displays round their size to whole millimetres.
float twipsPerPixel(std::uint16_t pixels, std::uint16_t millimetres) {
  constexpr double kUsual = 96;
  const double dpi = millimetres == 0 ? kUsual : std::round(pixels * 25.4 / millimetres);
  return static_cast<float>(1440 / (dpi < 1 ? kUsual : dpi));
}

}  // namespace

ScreenMetrics screenMetrics() {
  static const Client kClient;
  int number = 0;
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
      kClient.connect(nullptr, &number), kClient.disconnect);
  if (kClient.hasError(connection.get()) != 0) throw RuntimeError(RunTime::deviceIo);
  // The root window of a new connection spans all monitors as they are now.
  xcb_screen_iterator_t root = kClient.roots(kClient.setup(connection.get()));
  for (; number > 0 && root.rem > 1; --number) kClient.next(&root);
  if (root.rem == 0) throw RuntimeError(RunTime::deviceIo);
  const xcb_screen_t& screen = *root.data;
  const float x = twipsPerPixel(screen.width_in_pixels, screen.width_in_millimeters);
  const float y = twipsPerPixel(screen.height_in_pixels, screen.height_in_millimeters);
  return {static_cast<float>(screen.width_in_pixels) * x,
          static_cast<float>(screen.height_in_pixels) * y, x, y};
}

}  // namespace veltgeneral::platform
