#include "item/ItemTagFiles.h"

#include "FieldFixture.h"
#include "kits/sound/cAudioFormat.h"
#include "kits/sound/tags/cAudioTagFile.h"
#include "kits/sound/tags/cWmaTagFile.h"
#include "support/SoundFixtures.h"

namespace qm {
namespace {

using namespace test;

class ItemTagFilesTest : public testing::Test {
 protected:
  // A minute of sound, in a folder "Ella".
  void Make(const std::string& name, const std::string& command) {
    RunCommand("mkdir " + Quoted(m_folder.File("Ella")));
    ASSERT_TRUE(RunCommand("cd " + Quoted(m_folder.File("Ella")) +
                           " && sox -n -r 22050 -c 2 in.wav synth 60 sine 440 && " + command));
    m_path = m_folder.File("Ella/" + name);
  }

  TempFolder m_folder;
  std::string m_path;
};

TEST_F(ItemTagFilesTest, AnUntitledFileIsNamedAfterItselfAndItsFolder) {
  Make("Blue Skies.mp3",
       "lame --quiet -m d -b 96 in.wav 'Blue Skies.mp3' --ta Nobody --tc Note --id3v2-only && "
       "lame --quiet -m j -b 96 in.wav joint.mp3 --tt Title");
  cHDItem item;
  item.SetAudioFileType(aftMP3);
  ASSERT_TRUE(LoadItemTags(item, m_path));
  ExpectFields(item,
               "ItemTitle=Blue Skies;ArtistName1=Ella;StudioNotes=Note;TotalLength=60;CategoryNumber=-1;"
               "ContentTypeInfo=");
  const auto format = item.AudioFormat();
  EXPECT_EQ(format->FormatType(), aftMP3);
  EXPECT_EQ(format->BitRate(), 0) << "dual channel tells none";
  item.SetAudioFileType(aftOther);
  ASSERT_TRUE(LoadItemTags(item, m_folder.File("Ella/joint.mp3")));
  ExpectFields(item, "ItemTitle=Title;ArtistName1=;StudioNotes=");
  EXPECT_NE(item.AudioFormat(), format);
  EXPECT_EQ(item.AudioFormat()->FormatType(), aftOther);
  EXPECT_EQ(item.AudioFormat()->BitRate(), 96000);
  EXPECT_FALSE(LoadItemTags(item, m_folder.File("none.mp3")));
  ExpectFields(item, "ItemTitle=Title");
}

TEST_F(ItemTagFilesTest, GenresComeAndGoByTheirNumbers) {
  const struct {
    const char *saved, *genre, *read;  // genre: in the file
  } cases[] = {
      {"ContentTypeNumber=1;CategoryNumber=17", "Rock",
       "CategoryNumber=17;CategoryInfo=Rock;ContentTypeInfo=Music"},
      {"ContentTypeNumber=1;CategoryNumber=8;CategoryInfo=Hot jazz", "Hot jazz",
       "CategoryNumber=255;CategoryInfo=Hot jazz;ContentTypeInfo=Music"},
      {"ContentTypeNumber=0;CategoryNumber=17;CategoryInfo=Rock", "Other",
       "CategoryNumber=-1;CategoryInfo=;ContentTypeInfo="},
      {"ContentTypeNumber=1;CategoryNumber=0", "Blues", "CategoryNumber=-1;CategoryInfo=;ContentTypeInfo="},
  };
  Make("x.ogg", "sox in.wav x.ogg trim 0 1");
  for (const auto& each : cases) {
    cHDItem item, read;
    SetFields(item, each.saved);
    ASSERT_TRUE(SaveItemTags(item, m_path));
    cAudioTagFile file;
    ASSERT_TRUE(file.Open(m_path));
    EXPECT_EQ(file.Fields().Text(etfGenre), each.genre);
    ASSERT_TRUE(LoadItemTags(read, m_path));
    ExpectFields(read, each.read, each.genre);
  }
}

TEST_F(ItemTagFilesTest, EveryKindOfFileGivesBackWhatItTook) {
  Make("x.mp3",
       "lame --quiet in.wav x.mp3 && twolame --quiet in.wav x.mp2 && sox in.wav x.ogg && "
       "ffmpeg -v error -i in.wav -c:a wmav2 x.wma");
  const char* fields =
      "ItemTitle=Grüße;ArtistName1=Ella;URL=http://a.b;Publisher=P;Composer=C;Performer=F;Originator=O;"
      "Year=1958;StudioNotes=N“";
  const struct {
    const char* name;
    std::int32_t type;
    bool (*load)(cHDItem&, const std::string&);
    bool (*save)(const cHDItem&, const std::string&);
  } kinds[] = {{"x.mp3", aftMP3, LoadItemTags, SaveItemTags},
               {"x.mp2", aftMP2, LoadItemTags, SaveItemTags},
               {"x.ogg", aftOgg, LoadItemTags, SaveItemTags},
               {"x.wma", aftWMA, LoadItemWma, SaveItemWma}};
  for (const auto& [name, type, load, save] : kinds) {
    const std::string path = m_folder.File(std::string("Ella/") + name);
    cHDItem item, read;
    item.SetAudioFileType(type);
    read.SetAudioFileType(type);
    SetFields(item, fields);
    ASSERT_TRUE(save(item, path) && load(read, path)) << name;
    ExpectFields(read, fields, name);
    EXPECT_EQ(read.AudioFormat()->FormatType(), type);
    EXPECT_EQ(read.AudioFormat()->SampleRate(), 22050);
    EXPECT_NEAR(read.TotalLength(), 60, 0.1);
    SetFields(item, "Composer=");
    ASSERT_TRUE(save(item, path) && load(read, path)) << name;
    ExpectFields(read, "Composer=;Performer=F", name);
  }
}

TEST_F(ItemTagFilesTest, WindowsMediaAttributesAreReadInTheirOrder) {
  const std::pair<std::vector<tyTagAttribute>, const char*> cases[] = {
      {{{"AUDIOSTART1", 1500}, {"audioend1", 20250}, {"Extro1", 19000}},
       "AudioStart1=1.5;AudioEnd1=20.25;Extro1=19"},
      {{{"Extro2", 19000}, {"AudioEnd2", 10000}}, "Extro2=10"},
      {{{"IntroEnd3", 3000}, {"IntroStart3", 4000}, {"HookStart1", 5000}}, "IntroEnd3=4;HookEnd1=5"},
      {{{"Extro4", 1000}, {"Extro", 1000}, {"Extro12", 1000}, {"Other", 1000}}, "Extro1=-1;Extro2=-1"},
      {{{"LoopStart Count=3", 2000}}, "LoopStart=4.5;LoopEnd=4.6;LoopNumberLoops=3;LoopPlayToEnd=0"},
      {{{"LoopEnd PlayToEnd=1", 9000}, {"LoopStart", 90000}}, "LoopStart=60;LoopEnd=60.1;LoopPlayToEnd=1"},
      {{{"AudioStart1", -250}}, "AudioStart1=-0.25"},
  };
  Make("x.wma", "sox in.wav -r 44100 a.wav && ffmpeg -v error -i a.wav -c:a wmav2 -b:a 64k x.wma");
  for (const auto& [attributes, expected] : cases) {
    cWmaTagFile file;
    ASSERT_TRUE(file.Open(m_path));
    while (file.DeleteAttribute(1)) {
    }
    for (const auto& [name, value] : attributes) file.AddAttribute(name, value);
    ASSERT_TRUE(file.Save());
    cHDItem item;
    SetFields(item,
              "AudioStart1=-1;Extro1=-1;Extro2=-1;IntroStart3=-1;IntroEnd3=-1;HookStart1=-1;HookEnd1=-1;"
              "LoopStart=0;LoopEnd=0");
    ASSERT_TRUE(LoadItemWma(item, m_path));
    // The length as if it were whole: the codec's own is some frames more.
    if (item.LoopStart() > 50) SetFields(item, "LoopStart=60;LoopEnd=60.1");
    ExpectFields(item, expected);
    ExpectFields(item, "ItemTitle=x");
    EXPECT_EQ(item.AudioFormat()->FormatDescription(), "WMA 44100 Hz stereo 64 kbit/s");
  }
}

TEST_F(ItemTagFilesTest, WindowsMediaAttributesAreWrittenInTheirOrder) {
  Make("x.wma", "ffmpeg -v error -i in.wav -c:a wmav2 x.wma");
  cHDItem item;
  SetFields(item,
            "AudioStart1=1.0005;AudioEnd1=20;HookEnd2=5;HookStart2=4;Extro1=-1;Extro3=59.9996;LoopStart=5;"
            "LoopEnd=7;LoopNumberLoops=2;LoopPlayToEnd=1");
  for (int twice = 0; twice < 2; ++twice) ASSERT_TRUE(SaveItemWma(item, m_path));
  cWmaTagFile file;
  ASSERT_TRUE(file.Open(m_path));
  std::string written;
  for (std::int32_t i = 1; i <= file.NumberAttributes(); ++i)
    written += file.AttributeName(i) + ": " + std::to_string(file.AttributeValue(i)) + "\n";
  EXPECT_EQ(written,
            "AudioStart1: 1000\nAudioEnd1: 20000\nHookStart2: 4000\nHookEnd2: 5000\nExtro3: 60000\n"
            "LoopStart Count=2: 5000\nLoopEnd PlayToEnd=1: 7000\n");
}

}  // namespace
}  // namespace qm
