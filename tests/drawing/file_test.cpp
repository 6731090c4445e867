// Pictures that are read and documents that are written.
#include <gtest/gtest.h>
#include <sys/stat.h>

// jpeglib.h does not include what declares FILE.
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

#include <vector>

#include "drawing/error.h"
#include "drawing/image.h"
#include "drawing/pdf_file.h"
#include "support/dots.h"
#include "support/temporary_folder.h"

namespace veltgeneral::drawing {
namespace {

using test::contentOf;

// A picture of 16 × 8 equal dots.
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

class DrawingFile : public testing::Test {
 protected:
  DrawingFile() { test::writePng(folder_ / "png", 8, 0x336699); }

  const test::TemporaryFolder folder_;
};

TEST_F(DrawingFile, PicturesOfBothKindsAreRead) {
  folder_.put("rgb", jpegOf(JCS_RGB, {255, 0, 0}));
  folder_.put("gray", jpegOf(JCS_GRAYSCALE, {128}));
  folder_.put("cmyk", jpegOf(JCS_CMYK, {255, 255, 0, 128}));
  constexpr std::pair<const char*, std::uint32_t> kCases[] = {
      {"png", 0x336699},
      {"rgb", 0xFE0000},  // as the format rounds it
      {"gray", 0x808080},
      {"cmyk", 0x808000},  // inks inverted: 255 is none
  };
  for (const auto& [name, colour] : kCases) {
    const Image image(folder_ / name);
    EXPECT_EQ(image.dots().width, 16) << name;
    EXPECT_EQ(image.dots().height, 8) << name;
    EXPECT_EQ(test::dotAt(image.handle(), 15, 7), colour) << name;
  }
}

TEST_F(DrawingFile, WhatIsNoPictureIsRefused) {
  const std::string png = folder_.get("png");
  const std::string jpeg = jpegOf(JCS_RGB, {1, 2, 3});
  std::string huge = png;
  huge.replace(16, 8, "\x7F\xFF\xFF\xFF\x7F\xFF\xFF\xFF", 8);
  const std::pair<std::string, const char*> cases[] = {
      {"", "neither a PNG nor a JPEG picture"},
      {"GIF89a", "neither a PNG nor a JPEG picture"},
      {png.substr(0, 12), "the PNG picture is damaged"},
      {png.substr(0, png.size() / 2), "the PNG picture is damaged"},
      {jpeg.substr(0, 3), "the JPEG picture is damaged"},
      {jpeg.substr(0, jpeg.size() - 4), "the JPEG picture is damaged"},
      {huge, "the picture is too large"},
  };
  const auto refusal = [](const std::string& file) {
    try {
      const Image image(file);
      return std::string("taken");
    } catch (const Error& error) {
      return std::string(error.what());
    }
  };
  for (const auto& [bytes, message] : cases) EXPECT_EQ(refusal(folder_.put("bad", bytes)), message);
  EXPECT_EQ(refusal(folder_ / "none"), "No such file or directory");
  EXPECT_EQ(refusal("/dev/zero"), "Not a regular file");
}

TEST_F(DrawingFile, DocumentsAppearWholeOrNotAtAll) {
  const std::string path = folder_.put("a.pdf", "before");
  PdfFile(path, kA4).endPage();
  EXPECT_EQ(contentOf(path), "before");
  EXPECT_EQ(folder_.fileCount(), 2u);

  ::chmod(path.c_str(), 0640);
  std::filesystem::create_symlink("a.pdf", folder_ / "link.pdf");
  PdfFile kept(folder_ / "link.pdf", kA4);
  kept.endPage();
  kept.commit();
  EXPECT_TRUE(contentOf(path).starts_with("%PDF-"));
  EXPECT_TRUE(contentOf(path).ends_with("%%EOF\n"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "link.pdf"));
  EXPECT_EQ(static_cast<int>(std::filesystem::status(path).permissions()), 0640);
  EXPECT_EQ(folder_.fileCount(), 3u);
}

}  // namespace
}  // namespace veltgeneral::drawing
