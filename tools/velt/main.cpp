// velt: the component from the shell.
//
// Answers go to standard output, everything else to standard error.
#include <cstdio>
#include <exception>
#include <iostream>

#include "command.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::tool {
namespace {

constexpr const char* kExamples =
    "Exit status: 0 success, 1 a result that is a failure or nothing found, 2 an error.\n"
    "\n"
    "Examples:\n"
    "  velt describe FileUtility\n"
    "  velt call FileUtility.readFile orders.csv\n"
    "  velt COMMAND --help\n";

void build(CLI::App& program, Action& action) {
  program.set_version_flag("--version", "velt " VELTGENERAL_VERSION);
  program.require_subcommand(1);
  program.footer(kExamples);
  addClasses(program, action);
  addDescribe(program, action);
  addCall(program, action);
  addDoctor(program, action);
  addFetch(program, action);
  addRegistry(program, action);
  addIni(program, action);
  addRegister(program, action);
  addCompletion(program, action);
}

int complain(std::string_view message) {
  std::cerr << "velt: " << message << '\n';
  return kRefused;
}

int explain(const CLI::App& program, const CLI::ParseError& error) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    return program.exit(error, std::cout, std::cerr);
  }
  const auto chosen = program.get_subcommands();
  const std::string command = chosen.empty() ? "" : " " + chosen.front()->get_name();
  return complain(std::string(error.what()) + "\nTry: velt" + command + " --help");
}

int run(int count, char** arguments) {
  Action action;
  CLI::App program("VeltGeneral from the shell: its classes, its settings, what is in force",
                   "velt");
  build(program, action);
  try {
    program.parse(shieldArguments(count, arguments));
  } catch (const CLI::ParseError& error) {
    return explain(program, error);
  }
  try {
    const int status = action();
    if (!std::cout.flush()) return complain("standard output cannot be written");
    return status;
  } catch (const RuntimeError& error) {
    return complain("error " + std::to_string(error.number()) + ": " + error.what());
  } catch (const std::exception& error) {
    return complain(error.what());
  }
}

}  // namespace
}  // namespace veltgeneral::tool

int main(int count, char** arguments) {
  try {
    std::ios::sync_with_stdio(false);
    return veltgeneral::tool::run(count, arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "velt: %s\n", error.what());
    return veltgeneral::tool::kRefused;
  }
}
