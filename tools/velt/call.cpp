// velt call CLASS.MEMBER ARG...
#include <algorithm>
#include <deque>
#include <iostream>

#include "argument_text.h"
#include "command.h"
#include "file_io.h"
#include "member_path.h"
#include "values.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::tool {
namespace {

struct Options {
  std::string target;
  std::vector<std::string> arguments;
  std::vector<std::string> named;
  std::vector<std::string> properties;
  std::string output;
  bool json = false;
};

bool isRecord(const Variant& value) {
  const ObjectRef* object = std::get_if<ObjectRef>(&value);
  return object != nullptr && *object && classOf(**object) == nullptr;
}

bool isRaw(const Variant& value) {
  return kindOf(value) == Kind::text || kindOf(value) == Kind::bytes;
}

bool mayBeRaw(const ValueType& type) {
  return type.isVariant || (!type.isVoid && (type.kind == Kind::text || type.kind == Kind::bytes));
}

// One call: its object, its arguments, and what came of it.
class Call {
 public:
  explicit Call(const Options& options);

  void run();
  bool failed() const;
  // Whether the signature has a text or bytes to write to a file, and the first such value there
  // is.
  bool hasRaw() const;
  const Variant* raw() const;
  // Without `written`, which has gone to a file.
  Json json(const Variant* written) const;
  void print(std::ostream& out, const Variant* written) const;

 private:
  struct Changed {
    std::string_view name;
    const Variant* value;
  };

  const Variant* argument(std::size_t position) const;
  std::vector<Changed> changed() const;

  ObjectRef object_;
  const Member* member_ = nullptr;
  std::vector<Variant> positional_;
  struct Named {
    Text name;
    Variant value;
  };
  std::deque<Named> named_;
  Variant result_;
};

Call::Call(const Options& options) {
  const MemberPath path = splitMemberPath(options.target);
  if (path.member.empty()) {
    neededClass(path.className);
    throw UsageError("CLASS.MEMBER expected instead of '" + options.target + "'");
  }
  object_ = createObject(fromUtf8(path.className));
  member_ = &resolve(*object_, fromUtf8(path.member), CallKind::method);
  for (const std::string& each : options.arguments) positional_.push_back(parseArgument(each));
  for (const std::string& each : options.named) {
    NamedText parsed = parseNamed(each);
    named_.push_back({fromUtf8(parsed.name), std::move(parsed.value)});
  }
  for (const std::string& each : options.properties) {
    NamedText property = parseNamed(each);
    object_->call(fromUtf8(property.name), CallKind::propertyPut, {&property.value, 1});
  }
}

const Variant* Call::argument(std::size_t position) const {
  if (position < positional_.size()) return &positional_[position];
  const std::string_view name = member_->parameters[position].name;
  const auto found = std::ranges::find_if(
      named_, [&](const Named& each) { return sameName(toUtf8(each.name), name); });
  return found == named_.end() ? nullptr : &found->value;
}

void Call::run() {
  // What the member only gives back need not be said.
  const auto parameters = member_->parameters;
  for (std::size_t i = positional_.size(); i < parameters.size(); ++i) {
    const bool given = parameters[i].direction == Direction::inOut && !parameters[i].optional;
    if (given && argument(i) == nullptr) {
      named_.push_back({fromUtf8(parameters[i].name), Variant()});
    }
  }
  std::vector<NamedArgument> named;
  for (Named& each : named_) named.push_back({each.name, &each.value});
  result_ = invoke(*object_, *member_, positional_, named);
}

bool Call::failed() const {
  const ObjectRef* result = std::get_if<ObjectRef>(&result_);
  if (result == nullptr || !*result) return false;
  const Class* type = classOf(**result);
  if (type == nullptr || type->name != "ErrInfo") return false;
  return !std::get<bool>((*result)->call(u"isSuccess", CallKind::method, {}));
}

std::vector<Call::Changed> Call::changed() const {
  std::vector<Changed> out;
  const auto parameters = member_->parameters;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const Variant* value = argument(i);
    if (value == nullptr) continue;
    // A record is the caller's object, so the member may have put fields into it.
    if (parameters[i].direction == Direction::inOut || isRecord(*value)) {
      out.push_back({parameters[i].name, value});
    }
  }
  return out;
}

bool Call::hasRaw() const {
  return mayBeRaw(member_->result) ||
         std::ranges::any_of(member_->parameters, [](const Parameter& parameter) {
           return parameter.direction == Direction::inOut && mayBeRaw(parameter.type);
         });
}

const Variant* Call::raw() const {
  if (isRaw(result_)) return &result_;
  const auto values = changed();
  // The last one: texts that go in and out stand before those that only come out.
  const auto found = std::find_if(values.rbegin(), values.rend(),
                                  [](const Changed& each) { return isRaw(*each.value); });
  return found == values.rend() ? nullptr : found->value;
}

Json Call::json(const Variant* written) const {
  Json out = Json::object();
  if (written != &result_) out["result"] = toJson(result_);
  Json& arguments = out["arguments"] = Json::object();
  for (const Changed& each : changed()) {
    if (each.value != written) arguments[std::string(each.name)] = toJson(*each.value);
  }
  return out;
}

// "name: value", or the fields below their name.
void printNamed(std::ostream& out, std::string_view name, const Json& value) {
  const std::string text = value.is_object() ? std::string() : toReadable(value);
  out << name << (text.empty() ? ":" : ": ") << text << '\n';
  if (!value.is_object()) return;
  for (const auto& [field, content] : value.items()) printNamed(out, "  " + field, content);
}

void Call::print(std::ostream& out, const Variant* written) const {
  const auto values = changed();
  const bool shown = !member_->result.isVoid && written != &result_;
  const Json result = shown ? toJson(result_) : Json();
  if (shown && values.empty() && !result.is_object()) {
    out << toReadable(result) << '\n';
    return;
  }
  if (shown) printNamed(out, "result", result);
  for (const Changed& each : values) {
    if (each.value != written) printNamed(out, each.name, toJson(*each.value));
  }
}

void writeRaw(const Variant& value, const std::string& path) {
  if (const Bytes* bytes = std::get_if<Bytes>(&value)) {
    writeWhole(path, {reinterpret_cast<const char*>(bytes->data()), bytes->size()});
  } else {
    writeWhole(path, toUtf8(std::get<Text>(value)));
  }
}

int run(const Options& options) {
  Call call(options);
  if (!options.output.empty() && !call.hasRaw()) {
    throw UsageError("--output: the member gives neither a text nor bytes");
  }
  call.run();
  const bool failed = call.failed();
  const Variant* written = nullptr;
  if (!options.output.empty() && !failed) {
    written = call.raw();
    if (written == nullptr)
      throw std::runtime_error("--output: neither a text nor bytes came back");
    writeRaw(*written, options.output);
  }
  if (options.output == "-" && written != nullptr) return kSucceeded;
  if (options.json) {
    printJson(std::cout, call.json(written));
  } else {
    call.print(std::cout, written);
  }
  return failed ? kFailed : kSucceeded;
}

void declare(CLI::App& command, Options& options) {
  addText(command, "CLASS.MEMBER", options.target, "The member; a property is read")->required();
  addTexts(command, "ARG", options.arguments, "Arguments by position");
  addEach(command, "--arg", options.named, "An argument by its name")->type_name("NAME=ARG");
  addEach(command, "--set", options.properties, "Assign a property before the call, in this order")
      ->type_name("NAME=ARG");
  addText(command, "-o,--output", options.output,
          "Write the text or the bytes that the call gives to a file (- is standard output)")
      ->type_name("FILE");
  addJson(command, options.json);
}

}  // namespace

void addCall(CLI::App& program, Action& action) {
  addCommand<Options>(program, "call", "Call a member of a new object", action, &declare, &run)
      .footer(
          std::string(kArgumentHelp) +
          "In/out arguments may be left out; their new values are printed under their names.\n"
          "\n"
          "Exit status: 1 where the result is an ErrInfo that is no success, 2 where the call\n"
          "could not be made or raised an error.\n"
          "\n"
          "Examples:\n"
          "  velt call FileUtility.readFile orders.csv --output orders.txt\n"
          "  velt call FileUtility.getArrayFromCsvFile orders.csv --arg lNumRows=15 --json\n"
          "  velt call FileUtility.writeCsvFileFromArray out.csv \\\n"
          "      'json:[[\"a\",\"b\"],[\"c\",\"d\"]]' 2 2\n"
          "  velt call Funzioni.isDateYYYYMMDD 20240229\n"
          "  velt call cInifile.Value --set Path=/tmp/a.ini --set section=Main --set key=Name\n");
}

}  // namespace veltgeneral::tool
