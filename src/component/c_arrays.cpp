// The C interface: arrays of texts.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "automation/text_array_cells.h"
#include "component/c_handles.h"

using namespace veltgeneral;

namespace {

const TextArray& arrayIn(const vg_value* value) {
  const auto* array = std::get_if<TextArray>(&needed(value).variant);
  if (array == nullptr) raise(RunTime::typeMismatch);
  return *array;
}

TextArray& arrayIn(vg_value* value) {
  return const_cast<TextArray&>(arrayIn(static_cast<const vg_value*>(value)));
}

TextView cellAt(const TextArray& array, const int32_t* index) {
  if (array.dimensions() == 2) return array.at(needed(index), index[1]);
  return array.at(needed(index));
}

void setCell(TextArray& array, const int32_t* index, TextView text) {
  if (array.dimensions() == 2) {
    array.set(needed(index), index[1], text);
  } else {
    array.set(needed(index), text);
  }
}

Bounds boundsOf(const vg_bounds& bounds) { return {bounds.lower, bounds.upper}; }

// The cells [first, first + count). Throws RuntimeError 9 where they are not all there.
void requireCells(const TextArray& array, std::size_t first, std::size_t count) {
  if (first > array.size() || count > array.size() - first) raise(RunTime::subscriptOutOfRange);
}

// Cuts the text of vg_array_write into its cells.
class CellReader {
 public:
  CellReader(TextView text, const std::size_t* lengths) : rest_(text), lengths_(lengths) {}

  TextView next() {
    const std::size_t length = lengths_ != nullptr ? *lengths_++ : rest_.find(u'\0');
    if (length >= rest_.size()) raise(RunTime::invalidCall);  // no NUL after it
    const TextView cell = rest_.substr(0, length);
    rest_.remove_prefix(length + 1);
    return cell;
  }

 private:
  TextView rest_;
  const std::size_t* lengths_;
};

}  // namespace

vg_status vg_value_set_array(vg_value* value, int32_t dimensions, const vg_bounds* bounds) {
  return guarded([&] {
    Variant& variant = needed(value).variant;
    switch (dimensions) {
      case 0:
        variant = TextArray();
        return;
      case 1:
        variant = TextArray(boundsOf(needed(bounds)));
        return;
      case 2:
        variant = TextArray(boundsOf(needed(bounds)), boundsOf(bounds[1]));
        return;
      default:
        raise(RunTime::invalidCall);
    }
  });
}

vg_status vg_array_shape(const vg_value* value, int32_t* dimensions, vg_bounds* bounds,
                         size_t* cells) {
  return guarded([&] {
    const TextArray& array = arrayIn(value);
    needed(dimensions) = array.dimensions();
    for (int i = 1; bounds != nullptr && i <= array.dimensions(); ++i) {
      bounds[i - 1] = {array.bounds(i).lower, array.bounds(i).upper};
    }
    if (cells != nullptr) *cells = array.size();
  });
}

vg_status vg_array_get_utf8(const vg_value* value, const int32_t* index, const char** text,
                            size_t* length) {
  return guarded([&] {
    const char*& place = needed(text);
    value->utf8 = toUtf8(cellAt(arrayIn(value), index));
    place = value->utf8.c_str();
    if (length != nullptr) *length = value->utf8.size();
  });
}

vg_status vg_array_get_utf16(const vg_value* value, const int32_t* index, const char16_t** text,
                             size_t* length) {
  return guarded([&] {
    const TextView cell = cellAt(arrayIn(value), index);
    const char16_t*& place = needed(text);
    needed(length) = cell.size();
    place = cell.data();
  });
}

vg_status vg_array_set_utf8(vg_value* value, const int32_t* index, const char* text,
                            size_t length) {
  return guarded([&] { setCell(arrayIn(value), index, fromUtf8(viewOf(text, length))); });
}

vg_status vg_array_set_utf16(vg_value* value, const int32_t* index, const char16_t* text,
                             size_t length) {
  return guarded([&] { setCell(arrayIn(value), index, viewOf(text, length)); });
}

vg_status vg_array_read(const vg_value* value, size_t first, size_t count, char16_t* text,
                        size_t capacity, size_t* lengths, size_t* units) {
  return guarded([&] {
    auto& array = const_cast<TextArray&>(arrayIn(value));  // only looked at
    requireCells(array, first, count);
    const TextArrayCells access(array);
    const auto cells = access.all().subspan(first, count);
    std::size_t total = count;
    for (const auto cell : cells) total += access.view(cell).size();
    needed(units) = total;
    if (lengths != nullptr) {
      std::ranges::transform(cells, lengths, [&](auto cell) { return access.view(cell).size(); });
    }
    if (text == nullptr || capacity < total) return;
    for (const auto cell : cells) {
      const TextView content = access.view(cell);
      text = std::copy(content.begin(), content.end(), text);
      *text++ = u'\0';
    }
  });
}

vg_status vg_array_write(vg_value* value, size_t first, size_t count, const char16_t* text,
                         size_t units, const size_t* lengths) {
  return guarded([&] {
    TextArray& array = arrayIn(value);
    requireCells(array, first, count);
    const TextView whole = viewOf(text, units);
    // All is looked at before anything is stored.
    CellReader check(whole, lengths);
    for (std::size_t i = 0; i < count; ++i) check.next();
    CellReader cells(whole, lengths);
    const Bounds fields = count == 0 ? Bounds() : array.bounds(1);
    const auto width = static_cast<std::size_t>(std::int64_t{fields.upper} - fields.lower) + 1;
    for (std::size_t at = first; at < first + count; ++at) {
      const int32_t index[] = {
          static_cast<int32_t>(fields.lower + static_cast<std::int64_t>(at % width)),
          array.dimensions() == 2
              ? static_cast<int32_t>(array.bounds(2).lower + static_cast<std::int64_t>(at / width))
              : 0};
      setCell(array, index, cells.next());
    }
  });
}
