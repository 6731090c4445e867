// velt completion bash|zsh|fish: what the shell offers behind each word, read off the program's own
// command line.
#include <algorithm>
#include <iostream>
#include <map>
#include <sstream>

#include "command.h"
#include "veltgeneral/component.h"

namespace veltgeneral::tool {
namespace {

// One place in the command line: the program, or a sub-command by its whole path.
struct Node {
  std::string path;                                           // "velt registry get"
  std::vector<std::pair<std::string, std::string>> commands;  // name, summary
  std::vector<std::pair<std::string, std::string>> options;   // "--json", summary
  std::vector<std::string> words;                             // first positional argument
};

std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

void addMemberPaths(std::vector<std::string>& words) {
  for (const Class& type : classes()) {
    for (const Member& member : type.members) {
      std::string path = std::string(type.name) + '.' + std::string(member.name);
      if (std::ranges::find(words, path) == words.end()) words.push_back(std::move(path));
    }
  }
}

// What is known of a positional argument by its name in the help.
std::vector<std::string> wordsFor(const std::string& positional) {
  std::vector<std::string> words;
  if (positional == "CLASS") {
    for (const Class& type : classes()) words.emplace_back(type.name);
  } else if (positional == "CLASS.MEMBER") {
    addMemberPaths(words);
  } else if (positional == "KEY") {
    words = {"HKEY_LOCAL_MACHINE", "HKEY_CURRENT_USER", "HKEY_CLASSES_ROOT"};
  } else if (positional == "SHELL") {
    words = {"bash", "zsh", "fish"};
  }
  return words;
}

void collect(const CLI::App& command, const std::string& path, std::vector<Node>& nodes) {
  Node node{.path = path, .commands = {}, .options = {}, .words = {}};
  bool first = true;
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_positional()) {
      if (first) node.words = wordsFor(option->get_name(true));
      first = false;
      continue;
    }
    const std::string summary = firstLine(option->get_description());
    for (const std::string& name : option->get_lnames())
      node.options.emplace_back("--" + name, summary);
    for (const std::string& name : option->get_snames())
      node.options.emplace_back("-" + name, summary);
  }
  const auto commands = command.get_subcommands([](const CLI::App*) { return true; });
  for (const CLI::App* each : commands) {
    node.commands.emplace_back(each->get_name(), firstLine(each->get_description()));
  }
  nodes.push_back(std::move(node));
  for (const CLI::App* each : commands) collect(*each, path + ' ' + each->get_name(), nodes);
}

std::string quoted(const std::string& text) {
  std::string out = "'";
  for (const char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return out + "'";
}

std::string wordList(const Node& node) {
  std::string out;
  const auto add = [&](const std::string& word) { out += (out.empty() ? "" : " ") + word; };
  for (const auto& [name, summary] : node.commands) add(name);
  for (const std::string& word : node.words) add(word);
  for (const auto& [name, summary] : node.options) add(name);
  return out;
}

// bash and zsh follow the typed words as far as they are sub-commands, then offer that place's
// words and the names of files.
void followPlaces(std::ostream& out, const std::vector<Node>& nodes) {
  for (std::size_t i = 1; i < nodes.size(); ++i) {
    out << "      " << quoted(nodes[i].path) << ") place=" << quoted(nodes[i].path) << " ;;\n";
  }
  out << "    esac\n"
         "  done\n"
         "  case \"$place\" in\n";
}

void printBash(std::ostream& out, const std::vector<Node>& nodes) {
  out << "# bash completion of velt, made by: velt completion bash\n"
         "_velt() {\n"
         "  local current=\"${COMP_WORDS[COMP_CWORD]}\" place=velt words= i\n"
         "  for ((i = 1; i < COMP_CWORD; ++i)); do\n"
         "    case \"$place ${COMP_WORDS[i]}\" in\n";
  followPlaces(out, nodes);
  for (const Node& node : nodes) {
    out << "    " << quoted(node.path) << ") words=" << quoted(wordList(node)) << " ;;\n";
  }
  out << "  esac\n"
         "  mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$current\")\n"
         "}\n"
         "complete -o default -F _velt velt\n";
}

void printZsh(std::ostream& out, const std::vector<Node>& nodes) {
  const auto described = [](const std::string& name, const std::string& summary) {
    std::string escaped = name;
    for (std::size_t at = 0; (at = escaped.find(':', at)) != std::string::npos; at += 2) {
      escaped.insert(at, 1, '\\');
    }
    return quoted(escaped + ':' + summary);
  };
  out << "#compdef velt\n"
         "# zsh completion of velt, made by: velt completion zsh\n"
         "_velt() {\n"
         "  local place=velt word\n"
         "  local -a offered plain\n"
         "  for word in ${words[2,CURRENT-1]}; do\n"
         "    case \"$place $word\" in\n";
  followPlaces(out, nodes);
  for (const Node& node : nodes) {
    out << "    " << quoted(node.path) << ")\n      offered=(";
    for (const auto& [name, summary] : node.commands) out << ' ' << described(name, summary);
    for (const auto& [name, summary] : node.options) out << ' ' << described(name, summary);
    out << " )\n      plain=(";
    for (const std::string& word : node.words) out << ' ' << quoted(word);
    out << " ) ;;\n";
  }
  out << "  esac\n"
         "  _describe velt offered\n"
         "  compadd -a plain\n"
         "  _files\n"
         "}\n"
         "if [ \"$funcstack[1]\" = _velt ]; then _velt \"$@\"; else compdef _velt velt; fi\n";
}

// fish asks a function where it is, then takes the lines whose condition holds.
void printFish(std::ostream& out, const std::vector<Node>& nodes) {
  out << "# fish completion of velt, made by: velt completion fish\n"
         "function __velt_at\n"
         "  set -l place velt\n"
         "  for word in (commandline -opc)[2..-1]\n"
         "    switch \"$place $word\"\n"
         "      case";
  for (std::size_t i = 1; i < nodes.size(); ++i) out << ' ' << quoted(nodes[i].path);
  out << "\n"
         "        set place \"$place $word\"\n"
         "    end\n"
         "  end\n"
         "  test \"$place\" = \"$argv[1]\"\n"
         "end\n";
  for (const Node& node : nodes) {
    const std::string line = "complete -c velt -n " + quoted("__velt_at \"" + node.path + "\"");
    for (const auto& [name, summary] : node.commands) {
      out << line << " -f -a " << quoted(name) << " -d " << quoted(summary) << '\n';
    }
    for (const auto& [name, summary] : node.options) {
      const bool isLong = name.starts_with("--");
      out << line << (isLong ? " -l " : " -s ") << name.substr(isLong ? 2 : 1) << " -d "
          << quoted(summary) << '\n';
    }
    for (const std::string& word : node.words) out << line << " -a " << quoted(word) << '\n';
  }
}

struct Shell {
  const char* name;
  void (*print)(std::ostream& out, const std::vector<Node>& nodes);
};
constexpr Shell kShells[] = {{"bash", &printBash}, {"zsh", &printZsh}, {"fish", &printFish}};

struct Options {
  std::string shell;
  const CLI::App* program = nullptr;
};

int run(const Options& options) {
  const auto* const shell = std::ranges::find(kShells, options.shell, &Shell::name);
  if (shell == std::end(kShells)) throw UsageError("no completion for '" + options.shell + "'");
  std::vector<Node> nodes;
  collect(*options.program, "velt", nodes);
  shell->print(std::cout, nodes);
  return kSucceeded;
}

}  // namespace

void addCompletion(CLI::App& program, Action& action) {
  addCommand<Options>(
      program, "completion", "Print the completion script of a shell", action,
      [](CLI::App& command, Options& options) {
        options.program = command.get_parent();
        addText(command, "SHELL", options.shell, "bash, zsh or fish")->required();
      },
      &run)
      .footer(
          "Examples:\n"
          "  source <(velt completion bash)\n"
          "  velt completion zsh > ~/.zfunc/_velt\n"
          "  velt completion fish > ~/.config/fish/completions/velt.fish\n");
}

}  // namespace veltgeneral::tool
