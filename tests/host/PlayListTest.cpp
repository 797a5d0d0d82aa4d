#include <regex>

#include "PlayFixture.h"

namespace qm {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

class PlayListProgram : public PlayFixture {};

TEST_F(PlayListProgram, StartsEachItemOnTheFrameOfTheExtroBeforeIt) {
  EXPECT_THAT(Play("--list first.wav::Extro=0.6 second.wav::AudioStart=0.1,Extro=0.35 first.wav"),
              ElementsAre());
  Samples sum;
  Mix(sum, 0, m_first);
  Mix(sum, 26460, m_second, 4410);
  Mix(sum, 26460 + 11025, m_first);
  EXPECT_TRUE(Sound() == sum);
}

TEST_F(PlayListProgram, LeavesARecordOfEachEntryAndOfTheList) {
  Play("--list first.wav::Extro=0.75 second.wav::HookStart=0.25,HookEnd=0.5 --hook --playlogs logs");
  Play("first.wav::AudioEnd=0.5 gone.wav second.wav --playlogs logs", 1);
  std::vector<std::string> logs = Lines(ReadBytes(m_folder.File("logs")));
  for (std::string& line : logs) {
    EXPECT_THAT(line, testing::ContainsRegex("StDt=[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:"));
    line = std::regex_replace(line, std::regex(" StDt=[^ ]+| HD.Ser=\"[^\"]+\"| Login=\"[^\"]+\""), "");
  }
  EXPECT_THAT(logs,
              ElementsAre("HDRef=\"first.wav\" Dur=1 Flags=16384 Player=1",
                          "HDRef=\"second.wav\" Dur=0.5 Flags=24576 Player=1",
                          "HDRef=\"List\" Dur=1 Flags=16384 Player=1", "HDRef=\"first.wav\" Dur=0.5 Player=1",
                          "HDRef=\"second.wav\" Dur=0.5 Player=1"));
}

TEST_F(PlayListProgram, BeginsWithTheFirstEntryThatCanBePlayed) {
  WriteBytes(m_folder.File("bad.wav"), "no audio at all");
  EXPECT_THAT(Play("--list gone.wav bad.wav first.wav::AudioStart=1 second.wav", 1),
              ElementsAre(HasSubstr("gone.wav"), HasSubstr("bad.wav"), HasSubstr("nothing to play")));
  EXPECT_TRUE(Sound() == m_second);
}

// Files that come to grief once the list runs: read in full at the start, needed only half a minute later.
TEST_F(PlayListProgram, PassesOverWhatHasBecomeUnplayable) {
  const Samples lead = Noise16(2 * 40 * 44100, 0.3, 9);
  WriteBytes(m_folder.File("lead.wav"), Wav16(lead, 44100, 2));
  for (const bool gone : {true, false}) {
    WriteBytes(m_folder.File("victim.wav"), Wav16(m_second, 44100, 2));
    PlayIntoPipe("--list lead.wav::Extro=39.5 victim.wav first.wav victim.wav", "pePlaying");
    WriteBytes(m_folder.File("victim.wav"), "no audio any more");
    if (gone) unlink(m_folder.File("victim.wav").c_str());
    ReadToTheEnd();
    EXPECT_EQ(m_run->Status(), 1);
    const auto told = Lines(m_run->Err());
    // One that is there but fails is tried again until there is silence.
    if (gone)
      EXPECT_THAT(told, ElementsAre(HasSubstr("not there any more"), HasSubstr("not there any more")));
    else
      EXPECT_THAT(told, ElementsAre(HasSubstr("not an audio file"), HasSubstr("passed over"),
                                    HasSubstr("passed over")));
    Samples sum;
    Mix(sum, 0, lead);
    Mix(sum, (gone ? 395 : 400) * 4410, m_first);
    EXPECT_TRUE(Sound() == sum);
  }
}

}  // namespace
}  // namespace qm
