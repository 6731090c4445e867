#include <vector>

#include "automation/coerce.h"
#include "core/narrow_page.h"
#include "platform/folders.h"
#include "platform/paths.h"
#include "platform/profile.h"
#include "veltgeneral/c_ini_file.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

using platform::ProfileCall;

constexpr std::size_t kValueBuffer = 382;
constexpr std::size_t kListBuffer = 8192;

const Text* pointerTo(const std::optional<Text>& text) { return text ? &*text : nullptr; }

// Empty, which no call accepts, for a path that this host cannot have, or no Windows folder.
std::string profilePath(const std::optional<Text>& path, ProfileCall call) {
  if (!path || path->empty()) return {};
  const Text name = call == ProfileCall::narrow ? narrowed(*path) : *path;
  try {
    if (name.find_first_of(u"\\/:") != Text::npos) return platform::hostPath(name);
    const std::string folder = platform::windowsFolder();
    return folder.empty() ? folder : folder + "/" + platform::hostPath(name);
  } catch (const RuntimeError&) {
    return {};
  }
}

void throughCodePage(std::optional<Text>& text) {
  if (text && !isAscii(*text)) text = narrowed(*std::move(text));
}

// The pieces that a NUL ends.
std::vector<Text> piecesOf(TextView names) {
  std::vector<Text> pieces;
  for (std::size_t end = names.find(u'\0'); end != TextView::npos; end = names.find(u'\0')) {
    pieces.emplace_back(names.substr(0, end));
    names.remove_prefix(end + 1);
  }
  return pieces;
}

void hand(const std::vector<Text>& pieces, TextArray& array, std::int32_t& count) {
  array = TextArray::of(pieces);
  count = static_cast<std::int32_t>(pieces.size());
}

}  // namespace

void cInifile::CheckForUnicodeFile() {}

void cInifile::setIsNt(bool value) {
  isNt_ = value;
  hostPath_.reset();
}

void cInifile::setPath(TextView value) {
  path_ = value;
  hostPath_.reset();
}

// Worked out once for each path; one that cannot be is tried again.
const std::string& cInifile::hostPath() {
  if (!hostPath_ || hostPath_->empty())
    hostPath_ = profilePath(path_, isNt_ ? ProfileCall::wide : ProfileCall::narrow);
  return *hostPath_;
}

bool cInifile::SectionExists(TextView section) {
  TextArray names;
  std::int32_t count = 0;
  EnumerateAllSections(names, count);
  for (std::int32_t i = 1; i <= count; ++i)
    if (names.at(i) == section) return true;
  return false;
}

Text cInifile::Value() {
  const ProfileCall call = isNt_ ? ProfileCall::wide : ProfileCall::narrow;
  Text value = platform::readProfile(call, pointerTo(section_), pointerTo(key_),
                                     pointerTo(default_), kValueBuffer, hostPath(), narrowPage());
  if (!isNt_)
    for (std::optional<Text>* text : {&section_, &key_, &default_, &path_}) throughCodePage(*text);
  return value;
}

void cInifile::setValue(Text& value) {
  std::erase(value, u'\0');
  const ProfileCall call = isNt_ ? ProfileCall::wide : ProfileCall::narrow;
  lastReturnCode_ = platform::writeProfile(call, pointerTo(section_), pointerTo(key_), &value,
                                           hostPath(), narrowPage());
  if (isNt_) return;
  for (std::optional<Text>* text : {&section_, &key_, &path_}) throughCodePage(*text);
  value = narrowed(std::move(value));
}

void cInifile::write(const std::optional<Text>& key, const std::optional<Text>& text) {
  lastReturnCode_ = platform::writeProfile(ProfileCall::narrow, pointerTo(section_), pointerTo(key),
                                           pointerTo(text), profilePath(path_, ProfileCall::narrow),
                                           narrowPage());
}

void cInifile::DeleteKey() { write(key_, std::nullopt); }

void cInifile::DeleteSection() { write(std::nullopt, std::nullopt); }

Text cInifile::namesInBuffer(const Text* section) {
  return platform::readProfile(ProfileCall::narrow, section, nullptr, pointerTo(default_),
                               kListBuffer, profilePath(path_, ProfileCall::narrow), narrowPage());
}

Text cInifile::INISection() { return namesInBuffer(pointerTo(section_)); }

void cInifile::setINISection(TextView value) { write(std::nullopt, Text(value)); }

Text cInifile::Sections() { return namesInBuffer(nullptr); }

void cInifile::EnumerateCurrentSection(TextArray& sKey, std::int32_t& iCount) {
  hand(piecesOf(INISection()), sKey, iCount);
}

void cInifile::EnumerateAllSections(TextArray& sSections, std::int32_t& iCount) {
  std::vector<Text> pieces = piecesOf(Sections());
  std::erase_if(pieces, [](const Text& piece) { return piece.empty(); });
  hand(pieces, sSections, iCount);
}

std::int32_t cInifile::CLngDefault(TextView sString, std::int32_t lDefault) {
  try {
    return toInt32(sString);
  } catch (const RuntimeError&) {
    return lDefault;
  }
}

}  // namespace veltgeneral
