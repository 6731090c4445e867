#include "pdf/layout/painter.h"

#include "drawing/error.h"
#include "drawing/text.h"
#include "pdf/command_error.h"
#include "pdf/layout/wrap.h"

namespace veltgeneral::pdf::layout {
namespace {

// Beyond this the pictures read so far are forgotten, so that memory stays bounded.
constexpr double kMostDotsHeld = 16e6;

std::u16string withNumbers(const std::u16string& text, PageNumbers numbers) {
  std::u16string out;
  for (const char16_t c : text) {
    if (c != kPageMark && c != kPagesMark) {
      out.push_back(c);
      continue;
    }
    for (const char digit : std::to_string(c == kPageMark ? numbers.page : numbers.pages))
      out.push_back(static_cast<char16_t>(digit));
  }
  return out;
}

void paintText(drawing::Canvas& canvas, const TextCommand& command, const Style& style,
               PageNumbers numbers) {
  const std::u16string text = withNumbers(command.text, numbers);
  std::vector<Line> lines;
  double top = command.at.y;
  for (std::u16string_view rest = text;;) {
    const std::u16string_view line = rest.substr(0, rest.find(u'\n'));
    drawLine(canvas, style.font, style.colour, {line, drawing::textWidth(style.font, line), true},
             command.align, command.at.x, 0, top);
    if (line.size() == rest.size()) return;
    rest.remove_prefix(line.size() + 1);
    top += style.lineHeight();
  }
}

void paintBox(drawing::Canvas& canvas, const BoxCommand& command) {
  if (command.fill) canvas.fill(command.area, *command.fill);
  if (command.stroke)
    canvas.outline(command.area, command.stroke->thickness, command.stroke->colour);
}

}  // namespace

void Painter::setFont(const FontCommand& command, Style& style) {
  const std::string family = drawing::toUtf8(command.family);
  // Whoever asks for this face counts on its columns.
  const bool fixedPitch = family == "Courier New" || family == "Courier" || family == "monospace";
  try {
    style.font = {&faces_.face({family, command.bold, command.italic, fixedPitch}), command.size};
    style.boldFont = {&faces_.face({family, true, command.italic, fixedPitch}), command.size};
  } catch (const drawing::Error& error) {
    throw CommandError("expected a usable font, found " + family + ": " + error.what());
  }
  style.colour = command.colour;
}

const drawing::Image& Painter::picture(const std::u16string& file) {
  const std::string path = folder_ / drawing::toUtf8(file);
  if (const auto held = pictures_.find(path); held != pictures_.end()) return held->second;
  try {
    drawing::Image image(path);
    const double dots = image.dots().width * image.dots().height;
    if (dots_ + dots > kMostDotsHeld) {
      pictures_.clear();
      dots_ = 0;
    }
    dots_ += dots;
    return pictures_.emplace(path, std::move(image)).first->second;
  } catch (const drawing::Error& error) {
    throw CommandError("expected a PNG or JPEG picture, found " + drawing::toUtf8(file) + ": " +
                       error.what());
  }
}

void Painter::image(drawing::Canvas& canvas, const ImageCommand& command) {
  const drawing::Image& image = picture(command.file);
  const double proportion = image.dots().height / image.dots().width;
  canvas.image(image, {command.at.x, command.at.y, command.width,
                       command.height.value_or(command.width * proportion)});
}

bool Painter::paint(drawing::Canvas& canvas, const Command& command, const Style& style,
                    PageNumbers numbers) {
  if (const auto* text = std::get_if<TextCommand>(&command)) {
    paintText(canvas, *text, style, numbers);
  } else if (const auto* line = std::get_if<LineCommand>(&command)) {
    canvas.line(line->from, line->to, line->stroke.thickness, line->stroke.colour);
  } else if (const auto* box = std::get_if<BoxCommand>(&command)) {
    paintBox(canvas, *box);
  } else if (const auto* picture = std::get_if<ImageCommand>(&command)) {
    image(canvas, *picture);
  } else {
    return false;
  }
  return true;
}

}  // namespace veltgeneral::pdf::layout
