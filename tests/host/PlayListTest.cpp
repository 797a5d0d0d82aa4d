#include <gmock/gmock.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>
#include <regex>

#include "ProgramRun.h"

namespace qm {
namespace {

using namespace test;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Samples = std::vector<std::int16_t>;

constexpr std::size_t kRate = 44100;

// Stereo files of quiet noise, one second and half of one.
class PlayListProgram : public testing::Test {
 protected:
  PlayListProgram() : m_first(Noise16(2 * kRate, 0.3)), m_second(Noise16(kRate, 0.3, 7)) {
    WriteBytes(m_folder.File("first.wav"), Wav16(m_first, kRate, 2));
    WriteBytes(m_folder.File("second.wav"), Wav16(m_second, kRate, 2));
  }

  // What it tells on standard error, line by line.
  std::vector<std::string> Play(std::vector<std::string> words, int status = 0) {
    words.insert(words.begin(), "play");
    for (const char* word : {"--device", "wav:out.wav"}) words.push_back(word);
    ProgramRun run(m_folder, Quillmere(words));
    EXPECT_EQ(run.Status(), status) << run.Err();
    return Lines(run.Err());
  }

  // Adds samples from a frame of theirs on at a frame of the sum.
  static void Mix(Samples& sum, std::size_t at, const Samples& samples, std::size_t from = 0) {
    const std::size_t count = samples.size() - 2 * from;
    sum.resize(std::max(sum.size(), 2 * at + count));
    for (std::size_t i = 0; i < count; ++i)
      sum[2 * at + i] = static_cast<std::int16_t>(sum[2 * at + i] + samples[2 * from + i]);
  }
  void ExpectSound(const Samples& expected) const {
    std::string bytes;
    for (const std::int16_t sample : expected) bytes += LittleEndian(static_cast<std::uint16_t>(sample), 2);
    EXPECT_TRUE(SoundOf(m_folder.File("out.wav")) == bytes);
  }

  // The play logs, without what changes from run to run and from user to user.
  std::vector<std::string> Logs() const {
    std::vector<std::string> lines = Lines(ReadBytes(m_folder.File("logs")));
    for (std::string& line : lines) {
      EXPECT_THAT(line, testing::ContainsRegex("StDt=[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:"));
      line = std::regex_replace(line, std::regex(" StDt=[^ ]+| HD.Ser=\"[^\"]+\"| Login=\"[^\"]+\""), "");
    }
    return lines;
  }

  TempFolder m_folder;
  const Samples m_first, m_second;
};

TEST_F(PlayListProgram, StartsEachItemOnTheFrameOfTheExtroBeforeIt) {
  EXPECT_THAT(Play({"--list", "first.wav::Extro=0.6", "second.wav::AudioStart=0.1,Extro=0.35", "first.wav"}),
              IsEmpty());
  Samples sum;
  Mix(sum, 0, m_first);
  Mix(sum, 26460, m_second, 4410);
  Mix(sum, 26460 + 11025, m_first);
  ExpectSound(sum);
}

TEST_F(PlayListProgram, LeavesARecordOfEachEntryAndOfTheList) {
  Play({"--list", "first.wav::Extro=0.75", "second.wav::HookStart=0.25,HookEnd=0.5", "--hook",
        "--playlogs", "logs"});
  Play({"first.wav::AudioEnd=0.5", "gone.wav", "second.wav", "--playlogs", "logs"}, 1);
  EXPECT_THAT(Logs(),
              ElementsAre("HDRef=\"first.wav\" Dur=1 Flags=16384 Player=1",
                          "HDRef=\"second.wav\" Dur=0.5 Flags=24576 Player=1",
                          "HDRef=\"List\" Dur=1 Flags=16384 Player=1", "HDRef=\"first.wav\" Dur=0.5 Player=1",
                          "HDRef=\"second.wav\" Dur=0.5 Player=1"));
}

TEST_F(PlayListProgram, BeginsWithTheFirstEntryThatCanBePlayed) {
  WriteBytes(m_folder.File("bad.wav"), "no audio at all");
  const auto told = Play({"--list", "gone.wav", "bad.wav", "first.wav::AudioStart=1", "second.wav"}, 1);
  EXPECT_THAT(told, ElementsAre(HasSubstr("gone.wav"), HasSubstr("bad.wav"), HasSubstr("nothing to play")));
  ExpectSound(m_second);
}

// Files that come to grief once the list runs: read in full at the start, needed only half a minute later.
// Writing its events into a pipe, the program cannot run ahead that far.
TEST_F(PlayListProgram, PassesOverWhatHasBecomeUnplayable) {
  const Samples lead = Noise16(2 * 40 * kRate, 0.3, 9);
  WriteBytes(m_folder.File("lead.wav"), Wav16(lead, kRate, 2));
  ASSERT_EQ(mkfifo(m_folder.File("pipe").c_str(), 0600), 0);
  for (const bool gone : {true, false}) {
    WriteBytes(m_folder.File("victim.wav"), Wav16(m_second, kRate, 2));
    ProgramRun run(m_folder, Quillmere({"play", "--list", "lead.wav::Extro=39.5", "victim.wav", "first.wav",
                                        "victim.wav", "--device", "wav:out.wav", "--events", "pipe"}));
    std::ifstream events(m_folder.File("pipe"));
    std::string line;
    while (std::getline(events, line) && json::parse(line)["name"] != "pePlaying") {
    }
    if (gone)
      unlink(m_folder.File("victim.wav").c_str());
    else
      WriteBytes(m_folder.File("victim.wav"), "no audio any more");
    while (std::getline(events, line)) {
    }
    EXPECT_EQ(run.Status(), 1);
    const auto told = Lines(run.Err());
    // One that is there but fails is tried again until there is silence.
    if (gone)
      EXPECT_THAT(told, ElementsAre(HasSubstr("not there any more"), HasSubstr("not there any more")));
    else
      EXPECT_THAT(told, ElementsAre(HasSubstr("not an audio file"), HasSubstr("passed over"),
                                    HasSubstr("passed over")));
    Samples sum;
    Mix(sum, 0, lead);
    Mix(sum, (gone ? 395 : 400) * kRate / 10, m_first);
    ExpectSound(sum);
  }
}

TEST_F(PlayListProgram, RefusesWhatDoesNotGoTogether) {
  const struct {
    std::vector<std::string> words;
    int status;
  } refused[] = {
      {{"--list", "first.wav", "--fade", "1"}, 2},
      {{"--desk", "--list", "first.wav"}, 2},
      {{"--players", "3", "first.wav"}, 2},  // a desk that writes a file
      {{"first.wav", "--playlogs", "no/such/folder/logs"}, 1},
      {{"first.wav", "--playlogs", "/dev/full"}, 1},
      {{"--list", "gone.wav"}, 1},
  };
  for (const auto& row : refused) EXPECT_EQ(Play(row.words, row.status).size(), 1u) << row.words[0];
  ProgramRun blind(m_folder, Quillmere({"play", "--desk", "first.wav", "--device", "null"}));
  EXPECT_EQ(blind.Status(), 1);
  EXPECT_THAT(blind.Err(), HasSubstr("terminal"));
}

}  // namespace
}  // namespace qm
