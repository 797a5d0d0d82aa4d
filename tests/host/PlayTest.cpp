#include "PlayFixture.h"
#include "kits/common/Registry.h"
#include "kits/sound/cAudioFile.h"

namespace qm {
namespace {

using namespace test;
using testing::ElementsAre;

class PlayProgram : public PlayFixture {};

TEST_F(PlayProgram, JoinsTheVerySamplesAndTellsMarksAtTheirFrames) {
  EXPECT_THAT(Play("second.wav first.wav::AudioStart=0.1,IntroStart=0.2,IntroEnd=0.3,Extro=0.9,"
                   "HookEnd=0.5,HookStart=0.25,AudioEnd=0.95 second.wav"),
              ElementsAre());
  const std::int64_t first = 22050, audio = first - 4410, third = audio + 41895;
  Samples sum = m_second;
  Mix(sum, first, m_first, 4410, 41895);
  Mix(sum, third, m_second);
  EXPECT_TRUE(Sound() == sum);
  EXPECT_THAT(Frames("pePlaying"), ElementsAre(0, first, third));
  EXPECT_THAT(Frames("peClosed"), ElementsAre(first, third, third + 22050));
  EXPECT_THAT(Frames("peIntroStartReached"), ElementsAre(audio + 8820));
  EXPECT_THAT(Frames("peHookStartReached"), ElementsAre(audio + 11025));
  EXPECT_THAT(Frames("peIntroEndReached"), ElementsAre(audio + 13230));
  EXPECT_THAT(Frames("peHookEndReached"), ElementsAre(audio + 22050));
  EXPECT_THAT(Frames("peExtroReached"), ElementsAre(first, audio + 39690, third + 22050));
}

TEST_F(PlayProgram, WritesEveryEventInItsOrderAsPromised) {
  Play("second.wav::IntroEnd=0.25");
  std::vector<std::string> transport;
  for (const auto& event : m_events)
    if (event["name"] != "pePositionChanged" && event["name"] != "peAudioLevelChanged")
      transport.push_back(event["name"]);
  EXPECT_THAT(transport, ElementsAre("peQueryPlay", "peQueryOpen", "peOpening", "peOpened", "peQueryCue",
                                     "peCued", "pePlaying", "peIntroEndReached", "peExtroReached",
                                     "peAudioEndReached", "peQueryClose", "peClosing", "peClosed"));
  EXPECT_THAT(
      Lines(ReadBytes(m_folder.File("events"))),
      testing::Contains(R"({"frame":11025,"seconds":0.25,"player":1,"event":32,"name":"peIntroEndReached",)"
                        R"("hdref":"second.wav","s1":0,"s2":0,"str1":"","str2":""})"));
  ProgramRun run(m_folder, Quillmere("play second.wav::IntroEnd=0.25 --device wav:out.wav --json"));
  EXPECT_EQ(run.Status(), 0);
  EXPECT_EQ(run.Out(), ReadBytes(m_folder.File("events")));
}

TEST_F(PlayProgram, FadesOverTheEndOfEachItem) {
  Play("first.wav::AudioStart=0.2 --fade 0.4");
  EXPECT_THAT(Frames("peVolumeChangeStartNotify"), ElementsAre(26460 - 8820));
  EXPECT_THAT(Frames("peVolumeChangeEndNotify"), ElementsAre(44100 - 8820));
  // From 100 per cent down to 65, the settings' level at first, takes 35 per cent of the fade.
  EXPECT_THAT(Frames("peFadingOut"), ElementsAre(26460 - 8820 + 6174));
  const Samples sound = Sound();
  ASSERT_EQ(sound.size(), 2u * (44100 - 8820));
  for (std::size_t frame = 8820; frame < 44100; ++frame) {
    const double gain = std::min(1.0, static_cast<double>(44100 - frame) / 17640);
    ASSERT_NEAR(sound[2 * (frame - 8820)], gain * m_first[2 * frame], gain < 1 ? 1.5 : 0) << frame;
  }
}

TEST_F(PlayProgram, PlaysOnlyHooksWhereAskedTo) {
  Play("first.wav::HookStart=0.5,HookEnd=0.75 second.wav::HookStart=0.1,HookEnd=0.2 --hook");
  EXPECT_THAT(Frames("pePlaying"), ElementsAre(0, 11025));
  EXPECT_THAT(Frames("peHookEndReached"), ElementsAre(11025, 15435));
  Samples hook, sound = Sound();
  Mix(hook, 0, m_first, 22050, 33075);
  sound.resize(hook.size());
  EXPECT_TRUE(sound == hook);
}

TEST_F(PlayProgram, WritesTheFormatSpeedAndLengthAskedFor) {
  const struct {
    const char* options;
    std::int32_t rate, channels, bits;
    std::int64_t frames;
  } rows[] = {{"", 44100, 2, 16, 22050},
              {" --rate 48000", 48000, 2, 16, 24000},
              {" --channels 1", 44100, 1, 16, 22050},
              {" --float", 44100, 2, 32, 22050},
              {" --speed 2", 44100, 2, 16, 11025},
              {" --stretch 1.5", 44100, 2, 16, 33075}};
  for (const auto& row : rows) {
    Play(std::string("second.wav") + row.options);
    cAudioFile file;
    ASSERT_EQ(file.OpenForRead(m_folder.File("out.wav")), 0) << file.ErrorText();
    EXPECT_EQ(file.SampleRate(), row.rate) << row.options;
    EXPECT_EQ(file.Channels(), row.channels) << row.options;
    EXPECT_EQ(file.Format().BitsPerSample(), row.bits) << row.options;
    EXPECT_EQ(file.NumberSamples(), row.frames) << row.options;
  }
}

TEST_F(PlayProgram, TakesTheVolumeFromTheLineOrTheProfile) {
  FileRegistry(m_folder.File("quillmere/registry"))
      ->Write("SOFTWARE\\Quillmere\\AudioSettings\\Profiles\\Studio\\Players", "GeneralVolume", "0");
  const std::pair<const char*, double> rows[] = {{"", 1}, {" --profile Studio", 0}, {" --volume 50", 0.5}};
  for (const auto& [option, volume] : rows) {
    Play(std::string("second.wav") + option);
    const Samples sound = Sound();
    ASSERT_EQ(sound.size(), m_second.size()) << option;
    for (std::size_t i = 0; i < sound.size(); ++i)
      ASSERT_NEAR(sound[i], m_second[i] * volume, volume == 0.5 ? 1 : 0) << option << " " << i;
  }
}

// A file that loops for days is interrupted: what was written so far is a whole WAV file.
TEST_F(PlayProgram, FinishesTheFileWhenInterrupted) {
  WriteBytes(m_folder.File("long.wav"), Wav16(Noise16(44100 * 6), 44100, 1));
  for (const int number : {SIGINT, SIGTERM}) {
    PlayIntoPipe("long.wav::LoopStart=4.5,LoopEnd=5,LoopNumberLoops=400000 second.wav", "peLoopRestart");
    m_run->Signal(number);
    EXPECT_THAT(ReadToTheEnd(), testing::HasSubstr("\"peClosed\""));
    EXPECT_EQ(m_run->Status(), 128 + number);
    EXPECT_EQ(m_run->Err(), "");
    cAudioFile file;
    ASSERT_EQ(file.OpenForRead(m_folder.File("out.wav")), 0) << file.ErrorText();
    EXPECT_GE(file.NumberSamples(), 5 * 44100);
  }
}

TEST_F(PlayProgram, TellsTheMainEventsToPeople) {
  ProgramRun run(m_folder, Quillmere("play first.wav::Extro=0.5,ItemTitle=Morning --device wav:out.wav"));
  EXPECT_EQ(run.Status(), 0);
  std::vector<std::string> words;
  for (const std::string& line : Lines(run.Out()))
    words.push_back(line.substr(0, line.find_last_not_of(' ', 26) + 1));
  EXPECT_THAT(words, ElementsAre("   0:00.00  opened", "   0:00.00  cued", "   0:00.00  playing",
                                 "   0:00.50  extro", "   0:01.00  audio end", "   0:01.00  closed"));
  EXPECT_NE(run.Out().find("Morning"), std::string::npos);
}

}  // namespace
}  // namespace qm
