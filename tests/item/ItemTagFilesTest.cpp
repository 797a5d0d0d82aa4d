#include "item/ItemTagFiles.h"

#include <gtest/gtest.h>

#include "item/ItemFieldAccess.h"
#include "item/cHDItem.h"
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
  static void Set(cHDItem& item, const std::vector<std::pair<const char*, const char*>>& fields) {
    for (const auto& [name, value] : fields) EXPECT_EQ(SetFieldText(item, name, value), sfrSet) << name;
  }
  static void Expect(const cHDItem& item, const std::vector<std::pair<const char*, const char*>>& fields) {
    for (const auto& [name, value] : fields) EXPECT_EQ(FieldText(item, name), value) << name;
  }

  TempFolder m_folder;
  std::string m_path;
};

TEST_F(ItemTagFilesTest, AnUntitledFileIsNamedAfterItselfAndItsFolder) {
  Make("Blue Skies.mp3",
       "lame --quiet -m d -b 96 in.wav 'Blue Skies.mp3' --ta Nobody --tc Note --id3v2-only");
  const auto item = std::make_shared<cHDItem>();
  const auto formatBefore = item->AudioFormat();
  item->SetAudioFileType(aftMP3);
  ASSERT_TRUE(LoadItemTags(*item, m_path));
  Expect(*item, {{"ItemTitle", "Blue Skies"},
                 {"ArtistName1", "Ella"},
                 {"StudioNotes", "Note"},
                 {"TotalLength", "60"},
                 {"CategoryNumber", "-1"},
                 {"ContentTypeInfo", ""}});
  EXPECT_NE(item->AudioFormat(), formatBefore);
  EXPECT_EQ(item->AudioFormat()->FormatType(), aftMP3);
  EXPECT_EQ(item->AudioFormat()->BitRate(), 0) << "dual channel tells none";
  item->SetAudioFileType(aftOther);
  Make("joint.mp3", "lame --quiet -m j -b 96 in.wav joint.mp3 --tt Title");
  ASSERT_TRUE(LoadItemTags(*item, m_path));
  Expect(*item, {{"ItemTitle", "Title"}, {"ArtistName1", ""}, {"StudioNotes", ""}});
  EXPECT_EQ(item->AudioFormat()->FormatType(), aftOther);
  EXPECT_EQ(item->AudioFormat()->BitRate(), 96000);
  EXPECT_FALSE(LoadItemTags(*item, m_folder.File("none.mp3")));
  Expect(*item, {{"ItemTitle", "Title"}});
}

TEST_F(ItemTagFilesTest, GenresComeAndGoByTheirNumbers) {
  struct {
    const char *contentType, *number, *name;  // of the item that is saved
    const char* genre;                        // in the file
    const char *readNumber, *readName, *readContentType;
  } const cases[] = {
      {"1", "17", "", "Rock", "17", "Rock", "Music"},
      {"1", "8", "Hot jazz", "Hot jazz", "255", "Hot jazz", "Music"},
      {"0", "17", "Rock", "Other", "-1", "", ""},
      {"1", "0", "", "Blues", "-1", "", ""},
  };
  Make("x.ogg", "sox in.wav x.ogg trim 0 1");
  for (const auto& each : cases) {
    cHDItem item, read;
    Set(item, {{"ContentTypeNumber", each.contentType},
               {"CategoryNumber", each.number},
               {"CategoryInfo", each.name}});
    ASSERT_TRUE(SaveItemTags(item, m_path));
    cAudioTagFile file;
    ASSERT_TRUE(file.Open(m_path));
    EXPECT_EQ(file.Fields().Text(etfGenre), each.genre);
    ASSERT_TRUE(LoadItemTags(read, m_path));
    Expect(read, {{"CategoryNumber", each.readNumber},
                  {"CategoryInfo", each.readName},
                  {"ContentTypeInfo", each.readContentType}});
  }
}

TEST_F(ItemTagFilesTest, EveryKindOfFileGivesBackWhatItTook) {
  Make("x.mp3",
       "lame --quiet in.wav x.mp3 && twolame --quiet in.wav x.mp2 && sox in.wav x.ogg && "
       "ffmpeg -v error -i in.wav -c:a wmav2 x.wma");
  const std::vector<std::pair<const char*, const char*>> fields = {
      {"ItemTitle", "Grüße"}, {"ArtistName1", "Ella"}, {"URL", "http://a.b"},
      {"Publisher", "P"},     {"Composer", "C"},       {"Performer", "F"},
      {"Originator", "O"},    {"Year", "1958"},        {"StudioNotes", "N“"}};
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
    Set(item, fields);
    ASSERT_TRUE(save(item, path)) << name;
    ASSERT_TRUE(load(read, path)) << name;
    Expect(read, fields);
    EXPECT_EQ(read.AudioFormat()->FormatType(), type);
    EXPECT_EQ(read.AudioFormat()->SampleRate(), 22050);
    EXPECT_NEAR(read.TotalLength(), 60, 0.1);
    Set(item, {{"Composer", ""}});
    ASSERT_TRUE(save(item, path));
    ASSERT_TRUE(load(read, path));
    Expect(read, {{"Composer", ""}, {"Performer", "F"}});
  }
}

TEST_F(ItemTagFilesTest, WindowsMediaAttributesAreReadInTheirOrder) {
  struct {
    std::vector<tyTagAttribute> attributes;
    std::vector<std::pair<const char*, const char*>> expected;
  } const cases[] = {
      {{{"AUDIOSTART1", 1500}, {"audioend1", 20250}, {"Extro1", 19000}},
       {{"AudioStart1", "1.5"}, {"AudioEnd1", "20.25"}, {"Extro1", "19"}}},
      {{{"Extro2", 19000}, {"AudioEnd2", 10000}}, {{"Extro2", "10"}}},
      {{{"IntroEnd3", 3000}, {"IntroStart3", 4000}, {"HookStart1", 5000}},
       {{"IntroEnd3", "4"}, {"HookEnd1", "5"}}},
      {{{"Extro4", 1000}, {"Extro", 1000}, {"Extro12", 1000}, {"Other", 1000}},
       {{"Extro1", "-1"}, {"Extro2", "-1"}}},
      {{{"LoopStart Count=3", 2000}},
       {{"LoopStart", "4.5"}, {"LoopEnd", "4.6"}, {"LoopNumberLoops", "3"}, {"LoopPlayToEnd", "0"}}},
      {{{"LoopEnd PlayToEnd=1", 9000}, {"LoopStart", 90000}},
       {{"LoopStart", "60"}, {"LoopEnd", "60.1"}, {"LoopPlayToEnd", "1"}}},
      {{{"AudioStart1", -250}}, {{"AudioStart1", "-0.25"}}},
  };
  Make("x.wma", "sox in.wav -r 44100 a.wav && ffmpeg -v error -i a.wav -c:a wmav2 -b:a 64k x.wma");
  for (const auto& each : cases) {
    cWmaTagFile file;
    ASSERT_TRUE(file.Open(m_path));
    while (file.DeleteAttribute(1)) {
    }
    for (const auto& [name, value] : each.attributes) file.AddAttribute(name, value);
    ASSERT_TRUE(file.Save());
    cHDItem item;
    for (const char* mark :
         {"AudioStart1", "Extro1", "Extro2", "IntroStart3", "IntroEnd3", "HookStart1", "HookEnd1"})
      Set(item, {{mark, "-1"}});
    Set(item, {{"LoopStart", "0"}, {"LoopEnd", "0"}});
    ASSERT_TRUE(LoadItemWma(item, m_path));
    // The length as if it were whole: the codec's own is some frames more.
    if (item.LoopStart() > 50) Set(item, {{"LoopStart", "60"}, {"LoopEnd", "60.1"}});
    Expect(item, each.expected);
    Expect(item, {{"ItemTitle", "x"}});
    EXPECT_EQ(item.AudioFormat()->BitRate(), 64);
    EXPECT_EQ(item.AudioFormat()->FormatDescription(), "WMA 44100 Hz stereo 64 kbit/s");
  }
}

TEST_F(ItemTagFilesTest, WindowsMediaAttributesAreWrittenInTheirOrder) {
  Make("x.wma", "ffmpeg -v error -i in.wav -c:a wmav2 x.wma");
  cHDItem item;
  Set(item, {{"AudioStart1", "1.0005"},
             {"AudioEnd1", "20"},
             {"HookEnd2", "5"},
             {"HookStart2", "4"},
             {"Extro1", "-1"},
             {"Extro3", "59.9996"},
             {"LoopStart", "5"},
             {"LoopEnd", "7"},
             {"LoopNumberLoops", "2"},
             {"LoopPlayToEnd", "1"}});
  ASSERT_TRUE(SaveItemWma(item, m_path));
  ASSERT_TRUE(SaveItemWma(item, m_path));
  cWmaTagFile file;
  ASSERT_TRUE(file.Open(m_path));
  const tyTagAttribute expected[] = {
      {"AudioStart1", 1000}, {"AudioEnd1", 20000},        {"HookStart2", 4000},         {"HookEnd2", 5000},
      {"Extro3", 60000},     {"LoopStart Count=2", 5000}, {"LoopEnd PlayToEnd=1", 7000}};
  ASSERT_EQ(file.NumberAttributes(), static_cast<std::int32_t>(std::size(expected)));
  for (std::int32_t i = 1; i <= file.NumberAttributes(); ++i) {
    EXPECT_EQ(file.AttributeName(i), expected[i - 1].name);
    EXPECT_EQ(file.AttributeValue(i), expected[i - 1].value);
  }
}

}  // namespace
}  // namespace qm
