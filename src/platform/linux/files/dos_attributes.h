// The value of the extended attribute "user.DOSATTRIB", as other software keeps it: a text such as
// "0x22", sometimes with a final NUL, or a binary record: that text (often empty) and its NUL, a
// 16-bit version twice, a 32-bit mask of the fields that follow (from version 2 on), the 32-bit
// attributes, and more, the creation time among it; little-endian, 16-bit numbers aligned to 2,
// greater ones to 4.
//
// We write the text; in a binary record the fields are changed where they lie, since shortening it
// would lose the others.
#pragma once

#include <cstdint>
#include <string>

namespace veltgeneral::platform {

inline constexpr const char* kDosAttributes = "user.DOSATTRIB";

class DosAttributes {
 public:
  explicit DosAttributes(std::string value) : bytes_(std::move(value)) {}

  // 0 for a value that is none of the forms.
  std::uint32_t bits() const;
  // Changes the bits in `mask`. An empty value says that there is no bit to keep.
  void setBits(std::uint32_t bits, std::uint32_t mask);
  // In units of 100 nanoseconds since 1601. False, and nothing changed, where the value holds none.
  bool setCreationTime(std::uint64_t time);

  const std::string& value() const noexcept { return bytes_; }

 private:
  std::size_t recordPlace() const;
  std::size_t bitsPlace() const;
  std::size_t creationTimePlace() const;
  std::uint32_t word(std::size_t at) const;

  std::string bytes_;
};

// The value as the host has it. Nothing there, no such facility or no right to look are all the
// same: an empty one. Where the host fails otherwise the first throws a RuntimeError and the second
// has an empty value too.
DosAttributes readDosAttributes(const std::string& path);
DosAttributes readDosAttributes(int descriptor);

}  // namespace veltgeneral::platform
