// The bridge to the PDF generator, whichever library is configured.
#include <array>
#include <map>
#include <mutex>

#include "automation/code_page.h"
#include "automation/coerce.h"
#include "automation/random.h"
#include "convert/report.h"
#include "platform/environment.h"
#include "platform/folders.h"
#include "platform/library.h"
#include "platform/paths.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

// Command file, PDF file, message: single-byte texts. 0: the PDF is written.
using Generator = std::int16_t(const char*, const char*, char*);
constexpr const char* kEntry = "VBRavpdf";

constexpr std::size_t kMessageSize = 150;

Generator& generatorIn(const std::string& path) {
  // A library stays open: its own threads and tables may outlive a call.
  static std::mutex mutex;
  static std::map<std::string, platform::Library> open;
  const std::lock_guard lock(mutex);
  auto found = open.find(path);
  if (found == open.end()) found = open.emplace(path, platform::Library(path)).first;
  return *found->second.entry<Generator>(kEntry);
}

Generator& configuredGenerator() {
  const auto chosen = platform::environment("VELTGENERAL_PDF_LIBRARY");
  return generatorIn(chosen && !chosen->empty() ? *chosen
                                                : platform::modulePath("veltgeneral-pdf"));
}

std::string hostName(TextView path) { return toBytes(fromUtf8(platform::hostPath(path))); }

// The generator's message in the code page. One that ends its text with a NUL is understood too.
Text messageIn(std::string_view buffer) {
  return Text(trim(fromBytes(buffer.substr(0, buffer.substr(0, kMessageSize).find('\0')))));
}

ErrInfo generate(TextView location, TextView commandFile, TextView pdfFile) {
  Generator& generator = configuredGenerator();
  std::array<char, kMessageSize + 1> message;
  message.fill(' ');
  message.back() = '\0';
  if (generator(hostName(commandFile).c_str(), hostName(pdfFile).c_str(), message.data()) == 0) {
    return clearedResult();
  }
  return failedAt(location, eiABORTED, messageIn({message.data(), kMessageSize}));
}

// A number of four decimals, ".7055".
Text drawnSuffix() { return shortNumber(toDouble(toCurrency(nextRandom()))); }

}  // namespace

ErrInfo Funzioni::createPdfFile(TextView sCommandFile, TextView sPdfFile) const {
  return reportedAt(u"createPdfFile",
                    [&] { return generate(u"createPdfFile", sCommandFile, sPdfFile); });
}

ErrInfo Funzioni::createPdfStream(const Variant& vntCommandStream, Variant& vntPdfStream) const {
  return reportedAt(u"createPdfStream", [&] {
    FileUtility files;
    const Text suffix = drawnSuffix();
    const std::string folder = platform::temporaryFolder();
    if (folder.size() <= 1) return clearedResult();
    const Text commandFile = fromUtf8(folder + "/cmd") + suffix;
    const Text pdfFile = fromUtf8(folder + "/pdf") + suffix;
    ErrInfo result = files.writeFile(commandFile, 0, toText(vntCommandStream));
    if (!result.isSuccess()) return result;
    result = generate(u"createPdfStream", commandFile, pdfFile);
    if (!result.isSuccess()) return result;
    Variant content;
    result = files.readBinaryFile(pdfFile, content);
    if (const Bytes* bytes = std::get_if<Bytes>(&content); bytes && result.isSuccess()) {
      vntPdfStream = fromBytes({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
    }
    return result;
  });
}

}  // namespace veltgeneral
