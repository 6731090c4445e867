// What the targets share: the entry that the fuzzer calls, input bytes as a text in some locale,
// and how a broken promise ends. A target defines `fuzz`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "automation/locale.h"
#include "support/error_of.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

// One input.
void fuzz(std::string_view bytes);

inline std::string_view inputAtHand;

// Ends the process, which is what the fuzzer watches for.
inline void require(bool promise, const char* what) {
  if (promise) return;
  std::cerr << "broken: " << what << " for \"" << inputAtHand << "\"\n";
  std::abort();
}

// `check` with a text and the locale that it is in. One byte chooses that, the others are UTF-8; so
// seeds stay readable.
template <class Check>
void inALocale(std::string_view bytes, Check check) {
  if (bytes.empty()) return;
  const ScopedLocale locale(static_cast<unsigned char>(bytes.front()) % 2 == 0 ? "en_US" : "it_IT");
  check(fromUtf8(bytes.substr(1)));
}

}  // namespace veltgeneral

extern "C" [[gnu::used]] inline int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                                           std::size_t size) {
  veltgeneral::inputAtHand = {reinterpret_cast<const char*>(data), size};
  veltgeneral::fuzz(veltgeneral::inputAtHand);
  return 0;
}
