#include "drawing/image.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "drawing/error.h"
#include "drawing/jpeg.h"

namespace veltgeneral::drawing {
namespace {

using Bytes = std::vector<unsigned char>;
using Surface = Handle<cairo_surface_t, cairo_surface_destroy>;

Bytes readFile(const std::string& path) {
  // Opening a pipe waits for whoever writes to it.
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) throw Error::ofSystem(errno);
  if (!S_ISREG(status.st_mode)) throw Error("Not a regular file");
  const Handle<std::FILE, std::fclose> file(std::fopen(path.c_str(), "rbe"));
  if (!file) throw Error::ofSystem(errno);
  Bytes bytes;
  constexpr std::size_t kStep = 65536;
  for (std::size_t got = kStep; got == kStep;) {
    const std::size_t size = bytes.size();
    if (size > kMostBytes) throw Error("the picture is too large");
    bytes.resize(size + kStep);
    errno = 0;
    got = std::fread(bytes.data() + size, 1, kStep, file.get());
    if (std::ferror(file.get()) != 0) throw Error::ofSystem(errno);
    bytes.resize(size + got);
  }
  return bytes;
}

bool beginsWith(const Bytes& bytes, std::string_view mark) {
  return bytes.size() >= mark.size() && std::memcmp(bytes.data(), mark.data(), mark.size()) == 0;
}

// The header's size is believed before anything is decoded, so that a few bytes cannot claim
// gigabytes. PNG, ISO/IEC 15948: IHDR comes first, width at byte 16, height at byte 20.
void checkPngSize(const Bytes& bytes) {
  if (bytes.size() < 24) throw Error("the PNG picture is damaged");
  const auto big32 = [&](std::size_t at) {
    return std::uint64_t{bytes[at]} << 24 | std::uint64_t{bytes[at + 1]} << 16 |
           std::uint64_t{bytes[at + 2]} << 8 | std::uint64_t{bytes[at + 3]};
  };
  if (big32(16) * big32(20) > kMostDots) throw Error("the picture is too large");
}

cairo_status_t nextBytes(void* closure, unsigned char* out, unsigned int length) {
  auto& rest = *static_cast<std::span<const unsigned char>*>(closure);
  if (rest.size() < length) return CAIRO_STATUS_READ_ERROR;
  std::copy_n(rest.begin(), length, out);
  rest = rest.subspan(length);
  return CAIRO_STATUS_SUCCESS;
}

Surface readPng(const Bytes& bytes) {
  checkPngSize(bytes);
  std::span<const unsigned char> rest(bytes);
  Surface surface(cairo_image_surface_create_from_png_stream(nextBytes, &rest));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS)
    throw Error("the PNG picture is damaged");
  return surface;
}

}  // namespace

Image::Image(const std::string& path) {
  const Bytes bytes = readFile(path);
  if (beginsWith(bytes, "\x89PNG\r\n\x1A\n"))
    surface_ = readPng(bytes);
  else if (beginsWith(bytes, "\xFF\xD8\xFF"))
    surface_ = readJpeg(bytes);
  else
    throw Error("neither a PNG nor a JPEG picture");
  // Under one name a document holds a picture once, even if it was forgotten and read again.
  attach(surface_.get(), CAIRO_MIME_TYPE_UNIQUE_ID,
         {reinterpret_cast<const unsigned char*>(path.data()), path.size()});
}

Size Image::dots() const {
  return {static_cast<double>(cairo_image_surface_get_width(surface_.get())),
          static_cast<double>(cairo_image_surface_get_height(surface_.get()))};
}

}  // namespace veltgeneral::drawing
