#include "progress.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>

#include "platform/terminal.h"

namespace veltgeneral::tool {
namespace {

constexpr std::chrono::milliseconds kPause(100);

}  // namespace

std::string sizeText(std::uint64_t bytes) {
  constexpr std::array kUnits{"B", "kB", "MB", "GB", "TB"};
  auto value = static_cast<double>(bytes);
  std::size_t unit = 0;
  while (value >= 999.95 && unit + 1 < kUnits.size()) {
    value /= 1000;
    ++unit;
  }
  char text[32];
  std::snprintf(text, sizeof text, "%.*f %s", unit == 0 ? 0 : 1, value, kUnits[unit]);
  return text;
}

Progress::Progress() : columns_(platform::terminalColumns()) {}

Progress::~Progress() {
  if (any_) std::cerr << '\n';
}

std::string Progress::line(std::uint64_t done, std::uint64_t total) const {
  const double seconds = std::chrono::duration<double>(Clock::now() - begun_).count();
  const auto rate =
      static_cast<std::uint64_t>(static_cast<double>(done) / std::max(seconds, 0.001));
  const std::string speed = std::string(2, ' ').append(sizeText(rate)).append("/s");
  if (total == 0) return sizeText(done) + speed;
  std::string numbers(1, ' ');
  numbers += std::to_string(done * 100 / total) + " %  " + sizeText(done) + " of ";
  numbers += sizeText(total) + speed;
  // The last column stays free: a full line would wrap.
  const int room = std::min(*columns_ - static_cast<int>(numbers.size()) - 3, 40);
  if (room < 1) return numbers;
  const auto width = static_cast<std::size_t>(room);
  const auto filled = static_cast<std::size_t>(
      static_cast<double>(width) * static_cast<double>(done) / static_cast<double>(total));
  return '[' + std::string(filled, '#') + std::string(width - filled, ' ') + ']' + numbers;
}

void Progress::show(std::uint64_t done, std::uint64_t total) {
  if (!columns_) return;
  const Clock::time_point now = Clock::now();
  if (any_ && done != total && now - drawn_ < kPause) return;
  any_ = true;
  drawn_ = now;
  std::cerr << '\r' << line(done, total) << "\x1b[K" << std::flush;
}

}  // namespace veltgeneral::tool
