/* VeltGeneral for C, and for every language that can call C. Plain C11.
 *
 * Conventions
 *
 *  1. Handles. `vg_object` is counted: whoever is given one owns one count and gives it back with
 *     vg_object_release. `vg_value` and `vg_error` have one owner, who frees them with
 *     vg_value_free and vg_error_free. `vg_class`, `vg_member`, `vg_enumeration` and `vg_factory`
 *     belong to the library and live as long as it is loaded.
 *  2. Texts. UTF-8 as `const char*`, ending in NUL where no length is asked for; UTF-16 as
 *     `const char16_t*` in the machine's byte order. Lengths count code units, without a final NUL;
 *     VG_TO_NUL as a length means "up to the NUL". A text may hold NUL. Malformed text becomes
 *     U+FFFD at the rim. Published names are ASCII and match without regard to case.
 *  3. What is borrowed. A text, byte sequence or cell that a value gives out belongs to that value
 *     and ends with its next change or the next question to it; the library always adds a NUL to
 *     texts in UTF-8.
 *  4. Errors. A function that may fail returns 0 or the number of the run-time error (5 invalid
 *     call, 6 overflow, 7 out of memory, 9 subscript, 13 type mismatch, 91 object not set, ...),
 *     and has then changed nothing. Where `vg_error** error` is the last argument and not NULL, it
 *     receives NULL, or the number with its description, to be freed by the caller. No C++
 *     exception ever leaves.
 *  5. NULL. A NULL object is error 91; any other NULL that is needed is error 5. Freeing and
 *     releasing NULL does nothing.
 *  6. Threads. Different handles may be used on different threads at once; one object, and one
 *     value, belongs to one thread at a time. Retaining and releasing is safe anywhere.
 *  7. Versions. VG_VERSION is the version of the source, vg_version() that of the loaded library.
 *     VG_INTERFACE_VERSION grows with each addition; nothing published is taken away within one
 *     major version. vg_interface_version() may be greater than the header's.
 */
/* NOLINTBEGIN(modernize-*): this is C */
#ifndef VELTGENERAL_VELTGENERAL_C_H
#define VELTGENERAL_VELTGENERAL_C_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#include "veltgeneral/export.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VG_VERSION "1.0.0"
#define VG_INTERFACE_VERSION 1u
#define VG_TO_NUL ((size_t)-1)

typedef int32_t vg_status; /* 0, or the number of a run-time error */

typedef struct vg_object vg_object;
typedef struct vg_value vg_value;
typedef struct vg_error vg_error;
typedef struct vg_class vg_class;
typedef struct vg_member vg_member;
typedef struct vg_enumeration vg_enumeration;

VELTGENERAL_API const char* vg_version(void);
VELTGENERAL_API uint32_t vg_interface_version(void);

/* ---- Errors ---- */

VELTGENERAL_API int32_t vg_error_number(const vg_error* error); /* 0 for NULL */
/* UTF-8; the standard message of the number unless the error came with one of its own. */
VELTGENERAL_API const char* vg_error_description(const vg_error* error);
/* An error of the caller's own. A NULL description is the number's standard message. */
VELTGENERAL_API vg_error* vg_error_new(int32_t number, const char* description);
/* The same for callbacks, which are given an error to set. */
VELTGENERAL_API vg_status vg_error_set(vg_error* error, int32_t number, const char* description);
VELTGENERAL_API void vg_error_free(vg_error* error);

/* ---- Values ---- */

/* A C caller may pass any number as an enumeration; C++ must know that, too. */
#ifdef __cplusplus
#define VG_ANY_NUMBER : unsigned int
#else
#define VG_ANY_NUMBER
#endif

typedef enum vg_kind VG_ANY_NUMBER {
  VG_EMPTY,   /* not yet given a value */
  VG_MISSING, /* an optional argument that was left out */
  VG_NULL,    /* known to have no value */
  VG_INT16,
  VG_INT32,
  VG_SINGLE,
  VG_DOUBLE,
  VG_CURRENCY, /* int64_t, ten-thousandths */
  VG_DECIMAL,
  VG_DATE, /* double, days since 30 December 1899 */
  VG_BOOLEAN,
  VG_TEXT,
  VG_BYTES,
  VG_TEXT_ARRAY,
  VG_OBJECT
} vg_kind;

/* sign * (high*2^64 + mid*2^32 + low) / 10^scale, scale 0 to 28. */
typedef struct vg_decimal {
  uint32_t low, mid, high;
  uint8_t scale;
  uint8_t negative; /* 0 or 1 */
} vg_decimal;

VELTGENERAL_API vg_value* vg_value_new(void); /* empty; NULL when memory is exhausted */
VELTGENERAL_API void vg_value_free(vg_value* value);
VELTGENERAL_API vg_kind vg_value_kind(const vg_value* value); /* VG_EMPTY for NULL */
VELTGENERAL_API vg_status vg_value_copy(vg_value* to, const vg_value* from);
/* Exchanges two values; nothing is copied. */
VELTGENERAL_API vg_status vg_value_swap(vg_value* one, vg_value* other);
/* Gives the value another kind by automation's coercions: 6, 13 or 94 where it has no such form. */
VELTGENERAL_API vg_status vg_value_convert(vg_value* value, vg_kind kind);

VELTGENERAL_API vg_status vg_value_set_empty(vg_value* value);
VELTGENERAL_API vg_status vg_value_set_missing(vg_value* value);
VELTGENERAL_API vg_status vg_value_set_null(vg_value* value);
VELTGENERAL_API vg_status vg_value_set_int16(vg_value* value, int16_t number);
VELTGENERAL_API vg_status vg_value_set_int32(vg_value* value, int32_t number);
VELTGENERAL_API vg_status vg_value_set_single(vg_value* value, float number);
VELTGENERAL_API vg_status vg_value_set_double(vg_value* value, double number);
VELTGENERAL_API vg_status vg_value_set_currency(vg_value* value, int64_t ten_thousandths);
VELTGENERAL_API vg_status vg_value_set_decimal(vg_value* value, const vg_decimal* number);
VELTGENERAL_API vg_status vg_value_set_date(vg_value* value, double days);
VELTGENERAL_API vg_status vg_value_set_boolean(vg_value* value, int32_t truth);
VELTGENERAL_API vg_status vg_value_set_utf8(vg_value* value, const char* text, size_t length);
VELTGENERAL_API vg_status vg_value_set_utf16(vg_value* value, const char16_t* text, size_t length);
VELTGENERAL_API vg_status vg_value_set_bytes(vg_value* value, const void* bytes, size_t length);
/* Takes a count of its own. A NULL object is stored as such. */
VELTGENERAL_API vg_status vg_value_set_object(vg_value* value, vg_object* object);

/* A getter answers in its own type whatever the value holds, as vg_value_convert would, and leaves
 * the value as it is. Bytes and objects are never made from another kind: error 13. */
VELTGENERAL_API vg_status vg_value_get_int16(const vg_value* value, int16_t* number);
VELTGENERAL_API vg_status vg_value_get_int32(const vg_value* value, int32_t* number);
VELTGENERAL_API vg_status vg_value_get_single(const vg_value* value, float* number);
VELTGENERAL_API vg_status vg_value_get_double(const vg_value* value, double* number);
VELTGENERAL_API vg_status vg_value_get_currency(const vg_value* value, int64_t* ten_thousandths);
VELTGENERAL_API vg_status vg_value_get_decimal(const vg_value* value, vg_decimal* number);
VELTGENERAL_API vg_status vg_value_get_date(const vg_value* value, double* days);
VELTGENERAL_API vg_status vg_value_get_boolean(const vg_value* value, int32_t* truth);
/* `length` may be NULL. */
VELTGENERAL_API vg_status vg_value_get_utf8(const vg_value* value, const char** text,
                                            size_t* length);
VELTGENERAL_API vg_status vg_value_get_utf16(const vg_value* value, const char16_t** text,
                                             size_t* length);
VELTGENERAL_API vg_status vg_value_get_bytes(const vg_value* value, const uint8_t** bytes,
                                             size_t* length);
/* The caller is given a count; NULL where the value holds no object at all (unset reference). */
VELTGENERAL_API vg_status vg_value_get_object(const vg_value* value, vg_object** object);

/* ---- Arrays of texts: values of kind VG_TEXT_ARRAY (any other kind is error 13) ---- */

typedef struct vg_bounds {
  int32_t lower, upper; /* both belong to the dimension */
} vg_bounds;

/* `dimensions` 0 stores an unallocated array, 1 a list, 2 a table (field, row); cells start empty.
 * Error 9 for a dimension without element. */
VELTGENERAL_API vg_status vg_value_set_array(vg_value* value, int32_t dimensions,
                                             const vg_bounds* bounds);
/* 0 for an unallocated array. `bounds` has room for two, or is NULL. `cells` may be NULL. */
VELTGENERAL_API vg_status vg_array_shape(const vg_value* value, int32_t* dimensions,
                                         vg_bounds* bounds, size_t* cells);
/* `index` has one number a dimension. Error 9 outside the bounds. */
VELTGENERAL_API vg_status vg_array_get_utf8(const vg_value* value, const int32_t* index,
                                            const char** text, size_t* length);
VELTGENERAL_API vg_status vg_array_get_utf16(const vg_value* value, const int32_t* index,
                                             const char16_t** text, size_t* length);
VELTGENERAL_API vg_status vg_array_set_utf8(vg_value* value, const int32_t* index, const char* text,
                                            size_t length);
VELTGENERAL_API vg_status vg_array_set_utf16(vg_value* value, const int32_t* index,
                                             const char16_t* text, size_t length);

/* Many cells at once, `count` from position `first` on, in storage order: the fields of a row lie
 * together, rows follow each other. In `text` the cells follow each other, each with a NUL after
 * it; `lengths`, where not NULL, has the length of each, without that NUL.
 *
 * Reading: `units` receives what the texts take, NULs included. Where `capacity` is less than that,
 * nothing is written to `text` and the answer is still 0, so that a first call with capacity 0 asks
 * for the size. Error 9 where first + count is beyond the array. */
VELTGENERAL_API vg_status vg_array_read(const vg_value* value, size_t first, size_t count,
                                        char16_t* text, size_t capacity, size_t* lengths,
                                        size_t* units);
/* Writing: `units` is what `text` holds, NULs included; without `lengths` each cell ends at its
 * first NUL. Error 5 where the text is shorter than the cells take. */
VELTGENERAL_API vg_status vg_array_write(vg_value* value, size_t first, size_t count,
                                         const char16_t* text, size_t units, const size_t* lengths);

/* ---- Objects ---- */

typedef enum vg_call_kind VG_ANY_NUMBER {
  VG_METHOD,
  VG_PROPERTY_GET,
  VG_PROPERTY_PUT
} vg_call_kind;

/* `name` is a class with or without the prefix "VeltGeneral."; error 429 for no such class. */
VELTGENERAL_API vg_status vg_create(const char* name, vg_object** object, vg_error** error);
VELTGENERAL_API vg_object* vg_object_retain(vg_object* object); /* returns its argument */
VELTGENERAL_API void vg_object_release(vg_object* object);

/* Calls a member by name: 438 no such member, 450 too many arguments, 449 one is missing, 448 a
 * name that it does not have, 13 a value of the wrong kind. The first `count` - `named` values are
 * positional, the last `named` have `names`. Arguments that the member changes are changed in
 * place; NULL stands for one left out. A put's value is its last argument. `result` may be NULL. */
VELTGENERAL_API vg_status vg_call(vg_object* object, const char* name, vg_call_kind kind,
                                  vg_value* const* arguments, size_t count, vg_value* result,
                                  vg_error** error);
VELTGENERAL_API vg_status vg_call_named(vg_object* object, const char* name, vg_call_kind kind,
                                        vg_value* const* arguments, size_t count,
                                        const char* const* names, size_t named, vg_value* result,
                                        vg_error** error);

/* The same in two steps, for members that are called often: 438 where the object's class has no
 * such member, 430 where the object is not of this component. The member serves all objects of the
 * class; with an object of another class it is error 438. */
VELTGENERAL_API vg_status vg_resolve(vg_object* object, const char* name, vg_call_kind kind,
                                     const vg_member** member, vg_error** error);
VELTGENERAL_API vg_status vg_invoke(vg_object* object, const vg_member* member,
                                    vg_value* const* arguments, size_t count, vg_value* result,
                                    vg_error** error);
VELTGENERAL_API vg_status vg_invoke_named(vg_object* object, const vg_member* member,
                                          vg_value* const* arguments, size_t count,
                                          const char* const* names, size_t named, vg_value* result,
                                          vg_error** error);

/* A caller's own object, a window or a record say, whose members the library calls by name. */
typedef struct vg_object_callbacks {
  size_t size; /* sizeof(vg_object_callbacks) */
  /* Arguments belong to the library and end with the call; they may be changed in place. Stores
   * its result, if any, in `result`. Returns 0, or an error number, with a text of its own set on
   * `raised` if it likes. Error 438 says that there is no such member. */
  vg_status (*call)(void* context, const char* name, vg_call_kind kind, vg_value* const* arguments,
                    size_t count, vg_value* result, vg_error* raised);
  void (*released)(void* context); /* the last count is gone; may be NULL */
} vg_object_callbacks;

/* Copies the callbacks. NULL without a `call`, or when memory is exhausted. */
VELTGENERAL_API vg_object* vg_object_new(const vg_object_callbacks* callbacks, void* context);
/* The context of an object made with this `call`; NULL for any other object. */
VELTGENERAL_API void* vg_object_context(const vg_object* object,
                                        const vg_object_callbacks* callbacks);
/* A record: an object whose properties are whatever is put into it, empty before that. */
VELTGENERAL_API vg_object* vg_record_new(void);

/* ---- The host's pending events ---- */

/* Called by long operations of any object (a sort, once a pass), on their thread: it should be
 * quick. Returns 0, or an error number, with a text of its own set on `raised` if it likes; the
 * operation then ends with that error. */
typedef vg_status (*vg_host_events)(void* context, vg_error* raised);

/* For the whole process. NULL goes back to servicing the report form's window where there is one.
 */
VELTGENERAL_API vg_status vg_set_host_events(vg_host_events callback, void* context);

/* ---- What the classes look like ---- */

typedef struct vg_type {
  vg_kind kind;
  const char* name;   /* of the class, record or enumeration; "" where it has none */
  int32_t is_variant; /* takes or gives any kind */
  int32_t is_void;    /* result of a member that has none */
} vg_type;

typedef struct vg_parameter {
  const char* name;
  vg_type type;
  int32_t in_out;
  int32_t optional;
  int32_t default_number; /* of an optional parameter that is no variant */
} vg_parameter;

VELTGENERAL_API size_t vg_class_count(void);
VELTGENERAL_API const vg_class* vg_class_at(size_t position); /* NULL beyond the last */
VELTGENERAL_API const vg_class* vg_class_find(const char* name);
/* NULL for an object that is not of this component. */
VELTGENERAL_API const vg_class* vg_class_of(const vg_object* object);
VELTGENERAL_API const char* vg_class_name(const vg_class* type);
VELTGENERAL_API const char* vg_class_summary(const vg_class* type);
/* Members in the published order. */
VELTGENERAL_API size_t vg_class_member_count(const vg_class* type);
VELTGENERAL_API const vg_member* vg_class_member(const vg_class* type, size_t position);
VELTGENERAL_API const char* vg_member_name(const vg_member* member);
VELTGENERAL_API vg_call_kind vg_member_kind(const vg_member* member);
VELTGENERAL_API vg_status vg_member_result(const vg_member* member, vg_type* type);
VELTGENERAL_API size_t vg_member_parameter_count(const vg_member* member);
VELTGENERAL_API vg_status vg_member_parameter(const vg_member* member, size_t position,
                                              vg_parameter* parameter);

/* The enumerations that a class publishes; VeltGlobal publishes them all. */
VELTGENERAL_API size_t vg_class_enumeration_count(const vg_class* type);
VELTGENERAL_API const vg_enumeration* vg_class_enumeration(const vg_class* type, size_t position);
VELTGENERAL_API const char* vg_enumeration_name(const vg_enumeration* enumeration);
VELTGENERAL_API size_t vg_enumeration_count(const vg_enumeration* enumeration);
/* Error 9 beyond the last. */
VELTGENERAL_API vg_status vg_enumeration_value(const vg_enumeration* enumeration, size_t position,
                                               const char** name, int32_t* value);

/* ---- The published enumerations, behind the prefixes vg_ and VG_ ---- */

enum vg_errInfoCostant {
  VG_eiSUCCESFULL = 0,
  VG_eiABORTED = -2147220904,
  VG_eiNORECORD = -2147220903,
  VG_eiNOVALIDVALUE = -2147220902,
  VG_eiREGISTRYERROR = -2147220901
};
enum vg_typeInfoCostant {
  VG_eiERRORTYPE = 1,
  VG_eiWARNINGTYPE = 2,
  VG_eiINFORMATIONTYPE = 3,
  VG_eiDEBUGTYPE = 4
};
enum vg_gcmFileUtility { VG_gcmfileutilityFILENOTFOUND = -2147220804 };
enum vg_gcmRegistryUtylity { VG_gcmregistryutilityKEYNOTFOUND = -2147220604 };
enum vg_gcmFunzioni { VG_gcmfunzioniDATEINVALID = -2147220704 };
enum vg_typeDataBaseEngine {
  VG_dbengineORACLE = 1,
  VG_dbengineMSACCESS = 2,
  VG_dbengineSQLSERVER = 3
};
enum vg_typeOutputReport { VG_torFORM = 1, VG_torPRINTER = 2 };
enum vg_typedbExistUniqueObject { VG_dbeuoUNIQUE = 0, VG_dbeuoMORE = 1, VG_dbeuoNOTFOUND = 2 };

/* ---- Entry points of the component ---- */

/* Makes objects of one class; reached with nothing but a name, so a host needs to link nothing. */
typedef struct vg_factory {
  uint32_t interface_version;
  const char* class_name;
  vg_status (*create)(const struct vg_factory* factory, vg_object** object, vg_error** error);
} vg_factory;

/* `class_name` as for vg_create. Error 429 for no such class. */
VELTGENERAL_API vg_status DllGetClassObject(const char* class_name, const vg_factory** factory);
/* Write the classes' names and the path of this library into the registry, and take them out again:
 * HKEY_LOCAL_MACHINE\SOFTWARE\Classes\VeltGeneral.<class>\InprocServer32, default value. All or
 * nothing; error 75 where the registry cannot be written. veltgeneral_host.h finds what they write.
 */
VELTGENERAL_API vg_status DllRegisterServer(void);
VELTGENERAL_API vg_status DllUnregisterServer(void);
/* 0 when no object of the component is alive, 1 while there are some. */
VELTGENERAL_API vg_status DllCanUnloadNow(void);

#ifdef __cplusplus
}
#endif

#endif
/* NOLINTEND(modernize-*) */
