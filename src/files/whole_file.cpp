// FileUtility's members for whole files.
#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "automation/code_page.h"
#include "automation/text_limit.h"
#include "files/file_result.h"
#include "files/name_pattern.h"
#include "files/text_file.h"
#include "platform/files.h"
#include "platform/memory.h"
#include "platform/paths.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

constexpr std::size_t kChunk = 32 << 10;

// Through a buffer that stays in the cache: each page of the text is touched once, and only to
// receive its characters.
Text readText(platform::FileHandle& file) {
  const std::uint64_t size = file.size();
  if (size > kGreatestText) throw RuntimeError(RunTime::outOfMemory);
  Text text;
  text.reserve(size);
  platform::preferHugePages(text.data(), size * sizeof(char16_t));
  std::array<std::uint8_t, kChunk> bytes;
  std::array<char16_t, kChunk> characters;
  while (text.size() < size) {
    const std::size_t wanted = std::min<std::size_t>(kChunk, size - text.size());
    const std::size_t got = file.read(std::span(bytes).first(wanted));
    if (got == 0) throw RuntimeError(RunTime::inputPastEnd);
    systemCodePage().widen(std::span(bytes).first(got), characters.data());
    text.append(characters.data(), got);
  }
  return text;
}

}  // namespace

ErrInfo FileUtility::numFileInDir(TextView sDirectory, std::int16_t& iNumFile) {
  return trapped(u"numFileInDir", kFileUtility, [&] {
    // In "C:name" the colon ends the folder, as a separator does.
    const std::size_t nameAt = sDirectory.find_last_of(u"\\/:") + 1;
    const TextView name = sDirectory.substr(nameAt);
    const TextView pattern = name.empty() ? TextView(u"*") : name;
    const std::string folder =
        nameAt == 0 ? "./" : platform::hostPath(sDirectory.substr(0, nameAt));
    if (name.find(u'\0') != TextView::npos) throw RuntimeError(RunTime::badFileName);
    std::int16_t count = 0;
    platform::listFiles(folder, [&](const std::string& file) {
      if (!matchesPattern(fromUtf8(file), pattern)) return;
      const std::int32_t attributes = platform::fileAttributes(folder + file).value_or(0);
      if ((attributes & (platform::kHidden | platform::kSystem)) != 0) return;
      if (count == std::numeric_limits<std::int16_t>::max()) throw RuntimeError(RunTime::overflow);
      ++count;
    });
    iNumFile = count;
    return fileDone(u"numFileInDir");
  });
}

ErrInfo FileUtility::writeFile(TextView sFileName, std::int32_t attributeFile, TextView sTextFile) {
  return replaceFile(sFileName, attributeFile, [&](TextFile& file) { file.write(sTextFile); });
}

ErrInfo FileUtility::readFile(TextView sFileName, Text& sTextFile) {
  return trapped(u"readFile", kFileUtility, [&] {
    auto file = platform::FileHandle::openForReading(platform::hostPath(sFileName));
    sTextFile = readText(file);
    return ErrInfo();
  });
}

ErrInfo FileUtility::readBinaryFile(TextView sFileName, Variant& vntTextFile) {
  return trapped(u"readBinaryFile", kFileUtility, [&] {
    auto file = platform::FileHandle::openForReading(platform::hostPath(sFileName));
    const std::uint64_t size = file.size();
    if (size > kGreatestText) throw RuntimeError(RunTime::outOfMemory);
    // The code page gives every byte a character and back, so the bytes are the file's own.
    Bytes bytes(size);
    if (file.read(bytes) != size) throw RuntimeError(RunTime::inputPastEnd);
    vntTextFile = std::move(bytes);
    return ErrInfo();
  });
}

}  // namespace veltgeneral
