// The C interface: errors and values.
#include <new>
#include <stdexcept>

#include "automation/coerce.h"
#include "component/c_handles.h"

using namespace veltgeneral;

namespace veltgeneral {

vg_status currentStatus() noexcept {
  try {
    throw;
  } catch (const RuntimeError& error) {
    const auto internal = static_cast<vg_status>(RunTime::internalError);
    return error.number() == 0 ? internal : error.number();
  } catch (const std::bad_alloc&) {
    return static_cast<vg_status>(RunTime::outOfMemory);
  } catch (const std::length_error&) {
    return static_cast<vg_status>(RunTime::outOfMemory);
  } catch (...) {
    return static_cast<vg_status>(RunTime::internalError);
  }
}

vg_status reportCurrent(vg_error** error) noexcept {
  const vg_status number = currentStatus();
  if (error == nullptr) return number;
  try {
    try {
      throw;
    } catch (const RuntimeError& raised) {
      *error = new vg_error{number, raised.what()};
    } catch (...) {
      *error = new vg_error{number, toUtf8(standardMessage(number))};
    }
  } catch (...) {
    *error = nullptr;  // no memory left to say more than the number
  }
  return number;
}

void throwRaised(vg_status status, const vg_error& raised) {
  throw RuntimeError(status, raised.description.empty() ? Text(standardMessage(status))
                                                        : fromUtf8(raised.description));
}

namespace {

template <class T>
T exactly(const Variant& value) {
  const T* held = std::get_if<T>(&value);
  if (held == nullptr) raise(RunTime::typeMismatch);
  return *held;
}

Variant converted(const Variant& value, vg_kind kind) {
  switch (kind) {
    case VG_INT16:
      return toInt16(value);
    case VG_INT32:
      return toInt32(value);
    case VG_SINGLE:
      return toSingle(value);
    case VG_DOUBLE:
      return toDouble(value);
    case VG_CURRENCY:
      return toCurrency(value);
    case VG_DECIMAL:
      return toDecimal(value);
    case VG_DATE:
      return toDate(value);
    case VG_BOOLEAN:
      return toBoolean(value);
    case VG_TEXT:
      return toText(value);
    default:
      raise(RunTime::typeMismatch);
  }
}

template <class T>
vg_status store(vg_value* value, T&& content) {
  return guarded([&] { needed(value).variant = std::forward<T>(content); });
}

// `read` answers from the variant; nothing is stored where it fails.
template <class T, class Read>
vg_status answer(const vg_value* value, T* place, Read read) {
  return guarded([&] { needed(place) = read(needed(value).variant); });
}

}  // namespace
}  // namespace veltgeneral

const char* vg_version(void) { return VG_VERSION; }
uint32_t vg_interface_version(void) { return VG_INTERFACE_VERSION; }

int32_t vg_error_number(const vg_error* error) { return error == nullptr ? 0 : error->number; }

const char* vg_error_description(const vg_error* error) {
  return error == nullptr ? "" : error->description.c_str();
}

vg_error* vg_error_new(int32_t number, const char* description) {
  auto* error = new (std::nothrow) vg_error;
  if (vg_error_set(error, number, description) == 0) return error;
  delete error;
  return nullptr;
}

vg_status vg_error_set(vg_error* error, int32_t number, const char* description) {
  return guarded([&] {
    std::string text = description != nullptr ? description : toUtf8(standardMessage(number));
    needed(error) = {number, std::move(text)};
  });
}

void vg_error_free(vg_error* error) { delete error; }

vg_value* vg_value_new(void) { return new (std::nothrow) vg_value; }

void vg_value_free(vg_value* value) { delete value; }

vg_kind vg_value_kind(const vg_value* value) {
  return value == nullptr ? VG_EMPTY : static_cast<vg_kind>(value->variant.index());
}

vg_status vg_value_copy(vg_value* to, const vg_value* from) {
  return guarded([&] { needed(to).variant = Variant(needed(from).variant); });
}

vg_status vg_value_swap(vg_value* one, vg_value* other) {
  return guarded([&] { std::swap(needed(one).variant, needed(other).variant); });
}

vg_status vg_value_convert(vg_value* value, vg_kind kind) {
  return guarded([&] {
    Variant& variant = needed(value).variant;
    if (vg_value_kind(value) != kind) variant = converted(variant, kind);
  });
}

vg_status vg_value_set_empty(vg_value* value) { return store(value, Empty{}); }
vg_status vg_value_set_missing(vg_value* value) { return store(value, Missing{}); }
vg_status vg_value_set_null(vg_value* value) { return store(value, Null{}); }
vg_status vg_value_set_int16(vg_value* value, int16_t number) { return store(value, number); }
vg_status vg_value_set_int32(vg_value* value, int32_t number) { return store(value, number); }
vg_status vg_value_set_single(vg_value* value, float number) { return store(value, number); }
vg_status vg_value_set_double(vg_value* value, double number) { return store(value, number); }
vg_status vg_value_set_currency(vg_value* value, int64_t ten_thousandths) {
  return store(value, Currency{ten_thousandths});
}
vg_status vg_value_set_date(vg_value* value, double days) { return store(value, Date{days}); }
vg_status vg_value_set_boolean(vg_value* value, int32_t truth) { return store(value, truth != 0); }

vg_status vg_value_set_decimal(vg_value* value, const vg_decimal* number) {
  return guarded([&] {
    const vg_decimal& from = needed(number);
    if (from.scale > 28) raise(RunTime::invalidCall);
    needed(value).variant = Decimal{.low = from.low,
                                    .mid = from.mid,
                                    .high = from.high,
                                    .scale = from.scale,
                                    .negative = from.negative != 0};
  });
}

vg_status vg_value_set_utf8(vg_value* value, const char* text, size_t length) {
  return guarded([&] { needed(value).variant = fromUtf8(viewOf(text, length)); });
}

vg_status vg_value_set_utf16(vg_value* value, const char16_t* text, size_t length) {
  return guarded([&] { needed(value).variant = Text(viewOf(text, length)); });
}

vg_status vg_value_set_bytes(vg_value* value, const void* bytes, size_t length) {
  return guarded([&] {
    const auto from = viewOf(static_cast<const char*>(bytes), length);
    needed(value).variant = Bytes(from.begin(), from.end());
  });
}

vg_status vg_value_set_object(vg_value* value, vg_object* object) {
  return store(value, object == nullptr ? ObjectRef() : object->reference);
}

vg_status vg_value_get_int16(const vg_value* value, int16_t* number) {
  return answer(value, number, [](const Variant& v) { return toInt16(v); });
}

vg_status vg_value_get_int32(const vg_value* value, int32_t* number) {
  return answer(value, number, [](const Variant& v) { return toInt32(v); });
}

vg_status vg_value_get_single(const vg_value* value, float* number) {
  return answer(value, number, [](const Variant& v) { return toSingle(v); });
}

vg_status vg_value_get_double(const vg_value* value, double* number) {
  return answer(value, number, [](const Variant& v) { return toDouble(v); });
}

vg_status vg_value_get_currency(const vg_value* value, int64_t* ten_thousandths) {
  return answer(value, ten_thousandths, [](const Variant& v) { return toCurrency(v).scaled; });
}

vg_status vg_value_get_decimal(const vg_value* value, vg_decimal* number) {
  return answer(value, number, [](const Variant& v) {
    const Decimal held = toDecimal(v);
    return vg_decimal{held.low, held.mid, held.high, held.scale,
                      static_cast<std::uint8_t>(held.negative)};
  });
}

vg_status vg_value_get_date(const vg_value* value, double* days) {
  return answer(value, days, [](const Variant& v) { return toDate(v).days; });
}

vg_status vg_value_get_boolean(const vg_value* value, int32_t* truth) {
  return answer(value, truth, [](const Variant& v) { return toBoolean(v) ? 1 : 0; });
}

vg_status vg_value_get_utf8(const vg_value* value, const char** text, size_t* length) {
  return guarded([&] {
    const Variant& variant = needed(value).variant;
    const Text* held = std::get_if<Text>(&variant);
    const char*& place = needed(text);
    value->utf8 = held != nullptr ? toUtf8(*held) : toUtf8(toText(variant));
    place = value->utf8.c_str();
    if (length != nullptr) *length = value->utf8.size();
  });
}

vg_status vg_value_get_utf16(const vg_value* value, const char16_t** text, size_t* length) {
  return guarded([&] {
    const Text* held = std::get_if<Text>(&needed(value).variant);
    const char16_t*& place = needed(text);
    if (held == nullptr) held = &(value->utf16 = toText(value->variant));
    place = held->c_str();
    if (length != nullptr) *length = held->size();
  });
}

vg_status vg_value_get_bytes(const vg_value* value, const uint8_t** bytes, size_t* length) {
  return guarded([&] {
    const Bytes* held = std::get_if<Bytes>(&needed(value).variant);
    if (held == nullptr) raise(RunTime::typeMismatch);
    needed(bytes) = held->data();
    if (length != nullptr) *length = held->size();
  });
}

vg_status vg_value_get_object(const vg_value* value, vg_object** object) {
  return guarded([&] {
    vg_object*& place = needed(object);
    auto held = exactly<ObjectRef>(needed(value).variant);
    place = held ? new vg_object(std::move(held)) : nullptr;
  });
}
