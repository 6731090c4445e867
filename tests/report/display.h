// A look at what stands on a display through another client's eyes.
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "drawing/handles.h"
#include "support/virtual_display.h"

namespace veltgeneral::test {

template <class T>
using Reply = drawing::Handle<T, std::free>;

class Observer {
 public:
  Observer() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_.get()) != 0) throw std::runtime_error("no display");
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
  }

  // The window with this title, 0 where there is none.
  xcb_window_t find(const std::string& title) const {
    const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(
        connection_.get(), xcb_query_tree(connection_.get(), screen_->root), nullptr));
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
      const xcb_window_t child = xcb_query_tree_children(tree.get())[i];
      if (property(child, XCB_ATOM_WM_NAME) == title) return child;
    }
    return 0;
  }
  std::string property(xcb_window_t window, xcb_atom_t name) const {
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection_.get(),
        xcb_get_property(connection_.get(), 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, 1000),
        nullptr));
    if (!reply) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
  }
  bool visible(xcb_window_t window) const {
    const Reply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
        connection_.get(), xcb_get_window_attributes(connection_.get(), window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
  }
  // Width and height.
  std::pair<int, int> size(xcb_window_t window) const {
    const Reply<xcb_get_geometry_reply_t> reply(xcb_get_geometry_reply(
        connection_.get(), xcb_get_geometry(connection_.get(), window), nullptr));
    return {reply->width, reply->height};
  }
  // What the screen shows at its top-left corner, 0x00RRGGBB row by row.
  std::vector<std::uint32_t> look(int width, int height) const {
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        connection_.get(),
        xcb_get_image(connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen_->root, 0, 0,
                      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), ~0u),
        nullptr));
    const std::uint8_t* data = xcb_get_image_data(reply.get());
    const auto length = static_cast<std::size_t>(xcb_get_image_data_length(reply.get()));
    std::vector<std::uint32_t> dots;
    if (screen_->root_depth == 16) {
      const std::size_t stride = length / static_cast<std::size_t>(height);
      for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
          std::uint16_t dot = 0;
          std::memcpy(&dot, data + static_cast<std::size_t>(y) * stride + 2 * std::size_t(x), 2);
          const auto wide = [](unsigned value, unsigned most) { return value * 255 / most; };
          dots.push_back(wide(dot >> 11, 31) << 16 | wide(dot >> 5 & 63, 63) << 8 |
                         wide(dot & 31, 31));
        }
      return dots;
    }
    dots.resize(length / 4);
    std::memcpy(dots.data(), data, length);
    for (std::uint32_t& dot : dots) dot &= 0xFFFFFF;
    return dots;
  }

  // What a window manager does to close the window of a program that answers no messages.
  void cutOff(xcb_window_t window) const { send(xcb_kill_client(connection_.get(), window)); }
  void destroy(xcb_window_t window) const { send(xcb_destroy_window(connection_.get(), window)); }
  // Puts a window over the corner of the screen and takes it away again.
  void coverForAMoment() const {
    xcb_connection_t* c = connection_.get();
    const xcb_window_t cover = xcb_generate_id(c);
    const std::uint32_t values[] = {0x123456, 1};
    xcb_create_window(c, XCB_COPY_FROM_PARENT, cover, screen_->root, 0, 0, 400, 400, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    send(xcb_map_window(c, cover));
    if (look(1, 1) != std::vector<std::uint32_t>{0x123456}) throw std::runtime_error("not covered");
    send(xcb_destroy_window(c, cover));
  }
  // The user's resolution, as a desktop's settings keep it.
  void setResolution(const std::string& resources) const {
    send(xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, screen_->root,
                             XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 8,
                             static_cast<std::uint32_t>(resources.size()), resources.data()));
  }

 private:
  // Waits until the server has done it.
  void send(xcb_void_cookie_t) const {
    const Reply<xcb_get_input_focus_reply_t> done(xcb_get_input_focus_reply(
        connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
  }

  drawing::Handle<xcb_connection_t, xcb_disconnect> connection_;
  const xcb_screen_t* screen_ = nullptr;
};

}  // namespace veltgeneral::test
