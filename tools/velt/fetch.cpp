// velt fetch URL
//
// Opens through the class, so that it succeeds and fails as every caller does; the body is pulled
// piece by piece from the class's handle, whatever its size.
#include <array>
#include <fstream>
#include <iostream>
#include <span>

#include "command.h"
#include "platform/internet.h"
#include "progress.h"
#include "veltgeneral/velt_inet.h"

namespace veltgeneral::tool {
namespace {

struct Options {
  std::string url;
  std::string output = "-";
  std::vector<std::string> headers;
  std::string proxy;
  bool direct = false;
};

// A handle of the class; closed with the object.
class Handle {
 public:
  Handle() = default;
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { VeltInet().IClose(number); }

  std::int32_t number = 0;
};

ErrInfo openSession(const Options& options, std::int32_t& session) {
  VeltInet inet;
  if (options.direct) return inet.IOpenExtended(session);
  if (options.proxy.empty()) return inet.IOpen(session);
  return inet.IOpenExtended(session, Missing{}, Missing{}, fromUtf8(options.proxy));
}

ErrInfo openUrl(const Options& options, std::int32_t session, std::int32_t& page) {
  VeltInet inet;
  Text url = fromUtf8(options.url);
  if (options.headers.empty()) return inet.IOpenUrl(session, url, page);
  Text headers;
  for (const std::string& header : options.headers) headers += fromUtf8(header) + u"\r\n";
  return inet.IOpenUrlExtended(session, url, headers, page);
}

int fail(const Options& options, const std::string& reason) {
  std::cerr << "velt: " << options.url << ": " << reason << '\n';
  return kFailed;
}

int copyBody(const Options& options, std::int32_t page, std::ostream& out) {
  platform::Internet& internet = *platform::internet();  // there, since it gave the handle
  std::array<std::uint8_t, 65536> bytes;
  std::uint64_t done = 0;
  Progress progress;
  for (;;) {
    const platform::InternetRead read = internet.read(page, bytes);
    if (!read.succeeded) return fail(options, "broke off after " + sizeText(done));
    if (read.count == 0) return kSucceeded;
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(read.count));
    if (!out) throw std::runtime_error("cannot write " + options.output);
    done += read.count;
    progress.show(done, read.announced == 0 ? 0 : done + read.announced);
  }
}

int run(const Options& options) {
  if (options.direct && !options.proxy.empty()) {
    throw UsageError("--direct and --proxy exclude each other");
  }
  Handle session;
  ErrInfo result = openSession(options, session.number);
  Handle page;
  if (result.isSuccess()) result = openUrl(options, session.number, page.number);
  if (!result.isSuccess()) return fail(options, toUtf8(result.descriptionInfo()));
  std::ofstream file;
  if (options.output != "-") file.open(options.output, std::ios::binary | std::ios::trunc);
  std::ostream& out = options.output == "-" ? std::cout : file;
  const int status = copyBody(options, page.number, out);
  if (!out.flush()) throw std::runtime_error("cannot write " + options.output);
  return status;
}

void declare(CLI::App& command, Options& options) {
  addText(command, "URL", options.url, "http, https or ftp")->required();
  addText(command, "-o,--output", options.output, "The file to replace; standard output without it")
      ->type_name("FILE");
  addEach(command, "--header", options.headers, "A request header")->type_name("'NAME: VALUE'");
  addText(command, "--proxy", options.proxy,
          "A proxy, or a list scheme=host:port;..., instead of the environment's")
      ->type_name("HOST:PORT");
  command.add_flag("--direct", options.direct, "No proxy at all");
}

}  // namespace

void addFetch(CLI::App& program, Action& action) {
  addCommand<Options>(program, "fetch", "Fetch a URL", action, &declare, &run)
      .footer(
          "The body is written as it is, whatever the server's status; a terminal shows the\n"
          "progress. Exit status: 1 where the URL cannot be opened or its body breaks off.\n"
          "\n"
          "Examples:\n"
          "  velt fetch https://example.com/prices.csv -o prices.csv\n"
          "  velt fetch http://example.com/ --header 'Accept: text/html' --proxy proxy:3128\n");
}

}  // namespace veltgeneral::tool
