#include "kits/sound/engine/PlayPlan.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace qm {
namespace {

// The way walked step by step: the source frame at each way, by the rule that loopEnd jumps to loopStart.
std::vector<std::int64_t> Walk(const PlayPlan& plan) {
  std::vector<std::int64_t> frames;
  std::int64_t turns = plan.turns;
  for (std::int64_t at = plan.origin; at < plan.end;) {
    frames.push_back(at++);
    if (plan.hasLoop && at == plan.loopEnd && turns > 0) {
      at = plan.loopStart;
      --turns;
    }
  }
  return frames;
}

PlayPlan RandomPlan(std::mt19937& random) {
  const auto below = [&](std::int64_t limit) {
    return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(limit));
  };
  PlayPlan plan;
  plan.end = 1 + below(60);
  plan.origin = below(plan.end + 1);
  plan.loopEnd = 1 + below(plan.end);
  plan.loopStart = below(plan.loopEnd);
  plan.hasLoop = plan.origin < plan.loopEnd && random() % 4 != 0;
  plan.turns = plan.hasLoop ? below(4) : 0;
  return plan;
}

TEST(PlayPlan, AgreesWithAWalkStepByStep) {
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    const PlayPlan plan = RandomPlan(random);
    const std::vector<std::int64_t> walk = Walk(plan);
    ASSERT_EQ(plan.Length(), static_cast<std::int64_t>(walk.size()));
    std::int64_t turned = 0;
    for (std::int64_t way = 0; way < plan.Length(); ++way) {
      const auto at = static_cast<std::size_t>(way);
      if (way > 0 && walk[at] != walk[at - 1] + 1) {
        ASSERT_EQ(plan.TurnWay(turned), way);
        ++turned;
      }
      ASSERT_EQ(plan.Source(way), walk[at]);
      ASSERT_EQ(plan.TurnsDone(way), turned);
      const std::int64_t run = plan.Run(way);
      ASSERT_GT(run, 0);
      ASSERT_LE(way + run, plan.Length());
      ASSERT_EQ(walk[at] + run - 1, walk[static_cast<std::size_t>(way + run - 1)]) << "a run holds no jump";
    }
    ASSERT_EQ(turned, plan.turns);
    ASSERT_EQ(plan.Source(plan.Length()), plan.end);
    for (std::int64_t frame = 0; frame <= plan.end; ++frame) {
      const std::int64_t from = static_cast<std::int64_t>(random() % (walk.size() + 1));
      std::int64_t expected = frame == plan.end ? plan.Length() : -1;
      for (std::int64_t way = plan.Length() - 1; way >= from; --way)
        if (walk[static_cast<std::size_t>(way)] == frame) expected = way;
      ASSERT_EQ(plan.NextVisit(frame, from), expected) << frame << " from " << from;
    }
  }
}

}  // namespace
}  // namespace qm
