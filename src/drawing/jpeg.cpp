#include "drawing/jpeg.h"

// jpeglib.h uses FILE and size_t without including what declares them.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <vector>

#include <jpeglib.h>

#include "drawing/error.h"

namespace veltgeneral::drawing {
namespace {

using Surface = Handle<cairo_surface_t, cairo_surface_destroy>;

// An error leaves libjpeg's frames as an exception: the system's calling convention gives every
// function unwind tables, and what those frames own belongs to the decompressor.
[[noreturn]] void refuse(j_common_ptr) { throw Error("the JPEG picture is damaged"); }
void onMessage(j_common_ptr common, int level) {
  if (level < 0) refuse(common);  // a warning says that dots were made up
}

class Decoder {
 public:
  explicit Decoder(std::span<const unsigned char> bytes) {
    info_.err = jpeg_std_error(&errors_);
    errors_.error_exit = refuse;
    errors_.emit_message = onMessage;
    jpeg_create_decompress(&info_);
    jpeg_mem_src(&info_, bytes.data(), static_cast<unsigned long>(bytes.size()));
  }
  ~Decoder() { jpeg_destroy_decompress(&info_); }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  Surface decode();

 private:
  void start();
  void storeRow(const std::vector<JSAMPLE>& row, unsigned char* out) const;

  jpeg_decompress_struct info_{};
  jpeg_error_mgr errors_{};
};

void Decoder::start() {
  jpeg_read_header(&info_, TRUE);
  if (std::uint64_t{info_.image_width} * info_.image_height > kMostDots)
    throw Error("the picture is too large");
  const bool fourInks = info_.num_components == 4;
  info_.out_color_space = fourInks ? JCS_CMYK : JCS_RGB;
  jpeg_start_decompress(&info_);
}

// Cairo's dots are 32-bit words 0x00RRGGBB. Four-ink pictures store their inks inverted, as the
// programs that make them do, so that a sample times black is the light that is left.
void Decoder::storeRow(const std::vector<JSAMPLE>& row, unsigned char* out) const {
  const auto samples = static_cast<unsigned>(info_.output_components);
  for (JDIMENSION x = 0; x < info_.output_width; ++x) {
    const JSAMPLE* in = &row[std::size_t{x} * samples];
    const unsigned black = samples == 4 ? in[3] : 255;
    const auto light = [&](unsigned sample) { return std::uint32_t{sample} * black / 255; };
    const std::uint32_t dot = light(in[0]) << 16 | light(in[1]) << 8 | light(in[2]);
    std::memcpy(out + std::size_t{x} * 4, &dot, 4);
  }
}

Surface Decoder::decode() {
  start();
  Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24,
                                             static_cast<int>(info_.output_width),
                                             static_cast<int>(info_.output_height)));
  unsigned char* dots = cairo_image_surface_get_data(surface.get());
  if (dots == nullptr) throw Error("the picture is too large");
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
  std::vector<JSAMPLE> row(std::size_t{info_.output_width} *
                           static_cast<unsigned>(info_.output_components));
  while (info_.output_scanline < info_.output_height) {
    unsigned char* out = dots + info_.output_scanline * stride;
    JSAMPROW rows[] = {row.data()};
    jpeg_read_scanlines(&info_, rows, 1);
    storeRow(row, out);
  }
  jpeg_finish_decompress(&info_);
  cairo_surface_mark_dirty(surface.get());
  return surface;
}

}  // namespace

void attach(cairo_surface_t* surface, const char* kind, std::span<const unsigned char> bytes) {
  auto* copy = static_cast<unsigned char*>(std::malloc(bytes.size()));
  if (copy == nullptr) throw std::bad_alloc();
  std::memcpy(copy, bytes.data(), bytes.size());
  const auto length = static_cast<unsigned long>(bytes.size());
  if (cairo_surface_set_mime_data(surface, kind, copy, length, std::free, copy) !=
      CAIRO_STATUS_SUCCESS) {
    std::free(copy);
    throw std::bad_alloc();
  }
}

Surface readJpeg(std::span<const unsigned char> bytes) {
  Surface surface = Decoder(bytes).decode();
  attach(surface.get(), CAIRO_MIME_TYPE_JPEG, bytes);
  return surface;
}

}  // namespace veltgeneral::drawing
