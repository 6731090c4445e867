// What is no text: looked at as dots, 72 to the inch.
#include <cairo.h>

#include <cmath>
#include <optional>
#include <set>
#include <sstream>

#include "drawing/image.h"
#include "pdf/generator.h"

namespace veltgeneral::pdf {
namespace {

// The first page of a document that `commands` make.
class Rendered {
 public:
  Rendered(const Generator& generator, std::string_view commands) {
    EXPECT_EQ(generator.run(commands).message, "");
    const std::string dots = generator.folder / "dots";
    test::outputOf("pdftoppm -r 72 -png -singlefile " + generator.document + " " + dots);
    image_.emplace(dots + ".png");
  }
  // At a place in cm.
  std::uint32_t at(double x, double y) const {
    const unsigned char* data = cairo_image_surface_get_data(image_->handle());
    const int stride = cairo_image_surface_get_stride(image_->handle());
    const auto* row = reinterpret_cast<const std::uint32_t*>(
        data + stride * static_cast<int>(std::floor(y * kCm)));
    return row[static_cast<int>(std::floor(x * kCm))] & 0xFFFFFF;
  }

 private:
  std::optional<drawing::Image> image_;
};

// A picture of one colour, twice as wide as high.
void writePng(const std::string& path, int height, double red, double green, double blue) {
  using Surface = drawing::Handle<cairo_surface_t, cairo_surface_destroy>;
  const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, 2 * height, height));
  const drawing::Handle<cairo_t, cairo_destroy> context(cairo_create(surface.get()));
  cairo_set_source_rgb(context.get(), red, green, blue);
  cairo_paint(context.get());
  cairo_surface_write_to_png(surface.get(), path.c_str());
}

class Picture : public testing::Test {
 protected:
  const Generator generator_;
};

TEST_F(Picture, BoxesLinesFillsAndColours) {
  const Rendered page(generator_,
                      "box 2 2 6 4 fill #FFEE00 #0000FF thick 6\n"
                      "box 10 2 2 2 fill RED noline\n"
                      "line 2 10 8 10 thick 8 green\n"
                      "move 12\ntable 3 3 grid thick 6 from 2\nrow \"\" \"\" fill navy\nend\n");
  struct Dot {
    double x, y;
    std::uint32_t colour;
  };
  constexpr Dot kDots[] = {{5, 4, 0xFFEE00},    {2, 4, 0x0000FF},   {9.9, 3, 0xFFFFFF},
                           {10.1, 3, 0xC00000}, {5, 10, 0x008000},  {5, 10.3, 0xFFFFFF},
                           {3, 12.3, 0x102860}, {5, 12.3, 0xA0A0A0}};
  for (const Dot& dot : kDots)
    EXPECT_EQ(page.at(dot.x, dot.y), dot.colour) << dot.x << " " << dot.y;
}

TEST_F(Picture, FillsItsPlaceAndIsHeldOnce) {
  writePng(generator_.folder / "logo.png", 2, 1, 0, 0);
  std::string commands("header\nimage \"logo.png\" 2 2 4\nend\nimage \"");
  commands.append(generator_.folder / "logo.png").append("\" 10 2 1 6\nnewpage\nspace 1\n");
  const Rendered page(generator_, commands);
  EXPECT_EQ(page.at(5.9, 3.9), 0xFF0000u);  // twice as wide as high, as the picture is
  EXPECT_EQ(page.at(5.9, 4.1), 0xFFFFFFu);
  EXPECT_EQ(page.at(10.5, 7.9), 0xFF0000u);
  std::istringstream list(
      test::outputOf("pdfimages -list " + generator_.document + " | tail -n +3"));
  std::multiset<std::string> objects;
  for (std::string line; std::getline(list, line);) objects.insert(line.substr(50, 8));
  EXPECT_EQ(objects.size(), 3u);
  EXPECT_EQ(objects.count(*objects.begin()), 3u);
}

TEST_F(Picture, OneThatMemoryDidNotKeepIsReadAgain) {
  std::string commands;
  for (int i = 0; i < 3; ++i) {
    const std::string name = std::to_string(i) + ".png";
    writePng(generator_.folder / name, 1700, i == 0, i == 1, i == 2);
    commands.append("image \"").append(name).append("\" ");
    commands.append(std::to_string(2 + 3 * i)).append(" 2 2\n");
  }
  const Rendered page(generator_, commands + "image \"0.png\" 2 6 2\n");
  constexpr std::uint32_t kRough = 0xF0F0F0;  // shrinking rounds
  EXPECT_EQ(page.at(3, 2.5) & kRough, 0xF00000u);
  EXPECT_EQ(page.at(6, 2.5) & kRough, 0x00F000u);
  EXPECT_EQ(page.at(9, 2.5) & kRough, 0x0000F0u);
  EXPECT_EQ(page.at(3, 6.5) & kRough, 0xF00000u);
}

}  // namespace
}  // namespace veltgeneral::pdf
