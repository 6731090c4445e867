// The screen that windows are placed on.
#pragma once

namespace veltgeneral::platform {

// Sizes in twips (1440 an inch). Several monitors are one virtual screen.
struct ScreenMetrics {
  float width;
  float height;
  float twipsPerPixelX;
  float twipsPerPixelY;
};

// Throws RuntimeError 57 where no display can be reached, 53 or 48 where the host has no display
// client.
ScreenMetrics screenMetrics();

}  // namespace veltgeneral::platform
