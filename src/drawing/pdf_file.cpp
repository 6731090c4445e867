#include "drawing/pdf_file.h"

#include <cairo-pdf.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "drawing/error.h"
#include "drawing/text.h"

namespace veltgeneral::drawing {
namespace {

// Where the document really goes: a link stays a link. Throws what writing in place would meet.
std::string destination(const std::string& path) {
  const Handle<char, std::free> real(::realpath(path.c_str(), nullptr));
  if (!real) {
    if (errno == ENOENT) return path;  // opening the work file tells whether the folder exists
    throw Error::ofSystem(errno);
  }
  struct stat status {};
  if (::stat(real.get(), &status) != 0) throw Error::ofSystem(errno);
  if (S_ISDIR(status.st_mode)) throw Error::ofSystem(EISDIR);
  if (!S_ISREG(status.st_mode)) throw Error("Not a regular file");
  if (::access(real.get(), W_OK) != 0) throw Error::ofSystem(errno);
  return real.get();
}

// Creates a file of its own in the folder of `path`, with the rights that a new file gets.
std::FILE* openBeside(const std::string& path, std::string& workPath) {
  static std::atomic<unsigned> counter{0};
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  for (;;) {
    workPath = folder / (".veltgeneral-" + std::to_string(::getpid()) + "-" +
                         std::to_string(counter.fetch_add(1)) + ".pdf");
    const int descriptor = ::open(workPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0 && errno != EEXIST && errno != EINTR) throw Error::ofSystem(errno);
    if (descriptor < 0) continue;
    if (std::FILE* const file = ::fdopen(descriptor, "wb")) return file;
    const int why = errno;
    ::close(descriptor);
    ::unlink(workPath.c_str());
    throw Error::ofSystem(why);
  }
}

cairo_status_t writeTo(void* file, const unsigned char* bytes, unsigned int length) {
  return static_cast<WorkFile*>(file)->write(bytes, length) ? CAIRO_STATUS_SUCCESS
                                                            : CAIRO_STATUS_WRITE_ERROR;
}

}  // namespace

WorkFile::WorkFile(const std::string& path)
    : path_(destination(path)), file_(openBeside(path_, workPath_)) {
  struct stat status {};
  if (::stat(path_.c_str(), &status) == 0)
    ::fchmod(::fileno(file_.get()), status.st_mode & 07777);  // best effort: it may be another's
}

WorkFile::~WorkFile() {
  if (!workPath_.empty()) ::unlink(workPath_.c_str());
}

bool WorkFile::write(const unsigned char* bytes, std::size_t length) {
  if (error_ == 0 && std::fwrite(bytes, 1, length, file_.get()) != length) error_ = errno;
  return error_ == 0;
}

void WorkFile::moveIntoPlace() {
  if (std::fclose(file_.release()) != 0) throw Error::ofSystem(errno);
  if (::rename(workPath_.c_str(), path_.c_str()) != 0) throw Error::ofSystem(errno);
  workPath_.clear();
}

PdfFile::PdfFile(const std::string& path, Size page)
    : file_(path),
      surface_(cairo_pdf_surface_create_for_stream(writeTo, &file_, page.width, page.height)),
      canvas_(surface_.get()) {}

void PdfFile::setTitle(std::u16string_view title) {
  cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_TITLE, toUtf8(title).c_str());
}

void PdfFile::setAuthor(std::u16string_view author) {
  cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_AUTHOR, toUtf8(author).c_str());
}

void PdfFile::setPageSize(Size page) {
  cairo_pdf_surface_set_size(surface_.get(), page.width, page.height);
}

void PdfFile::check() const {
  // The file knows why; Cairo only that.
  if (file_.error() != 0) throw Error::ofSystem(file_.error());
  canvas_.check();
  if (const cairo_status_t status = cairo_surface_status(surface_.get());
      status != CAIRO_STATUS_SUCCESS)
    throw Error(cairo_status_to_string(status));
}

void PdfFile::endPage() {
  canvas_.showPage();
  check();
}

void PdfFile::commit() {
  canvas_.flush();
  cairo_surface_finish(surface_.get());
  check();
  file_.moveIntoPlace();
}

}  // namespace veltgeneral::drawing
