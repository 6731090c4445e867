#include "drawing/image.h"

#include <gtest/gtest.h>

// jpeglib.h does not include what declares FILE.
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

#include <cstring>
#include <vector>

#include "drawing/error.h"
#include "support/temporary_folder.h"

namespace veltgeneral::drawing {
namespace {

using namespace test;

// A one-coloured picture of 16 × 8 dots.
std::string jpegOf(J_COLOR_SPACE space, const std::vector<JSAMPLE>& dot) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* bytes = nullptr;
  unsigned long length = 0;
  jpeg_mem_dest(&info, &bytes, &length);
  info.image_width = 16;
  info.image_height = 8;
  info.input_components = static_cast<int>(dot.size());
  info.in_color_space = space;
  jpeg_set_defaults(&info);
  jpeg_start_compress(&info, TRUE);
  std::vector<JSAMPLE> row;
  for (int x = 0; x < 16; ++x) row.insert(row.end(), dot.begin(), dot.end());
  JSAMPROW rows[] = {row.data()};
  while (info.next_scanline < info.image_height) jpeg_write_scanlines(&info, rows, 1);
  jpeg_finish_compress(&info);
  std::string out(reinterpret_cast<char*>(bytes), length);
  jpeg_destroy_compress(&info);
  std::free(bytes);
  return out;
}

std::uint32_t firstDot(const Image& image) {
  std::uint32_t dot = 0;
  std::memcpy(&dot, cairo_image_surface_get_data(image.handle()), 4);
  return dot & 0xFFFFFF;
}

class ImageTest : public testing::Test {
 protected:
  ImageTest() {
    const Handle<cairo_surface_t, cairo_surface_destroy> surface(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 3, 2));
    cairo_surface_write_to_png(surface.get(), png_.c_str());
  }
  const TemporaryFolder folder_;
  const std::string png_ = folder_ / "a.png";
};

TEST_F(ImageTest, ReadsBothKinds) {
  EXPECT_EQ(Image(png_).dots().width, 3);
  struct Case {
    J_COLOR_SPACE space;
    std::vector<JSAMPLE> dot;
    std::uint32_t colour;
  };
  const Case cases[] = {
      {JCS_RGB, {255, 0, 0}, 0xFE0000},  // as the format rounds it
      {JCS_GRAYSCALE, {128}, 0x808080},
      {JCS_CMYK, {255, 255, 0, 128}, 0x808000},  // inks inverted: 255 is none
  };
  for (const Case& c : cases) {
    const Image image(folder_.put("a.jpg", jpegOf(c.space, c.dot)));
    EXPECT_EQ(image.dots().height, 8);
    EXPECT_EQ(firstDot(image), c.colour);
  }
}

TEST_F(ImageTest, RefusesWhatIsNoPicture) {
  const std::string png = contentOf(png_);
  const std::string jpeg = jpegOf(JCS_RGB, {1, 2, 3});
  std::string huge = png;
  huge.replace(16, 8, "\x7F\xFF\xFF\xFF\x7F\xFF\xFF\xFF", 8);
  struct Case {
    std::string bytes;
    const char* message;
  };
  const Case cases[] = {
      {"", "neither a PNG nor a JPEG picture"},
      {"GIF89a", "neither a PNG nor a JPEG picture"},
      {png.substr(0, 12), "the PNG picture is damaged"},
      {png.substr(0, png.size() / 2), "the PNG picture is damaged"},
      {jpeg.substr(0, 3), "the JPEG picture is damaged"},
      {jpeg.substr(0, jpeg.size() - 4), "the JPEG picture is damaged"},
      {huge, "the picture is too large"},
  };
  for (const Case& c : cases) {
    try {
      const Image image(folder_.put("bad", c.bytes));
      ADD_FAILURE() << "taken: " << c.message;
    } catch (const Error& error) {
      EXPECT_STREQ(error.what(), c.message);
    }
  }
  EXPECT_THROW(Image(folder_ / "none.png"), Error);
  EXPECT_THROW(Image("/dev/zero"), Error);
}

}  // namespace
}  // namespace veltgeneral::drawing
