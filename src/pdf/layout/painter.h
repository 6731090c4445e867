// Painter: puts on a page what names its own place: texts, lines, boxes, pictures.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "drawing/canvas.h"
#include "drawing/image.h"
#include "pdf/commands.h"
#include "pdf/layout/style.h"

namespace veltgeneral::pdf::layout {

struct PageNumbers {
  int page = 0;
  int pages = 0;  // 0 while they are still being counted
};

class Painter {
 public:
  // Relative picture names start from `folder`.
  explicit Painter(std::filesystem::path folder) : folder_(std::move(folder)) {}

  // Throws CommandError where no font serves.
  void setFont(const FontCommand& command, Style& style);

  // Draws text, line, box or image and returns true; false for any other command. Throws
  // CommandError where a picture cannot be read.
  bool paint(drawing::Canvas& canvas, const Command& command, const Style& style,
             PageNumbers numbers);

 private:
  const drawing::Image& picture(const std::u16string& file);
  void image(drawing::Canvas& canvas, const ImageCommand& command);

  std::filesystem::path folder_;
  drawing::FaceBook faces_;
  std::map<std::string, drawing::Image> pictures_;
  double dots_ = 0;  // of all pictures held
};

}  // namespace veltgeneral::pdf::layout
