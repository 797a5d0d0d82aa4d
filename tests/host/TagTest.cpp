#include <gtest/gtest.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "ProgramRun.h"

namespace qm {
namespace {

using namespace test;
using Json = nlohmann::ordered_json;

class TagProgram : public testing::Test {
 protected:
  void SetUp() override {
    WriteBytes(m_folder.File("in.wav"), Wav16(Noise16(2 * 44100, 0.3), 44100, 2));
    ASSERT_TRUE(
        InFolder("mkdir -p sub/deep && lame --quiet -t in.wav sub/b.mp3 && sox in.wav sub/deep/a.ogg && "
                 "ffmpeg -v error -i in.wav -c:a wmav2 sub/c.wma && "
                 "lame --quiet -t --id3v1-only --tt Old --ta Ella --tg Rock in.wav 'v=1.mp3'"));
    WriteBytes(m_folder.File("sub/notes.txt"), "no audio");
  }
  bool InFolder(const std::string& command) const {
    return RunCommand("cd " + Quoted(m_folder.Path()) + " && " + command);
  }
  // What another program says of a file.
  std::string Told(const std::string& command) const {
    return InFolder(command + " >told") ? ReadBytes(m_folder.File("told")) : "";
  }

  TempFolder m_folder;
};

TEST_F(TagProgram, SavesIntoEveryFileOfAFolderForOthersToRead) {
  ASSERT_EQ(chmod(m_folder.File("sub/b.mp3").c_str(), 0640), 0);
  ProgramRun run(m_folder,
                 Quillmere("tag sub in.wav ArtistName=Ella CategoryInfo=Jazz", {"ItemTitle=Grüße = Ω"}));
  EXPECT_EQ(run.Status(), 0) << run.Err();
  EXPECT_EQ(run.Out(), "sub/b.mp3: saved\nsub/c.wma: saved\nsub/deep/a.ogg: saved\nin.wav: saved\n");
  EXPECT_EQ(run.Err(), "");
  for (const char* file : {"-Artist sub/b.mp3", "-Author sub/c.wma", "-Artist sub/deep/a.ogg"})
    EXPECT_EQ(Told(std::string("exiftool -s3 -charset exif=utf8 -Title -Genre ") + file),
              "Grüße = Ω\nJazz\nElla\n");
  EXPECT_EQ(Told("ffprobe -v error -show_entries format_tags=title -of default=nk=1:nw=1 sub/b.mp3"),
            "Grüße = Ω\n");
  struct stat access {};
  ASSERT_EQ(stat(m_folder.File("sub/b.mp3").c_str(), &access), 0);
  EXPECT_EQ(access.st_mode & 07777, 0640U);
}

TEST_F(TagProgram, TellsWhatWasCutAndWhatHasNoPlaceAndGoesOn) {
  ProgramRun run(m_folder,
                 Quillmere("tag --json v=1.mp3 none.mp3 sub/notes.txt sub/c.wma Extro=0.5004 Composer=C",
                           {"ItemTitle=A title of more than thirty characters"}));
  EXPECT_EQ(run.Status(), 1);
  EXPECT_EQ(Lines(run.Err()),
            (std::vector<std::string>{"quillmere: 'v=1.mp3' has no place for Extro, Composer",
                                      "quillmere: there is no file 'none.mp3'",
                                      "quillmere: 'sub/notes.txt' is not an audio file that can be read"}));
  EXPECT_EQ(Json::parse(run.Out()), Json::parse(R"({"files": [
    {"file": "v=1.mp3", "saved": true, "changed": {"ItemTitle": "A title of more than thirty ch"},
     "lost": ["Extro", "Composer"]},
    {"file": "none.mp3", "saved": false, "error": "there is no file 'none.mp3'"},
    {"file": "sub/notes.txt", "saved": false, "error": "'sub/notes.txt' is not an audio file that can be read"},
    {"file": "sub/c.wma", "saved": true}]})"));
  EXPECT_EQ(Told("exiftool -s3 -Genre v=1.mp3"), "Rock\n") << "a genre that was there stays";
}

TEST_F(TagProgram, CarriersAreChosen) {
  for (const char* line :
       {"tag in.wav Originator=Anna --carriers bext", "tag in.wav OutCue=end --carriers bext,rcs"}) {
    const bool cart = std::string(line).find("rcs") != std::string::npos;
    ProgramRun run(m_folder, Quillmere(line));
    EXPECT_EQ(run.Status(), 0) << run.Err();
    const std::string bytes = ReadBytes(m_folder.File("in.wav"));
    EXPECT_NE(bytes.find("bext"), bytes.npos);
    EXPECT_EQ(bytes.find("cart") != bytes.npos, cart) << line;
  }
}

}  // namespace
}  // namespace qm
