#include <sys/resource.h>

#include <array>
#include <csignal>

#include "CopyFixture.h"

namespace qm::test {
namespace {

using cCopyAudioFileNCTTest = CopyFixture;

constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();

std::vector<std::int16_t> Part(const std::vector<std::int16_t>& whole, std::size_t from, std::size_t to) {
  return {whole.begin() + static_cast<std::ptrdiff_t>(from), whole.begin() + static_cast<std::ptrdiff_t>(to)};
}

TEST_F(cCopyAudioFileNCTTest, CutsAreExactAndBadOnesHaveTheirCodes) {
  const auto ramp = Ramp16(44100, 2);  // 1 s
  const std::string source = Write16("a.wav", ramp, 44100, 2);
  const struct {
    float start, end;
    std::int32_t code;
    std::size_t from, to;
  } rows[] = {
      {-1, -1, 0, 0, 44100},
      {0.25f, 0.5f, 0, 11025, 22050},
      {0.5f, 0.99949f, 0, 22050, 44078},  // 44077.5 goes to the even neighbour
      {0.5f, 0.9996f, 0, 22050, 44100},   // to three decimals the end
      {0.5f, 70, 0, 22050, 44100},
      {0.5f, 0.5f, 0, 0, 0},
      {1, -1, 0, 0, 0},
      {-0.5f, -1, -6, 0, 0},
      {1.01f, -1, -6, 0, 0},
      {kNoNumber, -1, -6, 0, 0},
      {-1, kNoNumber, -7, 0, 0},
      {0.5f, 0.4f, -8, 0, 0},
      {-1, -3, -8, 0, 0},
  };
  for (const auto& row : rows) {
    ASSERT_EQ(m_copier.CreateDestinationFile(m_out, WavFormat(44100, 2)), 0);
    EXPECT_EQ(m_copier.AddFile(source, row.start, row.end), row.code) << row.start << " " << row.end;
    m_copier.FinishDestAudioFile();
    EXPECT_EQ(Read16(m_out), Part(ramp, 2 * row.from, 2 * row.to)) << row.start << " " << row.end;
    EXPECT_FLOAT_EQ(m_copier.DestinationDuration(), static_cast<float>(row.to - row.from) / 44100);
  }
}

TEST_F(cCopyAudioFileNCTTest, EveryRefusalHasItsCodeAndText) {
  const std::string source = Write16("a.wav", Ramp16(100));
  WriteBytes(m_temp.File("text.wav"), "no audio");
  const auto other = WavFormat(8000, 1);
  other->SetFormatType(aftOther);
  const std::tuple<std::string, std::shared_ptr<cAudioFormat>, std::int32_t> creations[] = {
      {"", WavFormat(8000, 1), -2},
      {m_out, nullptr, -11},
      {m_out, std::make_shared<cAudioFormat>(), -12},
      {m_out, WavFormat(44101, 1), -3},
      {m_out, WavFormat(44100, 3), -4},
      {m_temp.File("no/such/folder.wav"), WavFormat(8000, 1), -10},
      {m_temp.Path(), WavFormat(8000, 1), -10},
      {m_out, WavFormat(8000, 1, 99), -10},
      {m_out, other, -10},
  };
  for (const auto& [path, format, code] : creations) {
    EXPECT_EQ(m_copier.CreateDestinationFile(path, format), code) << path;
    EXPECT_EQ(m_copier.LastErrorCode(), code);
    EXPECT_EQ(m_copier.DestFileName(), "");
  }
  EXPECT_EQ(m_copier.GetLastErrorDescription(), "The destination file could not be created");
  EXPECT_EQ(m_copier.AddFile(m_temp.File("gone.wav")), -1);
  EXPECT_EQ(m_copier.AddFile(source), -2);
  ASSERT_EQ(m_copier.CreateDestinationFile(m_out, WavFormat(8000, 1)), 0);
  EXPECT_EQ(m_copier.AddFile(m_temp.File("text.wav")), -5);
  EXPECT_EQ(m_copier.GetLastErrorDescription(), "The source file could not be opened");
  EXPECT_EQ(m_copier.AddFile(source, -1, -1, kNoNumber), -13);
  EXPECT_EQ(m_copier.SourceFilename(), "");
  EXPECT_EQ(CopyErrorText(-9), "VellanCompress could not load");
  EXPECT_EQ(CopyErrorText(-14), "Unknown problem, the code was -14");
}

TEST_F(cCopyAudioFileNCTTest, PercentagesAreLimited) {
  EXPECT_EQ(m_copier.MixVolume(), 75);
  for (const auto& [set, normalise, others] : {std::array{1000.0f, 500.0f, 100.0f},
                                               {0, 0.00001f, 0.00001f},
                                               {kNoNumber, 0.00001f, 0.00001f},
                                               {80, 80, 80}}) {
    m_copier.SetNormalisePercentage(set);
    m_copier.SetAutoTopThreshold(set);
    m_copier.SetMixVolume(set);
    EXPECT_EQ(m_copier.NormalisePercentage(), normalise);
    EXPECT_EQ(m_copier.AutoTopThreshold(), others);
    EXPECT_EQ(m_copier.MixVolume(), others);
  }
}

// A mix at 75 per cent: constants in, constants out, so that every frame tells which sources it holds.
TEST_F(cCopyAudioFileNCTTest, TailsAreMixedToTheFrame) {
  const auto constant = [&](const char* name, std::size_t frames, std::int16_t value) {
    return Write16(name, std::vector<std::int16_t>(frames, value));
  };
  const std::string a = constant("a.wav", 80000, 4000), b = constant("b.wav", 4001, 400),
                    c = constant("c.wav", 30000, 40);
  ASSERT_EQ(m_copier.CreateDestinationFile(m_out, WavFormat(8000, 1)), 0);
  ASSERT_EQ(m_copier.AddFile(a, -1, -1, 3), 0);
  EXPECT_EQ(m_copier.DestinationDuration(), 7);
  ASSERT_EQ(m_copier.AddFile(b, -1, -1, 0.25f), 0);  // shorter than what is held back
  ASSERT_EQ(m_copier.AddFile(c, -1, -1, 1), 0);
  m_copier.FinishDestAudioFile();
  const std::pair<std::size_t, std::int16_t> runs[] = {
      {56000, 4000},  // a
      {2001, 3300},   // a and b
      {2000, 2505},   // that again, and c
      {19999, 3030},  // a and c
      {8001, 40}};    // c, of which the last second is held back and comes unmixed
  std::vector<std::int16_t> expected;
  for (const auto& [frames, value] : runs) expected.insert(expected.end(), frames, value);
  EXPECT_EQ(Read16(m_out), expected);
}

TEST_F(cCopyAudioFileNCTTest, MixesOfOtherRatesEndOnTheFrame) {
  WriteFloat("a.wav", std::vector<float>(2 * 22050, 0.5f), 22050, 2);
  WriteFloat("b.wav", std::vector<float>(44100, 0.0f), 44100, 1);
  ASSERT_EQ(m_copier.CreateDestinationFile(m_out, WavFormat(48000, 1, wftFloat)), 0);
  ASSERT_EQ(m_copier.AddFile(m_temp.File("a.wav"), -1, -1, 0.5f), 0);
  EXPECT_EQ(m_copier.DestinationDuration(), 0.5f);
  ASSERT_EQ(m_copier.AddFile(m_temp.File("b.wav")), 0);
  m_copier.FinishDestAudioFile();
  const Decoded out = DecodeFile(m_out);
  ASSERT_EQ(out.Frames(), 72000);
  EXPECT_NEAR(out.samples[23999], 0.5, 1e-4);
  EXPECT_NEAR(out.samples[24000], 0.375, 1e-4);
  EXPECT_EQ(out.samples[48000], 0);
  EXPECT_NE(out.samples[47999], 0);
}

TEST_F(cCopyAudioFileNCTTest, AutoTopCutsBeforeTheFirstLoudFrame) {
  std::vector<std::int16_t> samples(2 * 20000, 327);  // just under one per cent
  m_copier.SetAutoTop(true);
  m_copier.SetAutoTopThreshold(1);
  for (const std::size_t loud : {20000, 12345}) {
    if (loud < 20000) samples[2 * loud + 1] = -330;
    EXPECT_EQ(m_copier.CopyAudioFile(Write16("a.wav", samples, 8000, 2), m_out, nullptr), 0);
    EXPECT_EQ(Read16(m_out), Part(samples, 2 * loud, 40000));
  }
}

TEST_F(cCopyAudioFileNCTTest, EventsComeInOrderAndEachCanCancel) {
  const std::string source = Write16("a.wav", Noise16(16000, 0.5));  // two blocks
  m_copier.SetNormalise(true);
  ASSERT_EQ(m_copier.CopyAudioFile(source, m_out, nullptr), 0);
  EXPECT_EQ(m_heard, "S 0 50 100 F S 0 50 100 F ");
  const std::string good = ReadBytes(m_out);

  int countdown = 0;
  m_copier.events.CopyStarted.connect([&](bool& cancel) { cancel = countdown-- == 0; });
  m_copier.events.CopyProgress.connect([&](std::int16_t, bool& cancel) { cancel = countdown-- == 0; });
  for (int step = 0; step < 8; ++step) {
    countdown = step;
    EXPECT_EQ(m_copier.CopyAudioFile(source, m_out, nullptr, 0, 1.5f), -14) << step;
    EXPECT_EQ(m_copier.DestFileName() + m_copier.SourceFilename(), "");
    EXPECT_EQ(ReadBytes(m_out), good);
  }
  // Cancelled between two passes the destination stays open, with what the caller had put in.
  countdown = -1;
  ASSERT_EQ(m_copier.CreateDestinationFile(m_out, WavFormat(8000, 1)), 0);
  ASSERT_EQ(m_copier.AddFile(source), 0);
  countdown = 6;
  EXPECT_EQ(m_copier.AddFile(source), -14);
  EXPECT_EQ(m_copier.DestFileName(), m_out);
  EXPECT_EQ(m_copier.DestinationDuration(), 3);
  m_copier.AbandonDestAudioFile();
  EXPECT_EQ(ReadBytes(m_out), good);
}

TEST_F(cCopyAudioFileNCTTest, CallsFromAListenerAreRefusedOrWait) {
  const std::string source = Write16("a.wav", Noise16(16000));
  WriteBytes(m_out, "old");
  std::int32_t nested = 0;
  auto listener = m_copier.events.CopyStarted.connect([&](bool&) {
    nested = m_copier.AddFile(source);
    m_copier.AbandonDestAudioFile();
  });
  ASSERT_EQ(m_copier.CreateDestinationFile(m_out, WavFormat(8000, 1)), 0);
  EXPECT_EQ(m_copier.AddFile(source), -14);
  EXPECT_EQ(nested, -2);
  EXPECT_EQ(m_copier.DestFileName(), "");
  EXPECT_EQ(ReadBytes(m_out), "old");

  listener.disconnect();
  listener = m_copier.events.CopyStarted.connect([](bool&) { throw std::runtime_error("no"); });
  EXPECT_EQ(m_copier.CopyAudioFile(source, m_out, nullptr), -14);
  EXPECT_EQ(m_copier.DestFileName() + ReadBytes(m_out), "old");

  listener.disconnect();
  m_copier.events.CopyFinished.connect([&] { m_copier.FinishDestAudioFile(); });
  ASSERT_EQ(m_copier.CreateDestinationFile(m_out, WavFormat(8000, 1)), 0);
  EXPECT_EQ(m_copier.AddFile(source), 0);
  EXPECT_EQ(m_copier.DestFileName(), "");
  EXPECT_EQ(Read16(m_out), Noise16(16000));
}

TEST_F(cCopyAudioFileNCTTest, ASourceThatBreaksOffGivesWhatWasThere) {
  const auto ramp = Ramp16(40000);
  const std::string source = Write16("a.wav", ramp);
  m_copier.events.CopyStarted.connect([&](bool&) { std::filesystem::resize_file(source, 44 + 2 * 20000); });
  EXPECT_EQ(m_copier.CopyAudioFile(source, m_out, WavFormat(8000, 1)), 0);
  EXPECT_TRUE(m_copier.SourceBrokeOff());
  EXPECT_EQ(Read16(m_out), Part(ramp, 0, 20000));
}

TEST_F(cCopyAudioFileNCTTest, AFullDiskKeepsTheOldFile) {
  const std::string source = Write16("a.wav", Noise16(200000));
  WriteBytes(m_out, "old");
  rlimit former{};
  getrlimit(RLIMIT_FSIZE, &former);
  const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{100000, former.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const std::int32_t copied = m_copier.CopyAudioFile(source, m_out, WavFormat(8000, 1));
  ASSERT_EQ(m_copier.CreateDestinationFile(m_out, WavFormat(8000, 1)), 0);
  const std::int32_t added = m_copier.AddFile(source);
  m_copier.FinishDestAudioFile();
  setrlimit(RLIMIT_FSIZE, &former);
  std::signal(SIGXFSZ, ignored);
  for (const std::int32_t code : {copied, added, m_copier.LastErrorCode()}) EXPECT_EQ(code, -10);
  EXPECT_NE(m_copier.LastErrorDetail().find("out.wav"), std::string::npos);
  EXPECT_EQ(ReadBytes(m_out), "old");
  const auto left = std::distance(std::filesystem::directory_iterator(m_temp.Path()), {});
  EXPECT_EQ(left, 3) << "the two files and the trace";
}

TEST_F(cCopyAudioFileNCTTest, TracesItsStepsAndAnUndeletableDestination) {
  const std::string source = Write16("a.wav", Ramp16(10)), folder = m_temp.File(".");
  m_copier.CopyAudioFile(source, folder, WavFormat(8000, 1));
  EXPECT_EQ(TakeTrace(), "Start CopyAudioFile|    There was a problem deleting the destination file " +
                             folder +
                             " and the error's description was reported as : \"it is no file\"|"
                             "Exit : CopyAudioFile (The destination file could not be created)|");
  EXPECT_TRUE(m_box->shown.empty());
  m_copier.CopyAudioFile(source, m_out, nullptr);
  EXPECT_TRUE(TakeTrace().ends_with("|Finish CopyAudioFile|"));
}

}  // namespace
}  // namespace qm::test
