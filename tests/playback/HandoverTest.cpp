#include <gtest/gtest.h>

#include "support/HandoverRun.h"

namespace qm {
namespace {

TEST(Handover, EveryEntryJoinsOnItsFrameAndNothingIsLost) {
  test::Palette palette(16, 11);
  const test::HandoverOutcome outcome = test::HandoverRun().Play(palette, 150);
  EXPECT_EQ(outcome.handovers, 149u);
  EXPECT_EQ(outcome.misplaced, 0u);
  EXPECT_EQ(outcome.wrongFrames, 0u);
  EXPECT_EQ(outcome.lostFrames, 0);
  EXPECT_LE(outcome.mostFilesOpen, 3);
  EXPECT_GE(outcome.mostFilesOpen, 2);
}

}  // namespace
}  // namespace qm
