#include "automation/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <thread>
#include <vector>

namespace veltgeneral {
namespace {

TEST(Random, AFreshProcessBeginsWithTheKnownSequenceAndThreadsShareIt) {
  EXPECT_FLOAT_EQ(static_cast<float>(nextRandom()), 0.7055475F);
  EXPECT_FLOAT_EQ(static_cast<float>(nextRandom()), 0.533424F);

  // Far below the period of 2^24, so a number that comes twice was handed out twice.
  constexpr std::size_t kEach = 100000;
  std::array<std::vector<double>, 4> drawn;
  {
    std::vector<std::jthread> threads;
    for (auto& own : drawn) {
      threads.emplace_back([&own] {
        for (std::size_t i = 0; i < kEach; ++i) own.push_back(nextRandom());
      });
    }
  }
  std::vector<double> all;
  for (const auto& own : drawn) all.insert(all.end(), own.begin(), own.end());
  std::ranges::sort(all);
  EXPECT_EQ(std::ranges::adjacent_find(all), all.end());
  EXPECT_GE(all.front(), 0);
  EXPECT_LT(all.back(), 1);
}

}  // namespace
}  // namespace veltgeneral
