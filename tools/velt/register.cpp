// velt register, velt unregister: the classes' names in the registry, for hosts that link nothing.
#include <iostream>

#include "command.h"
#include "platform/library.h"
#include "veltgeneral/runtime_error.h"
#include "veltgeneral/veltgeneral_c.h"

namespace veltgeneral::tool {
namespace {

struct Options {
  bool quiet = false;
};

int report(vg_status status, const char* done, const Options& options) {
  if (status != 0) throw RuntimeError(status, Text(standardMessage(status)));
  if (!options.quiet) std::cout << platform::libraryFile() << ' ' << done << '\n';
  return kSucceeded;
}

void declare(CLI::App& command, Options& options) {
  command.add_flag("-q,--quiet", options.quiet, "Print nothing");
}

}  // namespace

void addRegister(CLI::App& program, Action& action) {
  addCommand<Options>(
      program, "register", "Register this library's classes for every host", action, &declare,
      [](const Options& options) { return report(DllRegisterServer(), "registered", options); })
      .footer("Examples:\n  sudo velt register\n");
  addCommand<Options>(
      program, "unregister", "Take the classes out of the registry", action, &declare,
      [](const Options& options) { return report(DllUnregisterServer(), "unregistered", options); })
      .footer("Examples:\n  sudo velt unregister\n");
}

}  // namespace veltgeneral::tool
