// FileUtility's reader of files whose records all have one length.
#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string>

#include "automation/code_page.h"
#include "automation/coerce.h"
#include "automation/text_array_filler.h"
#include "convert/only_ascii.h"
#include "files/file_result.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

constexpr TextView kLocation = u"ooReadFile";
constexpr std::int32_t kLineBreak = 2;
constexpr std::size_t kChunk = 32 << 10;
constexpr std::array<std::int16_t, 11> kLengths{20,  25,  125, 150, 160, 207,
                                                247, 400, 450, 962, 970};

// The record's place in the file, counted with its line break. Throws RuntimeError 6 where 16 bits
// do not hold it.
std::int32_t strideOf(std::int16_t length) {
  const std::int32_t stride = length + kLineBreak;
  if (stride > std::numeric_limits<std::int16_t>::max()) throw RuntimeError(RunTime::overflow);
  return stride;
}

// Nothing where the file is not made of such records. The last line break may be missing.
std::optional<std::int64_t> recordCount(std::uint64_t size, std::int32_t stride) {
  if (stride == 0) throw RuntimeError(RunTime::divisionByZero);
  const auto bytes = static_cast<std::int64_t>(size);
  if ((bytes + kLineBreak) % stride == 0) return (bytes + kLineBreak) / stride;
  if (bytes % stride == 0) return bytes / stride;
  return std::nullopt;
}

// How many of `wanted` records there are from `first` on.
std::int16_t clamped(std::int16_t wanted, std::int32_t first, std::int64_t records) {
  if (std::int64_t{first} + wanted <= records) return wanted;
  return static_cast<std::int16_t>(std::max<std::int64_t>(records - first + 1, 0));
}

// A record as the list gets it: without blanks at its end, but for a record that has nothing else.
TextView cleaned(TextView record) {
  if (record.back() != u' ') return record;
  const TextView trimmed = trimRight(record);
  return trimmed.empty() ? record.substr(0, 1) : trimmed;
}

// Reads the records a chunk at a time, into the memory of the list itself.
void readRecords(platform::FileHandle& file, std::size_t length, std::int32_t first,
                 std::int32_t count, TextArray& list) {
  if (count <= 0) return;
  if (first < 1) throw RuntimeError(RunTime::badRecordNumber);
  const Funzioni created;  // whose making every caller sees in the decimal separator
  const std::size_t stride = length + kLineBreak;
  std::array<std::uint8_t, kChunk> bytes;
  std::uint64_t offset = (static_cast<std::uint64_t>(first) - 1) * stride;
  TextArrayFiller filler(list, 1);
  for (auto left = static_cast<std::size_t>(count); left > 0;) {
    const std::size_t records = std::min(kChunk / stride, left);
    left -= records;
    const std::size_t got = file.readAt(offset, std::span(bytes).first(records * stride));
    offset += got;
    const std::span<char16_t> text = filler.claim(got);
    systemCodePage().widen(std::span(bytes).first(got), text.data());
    keepOnlyAscii(text);
    for (std::size_t begin = 0; begin < records * stride; begin += stride) {
      // The file has become shorter; only a line break may be missing.
      if (begin + length > got) throw RuntimeError(RunTime::inputPastEnd);
      filler.show(cleaned(TextView(text.data() + begin, length)));
    }
  }
}

}  // namespace

ErrInfo FileUtility::ooReadFile(TextView sFlLename, std::int16_t iObjectLen,
                                std::int32_t lStartPosition, std::int16_t& iNumObject,
                                TextArray& sOList) {
  return trapped(kLocation, kFileUtility, [&] {
    const std::string path = platform::hostPath(sFlLename);
    const std::uint64_t size = platform::fileLength(path);
    const auto records = recordCount(size, strideOf(iObjectLen));
    const auto length = [&] { return toText(std::int32_t{iObjectLen}); };
    if (!records) {
      return fileAborted(kLocation, u"File length [" + fromUtf8(std::to_string(size)) +
                                        u"] not compatible with string length[" + length() + u"]");
    }
    if (!std::ranges::binary_search(kLengths, iObjectLen)) {
      return fileAborted(
          kLocation, u"Lenght string not supported[" + length() + u"] supported type are: 20, 25");
    }
    auto file = platform::FileHandle::openForReading(path);
    iNumObject = clamped(iNumObject, lStartPosition, *records);
    readRecords(file, static_cast<std::size_t>(iObjectLen), lStartPosition, iNumObject, sOList);
    return fileDone(kLocation);
  });
}

}  // namespace veltgeneral
