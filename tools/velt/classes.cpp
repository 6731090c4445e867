// velt classes
#include <iostream>

#include "command.h"
#include "values.h"

namespace veltgeneral::tool {
namespace {

struct Options {
  bool json = false;
};

int run(const Options& options) {
  if (options.json) {
    Json all = Json::array();
    for (const Class& type : classes()) {
      all.push_back({{"name", type.name}, {"summary", type.summary}});
    }
    printJson(std::cout, all);
    return kSucceeded;
  }
  std::vector<std::vector<std::string>> rows;
  for (const Class& type : classes()) {
    rows.push_back({std::string(type.name), std::string(type.summary)});
  }
  printColumns(std::cout, rows);
  return kSucceeded;
}

}  // namespace

void addClasses(CLI::App& program, Action& action) {
  addCommand<Options>(
      program, "classes", "List the classes", action,
      [](CLI::App& command, Options& options) { addJson(command, options.json); }, &run)
      .footer(
          "Examples:\n"
          "  velt classes\n"
          "  velt classes --json\n");
}

}  // namespace veltgeneral::tool
