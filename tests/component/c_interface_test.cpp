// The C interface as another program has it, through the shared library alone: what every binding
// relies on.
#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "support/temporary_folder.h"
#include "veltgeneral/veltgeneral_c.h"
#include "veltgeneral/veltgeneral_host.h"

namespace veltgeneral {
namespace {

// A handle that is given back with the scope.
template <class T, void (*kGiveBack)(T*)>
struct Owned {
  explicit Owned(T* made = nullptr) : handle(made) {}
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() { kGiveBack(handle); }
  operator T*() const { return handle; }

  T* handle;
};

struct Value : Owned<vg_value, vg_value_free> {
  Value() : Owned(vg_value_new()) {}
  explicit Value(const char* utf8) : Value() { vg_value_set_utf8(handle, utf8, VG_TO_NUL); }
};

struct Handle : Owned<vg_object, vg_object_release> {
  using Owned::Owned;
  explicit Handle(const char* className) { vg_create(className, &handle, nullptr); }
};

std::string shown(const vg_value* value) {
  const char* text = "no text";
  vg_value_get_utf8(value, &text, nullptr);
  return text;
}

vg_status call(vg_object* object, const char* member, vg_call_kind kind,
               std::initializer_list<vg_value*> arguments, vg_value* result = nullptr,
               vg_error** error = nullptr) {
  return vg_call(object, member, kind, std::data(arguments), arguments.size(), result, error);
}

TEST(CInterface, ValuesTakeAnotherKindOrStayAsTheyAre) {
  // The text, the kind that it shall take, the answer, and the text of what it is then.
  static constexpr std::tuple<const char*, unsigned, vg_status, const char*> kCases[] = {
      {"70000", VG_INT16, 6, "70000"},
      {"0.1", VG_SINGLE, 0, "0.1"},
      {"1.00015", VG_CURRENCY, 0, "1.0002"},
      {"-0.25", VG_DECIMAL, 0, "-0.25"},
      {"2/29/2024", VG_DATE, 0, "2/29/2024"},
      {"1", VG_BOOLEAN, 0, "True"},
      {"1", VG_BYTES, 13, "1"},
      {"1", 99, 13, "1"}};
  for (const auto& [text, kind, status, after] : kCases) {
    const Value value(text);
    EXPECT_EQ(vg_value_convert(value, vg_kind{kind}), status) << text;
    EXPECT_EQ(vg_value_kind(value), status == 0 ? kind : VG_TEXT) << text;
    EXPECT_EQ(shown(value), after);
  }
  const Value text("70000");
  std::int16_t half = 3;
  float single = 0;
  const vg_decimal tooFine = {.low = 1, .mid = 0, .high = 0, .scale = 29, .negative = 0};
  EXPECT_EQ(vg_value_set_decimal(text, &tooFine), 5);
  EXPECT_EQ(vg_value_get_single(text, &single), 0);
  EXPECT_EQ(single, 70000.0F);
  EXPECT_EQ(vg_value_get_int16(text, &half), 6);
  EXPECT_EQ(half, 3);
  // Bytes and objects are never made from another kind.
  const std::uint8_t* bytes = nullptr;
  Handle object;
  EXPECT_EQ(vg_value_get_bytes(text, &bytes, nullptr), 13);
  EXPECT_EQ(vg_value_get_object(text, &object.handle), 13);
}

TEST(CInterface, TextsAreCounted) {
  constexpr std::string_view kUtf8("a\0\xC3\xA9\xF0\x9F\x98\x80", 9);  // with the final NUL
  constexpr TextView kUtf16(u"a\0é\U0001F600", 5);
  const Value value;
  const char* narrow = nullptr;
  const char16_t* wide = nullptr;
  std::size_t length = 0;
  EXPECT_EQ(vg_value_set_utf8(value, kUtf8.data(), 8), 0);
  EXPECT_EQ(vg_value_get_utf16(value, &wide, &length), 0);
  EXPECT_EQ(TextView(wide, length), kUtf16);
  EXPECT_EQ(vg_value_set_utf16(value, kUtf16.data(), 5), 0);
  EXPECT_EQ(vg_value_get_utf8(value, &narrow, &length), 0);
  EXPECT_EQ(std::string_view(narrow, length + 1), kUtf8);
  EXPECT_EQ(vg_value_set_utf8(value, nullptr, 1), 5);
  EXPECT_EQ(vg_value_set_utf8(value, nullptr, 0), 0);
  EXPECT_EQ(shown(value), "");
}

TEST(CInterface, ArraysAreReadAndWrittenInBulk) {
  const vg_bounds bounds[] = {{1, 3}, {-1, 0}};
  constexpr TextView kCells(u"a1\0b1\0\0a2\0b\0002\0c2\0", 17);
  constexpr std::size_t kLengths[] = {2, 2, 0, 2, 3, 2};
  const Value table;
  EXPECT_EQ(vg_value_set_array(table, 2, bounds), 0);
  EXPECT_EQ(vg_array_write(table, 0, 6, kCells.data(), kCells.size(), kLengths), 0);
  // What cannot be done whole is not done at all.
  const vg_bounds hollow = {1, 0};
  EXPECT_EQ(vg_array_write(table, 4, 2, u"new", 4, nullptr), 5);
  EXPECT_EQ(vg_array_write(table, 5, 2, u"n\0m", 4, nullptr), 9);
  EXPECT_EQ(vg_array_write(table, 5, 1, u"new", 3, &kLengths[4]), 5);  // no NUL behind it
  EXPECT_EQ(vg_value_set_array(table, 3, bounds), 5);
  EXPECT_EQ(vg_value_set_array(table, 1, &hollow), 9);

  char16_t text[32] = {u'?'};
  std::size_t lengths[6] = {};
  std::size_t units = 0;
  EXPECT_EQ(vg_array_read(table, 0, 6, text, kCells.size() - 1, lengths, &units), 0);
  EXPECT_EQ(units, kCells.size());
  EXPECT_EQ(lengths[4], 3u);
  EXPECT_EQ(vg_array_read(table, 4, 3, text, 32, nullptr, &units), 9);
  EXPECT_EQ(text[0], u'?');
  EXPECT_EQ(vg_array_read(table, 3, 3, text, 32, nullptr, &units), 0);
  EXPECT_EQ(TextView(text, units), kCells.substr(7));

  const std::int32_t cell[] = {3, 0};
  const char* narrow = nullptr;
  const char16_t* wide = nullptr;
  EXPECT_EQ(vg_array_set_utf8(table, cell, "\xE2\x82\xAC", VG_TO_NUL), 0);
  EXPECT_EQ(vg_array_get_utf8(table, cell, &narrow, nullptr), 0);
  EXPECT_EQ(vg_array_get_utf16(table, cell, &wide, &units), 0);
  EXPECT_EQ(fromUtf8(narrow), TextView(wide, units));
  EXPECT_EQ(vg_array_get_utf16(table, &cell[1], &wide, &units), 9);
  EXPECT_EQ(vg_array_shape(Value(), nullptr, nullptr, nullptr), 13);
}

TEST(CInterface, MembersAreCalledByName) {
  const Handle object("veltgeneral.errinfo");
  const Value number("5");
  const Value text("text");
  const Value result;
  const char* name[] = {"VNTSTEPINFO"};
  vg_value* fill[] = {number, text, number, text, text};
  EXPECT_EQ(vg_call_named(object, "ErrInfo", VG_METHOD, fill, 5, name, 1, result, nullptr), 0);
  EXPECT_EQ(vg_value_kind(result), VG_INT16);
  // In/out arguments come back in the caller's values; NULL is one left out.
  const Value out[4];
  EXPECT_EQ(call(object, "getInfo", VG_METHOD, {out[0], out[1], out[2], out[3], nullptr}), 0);
  EXPECT_EQ(vg_value_kind(out[0]), VG_INT32);
  EXPECT_EQ(shown(out[3]), "text");

  const vg_member* member = nullptr;
  EXPECT_EQ(vg_resolve(object, "stepINFO", VG_PROPERTY_GET, &member, nullptr), 0);
  EXPECT_EQ(vg_invoke(object, member, nullptr, 0, result, nullptr), 0);
  EXPECT_EQ(shown(result), "text");
  EXPECT_EQ(vg_invoke(Handle("FileUtility"), member, nullptr, 0, result, nullptr), 438);

  Owned<vg_error, vg_error_free> error;
  EXPECT_EQ(call(object, "nothing", VG_METHOD, {}, result, &error.handle), 438);
  EXPECT_STREQ(vg_error_description(error), "Object does not support this property or method");
  EXPECT_EQ(call(object, "clone", VG_METHOD, {nullptr}), 449);
  EXPECT_EQ(call(object, "clear", vg_call_kind{7}, {}), 5);
}

TEST(CInterface, CallersObjectsAreCalledBack) {
  // Keeps its last argument, and has one property, which fails.
  const vg_object_callbacks callbacks = {
      sizeof callbacks,
      [](void*, const char* name, vg_call_kind kind, vg_value* const* arguments, std::size_t count,
         vg_value* result, vg_error* raised) -> vg_status {
        if (kind == VG_METHOD) return vg_value_swap(result, arguments[count - 1]);
        if (std::string_view(name) != "vntStepInfo") return 438;
        vg_error_set(raised, 1234, "no step today");
        return 1234;
      },
      [](void* released) { ++*static_cast<int*>(released); }};
  const vg_object_callbacks hollow = {sizeof hollow, nullptr, nullptr};
  int released = 0;
  const Handle object("ErrInfo");
  const Value argument("from a record");
  const Value result;
  {
    const Handle mine(vg_object_new(&callbacks, &released));
    EXPECT_EQ(vg_object_context(mine, &callbacks), &released);
    EXPECT_EQ(vg_object_context(mine, &hollow), nullptr);
    EXPECT_EQ(vg_object_new(&hollow, &released), nullptr);
    // Called directly it may change its arguments; it has no names for them.
    const char* name[] = {"any"};
    EXPECT_EQ(call(mine, "take", VG_METHOD, {argument}, result), 0);
    EXPECT_EQ(shown(result), "from a record");
    EXPECT_EQ(vg_value_kind(argument), VG_EMPTY);
    EXPECT_EQ(vg_call_named(mine, "take", {}, &result.handle, 1, name, 1, nullptr, nullptr), 448);
    Owned<vg_error, vg_error_free> error;
    EXPECT_EQ(vg_value_set_object(argument, mine), 0);
    EXPECT_EQ(call(object, "ErrInfoNew", VG_METHOD, {argument}, nullptr, &error.handle), 1234);
    EXPECT_STREQ(vg_error_description(error), "no step today");
  }
  EXPECT_EQ(released, 0);
  const Handle record(vg_record_new());
  EXPECT_EQ(call(record, "VNTDESCRIPTIONINFO", VG_PROPERTY_PUT, {result}), 0);
  EXPECT_EQ(vg_value_set_object(argument, record), 0);
  EXPECT_EQ(released, 1);
  EXPECT_EQ(call(object, "ErrInfoNew", VG_METHOD, {argument}), 0);
  EXPECT_EQ(call(object, "descriptionInfo", VG_METHOD, {}, result), 0);
  EXPECT_EQ(shown(result), "from a record");
}

TEST(CInterface, DescriptionsEnd) {
  EXPECT_STREQ(vg_version(), VG_VERSION);
  EXPECT_EQ(vg_interface_version(), VG_INTERFACE_VERSION);
  const vg_class* global = vg_class_find("VELTGENERAL.veltglobal");
  const vg_class* first = vg_class_at(0);
  vg_parameter beyond;
  EXPECT_EQ(vg_member_parameter(vg_class_member(first, 0), 7, &beyond), 9);
  EXPECT_EQ(vg_enumeration_value(vg_class_enumeration(global, 0), 5, nullptr, nullptr), 9);
  EXPECT_EQ(vg_class_enumeration(global, vg_class_enumeration_count(global)), nullptr);
  EXPECT_EQ(vg_class_member(first, vg_class_member_count(first)), nullptr);
  EXPECT_EQ(vg_class_at(vg_class_count()), nullptr);
}

TEST(CInterface, HostsFindWhatWasRegistered) {
  const test::TemporaryFolder folder;
  ::setenv("VELTGENERAL_REGISTRY_DIR", folder.path().c_str(), 1);
  ::unsetenv("VELTGENERAL_LIBRARY");
  char path[4096];
  const auto registered = [&](const std::string& name, std::size_t capacity = sizeof path) {
    return vg_host_registered_path(name.c_str(), path, capacity) == 1;
  };
  EXPECT_FALSE(registered("ErrInfo"));
  EXPECT_EQ(DllRegisterServer(), 0);
  EXPECT_EQ(DllRegisterServer(), 0);
  EXPECT_FALSE(registered("X"));
  EXPECT_FALSE(registered("ErrInfo", 8));
  EXPECT_TRUE(registered("VELTGENERAL.fileutility"));
  Dl_info image;
  ASSERT_NE(::dladdr(vg_version(), &image), 0);
  EXPECT_TRUE(std::filesystem::equivalent(path, image.dli_fname)) << path;

  void* library = vg_host_open("ErrInfo");
  const vg_factory* factory = vg_host_factory(library, "VeltGeneral.FileUtility");
  EXPECT_EQ(vg_host_factory(library, "VeltGeneral.Nothing"), nullptr);
  {
    Handle object;
    ASSERT_EQ(factory->create(factory, &object.handle, nullptr), 0);
    EXPECT_EQ(vg_class_of(object), vg_class_find("FileUtility"));
    EXPECT_EQ(DllCanUnloadNow(), 1);
  }
  EXPECT_EQ(::dlclose(library), 0);

  EXPECT_EQ(DllUnregisterServer(), 0);
  EXPECT_FALSE(registered("ErrInfo"));
  // A folder in the registry's place cannot be written by anybody.
  std::filesystem::remove(folder / "machine.reg");
  std::filesystem::create_directory(folder / "machine.reg");
  EXPECT_EQ(DllRegisterServer(), 75);
}

// What a function answers to a first argument and nothing for the others.
template <class First, class... Others>
vg_status withOnly(std::type_identity_t<First> first, vg_status (*function)(First, Others...)) {
  return function(first, Others()...);
}

TEST(CInterface, NullIsAnErrorAndNeverACrash) {
  const Handle object("ErrInfo");
  const Value value;
  const Value array;
  EXPECT_EQ(vg_value_set_array(array, 0, nullptr), 0);
  const std::vector<vg_status> noObject = {
      withOnly(nullptr, vg_call), withOnly(nullptr, vg_resolve), withOnly(nullptr, vg_invoke)};
  EXPECT_EQ(noObject, std::vector<vg_status>(noObject.size(), 91));
  const std::vector<vg_status> nothingElse = {
      withOnly(nullptr, vg_create),           withOnly("ErrInfo", vg_create),
      withOnly("ErrInfo", DllGetClassObject), withOnly(object, vg_call),
      withOnly(object, vg_resolve),           withOnly(object, vg_invoke),
      withOnly(nullptr, vg_value_set_int32),  withOnly(nullptr, vg_value_swap),
      withOnly(value, vg_value_copy),         withOnly(value, vg_value_get_int32),
      withOnly(value, vg_value_get_utf8),     withOnly(value, vg_value_get_utf16),
      withOnly(value, vg_value_get_object),   withOnly(value, vg_value_set_decimal),
      withOnly(array, vg_array_shape),        withOnly(array, vg_array_set_utf8),
      withOnly(array, vg_array_read),         withOnly(nullptr, vg_array_write),
      withOnly(nullptr, vg_error_set),        withOnly(nullptr, vg_member_parameter)};
  EXPECT_EQ(nothingElse, std::vector<vg_status>(nothingElse.size(), 5));
  EXPECT_EQ(vg_call(object, "clear", VG_METHOD, nullptr, 1, nullptr, nullptr), 5);
  EXPECT_EQ(vg_call_named(object, "clear", {}, &value.handle, 1, nullptr, 1, nullptr, nullptr), 5);
  EXPECT_EQ(vg_value_set_object(value, nullptr), 0);
  EXPECT_EQ(vg_object_new(nullptr, nullptr), nullptr);
  EXPECT_STREQ(vg_class_name(vg_class_find(nullptr)), "");
  EXPECT_STREQ(vg_error_description(nullptr), "");
}

}  // namespace
}  // namespace veltgeneral
