// velt describe CLASS[.MEMBER]
#include <iostream>

#include "class_text.h"
#include "command.h"
#include "member_path.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::tool {
namespace {

struct Options {
  std::string target;
  bool json = false;
};

std::string readableText(const Member& member) {
  std::string text = signatureText(member);
  if (member.kind == CallKind::method) return text;
  // A property takes no argument to read and its new value to assign.
  text = std::string(member.name);
  if (member.kind == CallKind::propertyGet) return text + " -> " + typeText(member.result);
  return text + " = " + typeText(member.parameters.back().type);
}

void printEnumeration(const Enumeration& enumeration) {
  std::cout << "  " << enumeration.name << '\n';
  for (const Enumerator& each : enumeration.values) {
    std::cout << "    " << each.name << " = " << each.value << '\n';
  }
}

Json enumerationsJson(const Class& type) {
  Json all = Json::object();
  for (const Enumeration& each : type.enumerations) {
    Json& values = all[std::string(each.name)] = Json::object();
    for (const Enumerator& value : each.values) values[std::string(value.name)] = value.value;
  }
  return all;
}

int run(const Options& options) {
  const MemberPath path = splitMemberPath(options.target);
  const Class& type = neededClass(path.className);
  std::vector<const Member*> members;
  for (const Member& member : type.members) {
    if (path.member.empty() || sameName(member.name, path.member)) members.push_back(&member);
  }
  if (members.empty() && !path.member.empty()) throw RuntimeError(RunTime::memberNotSupported);
  if (options.json) {
    Json rows = Json::array();
    for (const Member* member : members) rows.push_back(memberJson(*member));
    Json described = {{"name", type.name}, {"summary", type.summary}, {"members", std::move(rows)}};
    if (!type.enumerations.empty()) described["enumerations"] = enumerationsJson(type);
    printJson(std::cout, described);
    return kSucceeded;
  }
  std::cout << type.name << ": " << type.summary << '\n';
  for (const Member* member : members) std::cout << "  " << readableText(*member) << '\n';
  for (const Enumeration& each : type.enumerations) printEnumeration(each);
  return kSucceeded;
}

}  // namespace

void addDescribe(CLI::App& program, Action& action) {
  addCommand<Options>(
      program, "describe", "Show the members of a class, in their published order", action,
      [](CLI::App& command, Options& options) {
        addText(command, "CLASS", options.target, "A class, or CLASS.MEMBER for one member")
            ->required();
        addJson(command, options.json);
      },
      &run)
      .footer(
          "Square brackets mark arguments that may be left out; 'in/out' those that the member\n"
          "changes. 'name -> kind' reads a property, 'name = kind' assigns it.\n"
          "\n"
          "Examples:\n"
          "  velt describe FileUtility\n"
          "  velt describe Funzioni.quickSortArray\n"
          "  velt describe cInifile --json\n");
}

}  // namespace veltgeneral::tool
