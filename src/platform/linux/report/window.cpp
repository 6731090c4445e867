// Talks to the server through XCB, which answers a lost display with an error; the older library
// would end the process.
#include "platform/linux/report/window.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/linux/report/failure.h"
#include "platform/linux/report/quiet_pipe.h"

namespace veltgeneral::platform {

namespace {

constexpr std::string_view kTitle = "Reporting Form";
constexpr std::string_view kClass{"veltgeneral\0VeltGeneral\0", 24};

template <class T>
using Reply = drawing::Handle<T, std::free>;

[[noreturn]] void fail() { throw Failure(RunTime::deviceIo); }

const xcb_screen_t* screenAt(const xcb_setup_t* setup, int number) {
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(setup);
  for (; number > 0 && screens.rem > 1; --number) xcb_screen_next(&screens);
  return screens.data;
}

// Whether another connection to the display can be made.
bool displayIsThere() {
  const drawing::Handle<xcb_connection_t, xcb_disconnect> another(xcb_connect(nullptr, nullptr));
  return xcb_connection_has_error(another.get()) == 0;
}

// What the user's settings say ("Xft.dpi:\t120"), 0 where they say nothing.
double resolutionOfUser(xcb_connection_t* connection, xcb_window_t root) {
  const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
      connection,
      xcb_get_property(connection, 0, root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, 65536),
      nullptr));
  if (!reply) return 0;
  const std::string resources(static_cast<const char*>(xcb_get_property_value(reply.get())),
                              static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
  constexpr std::string_view kName = "Xft.dpi:";
  const std::size_t at = resources.find(kName);
  return at == std::string::npos ? 0 : std::atof(resources.c_str() + at + kName.size());
}

xcb_atom_t atom(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie) {
  const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_intern_atom_cookie_t ask(xcb_connection_t* connection, std::string_view name) {
  return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

// Moves the top bits of `value`, eight of them, to where `mask` has its bits.
std::uint32_t channel(std::uint32_t value, std::uint32_t mask) {
  const int bits = std::popcount(mask);
  return (value >> std::max(0, 8 - bits)) << std::countr_zero(mask) & mask;
}

}  // namespace

Window::Window() {
  const QuietPipe quiet;
  int number = 0;
  connection_.reset(xcb_connect(nullptr, &number));
  if (xcb_connection_has_error(connection_.get()) != 0) fail();
  screen_ = screenAt(xcb_get_setup(connection_.get()), number);
  readLayout();
}

Window::~Window() {
  const QuietPipe quiet;
  // The server destroys what belongs to the connection.
  connection_.reset();
}

void Window::readLayout() {
  const xcb_setup_t* setup = xcb_get_setup(connection_.get());
  layout_.lowByteFirst = setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
  for (auto formats = xcb_setup_pixmap_formats_iterator(setup); formats.rem > 0;
       xcb_format_next(&formats)) {
    if (formats.data->depth != screen_->root_depth) continue;
    layout_.bitsPerDot = formats.data->bits_per_pixel;
    layout_.padBits = formats.data->scanline_pad;
  }
  for (auto depths = xcb_screen_allowed_depths_iterator(screen_); depths.rem > 0;
       xcb_depth_next(&depths))
    for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
         xcb_visualtype_next(&visuals))
      if (visuals.data->visual_id == screen_->root_visual) layout_.visual = visuals.data;
  const bool trueColour =
      layout_.visual != nullptr && layout_.visual->_class == XCB_VISUAL_CLASS_TRUE_COLOR;
  if (!trueColour || layout_.bitsPerDot < 16 || layout_.bitsPerDot % 8 != 0) fail();
}

double Window::dotsPerInch() const {
  constexpr double kUsual = 96;
  const auto plausible = [](double value) { return value >= 48 && value <= 600; };
  const QuietPipe quiet;
  const double chosen = resolutionOfUser(connection_.get(), screen_->root);
  if (plausible(chosen)) return chosen;
  const double measured = screen_->width_in_pixels * 25.4 / screen_->width_in_millimeters;
  return plausible(measured) ? std::round(measured) : kUsual;
}

void Window::open(cairo_surface_t* page) {
  const QuietPipe quiet;
  page_ = page;
  xcb_connection_t* c = connection_.get();
  const int width = cairo_image_surface_get_width(page);
  const int height = cairo_image_surface_get_height(page);
  window_ = xcb_generate_id(c);
  const std::uint32_t values[] = {screen_->white_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
  xcb_create_window(c, screen_->root_depth, window_, screen_->root, 0, 0,
                    static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual,
                    XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
  pen_ = xcb_generate_id(c);
  xcb_create_gc(c, pen_, window_, 0, nullptr);
  describe(width, height);
  update({0, 0, width, height});
}

void Window::setText(xcb_atom_t property, xcb_atom_t type, std::string_view text) {
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window_, property, type, 8,
                      static_cast<std::uint32_t>(text.size()), text.data());
}

// No process number and no delete protocol: nobody answers events here, so a window manager that
// closes the form must end this connection and nothing else.
void Window::describe(int width, int height) {
  xcb_connection_t* c = connection_.get();
  const auto nameCookie = ask(c, "_NET_WM_NAME");
  const auto utf8Cookie = ask(c, "UTF8_STRING");
  setText(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, kTitle);
  setText(atom(c, nameCookie), atom(c, utf8Cookie), kTitle);
  setText(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, kClass);

  // ICCCM 4.1.2.3: flags, 4 obsolete fields, smallest size, largest size, and what goes unused.
  constexpr std::uint32_t kSmallestAndLargest = 1u << 4 | 1u << 5;
  const auto w = static_cast<std::uint32_t>(width);
  const auto h = static_cast<std::uint32_t>(height);
  const std::uint32_t hints[18] = {kSmallestAndLargest, 0, 0, 0, 0, w, h, w, h};
  xcb_change_property(c, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_NORMAL_HINTS,
                      XCB_ATOM_WM_SIZE_HINTS, 32, std::size(hints), hints);
}

void Window::show() {
  const QuietPipe quiet;
  xcb_map_window(connection_.get(), window_);
  flush();
}

std::size_t Window::packRow(const std::uint32_t* dots, int count, std::uint8_t* out) const {
  const unsigned bytes = layout_.bitsPerDot / 8;
  const xcb_visualtype_t& visual = *layout_.visual;
  std::uint8_t* to = out;
  for (int i = 0; i < count; ++i) {
    const std::uint32_t dot = dots[i];
    const std::uint32_t value = channel(dot >> 16 & 0xFF, visual.red_mask) |
                                channel(dot >> 8 & 0xFF, visual.green_mask) |
                                channel(dot & 0xFF, visual.blue_mask);
    for (unsigned b = 0; b < bytes; ++b)
      *to++ = static_cast<std::uint8_t>(value >> 8 * (layout_.lowByteFirst ? b : bytes - 1 - b));
  }
  const std::size_t pad = layout_.padBits / 8;
  return (static_cast<std::size_t>(to - out) + pad - 1) / pad * pad;
}

void Window::putDots(xcb_pixmap_t target, const Dots& area) {
  constexpr std::size_t kRequestHeader = 32;
  xcb_connection_t* c = connection_.get();
  const unsigned char* image = cairo_image_surface_get_data(page_);
  const std::ptrdiff_t stride = cairo_image_surface_get_stride(page_);
  const int width = area.right - area.left;
  const std::size_t most = std::size_t{xcb_get_maximum_request_length(c)} * 4 - kRequestHeader;
  std::vector<std::uint8_t> row(static_cast<std::size_t>(width) * 4 + 4);
  std::vector<std::uint8_t> band;
  int first = area.top;
  const auto send = [&](int end) {
    if (band.empty()) return;
    xcb_put_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, target, pen_, static_cast<std::uint16_t>(width),
                  static_cast<std::uint16_t>(end - first), static_cast<std::int16_t>(area.left),
                  static_cast<std::int16_t>(first), 0, screen_->root_depth,
                  static_cast<std::uint32_t>(band.size()), band.data());
    band.clear();
    first = end;
  };
  for (int y = area.top; y < area.bottom; ++y) {
    const auto* dots = reinterpret_cast<const std::uint32_t*>(image + y * stride) + area.left;
    const std::size_t bytes = packRow(dots, width, row.data());
    if (band.size() + bytes > most) send(y);
    band.insert(band.end(), row.data(), row.data() + bytes);
  }
  send(area.bottom);
}

// A server may copy a background when it is set, so each change takes a new one: the old picture,
// the new dots over it.
void Window::update(const Dots& changed) {
  const QuietPipe quiet;
  xcb_connection_t* c = connection_.get();
  const auto width = static_cast<std::uint16_t>(cairo_image_surface_get_width(page_));
  const auto height = static_cast<std::uint16_t>(cairo_image_surface_get_height(page_));
  const xcb_pixmap_t next = xcb_generate_id(c);
  xcb_create_pixmap(c, screen_->root_depth, next, window_, width, height);
  if (background_ != 0) {
    xcb_copy_area(c, background_, next, pen_, 0, 0, 0, 0, width, height);
    xcb_free_pixmap(c, background_);
  }
  putDots(next, changed);
  background_ = next;
  xcb_change_window_attributes(c, window_, XCB_CW_BACK_PIXMAP, &next);
  xcb_clear_area(c, 0, window_, static_cast<std::int16_t>(changed.left),
                 static_cast<std::int16_t>(changed.top),
                 static_cast<std::uint16_t>(changed.right - changed.left),
                 static_cast<std::uint16_t>(changed.bottom - changed.top));
  flush();
}

// A lost connection is found out by `isOpen`, which knows why.
void Window::flush() { xcb_flush(connection_.get()); }

bool Window::isOpen() {
  const QuietPipe quiet;
  xcb_connection_t* c = connection_.get();
  for (;;) {
    const Reply<xcb_generic_event_t> event(xcb_poll_for_event(c));
    if (!event) break;
    if (event->response_type == 0 &&
        reinterpret_cast<const xcb_generic_error_t*>(event.get())->error_code == XCB_ALLOC)
      throw Failure(RunTime::outOfMemory);
    if ((event->response_type & 0x7F) == XCB_DESTROY_NOTIFY) return false;
  }
  if (xcb_connection_has_error(c) == 0) return true;
  // Whoever closes the window of a program without an event loop cuts its connection; where the
  // display is still there, that is what happened.
  if (displayIsThere()) return false;
  fail();
}

}  // namespace veltgeneral::platform
