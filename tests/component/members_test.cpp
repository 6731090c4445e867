// Walks the member table of every class.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <sstream>

#include "veltgeneral/component.h"

namespace veltgeneral {
namespace {

std::string folded(std::string_view name) {
  std::string lower(name);
  std::ranges::transform(lower, lower.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

std::ostream& operator<<(std::ostream& out, const ValueType& type) {
  constexpr const char* kNames[] = {"empty",   "missing", "null",     "int16",      "int32",
                                    "single",  "double",  "currency", "decimal",    "date",
                                    "boolean", "text",    "bytes",    "text array", "object"};
  if (type.isVoid) return out << "nothing";
  if (type.isVariant) return out << "variant";
  if (!type.name.empty()) return out << type.name;
  return out << kNames[static_cast<std::size_t>(type.kind)];
}

std::string listing() {
  std::ostringstream out;
  for (const Class& type : classes()) {
    out << type.name << ": " << type.summary << '\n';
    for (const Member& member : type.members) {
      constexpr const char* kKinds[] = {"method", "get   ", "put   "};
      out << "  " << kKinds[static_cast<std::size_t>(member.kind)] << ' ' << member.name << '(';
      for (const Parameter& each : member.parameters) {
        out << (&each == member.parameters.data() ? "" : ", ") << (each.optional ? "[" : "")
            << each.name << ": " << each.type
            << (each.direction == Direction::inOut ? " in/out" : "");
        if (each.optional && !each.type.isVariant) out << " = " << each.defaultNumber;
        out << (each.optional ? "]" : "");
      }
      out << ") -> " << member.result << '\n';
    }
    for (const Enumeration& each : type.enumerations) {
      out << "  " << each.name << '\n';
      for (const Enumerator& value : each.values) {
        out << "    " << value.name << " = " << value.value << '\n';
      }
    }
  }
  return out.str();
}

TEST(Members, TablesAreSound) {
  std::set<std::string> classNames;
  for (const Class& type : classes()) {
    EXPECT_TRUE(classNames.insert(folded(type.name)).second) << type.name;
    EXPECT_EQ(classOf(*type.create()), &type) << type.name;
    std::set<std::pair<CallKind, std::string>> names;
    std::set<std::string> properties;
    std::set<std::string> methods;
    for (const Member& member : type.members) {
      SCOPED_TRACE(std::string(type.name) + "." + std::string(member.name));
      EXPECT_TRUE(names.emplace(member.kind, folded(member.name)).second);
      (member.kind == CallKind::method ? methods : properties).insert(folded(member.name));
      const auto parameters = member.parameters;
      EXPECT_TRUE(
          std::ranges::is_partitioned(parameters, std::logical_not(), &Parameter::optional));
      std::set<std::string> arguments;
      for (const Parameter& each : parameters) {
        EXPECT_TRUE(arguments.insert(folded(each.name)).second) << each.name;
        EXPECT_FALSE(each.type.isVoid);
      }
      if (member.kind != CallKind::method) {
        EXPECT_EQ(parameters.size(), member.kind == CallKind::propertyPut ? 1U : 0U);
      }
      const ObjectRef object = type.create();
      EXPECT_EQ(&resolve(*object, Text(member.name.begin(), member.name.end()), member.kind),
                &member);
    }
    for (const std::string& name : properties) EXPECT_FALSE(methods.contains(name)) << name;
  }
}

// Order, names and kinds are published: whoever changes them shall see it in review.
TEST(Members, ListingEqualsTheGoldenFile) {
  std::ifstream file(MEMBERS_GOLDEN);
  const std::string golden{std::istreambuf_iterator<char>(file), {}};
  if (golden == listing()) return;
  std::ofstream(MEMBERS_ACTUAL) << listing();
  FAIL() << "the published members differ; see them with\n  diff " << MEMBERS_GOLDEN << ' '
         << MEMBERS_ACTUAL << "\nand copy the second over the first if that is meant";
}

}  // namespace
}  // namespace veltgeneral
