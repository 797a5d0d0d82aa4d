#include <gtest/gtest.h>
#include <poll.h>

#include "SoundServerBench.h"
#include "kits/sound/devices/DeviceCatalogue.h"
#include "kits/sound/devices/Input.h"
#include "kits/sound/record/RecordBench.h"
#include "kits/sound/record/RecordingFeed.h"

// The whole way in from a real sound server: what another program plays is what is in the file.
namespace qm {
namespace {

TEST(LiveRecord, TheFileHoldsWhatWasPlayed) {
  test::PulseServer server;
  if (!server.Installed()) GTEST_SKIP() << server.Program() << " is not installed";
  ASSERT_TRUE(server.Start());
  test::RecordBench bench;
  bench.UseFeed([] {
    const DeviceCatalogue catalogue(essPulseAudio);
    std::string errorText;
    return MakeLiveFeed(catalogue.MakeInput(catalogue.InputNumber("Monitor of ProbeSink"), errorText));
  });
  const auto sound = test::Noise16(48000 * 2, 0.5);
  const std::string played = bench.folder.File("in.wav");
  test::WriteBytes(played, test::Wav16(sound, 48000, 2));
  ASSERT_EQ(bench.control->Open(bench.To("out.wav", test::FormatOf(aftWAV, 48000, 2))), 0) << bench.errorText;
  const auto pumpUntil = [&](const std::function<bool()>& done) {
    return test::WaitFor([&] {
      bench.engine->Pump();
      return done();
    });
  };
  ASSERT_TRUE(pumpUntil([&] { return !bench.positions.empty(); }));
  ASSERT_TRUE(test::RunCommand("paplay " + test::Quoted(played)));
  const float at = bench.control->Position();
  ASSERT_TRUE(pumpUntil([&] { return bench.control->Position() > at + 0.5f; }));
  EXPECT_EQ(bench.control->Close(erkKeep), 0);
  // The server may join a stream into its running output some frames late.
  const auto recorded = test::FramesOf(bench.folder.File("out.wav"));
  EXPECT_NE(std::search(recorded.begin(), recorded.end(), sound.begin() + 4800, sound.end()), recorded.end());
  EXPECT_EQ(bench.control->FramesLost(), 0u);
  EXPECT_TRUE(bench.errors.empty()) << bench.errorText;
}

}  // namespace
}  // namespace qm
