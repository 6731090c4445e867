// velt doctor: what is in force and who said so.
//
// It asks the library itself, so that it shows what every other host on this machine would get.
#include <filesystem>
#include <initializer_list>
#include <iostream>

#include "automation/locale.h"
#include "command.h"
#include "core/module_name.h"
#include "platform/environment.h"
#include "platform/folders.h"
#include "platform/library.h"
#include "platform/registry.h"
#include "values.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::tool {
namespace {

namespace fs = std::filesystem;

struct Finding {
  std::string subject;
  std::string value;
  std::string source;  // a variable, "default", "build" or "loader"
};

constexpr const char* kDefault = "default";
constexpr const char* kLoader = "loader";

std::string setting(const std::string& variable) {
  return platform::environment(variable.c_str()).value_or("");
}

// The first of the variables that says something.
std::string sourceAmong(std::initializer_list<const char*> variables) {
  for (const char* variable : variables) {
    if (!setting(variable).empty()) return variable;
  }
  return kDefault;
}

Finding chosen(std::string subject, const char* variable, const std::string& byDefault) {
  const std::string value = setting(variable);
  if (value.empty()) return {std::move(subject), byDefault, kDefault};
  return {std::move(subject), value, variable};
}

void addLocale(std::vector<Finding>& out) {
  const Locale& locale = userLocale();
  const std::string numbers = sourceAmong({"VELTGENERAL_LOCALE", "LC_ALL", "LC_NUMERIC", "LANG"});
  const std::string dates = sourceAmong({"VELTGENERAL_LOCALE", "LC_ALL", "LC_TIME", "LANG"});
  out.push_back(
      {"locale", toUtf8(locale.name), numbers == dates ? numbers : numbers + ", " + dates});
  out.push_back({"decimal mark", toUtf8(Text(1, locale.decimal)), numbers});
  constexpr const char* kOrders[] = {"day, month, year", "month, day, year", "year, month, day"};
  out.push_back({"date order", kOrders[static_cast<std::size_t>(locale.order)], dates});
  out.push_back(chosen("code page", "VELTGENERAL_CODEPAGE", "CP1252"));
}

void addFolders(std::vector<Finding>& out) {
  using platform::RegistryRoot;
  const auto add = [&](const char* subject, std::string value, const char* variable) {
    out.push_back({subject, value.empty() ? "none" : std::move(value), sourceAmong({variable})});
  };
  add("machine registry", platform::registryFile(RegistryRoot::localMachine),
      "VELTGENERAL_REGISTRY_DIR");
  add("user registry", platform::registryFile(RegistryRoot::currentUser),
      "VELTGENERAL_REGISTRY_DIR");
  add("library's own folder", platform::libraryHome(), "VELTGENERAL_HOME");
  add("Windows folder", platform::windowsFolder(), "VELTGENERAL_WINDOWS_DIR");
  add("system folder", platform::systemFolder(), "VELTGENERAL_SYSTEM_DIR");
}

void addDrives(std::vector<Finding>& out) {
  bool any = false;
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const std::string variable = std::string("VELTGENERAL_DRIVE_") + letter;
    const std::string folder = setting(variable);
    if (folder.empty()) continue;
    any = true;
    out.push_back({std::string("drive ") + letter + ":", folder, variable});
  }
  if (!any) out.push_back({"drives", "none", kDefault});
}

void addModule(std::vector<Finding>& out, const std::string& subject, const std::string& name) {
  const std::string path = platform::modulePath(name);
  std::error_code ignored;
  const bool there = fs::exists(path, ignored);
  out.push_back(
      {subject, there ? path : path + " (missing)", sourceAmong({"VELTGENERAL_MODULE_DIR"})});
}

// A caller's own generator may also be a name that the system's loader looks for.
void addPdfGenerator(std::vector<Finding>& out) {
  constexpr const char* kVariable = "VELTGENERAL_PDF_LIBRARY";
  if (!setting(kVariable).empty()) {
    out.push_back(chosen("PDF generator", kVariable, ""));
  } else {
    addModule(out, "PDF generator", "veltgeneral-pdf");
  }
}

std::vector<Finding> examine() {
  std::vector<Finding> out;
  out.push_back({"version", VELTGENERAL_VERSION, "build"});
  out.push_back({"module name", toUtf8(kModuleName), "build"});
  out.push_back({"library", platform::libraryFile(), kLoader});
  addLocale(out);
  addFolders(out);
  addDrives(out);
  out.push_back(chosen("report form", "VELTGENERAL_FORM", "window"));
  out.push_back(chosen("printer", "VELTGENERAL_PRINTER", "the print system's default queue"));
  addPdfGenerator(out);
  addModule(out, "HTTP module", "veltgeneral-http");
  addModule(out, "report module", "veltgeneral-report");
  return out;
}

struct Options {
  bool json = false;
};

int run(const Options& options) {
  const std::vector<Finding> findings = examine();
  if (options.json) {
    Json all = Json::array();
    for (const Finding& each : findings) {
      all.push_back({{"subject", each.subject}, {"value", each.value}, {"source", each.source}});
    }
    printJson(std::cout, all);
    return kSucceeded;
  }
  std::vector<std::vector<std::string>> rows;
  rows.reserve(findings.size());
  for (const Finding& each : findings) rows.push_back({each.subject, each.value, each.source});
  printColumns(std::cout, rows);
  return kSucceeded;
}

}  // namespace

void addDoctor(CLI::App& program, Action& action) {
  addCommand<Options>(
      program, "doctor", "Show what is in force on this machine, and who said so", action,
      [](CLI::App& command, Options& options) { addJson(command, options.json); }, &run)
      .footer(
          "The last column is the environment variable that decides, or 'default'.\n"
          "\n"
          "Examples:\n"
          "  velt doctor\n"
          "  velt doctor --json\n");
}

}  // namespace veltgeneral::tool
