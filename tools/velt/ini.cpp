// velt ini get|set|list|delete
//
// File names are the shell's: a bare one lies in the working folder, not in the Windows folder.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>

#include "command.h"
#include "core/narrow_page.h"
#include "file_io.h"
#include "platform/profile.h"
#include "values.h"

namespace veltgeneral::tool {

using platform::ProfileCall;

namespace {

struct Options {
  std::string file;
  std::optional<std::string> section;
  std::optional<std::string> key;
  std::string value;
  std::optional<std::string> byDefault;
  bool utf16 = false;
  bool json = false;
};

constexpr std::size_t kWhole = std::numeric_limits<std::size_t>::max();

Text nonEmpty(const std::optional<std::string>& text, const char* what) {
  if (!text || text->empty()) throw UsageError(std::string(what) + " cannot be empty");
  return fromUtf8(*text);
}

Text read(const std::string& file, const Text* section, const Text* key, const Text* byDefault) {
  return platform::readProfile(ProfileCall::wide, section, key, byDefault, kWhole, file,
                               narrowPage());
}

// Nothing where there is no such key: then the answer is whatever the default says.
std::optional<Text> find(const std::string& file, const Text& section, const Text& key) {
  const Text one = u"1";
  const Text other = u"2";
  const Text answer = read(file, &section, &key, &one);
  if (answer == one && read(file, &section, &key, &other) == other) return std::nullopt;
  return answer;
}

// The names in a list: a NUL behind each.
std::vector<Text> names(const std::string& file, const Text* section) {
  const Text all = read(file, section, nullptr, nullptr);
  std::vector<Text> out;
  for (std::size_t at = 0; at < all.size();) {
    const std::size_t end = std::min(all.find(u'\0', at), all.size());
    out.push_back(all.substr(at, end - at));
    at = end + 1;
  }
  return out;
}

int get(const Options& options) {
  requireReadable(options.file);
  const Text section = nonEmpty(options.section, "SECTION");
  const Text key = nonEmpty(options.key, "KEY");
  std::optional<Text> value = find(options.file, section, key);
  if (!value && options.byDefault) value = fromUtf8(*options.byDefault);
  if (options.json) {
    printJson(std::cout, value ? Json(toUtf8(*value)) : Json());
  } else if (value) {
    std::cout << toUtf8(*value) << '\n';
  }
  return value ? kSucceeded : kFailed;
}

Json sectionJson(const std::string& file, const Text& section) {
  Json keys = Json::object();
  for (const Text& key : names(file, &section)) {
    // The first of equal keys is the one that counts.
    keys.emplace(toUtf8(key), toUtf8(find(file, section, key).value_or(Text())));
  }
  return keys;
}

int list(const Options& options) {
  requireReadable(options.file);
  Json out = Json::object();
  if (options.section) {
    out = sectionJson(options.file, nonEmpty(options.section, "SECTION"));
  } else {
    for (const Text& section : names(options.file, nullptr)) {
      out.emplace(toUtf8(section), sectionJson(options.file, section));
    }
  }
  if (options.json) {
    printJson(std::cout, out);
    return kSucceeded;
  }
  for (const auto& [name, content] : out.items()) {
    if (options.section) {
      std::cout << name << '=' << toReadable(content) << '\n';
      continue;
    }
    std::cout << '[' << name << "]\n";
    for (const auto& [key, value] : content.items()) {
      std::cout << key << '=' << toReadable(value) << '\n';
    }
  }
  return kSucceeded;
}

bool isUtf16(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  char mark[2] = {};
  return in.read(mark, 2) && mark[0] == '\xFF' && mark[1] == '\xFE';
}

int write(const Options& options, const Text& section, const Text* key, const Text* value) {
  requireReadable(options.file);
  std::error_code ignored;
  const bool there = std::filesystem::exists(options.file, ignored);
  const bool utf16 = there ? isUtf16(options.file) : options.utf16;
  // In a file of the code page it would become "?", silently.
  for (const Text* text : {&section, key, value}) {
    if (!utf16 && text != nullptr && narrowed(*text) != *text) {
      throw UsageError("the code page of " + options.file + " does not have all characters of '" +
                       toUtf8(*text) + "'");
    }
    if (text != nullptr && text->find_first_of(u"\r\n") != Text::npos) {
      throw UsageError("an INI file keeps no line breaks");
    }
  }
  const ProfileCall call = utf16 ? ProfileCall::wide : ProfileCall::narrow;
  const bool done = platform::writeProfile(call, &section, key, value, options.file, narrowPage());
  if (!done) throw std::runtime_error("cannot write " + options.file);
  return kSucceeded;
}

int set(const Options& options) {
  const Text key = nonEmpty(options.key, "KEY");
  const Text value = fromUtf8(options.value);
  return write(options, nonEmpty(options.section, "SECTION"), &key, &value);
}

int remove(const Options& options) {
  const Text section = nonEmpty(options.section, "SECTION");
  if (!options.key) return write(options, section, nullptr, nullptr);
  const Text key = nonEmpty(options.key, "KEY");
  return write(options, section, &key, nullptr);
}

enum class Needs { file, section, key };

// FILE SECTION KEY, required as far as `needs` says, offered as far as `takes`.
void declarePlace(CLI::App& command, Options& options, Needs needs, Needs takes = Needs::key) {
  addText(command, "FILE", options.file, "The INI file")->required();
  addText(command, "SECTION", options.section, "A section")->required(needs >= Needs::section);
  if (takes == Needs::key)
    addText(command, "KEY", options.key, "A key in it")->required(needs == Needs::key);
}

void declareGet(CLI::App& command, Options& options) {
  declarePlace(command, options, Needs::key);
  addText(command, "-d,--default", options.byDefault, "What to print for a missing key")
      ->type_name("TEXT");
  addJson(command, options.json);
}

void declareSet(CLI::App& command, Options& options) {
  declarePlace(command, options, Needs::key);
  addText(command, "VALUE", options.value, "Its new value")->required();
  command.add_flag("--utf16", options.utf16, "Create a new file in UTF-16, not in the code page");
}

void declareList(CLI::App& command, Options& options) {
  declarePlace(command, options, Needs::file, Needs::section);
  addJson(command, options.json);
}

void declareDelete(CLI::App& command, Options& options) {
  declarePlace(command, options, Needs::section);
}

}  // namespace

void addIni(CLI::App& program, Action& action) {
  CLI::App* ini = program.add_subcommand("ini", "Read and change INI files");
  ini->require_subcommand(1);
  ini->footer(
      "Names match without regard to case; comments, order and line ends survive a change.\n"
      "\n"
      "Examples:\n"
      "  velt ini get app.ini Main Name\n"
      "  velt ini list --help\n");
  addCommand<Options>(*ini, "get", "Print the value of a key", action, &declareGet, &get)
      .footer(
          "Exit status: 1 where there is no such key.\n"
          "\n"
          "Examples:\n"
          "  velt ini get app.ini Main Name --default nobody\n");
  addCommand<Options>(*ini, "set", "Set a key, creating file and section", action, &declareSet,
                      &set)
      .footer(
          "Examples:\n"
          "  velt ini set app.ini Main Name 'Anna Berto'\n");
  addCommand<Options>(*ini, "list", "List all sections, or the keys of one", action, &declareList,
                      &list)
      .footer(
          "Examples:\n"
          "  velt ini list app.ini --json\n"
          "  velt ini list app.ini Main\n");
  addCommand<Options>(*ini, "delete", "Delete a key, or a whole section", action, &declareDelete,
                      &remove)
      .footer(
          "What is not there counts as deleted.\n"
          "\n"
          "Examples:\n"
          "  velt ini delete app.ini Main Name\n"
          "  velt ini delete app.ini Main\n");
}

}  // namespace veltgeneral::tool
