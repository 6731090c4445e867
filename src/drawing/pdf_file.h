// PdfFile: a PDF document that appears whole or not at all.
//
// Pages leave for the disk as they are finished, so memory does not grow with their number. The
// file is written beside its destination and renamed by commit().
#pragma once

#include <cairo.h>

#include <cstdio>
#include <string>
#include <string_view>

#include "drawing/canvas.h"
#include "drawing/geometry.h"

namespace veltgeneral::drawing {

// A file being written beside its destination; gone with its owner unless it moved there.
class WorkFile {
 public:
  // Throws Error: no such folder, `path` not writable, not a regular file.
  explicit WorkFile(const std::string& path);
  ~WorkFile();
  WorkFile(const WorkFile&) = delete;
  WorkFile& operator=(const WorkFile&) = delete;

  // False once a write was refused; the rest is then dropped.
  bool write(const unsigned char* bytes, std::size_t length);
  int error() const { return error_; }  // errno of the first refused write, or 0
  void moveIntoPlace();                 // throws Error

 private:
  std::string path_;
  std::string workPath_;
  Handle<std::FILE, std::fclose> file_;
  int error_ = 0;
};

class PdfFile {
 public:
  // `path` is a host path. Throws Error as WorkFile does. Without commit() nothing is left behind
  // and a file that was at `path` is unchanged.
  PdfFile(const std::string& path, Size page);

  void setTitle(std::u16string_view title);
  void setAuthor(std::u16string_view author);

  // Of the page at hand, while nothing is drawn on it, and of those that follow.
  void setPageSize(Size page);

  Canvas& canvas() { return canvas_; }
  // Throws Error as soon as the disk has refused a byte.
  void endPage();
  // Writes the rest and moves the file to its place. The canvas is of no use afterwards.
  void commit();

 private:
  void check() const;

  WorkFile file_;
  Handle<cairo_surface_t, cairo_surface_destroy> surface_;  // writes its end when it goes
  Canvas canvas_;
};

}  // namespace veltgeneral::drawing
