#include <gmock/gmock.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "ProgramRun.h"
#include "kits/common/Registry.h"
#include "kits/sound/cAudioFile.h"

namespace qm {
namespace {

using namespace test;
using nlohmann::json;
using testing::ElementsAre;

// Two stereo files of noise, one second and half of one.
class PlayProgram : public testing::Test {
 protected:
  PlayProgram() : m_first(Noise16(2 * 44100)), m_second(Noise16(2 * 22050, 1, 7)) {
    WriteBytes(m_folder.File("first.wav"), Wav16(m_first, 44100, 2));
    WriteBytes(m_folder.File("second.wav"), Wav16(m_second, 44100, 2));
  }

  void Play(std::vector<std::string> words) {
    words.insert(words.begin(), "play");
    for (const char* word : {"--device", "wav:out.wav", "--events", "events"}) words.push_back(word);
    ProgramRun run(m_folder, Quillmere(words));
    ASSERT_EQ(run.Status(), 0) << run.Err();
    EXPECT_EQ(run.Err(), "");
    m_events.clear();
    for (const std::string& line : Lines(ReadBytes(m_folder.File("events"))))
      m_events.push_back(json::parse(line));
  }

  std::string Sound() const { return SoundOf(m_folder.File("out.wav")); }

  static std::string Bytes(const std::vector<std::int16_t>& samples, std::size_t from, std::size_t to) {
    std::string bytes;
    for (std::size_t i = from * 2; i < to * 2; ++i)
      bytes += LittleEndian(static_cast<std::uint16_t>(samples[i]), 2);
    return bytes;
  }

  // Frames at which an event of that name came.
  std::vector<std::int64_t> Frames(const std::string& name) const {
    std::vector<std::int64_t> frames;
    for (const json& event : m_events)
      if (event["name"] == name) frames.push_back(event["frame"]);
    return frames;
  }

  std::vector<std::string> Transport() const {
    std::vector<std::string> names;
    for (const json& event : m_events)
      if (event["name"] != "pePositionChanged" && event["name"] != "peAudioLevelChanged")
        names.push_back(event["name"]);
    return names;
  }

  TempFolder m_folder;
  const std::vector<std::int16_t> m_first, m_second;
  std::vector<json> m_events;
};

TEST_F(PlayProgram, WritesTheVerySamplesBetweenAudioStartAndAudioEnd) {
  Play({"first.wav::AudioStart=0.25,AudioEnd=0.75"});
  EXPECT_EQ(Sound(), Bytes(m_first, 11025, 33075));
}

TEST_F(PlayProgram, JoinsItemsWithoutAFrameBetweenThem) {
  Play({"first.wav", "second.wav", "first.wav"});
  EXPECT_EQ(Sound(), Bytes(m_first, 0, 44100) + Bytes(m_second, 0, 22050) + Bytes(m_first, 0, 44100));
  EXPECT_THAT(Frames("pePlaying"), ElementsAre(0, 44100, 66150));
  EXPECT_THAT(Frames("peClosed"), ElementsAre(44100, 66150, 110250));
}

TEST_F(PlayProgram, TellsMarksAtTheirFrames) {
  Play({"second.wav", "first.wav::IntroStart=0.1,IntroEnd=0.3,Extro=0.9,HookEnd=0.5,HookStart=0.2"});
  EXPECT_THAT(Frames("peIntroStartReached"), ElementsAre(22050 + 4410));
  EXPECT_THAT(Frames("peHookStartReached"), ElementsAre(22050 + 8820));
  EXPECT_THAT(Frames("peIntroEndReached"), ElementsAre(22050 + 13230));
  EXPECT_THAT(Frames("peHookEndReached"), ElementsAre(22050 + 22050));
  EXPECT_THAT(Frames("peExtroReached"), ElementsAre(22050, 22050 + 39690));
}

TEST_F(PlayProgram, WritesEveryTransportEventInItsOrder) {
  Play({"second.wav::IntroEnd=0.2"});
  EXPECT_THAT(Transport(), ElementsAre("peQueryPlay", "peQueryOpen", "peOpening", "peOpened", "peQueryCue",
                                       "peCued", "pePlaying", "peIntroEndReached", "peExtroReached",
                                       "peAudioEndReached", "peQueryClose", "peClosing", "peClosed"));
}

TEST_F(PlayProgram, WritesEventsAsPromised) {
  Play({"second.wav::IntroEnd=0.25"});
  EXPECT_THAT(
      Lines(ReadBytes(m_folder.File("events"))),
      testing::Contains(R"({"frame":11025,"seconds":0.25,"player":1,"event":32,"name":"peIntroEndReached",)"
                        R"("hdref":"second.wav","s1":0,"s2":0,"str1":"","str2":""})"));
  ProgramRun run(m_folder,
                 Quillmere({"play", "second.wav::IntroEnd=0.25", "--device", "wav:out.wav", "--json"}));
  EXPECT_EQ(run.Status(), 0);
  EXPECT_EQ(run.Out(), ReadBytes(m_folder.File("events")));
}

TEST_F(PlayProgram, FadesOverTheEndOfEachItem) {
  Play({"first.wav::AudioStart=0.2", "--fade", "0.4"});
  EXPECT_THAT(Frames("peVolumeChangeStartNotify"), ElementsAre(26460 - 8820));
  EXPECT_THAT(Frames("peVolumeChangeEndNotify"), ElementsAre(44100 - 8820));
  const std::string sound = Sound();
  ASSERT_EQ(sound.size(), 4u * (44100 - 8820));
  EXPECT_EQ(sound.substr(0, 4 * 17640), Bytes(m_first, 8820, 26460));
  for (std::size_t frame : {26460, 30000, 35000, 44000}) {
    const double gain = static_cast<double>(44100 - frame) / 17640;
    const auto* at = reinterpret_cast<const unsigned char*>(sound.data()) + 4 * (frame - 8820);
    EXPECT_NEAR(static_cast<std::int16_t>(at[0] | at[1] << 8), gain * m_first[2 * frame], 1.5) << frame;
  }
}

TEST_F(PlayProgram, FiresTheFadeAtTheSettingsLevel) {
  Play({"first.wav", "--fade", "0.4"});
  // From 100 per cent down to 65, the settings' level at first, takes 35 per cent of the fade.
  EXPECT_THAT(Frames("peFadingOut"), ElementsAre(26460 + 6174));
}

TEST_F(PlayProgram, PlaysOnlyHooksWhereAskedTo) {
  Play({"first.wav::HookStart=0.5,HookEnd=0.75", "second.wav::HookStart=0.1,HookEnd=0.2", "--hook"});
  EXPECT_THAT(Frames("pePlaying"), ElementsAre(0, 11025));
  EXPECT_THAT(Frames("peHookEndReached"), ElementsAre(11025, 15435));
  EXPECT_EQ(Sound().substr(0, 4 * 11025), Bytes(m_first, 22050, 33075));
}

TEST_F(PlayProgram, ChangesVolumeSpeedAndLength) {
  Play({"first.wav", "--volume", "50"});
  const std::string half = Sound();
  ASSERT_EQ(half.size(), 4u * 44100);
  const auto* bytes = reinterpret_cast<const unsigned char*>(half.data());
  for (std::size_t i : {0u, 1u, 5001u, 88199u})
    EXPECT_NEAR(static_cast<std::int16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8), m_first[i] / 2.0, 1) << i;
  Play({"first.wav", "--speed", "2"});
  EXPECT_EQ(Sound().size(), 4u * 22050);
  Play({"first.wav", "--stretch", "1.5"});
  EXPECT_EQ(Sound().size(), 4u * 66150);
}

struct Shape {
  std::vector<std::string> words;
  std::int32_t rate, channels, bits;
  std::int64_t frames;
};

TEST_F(PlayProgram, WritesTheFormatAskedFor) {
  const Shape shapes[] = {
      {{"second.wav"}, 44100, 2, 16, 22050},
      {{"second.wav", "--rate", "48000"}, 48000, 2, 16, 24000},
      {{"second.wav", "--channels", "1"}, 44100, 1, 16, 22050},
      {{"second.wav", "--float"}, 44100, 2, 32, 22050},
  };
  for (const Shape& shape : shapes) {
    Play(shape.words);
    cAudioFile file;
    ASSERT_EQ(file.OpenForRead(m_folder.File("out.wav")), 0) << file.ErrorText();
    EXPECT_EQ(file.SampleRate(), shape.rate) << shape.words.back();
    EXPECT_EQ(file.Channels(), shape.channels) << shape.words.back();
    EXPECT_EQ(file.Format().BitsPerSample(), shape.bits) << shape.words.back();
    EXPECT_EQ(file.NumberSamples(), shape.frames) << shape.words.back();
  }
}

TEST_F(PlayProgram, TakesTheVolumeFromTheProfile) {
  FileRegistry(m_folder.File("quillmere/registry"))
      ->Write("SOFTWARE\\Quillmere\\AudioSettings\\Profiles\\Studio\\Players", "GeneralVolume", "0");
  Play({"second.wav", "--profile", "Studio"});
  EXPECT_EQ(Sound(), std::string(4 * 22050, '\0'));
  Play({"second.wav"});
  EXPECT_EQ(Sound(), Bytes(m_second, 0, 22050));
}

// A file that loops for days is interrupted: what was written so far is a whole WAV file.
TEST_F(PlayProgram, FinishesTheFileWhenInterrupted) {
  WriteBytes(m_folder.File("long.wav"), Wav16(Noise16(44100 * 6), 44100, 1));
  const std::string pipe = m_folder.File("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const int number : {SIGINT, SIGTERM}) {
    ProgramRun run(m_folder, Quillmere({"play", "long.wav::LoopStart=4.5,LoopEnd=5,LoopNumberLoops=400000",
                                        "second.wav", "--device", "wav:out.wav", "--events", "pipe"}));
    std::ifstream events(pipe);
    std::string line, last;
    while (std::getline(events, line) && line.find("peLoopRestart") == line.npos) {
    }
    run.Signal(number);
    while (std::getline(events, line)) last = line;
    EXPECT_EQ(run.Status(), 128 + number);
    EXPECT_EQ(run.Err(), "");
    EXPECT_NE(last.find("\"peClosed\""), std::string::npos) << last;
    cAudioFile file;
    ASSERT_EQ(file.OpenForRead(m_folder.File("out.wav")), 0) << file.ErrorText();
    EXPECT_GE(file.NumberSamples(), 5 * 44100);
  }
}

TEST_F(PlayProgram, TellsTheMainEventsToPeople) {
  ProgramRun run(m_folder,
                 Quillmere({"play", "first.wav::Extro=0.5,ItemTitle=Morning", "--device", "wav:out.wav"}));
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
