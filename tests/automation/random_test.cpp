#include "automation/random.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
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
  std::set<double> all;
  for (const auto& own : drawn) all.insert(own.begin(), own.end());
  EXPECT_EQ(all.size(), drawn.size() * kEach);
  EXPECT_GE(*all.begin(), 0);
  EXPECT_LT(*all.rbegin(), 1);
}

}  // namespace
}  // namespace veltgeneral
