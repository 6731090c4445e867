// What a sub-command of `velt` is made of.
//
// Each adds itself to the program's command line and, when it is the one chosen, stores the work to
// do. The work returns the exit status; what cannot be done at all is thrown.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace veltgeneral::tool {

enum Status : int {
  kSucceeded = 0,
  kFailed = 1,   // the answer is a failure, or that there is nothing
  kRefused = 2,  // the command line, or an error that left no answer
};

using Action = std::function<int()>;

// A command line that says something impossible; what() is for its author.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

void addClasses(CLI::App& program, Action& action);
void addDescribe(CLI::App& program, Action& action);
void addCall(CLI::App& program, Action& action);
void addDoctor(CLI::App& program, Action& action);
void addFetch(CLI::App& program, Action& action);
void addRegistry(CLI::App& program, Action& action);
void addIni(CLI::App& program, Action& action);
void addRegister(CLI::App& program, Action& action);
void addCompletion(CLI::App& program, Action& action);

// Adds a sub-command that runs `run` on the options it was given. The options outlive the parsing;
// `declare` binds them to the command line.
template <class Options, class Declare>
CLI::App& addCommand(CLI::App& parent, const std::string& name, const std::string& summary,
                     Action& action, Declare declare, int (*run)(const Options&)) {
  CLI::App* command = parent.add_subcommand(name, summary);
  auto options = std::make_shared<Options>();
  declare(*command, *options);
  command->callback([&action, options, run] { action = [options, run] { return run(*options); }; });
  return *command;
}

// Arguments and options that take texts, which may look like anything: the parser's own notation
// inside them is kept away by shieldArguments and made good here.
CLI::Option* addText(CLI::App& command, const std::string& name, std::string& target,
                     const std::string& description);
// One that may be left out.
CLI::Option* addText(CLI::App& command, const std::string& name, std::optional<std::string>& target,
                     const std::string& description);
CLI::Option* addTexts(CLI::App& command, const std::string& name, std::vector<std::string>& target,
                      const std::string& description);
// An option that may be given many times, each time with one text.
CLI::Option* addEach(CLI::App& command, const std::string& name, std::vector<std::string>& target,
                     const std::string& description);
CLI::Option* addJson(CLI::App& command, bool& json);

// The arguments in the reversed order that the parser takes.
std::vector<std::string> shieldArguments(int count, char** arguments);

}  // namespace veltgeneral::tool
