#include <gtest/gtest.h>

#include <map>

#include "ProgramRun.h"

namespace qm {
namespace {

using namespace test;

// Files of every kind of fault, and old ones in the way of what is written.
void MakeFiles(const TempFolder& folder) {
  const std::string good = Wav16(Noise16(2 * 4410), 44100, 2);
  const std::pair<const char*, std::string> files[] = {{"good.wav", good},
                                                       {"empty.wav", ""},
                                                       {"silent.wav", Wav16({}, 44100, 2)},
                                                       {"odd.wav", Wav16(Noise16(8000), 12345, 1)},
                                                       {"random.mp3", good.substr(44)},
                                                       {"text.ogg", "This is no music.\n"},
                                                       {"cut.wav", good.substr(0, 30)},
                                                       {"old.wav", "old"},
                                                       {"old.png", "old"}};
  for (const auto& [name, bytes] : files) WriteBytes(folder.File(name), bytes);
}

// Audio and pictures beside each other, not the settings of the program and of the sound server.
std::map<std::string, std::string> SoundsIn(const TempFolder& folder) {
  std::map<std::string, std::string> files;
  for (const auto& file : std::filesystem::directory_iterator(folder.Path()))
    if (file.path().has_extension()) files[file.path().filename()] = ReadBytes(file.path());
  return files;
}

TEST(BadInput, IsAnsweredByOneLineAndChangesNoFile) {
  const struct {
    const char* words;
    int status;
    const char* told;  // somewhere in the one line
  } rows[] = {
      {"", 2, "ommand"},
      {"sing", 2, "sing"},
      {"play", 2, "ITEM"},
      {"play gone.wav --device wav:old.wav", 1, "gone.wav"},
      {"play empty.wav --device wav:old.wav", 1, "empty.wav"},
      {"play silent.wav --device wav:old.wav", 1, "silent.wav"},
      {"play random.mp3 --device wav:old.wav", 1, "random.mp3"},
      {"play text.ogg --device wav:old.wav", 1, "text.ogg"},
      {"play cut.wav --device wav:old.wav", 1, "cut.wav"},
      {"play . --device wav:old.wav", 1, "'.'"},
      {"play a\nb.wav --device wav:old.wav", 1, "a?b.wav"},
      {"play good.wav::AudioStart=0.1 --device wav:old.wav", 1, "good.wav"},
      {"play good.wav --device Nowhere", 1, "Nowhere"},
      {"play good.wav good.wav --device wav:no/o.wav", 1, "no/o.wav"},
      {"play good.wav --device wav:.", 1, "'.'"},
      {"play good.wav --device wav:old.wav --events no/e", 1, "no/e"},
      {"play good.wav --device null --events /dev/full", 1, "/dev/full"},
      {"play good.wav::Extroo=3 --device wav:old.wav", 2, "Extroo"},
      {"play good.wav::Extro=soon --device wav:old.wav", 2, "soon"},
      {"play good.wav --volume 101", 2, "101"},
      {"play good.wav --device null --rate 48000", 2, "--rate"},
      {"play good.wav --device wav:", 2, "wav:"},
      {"play --list good.wav --fade 1 --device wav:old.wav", 2, "--fade"},
      {"play --desk --list good.wav --device wav:old.wav", 2, "--list"},
      {"play --players 3 good.wav --device wav:old.wav", 2, "desk"},
      {"play --desk good.wav --device null", 1, "terminal"},
      {"play good.wav --device null --playlogs no/logs", 1, "no/logs"},
      {"play good.wav --device null --playlogs /dev/full", 1, "/dev/full"},
      {"play --list gone.wav --device wav:old.wav", 1, "gone.wav"},
      {"info gone.wav --json", 1, "gone.wav"},
      {"info random.mp3", 1, "random.mp3"},
      {"copy gone.wav old.wav", 1, "gone.wav"},
      {"copy good.wav text.ogg old.wav", 1, "text.ogg"},
      {"copy good.wav old.wav --start 9", 1, "Start Position in the source file was invalid"},
      {"copy good.wav old.wav --start 0.09 --end 0.05", 1, "after the End"},
      {"copy good.wav no/o.mp3", 1, "no/o.mp3"},
      {"copy odd.wav old.wav", 1, "--rate"},
      {"copy good.wav o.mp2 --rate 8000", 1, "MP2 has no sample rate of 8000 Hz"},
      {"copy good.wav", 2, "DEST"},
      {"copy good.wav o.flac", 2, "o.flac"},
      {"copy good.wav old.wav --normalise 0", 2, "--normalise"},
      {"copy good.wav old.wav --bitrate 128", 2, "--bitrate"},
      {"copy good.wav old.wav --rate 44101", 2, "44101"},
      {"record", 2, "FILE"},
      {"record a.xyz", 2, "names no type"},
      {"record a.wav --rate 48000", 2, "48000"},
      {"record a.wav --bitrate 128", 2, "compressed"},
      {"record a.mp3 --bits 24", 2, "WAV only"},
      {"record a.wav --trigger-time 1", 2, "--trigger only"},
      {"record a.wav --device wav:", 2, "path"},
      {"record a.wav --device wav:none.wav", 1, "none.wav"},
      {"record a.wav --device Nowhere", 1, "no input 'Nowhere'"},
      {"record no/a.wav --device wav:good.wav", 1, "no such folder"},
      {"record a.mp2 --device wav:good.wav --rate 11025", 1, "11025"},
      {"tag good.wav", 2, "Field=value"},
      {"tag Year=1", 2, "FILE"},
      {"tag good.wav Yaer=1958", 2, "Yaer"},
      {"tag good.wav Year=old", 2, "old"},
      {"tag good.wav TotalLength=5", 2, "TotalLength"},
      {"tag good.wav Year=1958 silent.wav", 2, "silent.wav"},
      {"tag good.wav Year=1958 --carriers list", 2, "list"},
      {"wave --png old.png text.ogg", 1, "text.ogg"},
      {"wave --png old.png good.wav::Nonsense=1", 2, "Nonsense"},
      {"wave --png old.png good.wav --size 0x5", 2, "0x5"},
      {"wave --png old.png good.wav --highlight 3-2", 2, "3-2"},
      {"wave --png old.png good.wav --zoom highlight", 2, "highlight"},
      {"wave --png old.png good.wav --start 5 --end 5", 2, "--end"},
      {"wave --png old.png good.wav --fill-colour blue", 2, "blue"},
  };
  TempFolder folder;
  MakeFiles(folder);
  const auto before = SoundsIn(folder);
  for (const auto& row : rows) {
    ProgramRun run(folder, Quillmere(row.words));
    EXPECT_EQ(run.Status(), row.status) << row.words;
    const auto lines = Lines(run.Err());
    ASSERT_EQ(lines.size(), 1u) << row.words << ": " << run.Err();
    EXPECT_TRUE(lines[0].starts_with("quillmere: ")) << lines[0];
    EXPECT_NE(lines[0].find(row.told), std::string::npos) << row.words << ": " << lines[0];
    const bool full = std::string(row.words).ends_with("/dev/full");  // found out when it has played
    EXPECT_EQ(run.Out().empty(), !full) << row.words;
    ASSERT_TRUE(SoundsIn(folder) == before) << row.words;
  }
}

TEST(BadInput, LeavesTheOtherItemsAlone) {
  TempFolder folder;
  MakeFiles(folder);
  ProgramRun run(folder, Quillmere("play random.mp3 good.wav gone.wav good.wav --device wav:o.wav"));
  EXPECT_EQ(run.Status(), 1);
  EXPECT_EQ(Lines(run.Err()).size(), 2u) << run.Err();
  const std::string good = SoundOf(folder.File("good.wav"));
  EXPECT_EQ(SoundOf(folder.File("o.wav")), good + good);
}

}  // namespace
}  // namespace qm
