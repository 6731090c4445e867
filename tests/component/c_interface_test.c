/* The C interface from a C program: what every binding relies on. */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <sys/stat.h>
#include <unistd.h>

#include "veltgeneral/veltgeneral_c.h"
#include "veltgeneral/veltgeneral_host.h"

static int failures = 0;

static void check(int holds, const char* what, int line) {
  if (holds) return;
  fprintf(stderr, "line %d: %s\n", line, what);
  ++failures;
}
#define CHECK(condition) check((condition), #condition, __LINE__)

static vg_value* text(const char* utf8) {
  vg_value* value = vg_value_new();
  vg_value_set_utf8(value, utf8, VG_TO_NUL);
  return value;
}

static vg_value* number(int32_t held) {
  vg_value* value = vg_value_new();
  vg_value_set_int32(value, held);
  return value;
}

static int holds(const vg_value* value, const char* expected) {
  const char* found = NULL;
  return vg_value_get_utf8(value, &found, NULL) == 0 && strcmp(found, expected) == 0;
}

static void free_all(vg_value** values, size_t count) {
  for (size_t i = 0; i < count; ++i) vg_value_free(values[i]);
}

static void values_keep_kind_and_content(void) {
  vg_value* value = vg_value_new();
  CHECK(vg_value_kind(value) == VG_EMPTY);
  int32_t whole = 0;
  int16_t half = 0;
  double real = 0;
  int64_t currency = 0;
  CHECK(vg_value_set_int16(value, -7) == 0 && vg_value_kind(value) == VG_INT16);
  CHECK(vg_value_get_int32(value, &whole) == 0 && whole == -7);
  CHECK(vg_value_set_currency(value, 12345) == 0 && vg_value_kind(value) == VG_CURRENCY);
  CHECK(vg_value_get_currency(value, &currency) == 0 && currency == 12345);
  CHECK(vg_value_get_double(value, &real) == 0 && fabs(real - 1.2345) < 1e-12);
  CHECK(vg_value_set_date(value, -1.5) == 0 && vg_value_kind(value) == VG_DATE);
  CHECK(vg_value_get_date(value, &real) == 0 && fabs(real + 1.5) < 1e-12);
  const vg_decimal exact = {.low = 1, .mid = 2, .high = 3, .scale = 28, .negative = 1};
  vg_decimal back = {0};
  CHECK(vg_value_set_decimal(value, &exact) == 0 && vg_value_kind(value) == VG_DECIMAL);
  CHECK(vg_value_get_decimal(value, &back) == 0 && back.low == 1 && back.mid == 2 &&
        back.high == 3 && back.scale == 28 && back.negative == 1);
  const vg_decimal too_fine = {.scale = 29};
  CHECK(vg_value_set_decimal(value, &too_fine) == 5 && vg_value_kind(value) == VG_DECIMAL);

  /* A getter converts and leaves the value; where it cannot, it leaves its target too. */
  CHECK(vg_value_set_utf8(value, "70000", VG_TO_NUL) == 0);
  CHECK(vg_value_get_int32(value, &whole) == 0 && whole == 70000);
  half = 3;
  CHECK(vg_value_get_int16(value, &half) == 6 && half == 3);
  CHECK(vg_value_kind(value) == VG_TEXT);
  CHECK(vg_value_convert(value, VG_INT16) == 6 && vg_value_kind(value) == VG_TEXT);
  CHECK(vg_value_convert(value, VG_BYTES) == 13 && vg_value_convert(value, (vg_kind)99) == 13);
  static const struct {
    const char* text;
    vg_kind kind;
    const char* again; /* as a text */
  } kinds[] = {
      {"70000", VG_INT32, "70000"},   {"0.1", VG_SINGLE, "0.1"},
      {"1e20", VG_DOUBLE, "1E+20"},   {"1.5", VG_CURRENCY, "1.5"},
      {"-0.25", VG_DECIMAL, "-0.25"}, {"2/29/2024", VG_DATE, "2/29/2024"},
      {"1", VG_BOOLEAN, "True"},      {"", VG_TEXT, ""},
  };
  for (size_t i = 0; i < sizeof kinds / sizeof *kinds; ++i) {
    CHECK(vg_value_set_utf8(value, kinds[i].text, VG_TO_NUL) == 0);
    CHECK(vg_value_convert(value, kinds[i].kind) == 0 && vg_value_kind(value) == kinds[i].kind);
    CHECK(vg_value_convert(value, VG_TEXT) == 0 && holds(value, kinds[i].again));
  }
  float single = 0;
  CHECK(vg_value_set_utf8(value, "0.1", VG_TO_NUL) == 0);
  CHECK(vg_value_get_single(value, &single) == 0 && single == 0.1f);
  CHECK(vg_value_set_null(value) == 0 && vg_value_get_int32(value, &whole) == 94);
  CHECK(vg_value_set_missing(value) == 0 && vg_value_kind(value) == VG_MISSING);
  vg_value_free(value);
}

static void texts_and_bytes_are_counted(void) {
  vg_value* value = vg_value_new();
  const char* utf8 = NULL;
  const char16_t* utf16 = NULL;
  const uint8_t* bytes = NULL;
  size_t length = 0;
  CHECK(vg_value_set_utf8(value, "a\0\xC3\xA9\xF0\x9F\x98\x80", 8) == 0);
  CHECK(vg_value_get_utf16(value, &utf16, &length) == 0 && length == 5);
  CHECK(memcmp(utf16, u"a\0\u00E9\xD83D\xDE00", 10) == 0);
  CHECK(vg_value_get_utf8(value, &utf8, &length) == 0 && length == 8 && utf8[8] == 0);
  CHECK(memcmp(utf8, "a\0\xC3\xA9\xF0\x9F\x98\x80", 8) == 0);
  CHECK(vg_value_set_utf16(value, u"x\0y", 3) == 0);
  CHECK(vg_value_get_utf16(value, &utf16, &length) == 0 && length == 3);
  CHECK(vg_value_set_utf8(value, NULL, 0) == 0 && holds(value, ""));
  CHECK(vg_value_set_utf8(value, NULL, 1) == 5 && vg_value_set_utf16(value, NULL, VG_TO_NUL) == 5);
  CHECK(vg_value_get_bytes(value, &bytes, &length) == 13);
  CHECK(vg_value_set_bytes(value, "\0\xFF", 2) == 0);
  CHECK(vg_value_get_bytes(value, &bytes, &length) == 0 && length == 2 && bytes[1] == 0xFF);
  vg_value_free(value);
}

static void arrays_are_read_and_written_in_bulk(void) {
  enum { kFields = 3, kRows = 2, kCells = kFields * kRows };
  const vg_bounds bounds[2] = {{1, kFields}, {-1, kRows - 2}};
  vg_value* table = vg_value_new();
  int32_t dimensions = 7;
  size_t cells = 0;
  CHECK(vg_value_set_array(table, 0, NULL) == 0);
  CHECK(vg_array_shape(table, &dimensions, NULL, &cells) == 0 && dimensions == 0 && cells == 0);
  CHECK(vg_array_write(table, 0, 0, NULL, 0, NULL) == 0);
  CHECK(vg_value_set_array(table, 2, bounds) == 0);

  const char16_t content[] = u"a1\0b1\0\0a2\0b\0002\0c2";
  const size_t lengths[kCells] = {2, 2, 0, 2, 3, 2};
  const size_t units = sizeof content / sizeof *content;
  CHECK(vg_array_write(table, 0, kCells, content, units, lengths) == 0);
  const int32_t last[2] = {3, 0};
  const int32_t outside[2] = {3, 1};
  const char* cell = NULL;
  size_t length = 0;
  CHECK(vg_array_get_utf8(table, last, &cell, &length) == 0 && length == 2 && !strcmp(cell, "c2"));
  CHECK(vg_array_get_utf8(table, outside, &cell, &length) == 9);
  const char16_t* wide = NULL;
  CHECK(vg_array_get_utf16(table, last, &wide, &length) == 0 && length == 2 && wide[1] == u'2');
  CHECK(vg_array_get_utf16(table, outside, &wide, &length) == 9);
  CHECK(vg_array_set_utf8(table, last, "\xE2\x82\xAC", VG_TO_NUL) == 0);

  size_t needed = 0;
  size_t found[kCells] = {0};
  char16_t read[32];
  CHECK(vg_array_read(table, 0, kCells, NULL, 0, NULL, &needed) == 0 && needed == units - 1);
  memset(read, 0x55, sizeof read);
  CHECK(vg_array_read(table, 0, kCells, read, needed - 1, NULL, &needed) == 0 && read[0] == 0x5555);
  CHECK(vg_array_read(table, 3, 3, read, 32, found, &needed) == 0 && needed == 9);
  CHECK(memcmp(read, u"a2\0b\0002\0\u20AC", 9 * sizeof *read) == 0 && found[1] == 3);
  CHECK(vg_array_read(table, 4, 3, read, 32, found, &needed) == 9);

  /* What cannot be written whole is not written at all. */
  CHECK(vg_array_write(table, 0, 2, u"new", 4, NULL) == 5);
  CHECK(vg_array_write(table, 5, 2, u"n\0m", 4, NULL) == 9);
  const int32_t first[2] = {1, -1};
  CHECK(vg_array_get_utf8(table, first, &cell, NULL) == 0 && !strcmp(cell, "a1"));
  CHECK(vg_value_set_array(table, 3, bounds) == 5);
  const vg_bounds hollow = {1, 0};
  CHECK(vg_value_set_array(table, 1, &hollow) == 9 && vg_value_kind(table) == VG_TEXT_ARRAY);
  vg_value_free(table);
}

static void members_are_called_by_name(void) {
  vg_object* object = NULL;
  vg_error* error = NULL;
  CHECK(vg_create("veltgeneral.errinfo", &object, &error) == 0 && error == NULL);
  vg_value* fill[] = {number(5), text("d"), number(1), text("l"), text("step")};
  vg_value* result = vg_value_new();
  const char* names[] = {"VNTSTEPINFO"};
  CHECK(vg_call_named(object, "ErrInfo", VG_METHOD, fill, 5, names, 1, result, NULL) == 0);
  CHECK(vg_value_kind(result) == VG_INT16);
  CHECK(vg_call(object, "stepinfo", VG_PROPERTY_GET, NULL, 0, result, NULL) == 0);
  CHECK(holds(result, "step"));

  /* In/out arguments come back in the caller's values; NULL is one left out. */
  vg_value* out[] = {vg_value_new(), vg_value_new(), vg_value_new(), vg_value_new(), NULL};
  CHECK(vg_call(object, "getInfo", VG_METHOD, out, 5, NULL, NULL) == 0);
  CHECK(vg_value_kind(out[0]) == VG_INT32 && holds(out[0], "5") && holds(out[3], "l"));

  const vg_member* member = NULL;
  CHECK(vg_resolve(object, "isSUCCESS", VG_METHOD, &member, NULL) == 0);
  CHECK(vg_invoke(object, member, NULL, 0, result, NULL) == 0);
  CHECK(vg_value_kind(result) == VG_BOOLEAN && holds(result, "False"));

  vg_object* other = NULL;
  vg_object* copy = NULL;
  CHECK(vg_create("FileUtility", &other, NULL) == 0);
  CHECK(vg_invoke(other, member, NULL, 0, result, NULL) == 438);
  CHECK(vg_call(object, "clone", VG_METHOD, &out[4], 1, NULL, NULL) == 449);
  CHECK(vg_call(object, "clone", VG_METHOD, out, 1, result, NULL) == 0);
  CHECK(vg_value_get_object(out[0], &copy) == 0 && vg_class_of(copy) == vg_class_of(object));
  vg_object_release(copy);
  vg_object_release(other);

  CHECK(vg_call(object, "nothing", VG_METHOD, NULL, 0, result, &error) == 438);
  CHECK(vg_error_number(error) == 438 && strstr(vg_error_description(error), "support") != NULL);
  vg_error_free(error);
  CHECK(vg_call(object, "clear", VG_METHOD, fill, 1, result, &error) == 450 && error != NULL);
  vg_error_free(error);
  CHECK(vg_call(object, "clear", (vg_call_kind)7, NULL, 0, result, NULL) == 5);
  CHECK(vg_create("Nothing", &object, &error) == 429 && vg_error_number(error) == 429);
  vg_error_free(error);
  free_all(fill, 5);
  free_all(out, 5);
  vg_value_free(result);
  vg_object_release(object);
}

/* A record whose only field is a number; everything else is an error of its own. */
typedef struct Record {
  int asked;
  int released;
} Record;

static vg_status record_call(void* context, const char* name, vg_call_kind kind,
                             vg_value* const* arguments, size_t count, vg_value* result,
                             vg_error* raised) {
  ++((Record*)context)->asked;
  if (kind == VG_METHOD) return vg_value_swap(result, arguments[count - 1]);
  if (strcmp(name, "vntNumberInfo") == 0) return vg_value_set_utf8(result, "12", VG_TO_NUL);
  if (strcmp(name, "vntStepInfo") != 0) return 438;
  vg_error_set(raised, 1234, "no step today");
  return 1234;
}

static void record_released(void* context) { ++((Record*)context)->released; }

static void callers_objects_are_called_back(void) {
  Record record = {0, 0};
  const vg_object_callbacks callbacks = {sizeof callbacks, record_call, record_released};
  const vg_object_callbacks hollow = {sizeof hollow, NULL, NULL};
  CHECK(vg_object_new(&hollow, &record) == NULL && vg_object_new(NULL, NULL) == NULL);
  vg_object* mine = vg_object_new(&callbacks, &record);
  CHECK(vg_object_context(mine, &callbacks) == &record && vg_class_of(mine) == NULL);

  vg_object* object = NULL;
  vg_error* error = NULL;
  CHECK(vg_create("ErrInfo", &object, NULL) == 0);
  vg_value* argument = vg_value_new();
  CHECK(vg_value_set_object(argument, mine) == 0);
  vg_object_release(mine);
  CHECK(vg_call(object, "ErrInfoNew", VG_METHOD, &argument, 1, NULL, &error) == 1234);
  CHECK(strcmp(vg_error_description(error), "no step today") == 0 && record.asked == 7);
  vg_error_free(error);

  /* Called directly, it can change its arguments; names it does not know. */
  CHECK(vg_value_get_object(argument, &mine) == 0 &&
        vg_object_context(mine, &callbacks) == &record);
  vg_value* values[] = {number(9)};
  vg_value* result = vg_value_new();
  const char* names[] = {"any"};
  CHECK(vg_call(mine, "take", VG_METHOD, values, 1, result, NULL) == 0);
  CHECK(holds(result, "9") && vg_value_kind(values[0]) == VG_EMPTY);
  CHECK(vg_call_named(mine, "take", VG_METHOD, values, 1, names, 1, NULL, NULL) == 448);
  vg_object_release(mine);
  CHECK(record.released == 0);
  vg_value_free(argument);
  CHECK(record.released == 1);

  vg_object* fields = vg_record_new();
  CHECK(vg_value_set_utf8(values[0], "from a record", VG_TO_NUL) == 0);
  CHECK(vg_call(fields, "vntDescriptionInfo", VG_PROPERTY_PUT, values, 1, NULL, NULL) == 0);
  CHECK(vg_value_set_object(values[0], fields) == 0);
  CHECK(vg_call(object, "ErrInfoNew", VG_METHOD, values, 1, NULL, NULL) == 0);
  CHECK(vg_call(object, "descriptionInfo", VG_METHOD, NULL, 0, result, NULL) == 0);
  CHECK(holds(result, "from a record"));
  vg_object_release(fields);
  vg_value_free(values[0]);
  vg_value_free(result);
  vg_object_release(object);
}

static void classes_describe_themselves(void) {
  CHECK(vg_interface_version() >= VG_INTERFACE_VERSION && strcmp(vg_version(), VG_VERSION) == 0);
  const vg_class* type = vg_class_find("VELTGENERAL.errinfo");
  CHECK(type == vg_class_at(0) && strcmp(vg_class_name(type), "ErrInfo") == 0);
  CHECK(vg_class_find("Nothing") == NULL && vg_class_at(vg_class_count()) == NULL);
  const vg_member* fill = vg_class_member(type, 0);
  vg_parameter last;
  vg_type result;
  CHECK(strcmp(vg_member_name(fill), "ErrInfo") == 0 && vg_member_kind(fill) == VG_METHOD);
  CHECK(vg_member_parameter_count(fill) == 7 && vg_member_parameter(fill, 7, &last) == 9);
  CHECK(vg_member_parameter(fill, 6, &last) == 0 && strcmp(last.name, "vntStepInfo") == 0);
  CHECK(last.optional == 1 && last.in_out == 0 && last.type.is_variant == 1);
  CHECK(vg_member_parameter(fill, 2, &last) == 0 && last.type.kind == VG_INT32);
  CHECK(strcmp(last.type.name, "typeInfoCostant") == 0);
  CHECK(vg_member_result(fill, &result) == 0 && result.kind == VG_INT16 && !*result.name);
  CHECK(vg_class_member(type, vg_class_member_count(type)) == NULL);

  const vg_class* global = vg_class_find("VeltGlobal");
  const vg_enumeration* first = vg_class_enumeration(global, 0);
  const char* name = NULL;
  int32_t value = 0;
  CHECK(strcmp(vg_enumeration_name(first), "errInfoCostant") == 0);
  CHECK(vg_enumeration_count(first) == 5 && vg_enumeration_value(first, 1, &name, &value) == 0);
  CHECK(strcmp(name, "eiABORTED") == 0 && value == VG_eiABORTED);
  CHECK(vg_enumeration_value(first, 5, NULL, NULL) == 9);
  CHECK(vg_class_enumeration(global, vg_class_enumeration_count(global)) == NULL);
  CHECK(vg_class_enumeration_count(type) == 0 && vg_class_member_count(global) == 0);
}

static void entry_points_make_and_count_objects(void) {
  const vg_factory* factory = NULL;
  vg_object* object = NULL;
  CHECK(DllCanUnloadNow() == 0);
  CHECK(DllGetClassObject("VeltGeneral.Nothing", &factory) == 429 && factory == NULL);
  CHECK(DllGetClassObject("VeltGeneral.FileUtility", &factory) == 0);
  CHECK(factory->create(factory, &object, NULL) == 0);
  CHECK(vg_class_of(object) == vg_class_find("FileUtility"));
  vg_object_retain(object);
  vg_object_release(object);
  CHECK(DllCanUnloadNow() == 1);
  vg_object_release(object);
  CHECK(DllCanUnloadNow() == 0);
}

static void hosts_find_what_was_registered(void) {
  char folder[] = "/tmp/veltgeneral-host-XXXXXX";
  char hive[64];
  char path[4096];
  char again[4096];
  struct stat of_path;
  struct stat of_image;
  Dl_info image;
  CHECK(mkdtemp(folder) != NULL);
  snprintf(hive, sizeof hive, "%s/machine.reg", folder);
  setenv("VELTGENERAL_REGISTRY_DIR", folder, 1);
  unsetenv("VELTGENERAL_LIBRARY");
  CHECK(!vg_host_registered_path("ErrInfo", path, sizeof path));
  CHECK(DllRegisterServer() == 0 && DllRegisterServer() == 0);
  CHECK(vg_host_registered_path("ErrInfo", path, sizeof path));
  CHECK(vg_host_registered_path("VELTGENERAL.fileutility", again, sizeof again));
  CHECK(strcmp(path, again) == 0 && path[0] == '/');
  CHECK(!vg_host_registered_path("ErrInfo", again, 8) && !vg_host_registered_path("X", again, 8));
  const char* inside = vg_version();
  CHECK(dladdr(inside, &image) != 0 && stat(image.dli_fname, &of_image) == 0);
  CHECK(stat(path, &of_path) == 0 && of_path.st_ino == of_image.st_ino);

  void* library = vg_host_open("VeltGeneral.ErrInfo");
  const vg_factory* factory = vg_host_factory(library, "VeltGeneral.ErrInfo");
  CHECK(factory != NULL && strcmp(factory->class_name, "ErrInfo") == 0);
  CHECK(vg_host_factory(library, "VeltGeneral.Nothing") == NULL);
  CHECK(dlclose(library) == 0);
  CHECK(DllUnregisterServer() == 0 && !vg_host_registered_path("ErrInfo", path, sizeof path));

  /* A folder in the registry's place cannot be written by anybody. */
  CHECK(unlink(hive) == 0 && mkdir(hive, 0700) == 0);
  CHECK(DllRegisterServer() == 75);
  CHECK(rmdir(hive) == 0);
  char command[64];
  snprintf(command, sizeof command, "rm -rf %s", folder);
  CHECK(system(command) == 0);
}

typedef struct Events {
  int calls, fail_at;
} Events;

static vg_status on_events(void* context, vg_error* raised) {
  Events* events = context;
  if (++events->calls < events->fail_at) return 0;
  vg_error_set(raised, 1234, "that is enough");
  return 1234;
}

static int32_t sort_with(vg_value* array, char* description, size_t size) {
  vg_object* functions = NULL;
  vg_object* result = NULL;
  CHECK(vg_create("Funzioni", &functions, NULL) == 0);
  vg_value* arguments[] = {array, number(1), number(500), number(1), number(5), number(1)};
  vg_value* answer = vg_value_new();
  CHECK(vg_call(functions, "quickSortArray", VG_METHOD, arguments, 6, answer, NULL) == 0);
  CHECK(vg_value_get_object(answer, &result) == 0);
  int32_t status = -1;
  const char* text_ = NULL;
  CHECK(vg_call(result, "numberInfo", VG_PROPERTY_GET, NULL, 0, answer, NULL) == 0);
  CHECK(vg_value_get_int32(answer, &status) == 0);
  CHECK(vg_call(result, "descriptionInfo", VG_PROPERTY_GET, NULL, 0, answer, NULL) == 0);
  CHECK(vg_value_get_utf8(answer, &text_, NULL) == 0);
  snprintf(description, size, "%s", text_);
  vg_object_release(result);
  vg_object_release(functions);
  free_all(arguments + 1, 5);
  vg_value_free(answer);
  return status;
}

static void host_events_are_served_and_end_a_sort(void) {
  vg_value* array = vg_value_new();
  const vg_bounds bounds = {1, 500};
  char description[64];
  CHECK(vg_value_set_array(array, 1, &bounds) == 0);
  for (int32_t i = 1; i <= 500; ++i) {
    char cell[8];
    const int length = snprintf(cell, sizeof cell, "%03d", (int)(i * 7 % 500));
    CHECK(vg_array_set_utf8(array, &i, cell, (size_t)length) == 0);
  }
  Events events = {0, 3};
  CHECK(vg_set_host_events(&on_events, &events) == 0);
  CHECK(sort_with(array, description, sizeof description) == 1234 && events.calls == 3);
  CHECK(strcmp(description, "that is enough") == 0);
  events.fail_at = 1 << 30;
  CHECK(sort_with(array, description, sizeof description) == 0 && events.calls > 3);
  const int calls = events.calls;
  CHECK(vg_set_host_events(NULL, NULL) == 0);
  CHECK(sort_with(array, description, sizeof description) == 0 && events.calls == calls);
  vg_value_free(array);
}

static void null_is_an_error_and_never_a_crash(void) {
  vg_value* value = vg_value_new();
  vg_object* object = NULL;
  const vg_member* member = NULL;
  const vg_factory* factory = NULL;
  vg_error* error = NULL;
  const int32_t index[2] = {1, 1};
  CHECK(vg_create(NULL, &object, NULL) == 5 && vg_create("ErrInfo", NULL, NULL) == 5);
  CHECK(vg_call(NULL, "clear", VG_METHOD, NULL, 0, NULL, &error) == 91);
  CHECK(vg_error_number(error) == 91);
  vg_error_free(error);
  CHECK(vg_resolve(NULL, "clear", VG_METHOD, &member, NULL) == 91);
  CHECK(vg_invoke(NULL, member, NULL, 0, NULL, NULL) == 91);
  CHECK(vg_create("ErrInfo", &object, NULL) == 0);
  CHECK(vg_call(object, NULL, VG_METHOD, NULL, 0, NULL, NULL) == 5);
  CHECK(vg_call(object, "clear", VG_METHOD, NULL, 1, NULL, NULL) == 5);
  CHECK(vg_call_named(object, "clear", VG_METHOD, &value, 1, NULL, 1, NULL, NULL) == 5);
  CHECK(vg_invoke(object, NULL, NULL, 0, NULL, NULL) == 5);
  CHECK(vg_resolve(object, "clear", VG_METHOD, NULL, NULL) == 5);
  CHECK(vg_value_set_int32(NULL, 1) == 5 && vg_value_get_int32(value, NULL) == 5);
  CHECK(vg_value_get_utf8(NULL, NULL, NULL) == 5 && vg_value_get_utf8(value, NULL, NULL) == 5);
  CHECK(vg_value_get_utf16(value, NULL, NULL) == 5 && vg_value_copy(value, NULL) == 5);
  CHECK(vg_value_swap(NULL, value) == 5 && vg_value_convert(NULL, VG_TEXT) == 5);
  CHECK(vg_value_set_object(value, NULL) == 0 && vg_value_kind(value) == VG_OBJECT);
  CHECK(vg_value_get_object(value, NULL) == 5 && vg_value_kind(NULL) == VG_EMPTY);
  CHECK(vg_array_shape(value, NULL, NULL, NULL) == 13 &&
        vg_array_shape(NULL, NULL, NULL, NULL) == 5);
  CHECK(vg_value_set_array(value, 1, NULL) == 5 && vg_value_set_array(value, 0, NULL) == 0);
  CHECK(vg_array_set_utf8(value, NULL, "x", 1) == 5 &&
        vg_array_set_utf8(value, index, "x", 1) == 9);
  CHECK(vg_array_read(value, 0, 0, NULL, 0, NULL, NULL) == 5);
  CHECK(vg_member_parameter(NULL, 0, NULL) == 5 && vg_member_result(NULL, NULL) == 5);
  CHECK(vg_member_parameter_count(NULL) == 0 && vg_class_member(NULL, 0) == NULL);
  CHECK(!*vg_member_name(NULL) && !*vg_class_name(NULL) && vg_class_find(NULL) == NULL);
  CHECK(DllGetClassObject(NULL, &factory) == 5 && DllGetClassObject("ErrInfo", NULL) == 5);
  CHECK(vg_error_number(NULL) == 0 && !*vg_error_description(NULL));
  CHECK(vg_error_set(NULL, 5, NULL) == 5 && vg_object_context(NULL, NULL) == NULL);
  CHECK(vg_object_retain(NULL) == NULL);
  vg_object_release(NULL);
  vg_error_free(NULL);
  vg_value_free(NULL);
  vg_object_release(object);
  vg_value_free(value);
}

int main(void) {
  values_keep_kind_and_content();
  texts_and_bytes_are_counted();
  arrays_are_read_and_written_in_bulk();
  members_are_called_by_name();
  callers_objects_are_called_back();
  classes_describe_themselves();
  entry_points_make_and_count_objects();
  hosts_find_what_was_registered();
  host_events_are_served_and_end_a_sort();
  null_is_an_error_and_never_a_crash();
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
