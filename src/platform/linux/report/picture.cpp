#include "platform/linux/report/picture.h"

#include "drawing/error.h"
#include "drawing/pdf_file.h"

namespace veltgeneral::platform {

void PictureView::write() const {
  drawing::WorkFile file(file_);
  const auto send = [](void* to, const unsigned char* bytes, unsigned length) {
    return static_cast<drawing::WorkFile*>(to)->write(bytes, length) ? CAIRO_STATUS_SUCCESS
                                                                     : CAIRO_STATUS_WRITE_ERROR;
  };
  cairo_surface_write_to_png_stream(page_, send, &file);
  if (file.error() != 0) throw drawing::Error::ofSystem(file.error());
  file.moveIntoPlace();
}

}  // namespace veltgeneral::platform
