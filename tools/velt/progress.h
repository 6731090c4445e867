// A line on the terminal that tells how far a transfer is.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace veltgeneral::tool {

// "12.3 MB"
std::string sizeText(std::uint64_t bytes);

// Silent where standard error is no terminal.
class Progress {
 public:
  Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  // Ends the line.
  ~Progress();

  // `total` is 0 where nobody knows. Draws a few times a second, and whenever all is done.
  void show(std::uint64_t done, std::uint64_t total);

 private:
  using Clock = std::chrono::steady_clock;

  std::string line(std::uint64_t done, std::uint64_t total) const;

  std::optional<int> columns_;
  Clock::time_point begun_ = Clock::now();
  Clock::time_point drawn_;
  bool any_ = false;
};

}  // namespace veltgeneral::tool
