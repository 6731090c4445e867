// What rows share: documented results, and outputs that a failure leaves as they were. No call may
// show that a signal interrupted it.
#pragma once

#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "faults/operation.h"

namespace veltgeneral::faults {

// The run-time error, and nothing handed out.
inline bool runTime(const Outcome& got, const Outcome& undisturbed, int error) {
  constexpr std::array kNumbers{std::pair{EACCES, 70}, std::pair{EPERM, 70}, std::pair{ENOSPC, 61},
                                std::pair{EMFILE, 67}, std::pair{ENOMEM, 7}, std::pair{EIO, 57}};
  const auto* row = std::ranges::find(kNumbers, error, [](const auto& pair) { return pair.first; });
  return row != kNumbers.end() && got.number == row->second &&
         (undisturbed.seen.empty() || got.seen == "kept");
}

// What fails is not told.
inline bool silent(const Outcome& got, const Outcome& undisturbed, int error) {
  return error != EINTR && got.number == undisturbed.number && got.seen == undisturbed.seen;
}

// A success that hands out nothing.
inline bool empty(const Outcome& got, const Outcome&, int error) {
  return error != EINTR && got.number == 0 && got.seen.empty();
}

inline bool fails(const Outcome& got, const Outcome&, int error) {
  return error != EINTR && got.number != 0;
}

template <std::int32_t kNumber>
bool failsWith(const Outcome& got, const Outcome&, int error) {
  return error != EINTR && got.number == kNumber;
}

// `body` fills an `Out` that holds `kept` before; `show` makes a text of it.
template <class Out>
Outcome filled(const Site& site, Out kept, const std::function<ErrInfo(Out&)>& body,
               const std::function<std::string(const Out&)>& show) {
  Out out = kept;
  Outcome outcome = site.result([&] { return body(out); });
  outcome.seen += out == kept ? "kept" : show(out);
  return outcome;
}

inline Outcome filledText(const Site& site, const std::function<ErrInfo(Text&)>& body) {
  return filled<Text>(site, u"kept", body, [](const Text& text) { return toUtf8(text); });
}

inline void nothing(const Site&) {}

inline void setAttribute(const Site& site, const char* file, const char* name,
                         std::string_view value) {
  ::setxattr(site.file(file).c_str(), name, value.data(), value.size(), 0);
}

inline void addToHive(const Site& site, const std::string& text) {
  site.put("registry/machine.reg", site.get("registry/machine.reg") + "\n" + text);
}

}  // namespace veltgeneral::faults
