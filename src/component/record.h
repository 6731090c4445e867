// Records cross the door as objects with a property for each field.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "veltgeneral/err_info.h"
#include "veltgeneral/object.h"

namespace veltgeneral {

// A record made of named fields; any name can be read and set, one never set is empty.
class Record final : public Object {
 public:
  Variant call(TextView name, CallKind kind, std::span<Variant> arguments) override;

  const std::vector<std::pair<Text, Variant>>& fields() const noexcept { return fields_; }

 private:
  std::vector<std::pair<Text, Variant>> fields_;
};

// Reads the fields of a `structError` from any object that has them; a field that the object does
// not have is empty. Throws RuntimeError 13 for a value that is no object.
structError readStructError(const Variant& value);

}  // namespace veltgeneral
