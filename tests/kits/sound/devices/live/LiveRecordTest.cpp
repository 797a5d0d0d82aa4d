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

class LiveRecord : public testing::Test {
 protected:
  void SetUp() override {
    if (!server.Installed()) GTEST_SKIP() << server.Program() << " is not installed";
    ASSERT_TRUE(server.Start());
    bench.UseFeed([] {
      const DeviceCatalogue catalogue(essPulseAudio);
      std::string errorText;
      return MakeLiveFeed(catalogue.MakeInput(catalogue.InputNumber("Monitor of ProbeSink"), errorText));
    });
    test::WriteBytes(bench.folder.File("in.wav"), test::Wav16(sound, 48000, 2));
    ASSERT_EQ(bench.control->Open(bench.To("out.wav", test::FormatOf(aftWAV, 48000, 2))), 0)
        << bench.errorText;
  }
  bool Play() { return test::RunCommand("paplay " + test::Quoted(bench.folder.File("in.wav"))); }
  bool PumpUntil(const std::function<bool()>& done) {
    return test::WaitFor([&] {
      bench.engine->Pump();
      return done();
    });
  }
  // The server may join a stream into its running output some frames late.
  bool Holds(const std::vector<std::int16_t>& recorded) const {
    return std::search(recorded.begin(), recorded.end(), sound.begin() + 4800, sound.end()) != recorded.end();
  }

  const std::vector<std::int16_t> sound = test::Noise16(48000 * 2, 0.5);
  test::PulseServer server;
  test::RecordBench bench;
};

TEST_F(LiveRecord, TheFileHoldsWhatWasPlayed) {
  ASSERT_TRUE(PumpUntil([&] { return !bench.positions.empty(); }));
  ASSERT_TRUE(Play());
  const float played = bench.control->Position();
  ASSERT_TRUE(PumpUntil([&] { return bench.control->Position() > played + 0.5f; }));
  EXPECT_EQ(bench.control->Close(erkKeep), 0);
  EXPECT_TRUE(Holds(test::FramesOf(bench.folder.File("out.wav"))));
  EXPECT_EQ(bench.control->FramesLost(), 0u);
  EXPECT_TRUE(bench.errors.empty()) << bench.errorText;
}

}  // namespace
}  // namespace qm
