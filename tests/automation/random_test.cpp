#include "automation/random.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

namespace veltgeneral {
namespace {

TEST(Random, AFreshProcessBeginsWithTheKnownSequenceAndThreadsShareIt) {
  EXPECT_FLOAT_EQ(static_cast<float>(nextRandom()), 0.7055475F);
  EXPECT_FLOAT_EQ(static_cast<float>(nextRandom()), 0.533424F);

  // Far below the period of 2^24, so a number that comes twice was handed out twice.
  std::vector<double> drawn[4];
  {
    std::vector<std::jthread> threads;
    for (auto& own : drawn) {
      threads.emplace_back([&own] {
        while (own.size() < 100'000) own.push_back(nextRandom());
      });
    }
  }
  std::set<double> all;
  for (const auto& own : drawn) all.insert(own.begin(), own.end());
  EXPECT_EQ(all.size(), 400'000u);
  EXPECT_GE(*all.begin(), 0);
  EXPECT_LT(*all.rbegin(), 1);
}

}  // namespace
}  // namespace veltgeneral
