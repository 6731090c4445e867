// The Windows and system folders, as applications ask for them.
#include "core/trap.h"
#include "platform/folders.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

// What the fixed buffers of callers hold, beside the end mark.
constexpr std::size_t kLongestFolder = 255;

bool take(const std::string& folder, Text& out) {
  Text text = fromUtf8(folder);
  if (text.empty() || text.size() > kLongestFolder) return false;
  out = std::move(text);
  return true;
}

}  // namespace

ErrInfo Funzioni::getWinAndSistemDir(Text& sWinDir, Text& sSystemDir) const {
  if (!take(platform::systemFolder(), sSystemDir) || !take(platform::windowsFolder(), sWinDir)) {
    return {eiABORTED, u"", eiERRORTYPE, u"getWinAndSistemDir", Text(kModuleName)};
  }
  return clearedResult();
}

}  // namespace veltgeneral
