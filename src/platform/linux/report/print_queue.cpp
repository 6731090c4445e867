// Jobs follow RFC 8011: create the job, then send its one document.
#include "platform/linux/report/print_queue.h"

#include <csignal>
#include <cstdio>

#include "drawing/error.h"
#include "platform/linux/report/failure.h"
#include "platform/linux/report/quiet_pipe.h"

namespace veltgeneral::platform {

namespace {

constexpr int kConnectTimeout = 30'000;  // milliseconds
constexpr double kAnswerTimeout = 60;    // seconds

using Connection = drawing::Handle<http_t, httpClose>;
using Information = drawing::Handle<cups_dinfo_t, cupsFreeDestInfo>;

[[noreturn]] void fail() { throw Failure(RunTime::printerError); }

// Who has no rights is refused; the library would ask for a password on the terminal.
const char* noPassword(const char*, http_t*, const char*, const char*, void*) { return nullptr; }

void initialize() {
  static const bool done = [] {
    // The library switches SIGPIPE off for the whole process, which is not ours to do.
    struct sigaction before {};
    ::sigaction(SIGPIPE, nullptr, &before);
    httpInitialize();
    ::sigaction(SIGPIPE, &before, nullptr);
    return true;
  }();
  static_cast<void>(done);
  cupsSetPasswordCB2(noPassword, nullptr);
}

Connection bounded(http_t* http) {
  if (http == nullptr) fail();
  httpSetTimeout(http, kAnswerTimeout, nullptr, nullptr);
  return Connection(http);
}

Connection connectToScheduler() {
  return bounded(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                              kConnectTimeout, nullptr));
}

Connection connectToDevice(cups_dest_t* device) {
  char resource[HTTP_MAX_URI];
  return bounded(cupsConnectDest(device, CUPS_DEST_FLAGS_DEVICE, kConnectTimeout, nullptr, resource,
                                 sizeof resource, nullptr, nullptr));
}

bool accepted(ipp_status_t status) { return status < IPP_STATUS_REDIRECTION_OTHER_SITE; }

class Options {
 public:
  Options() = default;
  Options(const Options&) = delete;
  Options& operator=(const Options&) = delete;
  ~Options() { cupsFreeOptions(count_, values_); }

  void add(const char* name, const char* value) {
    count_ = cupsAddOption(name, value, count_, &values_);
  }
  int count() const { return count_; }
  cups_option_t* values() const { return values_; }

 private:
  int count_ = 0;
  cups_option_t* values_ = nullptr;
};

// Whether all of `file` went out and was taken.
bool sendDocument(http_t* http, cups_dest_t* destination, cups_dinfo_t* information, int job,
                  const std::string& file, const std::string& title) {
  const drawing::Handle<std::FILE, std::fclose> document(std::fopen(file.c_str(), "rbe"));
  if (!document) throw drawing::Error::ofSystem(errno);
  if (cupsStartDestDocument(http, destination, information, job, title.c_str(), CUPS_FORMAT_PDF, 0,
                            nullptr, 1) != HTTP_STATUS_CONTINUE)
    return false;
  char block[65536];
  while (const std::size_t read = std::fread(block, 1, sizeof block, document.get()))
    if (cupsWriteRequestData(http, block, read) != HTTP_STATUS_CONTINUE) return false;
  return std::ferror(document.get()) == 0 &&
         accepted(cupsFinishDestDocument(http, destination, information));
}

}  // namespace

PrintQueue::PrintQueue(const std::string& name)
    : direct_(name.starts_with("ipp://") || name.starts_with("ipps://")) {
  const QuietPipe quiet;
  initialize();
  if (direct_) {
    destination_.reset(cupsGetDestWithURI(nullptr, name.c_str()));
  } else {
    const Connection scheduler = connectToScheduler();
    destination_.reset(
        cupsGetNamedDest(scheduler.get(), name.empty() ? nullptr : name.c_str(), nullptr));
  }
  if (!destination_) fail();
  if (direct_) connectToDevice(destination_.get());
}

void PrintQueue::print(const std::string& file, const std::string& title) const {
  const QuietPipe quiet;
  initialize();
  cups_dest_t* destination = destination_.get();
  const Connection http = direct_ ? connectToDevice(destination) : connectToScheduler();
  const Information information(cupsCopyDestInfo(http.get(), destination));
  if (!information) fail();

  Options options;
  options.add(CUPS_MEDIA, "iso_a4_210x297mm");
  options.add("print-scaling", "none");
  int job = 0;
  if (!accepted(cupsCreateDestJob(http.get(), destination, information.get(), &job, title.c_str(),
                                  options.count(), options.values())))
    fail();
  if (!sendDocument(http.get(), destination, information.get(), job, file, title)) {
    cupsCancelDestJob(http.get(), destination, job);
    fail();
  }
}

}  // namespace veltgeneral::platform
