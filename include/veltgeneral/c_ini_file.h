// cInifile: one INI file, section and key at a time, and window placements kept in it.
//
// A small state, no file open between calls. What was never set is unset, which differs from empty:
// without a key all keys are meant, without a section all sections. Nothing raises: a missing file,
// section or key reads as the default, and LastReturnCode tells whether the last write or deletion
// succeeded.
//
// Files hold text in the code page, or UTF-16 where they begin with its mark. Unless isNt is set,
// texts pass through the code page on every call of Value, and come back changed where it cannot
// hold them. A bare file name lies in the Windows folder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "veltgeneral/export.h"
#include "veltgeneral/object.h"
#include "veltgeneral/text.h"
#include "veltgeneral/text_array.h"

namespace veltgeneral {

class VELTGENERAL_API cInifile {
 public:
  // Has no effect: whether a file is UTF-16 is seen on every access.
  void CheckForUnicodeFile();

  // Whether Value uses the wide calls, false to begin with; a file that they create is UTF-16.
  void setIsNt(bool value);

  // 0 after a write or deletion that failed, else not 0. Reads leave it alone.
  std::int32_t LastReturnCode() const noexcept { return lastReturnCode_; }

  // Whether the file has a section of exactly this name, case included.
  bool SectionExists(TextView section);

  // Whether the last write or deletion succeeded: LastReturnCode is not 0.
  bool Success() const noexcept { return lastReturnCode_ != 0; }

  // The text that Value reads as where the key is missing. Unset reads as the empty text.
  void setDefault(TextView value) { default_ = value; }
  Text Default() const { return default_.value_or(Text()); }
  // The INI file. It is not opened before it is needed, and need not be there.
  void setPath(TextView value);
  Text Path() const { return path_.value_or(Text()); }
  // The current key, matched without regard to case. Once set it stays set: an empty text is a name
  // too.
  void setKey(TextView value) { key_ = value; }
  Text key() const { return key_.value_or(Text()); }
  // The current section, likewise.
  void setSection(TextView value) { section_ = value; }
  Text section() const { return section_.value_or(Text()); }

  // The value of the current key, at most 381 characters; Default where there is none.
  Text Value();
  // Assigning writes it, creating file and section as needed. NULs are taken out of `value`, in the
  // caller's hands too.
  void setValue(Text& value);

  // As last assigned.
  bool isNt() const noexcept { return isNt_; }

  // Deletes the current key. One that is not there counts as deleted.
  void DeleteKey();
  // Deletes the current section with all its keys. One that is not there counts as deleted.
  void DeleteSection();

  // The names of the current section's keys, a NUL behind each, cut at 8190 characters.
  Text INISection();
  // Assigning deletes the current section; the text is not used.
  void setINISection(TextView value);

  // The names of all sections, a NUL behind each, cut at 8190 characters.
  Text Sections();

  // The names that INISection gives as elements 1 to `iCount`; unallocated where there is none. A
  // name that the cut left incomplete is not counted.
  void EnumerateCurrentSection(TextArray& sKey, std::int32_t& iCount);
  // The names that Sections gives, likewise; empty names are not counted either.
  void EnumerateAllSections(TextArray& sSections, std::int32_t& iCount);

  // Writes a window's state and, unless it is maximised, its placement in twips into the current
  // section; a minimised window writes nothing. The window answers to WindowState, Left, Top, Width
  // and Height. An error that it raises ends the call and sets LastReturnCode to 0.
  void SaveFormPosition(Object& frmThis);

  // Places a window by one call of its Move, inside the screen and no smaller than the minimum, and
  // maximises it where the file says so; where the screen has no room for the minimum the window
  // stays. Entries that are missing or no numbers keep the window's present values. Errors, a
  // missing display among them, end the call and set LastReturnCode to 0.
  void LoadFormPosition(Object& frmThis, std::int32_t lMinWidth = 3000,
                        std::int32_t lMinHeight = 3000);

  // The text as a 32-bit number; `lDefault` where it is none or does not fit.
  std::int32_t CLngDefault(TextView sString, std::int32_t lDefault = 0);

 private:
  const std::string& hostPath();
  Text namesInBuffer(const Text* section);
  void write(const std::optional<Text>& key, const std::optional<Text>& text);
  void placeWindow(Object& window, std::int32_t minWidth, std::int32_t minHeight);

  std::optional<Text> path_;
  std::optional<std::string> hostPath_;  // of path_ and isNt_
  std::optional<Text> key_;
  std::optional<Text> section_;
  std::optional<Text> default_;
  std::int32_t lastReturnCode_ = 0;
  bool isNt_ = false;
};

}  // namespace veltgeneral
