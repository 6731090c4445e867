// cInifile's members that keep a window's placement.
#include <array>
#include <limits>
#include <utility>

#include "automation/coerce.h"
#include "platform/screen.h"
#include "veltgeneral/c_ini_file.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

constexpr std::int32_t kMinimised = 1;
constexpr std::int32_t kMaximised = 2;
constexpr std::array<TextView, 4> kPlacement{u"Left", u"Top", u"Width", u"Height"};

Variant property(Object& window, TextView name) {
  return window.call(name, CallKind::propertyGet, {});
}

std::int32_t sumOf(std::int32_t one, std::int32_t other) {
  std::int32_t sum = 0;
  if (__builtin_add_overflow(one, other, &sum)) throw RuntimeError(RunTime::overflow);
  return sum;
}

// Brings one dimension of a window into the screen, `margin` away from either edge. The screen's
// side of every comparison is single precision, compared as double.
void fit(std::int32_t& position, std::int32_t& extent, float screen, float margin) {
  if (double{margin} > position) position = toInt32(double{margin});
  const double limit = screen - margin;
  if (limit >= sumOf(position, extent)) return;
  position = toInt32(limit - extent);
  if (double{margin} > position) position = toInt32(double{margin});
  if (limit < sumOf(position, extent)) extent = toInt32(double{screen} - position - double{margin});
}

}  // namespace

void cInifile::SaveFormPosition(Object& frmThis) {
  const auto key = key_;
  const auto put = [this](TextView name, Text value) {
    setKey(name);
    setValue(value);
  };
  try {
    const std::int32_t state = toInt32(property(frmThis, u"WindowState"));
    if (state != kMinimised) {
      put(u"Maximised", state == kMaximised ? u"1" : u"0");
      if (state != kMaximised)
        for (const TextView name : kPlacement) put(name, toText(property(frmThis, name)));
    }
  } catch (...) {
    lastReturnCode_ = 0;
  }
  key_ = key;
}

void cInifile::placeWindow(Object& window, std::int32_t minWidth, std::int32_t minHeight) {
  std::array<std::int32_t, 4> placement{};
  for (std::size_t i = 0; i < placement.size(); ++i) {
    setKey(kPlacement[i]);
    placement[i] = CLngDefault(Value(), toInt32(property(window, kPlacement[i])));
  }
  auto& [left, top, width, height] = placement;
  if (width < minWidth) width = minWidth;
  if (height < minHeight) height = minHeight;
  const platform::ScreenMetrics screen = platform::screenMetrics();
  fit(left, width, screen.width, 4 * screen.twipsPerPixelX);
  fit(top, height, screen.height, 4 * screen.twipsPerPixelY);
  if (width >= minWidth && height >= minHeight) {
    std::array<Variant, 4> arguments{left, top, width, height};
    window.call(u"Move", CallKind::method, arguments);
  }
  setKey(u"Maximised");
  if (CLngDefault(Value()) != 0) {
    std::array<Variant, 1> arguments{std::int16_t{kMaximised}};
    window.call(u"WindowState", CallKind::propertyPut, arguments);
  }
}

void cInifile::LoadFormPosition(Object& frmThis, std::int32_t lMinWidth, std::int32_t lMinHeight) {
  const auto key = key_;
  const auto fallback = default_;
  try {
    setDefault(u"FAIL");
    placeWindow(frmThis, lMinWidth, lMinHeight);
  } catch (...) {
    lastReturnCode_ = 0;
  }
  key_ = key;
  default_ = fallback;
}

}  // namespace veltgeneral
