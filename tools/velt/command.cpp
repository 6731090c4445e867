#include "command.h"

#include <algorithm>
#include <string_view>

namespace veltgeneral::tool {
namespace {

// Behind arguments that the parser would take apart: "[a,b]" as a list, "++" as an end of options.
constexpr char kShield = '\x01';

bool needsShield(std::string_view argument) {
  return argument == "++" || (argument.starts_with('[') && argument.ends_with(']'));
}

std::string bare(std::string text) {
  if (text.ends_with(kShield)) text.pop_back();
  return text;
}

template <class Target>
CLI::Option* addOne(CLI::App& command, const std::string& name, Target& target,
                    const std::string& description) {
  return command
      .add_option_function<std::string>(
          name, [&target](const std::string& text) { target = bare(text); }, description)
      ->type_name("");
}

}  // namespace

CLI::Option* addText(CLI::App& command, const std::string& name, std::string& target,
                     const std::string& description) {
  return addOne(command, name, target, description);
}

CLI::Option* addText(CLI::App& command, const std::string& name, std::optional<std::string>& target,
                     const std::string& description) {
  return addOne(command, name, target, description);
}

CLI::Option* addTexts(CLI::App& command, const std::string& name, std::vector<std::string>& target,
                      const std::string& description) {
  return command
      .add_option_function<std::vector<std::string>>(
          name,
          [&target](const std::vector<std::string>& texts) {
            std::ranges::transform(texts, std::back_inserter(target), bare);
          },
          description)
      ->type_name("");
}

CLI::Option* addEach(CLI::App& command, const std::string& name, std::vector<std::string>& target,
                     const std::string& description) {
  return addTexts(command, name, target, description)->allow_extra_args(false);
}

CLI::Option* addJson(CLI::App& command, bool& json) {
  return command.add_flag("--json", json, "Print JSON on one line");
}

std::vector<std::string> shieldArguments(int count, char** arguments) {
  std::vector<std::string> all(arguments + (count > 0 ? 1 : 0), arguments + count);
  for (std::string& argument : all) {
    if (needsShield(argument)) argument += kShield;
  }
  std::ranges::reverse(all);
  return all;
}

}  // namespace veltgeneral::tool
