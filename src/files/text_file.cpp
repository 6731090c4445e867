#include "files/text_file.h"

#include <algorithm>
#include <span>

#include "automation/code_page.h"
#include "files/file_result.h"
#include "platform/paths.h"

namespace veltgeneral {

void TextFile::write(TextView text) {
  while (!text.empty()) {
    if (filled_ == kChunk) flush();
    const TextView piece = text.substr(0, kChunk - filled_);
    systemCodePage().narrow(piece, bytes_.data() + filled_);
    filled_ += piece.size();
    text.remove_prefix(piece.size());
  }
}

void TextFile::close() {
  flush();
  file_.close();
}

void TextFile::flush() {
  file_.write(std::span(bytes_).first(filled_));
  filled_ = 0;
}

ErrInfo replaceFile(TextView fileName, std::int32_t attributes,
                    const std::function<void(TextFile&)>& produce) {
  constexpr TextView kLocation = u"writeFile";
  return trapped(kLocation, kFileUtility, [&] {
    const std::string path = platform::hostPath(fileName);
    if (platform::fileAttributes(path)) platform::setFileAttributes(path, platform::kArchive);
    TextFile file(path);
    produce(file);
    file.write(u"\r\n");
    file.close();
    platform::setFileAttributes(path, attributes);
    return fileDone(kLocation);
  });
}

}  // namespace veltgeneral
