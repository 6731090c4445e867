// A look at what stands on a display through another client's eyes.
#pragma once

#include <xcb/xcb.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "drawing/handles.h"
#include "support/virtual_display.h"

namespace veltgeneral::test {

class Observer {
  template <auto Ask, auto Answer, class... Arguments>
  auto reply(Arguments... arguments) const {
    xcb_connection_t* c = connection_.get();
    auto* answer = Answer(c, ask(Ask, c, arguments...), nullptr);
    return drawing::Handle<std::remove_pointer_t<decltype(answer)>, std::free>(answer);
  }
  template <class Cookie, class... Types, class... Arguments>
  static Cookie ask(Cookie (*request)(xcb_connection_t*, Types...), xcb_connection_t* c,
                    Arguments... arguments) {
    return request(c, static_cast<Types>(arguments)...);
  }

 public:
  Observer() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_.get()) != 0) throw std::runtime_error("no display");
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
  }

  // The window with this title, 0 where there is none.
  xcb_window_t find(const std::string& title) const {
    const auto tree = reply<xcb_query_tree, xcb_query_tree_reply>(screen_->root);
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
      const xcb_window_t child = xcb_query_tree_children(tree.get())[i];
      if (property(child, XCB_ATOM_WM_NAME) == title) return child;
    }
    return 0;
  }
  std::string property(xcb_window_t window, xcb_atom_t name) const {
    const auto found = reply<xcb_get_property, xcb_get_property_reply>(
        0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, 1000);
    if (!found) return {};
    return {static_cast<const char*>(xcb_get_property_value(found.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(found.get()))};
  }
  bool visible(xcb_window_t window) const {
    const auto found = reply<xcb_get_window_attributes, xcb_get_window_attributes_reply>(window);
    return found && found->map_state == XCB_MAP_STATE_VIEWABLE;
  }
  // Width and height.
  std::pair<int, int> size(xcb_window_t window) const {
    const auto found = reply<xcb_get_geometry, xcb_get_geometry_reply>(window);
    return {found->width, found->height};
  }
  // What the screen shows at its top-left corner, 0x00RRGGBB row by row.
  std::vector<std::uint32_t> look(int width, int height) const {
    const auto image = reply<xcb_get_image, xcb_get_image_reply>(
        XCB_IMAGE_FORMAT_Z_PIXMAP, screen_->root, 0, 0, width, height, ~0u);
    const std::uint8_t* row = xcb_get_image_data(image.get());
    const int stride = xcb_get_image_data_length(image.get()) / height;
    std::vector<std::uint32_t> dots;
    for (int y = 0; y < height; ++y, row += stride)
      for (int x = 0; x < width; ++x) {
        std::uint32_t dot = 0;
        const std::size_t bytes = screen_->root_depth == 16 ? 2 : 4;
        std::memcpy(&dot, row + bytes * static_cast<std::size_t>(x), bytes);
        if (bytes == 2)
          dot = (dot >> 11) * 255 / 31 << 16 | (dot >> 5 & 63) * 255 / 63 << 8 |
                (dot & 31) * 255 / 31;
        dots.push_back(dot & 0xFFFFFF);
      }
    return dots;
  }

  // What a window manager does to close the window of a program that answers no messages.
  void cutOff(xcb_window_t window) const { done(xcb_kill_client(connection_.get(), window)); }
  void destroy(xcb_window_t window) const { done(xcb_destroy_window(connection_.get(), window)); }
  // Puts a window over the corner of the screen and takes it away again.
  void coverForAMoment() const {
    xcb_connection_t* c = connection_.get();
    const xcb_window_t cover = xcb_generate_id(c);
    const std::uint32_t values[] = {0x123456, 1};
    xcb_create_window(c, XCB_COPY_FROM_PARENT, cover, screen_->root, 0, 0, 400, 400, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    done(xcb_map_window(c, cover));
    if (look(1, 1) != std::vector<std::uint32_t>{0x123456}) throw std::runtime_error("not covered");
    destroy(cover);
  }
  // The user's resolution, as a desktop's settings keep it.
  void setResolution(const std::string& resources) const {
    done(xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, screen_->root,
                             XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 8,
                             static_cast<std::uint32_t>(resources.size()), resources.data()));
  }

 private:
  // Waits until the server has done it.
  void done(xcb_void_cookie_t) const { reply<xcb_get_input_focus, xcb_get_input_focus_reply>(); }

  drawing::Handle<xcb_connection_t, xcb_disconnect> connection_;
  const xcb_screen_t* screen_ = nullptr;
};

}  // namespace veltgeneral::test
