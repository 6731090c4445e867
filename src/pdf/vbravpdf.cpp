// The rim of the engine: single-byte texts in, a number and a message out, and nothing thrown.
#include "pdf/vbravpdf.h"

#include <algorithm>
#include <new>
#include <string>
#include <string_view>

#include "drawing/error.h"
#include "drawing/text.h"
#include "pdf/engine.h"

namespace {

using veltgeneral::pdf::CodePage;
using veltgeneral::pdf::Failure;
using veltgeneral::pdf::Outcome;

constexpr std::size_t kMessageLength = 150;

void fill(char* message, std::string_view text) {
  text = text.substr(0, kMessageLength);
  std::fill(std::copy(text.begin(), text.end(), message), message + kMessageLength, ' ');
}

Outcome run(const char* commandFile, const char* pdfFile, char* message) {
  const CodePage codePage = CodePage::ofEnvironment();
  const auto hostPath = [&](const char* name) {
    return veltgeneral::drawing::toUtf8(codePage.decode(std::string_view(name)));
  };
  try {
    veltgeneral::pdf::generate(hostPath(commandFile), hostPath(pdfFile), codePage);
    return Outcome::written;
  } catch (const Failure& failure) {
    fill(message, codePage.encode(failure.what()));
    return failure.outcome();
  }
}

Outcome guarded(const char* commandFile, const char* pdfFile, char* message) noexcept {
  try {
    return run(commandFile, pdfFile, message);
  } catch (const std::bad_alloc&) {
    fill(message, "out of memory");
  } catch (const std::exception& error) {
    fill(message, error.what());
  } catch (...) {
    fill(message, "unknown error");
  }
  return Outcome::failed;
}

}  // namespace

std::int16_t VBRavpdf(const char* commandFile, const char* pdfFile, char* message150) {
  if (message150 == nullptr) return static_cast<std::int16_t>(Outcome::failed);
  fill(message150, {});
  if (commandFile == nullptr || pdfFile == nullptr) {
    fill(message150, "a file name is missing");
    return static_cast<std::int16_t>(Outcome::failed);
  }
  return static_cast<std::int16_t>(guarded(commandFile, pdfFile, message150));
}
