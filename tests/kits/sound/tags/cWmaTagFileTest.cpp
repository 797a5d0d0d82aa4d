#include "kits/sound/tags/cWmaTagFile.h"

#include <gtest/gtest.h>

#include "kits/sound/AudioFileChecks.h"
#include "support/PythonRun.h"

namespace qm {
namespace {

using namespace test;

class WmaTagTest : public testing::Test {
 protected:
  void SetUp() override {
    WriteBytes(m_folder.File("in.wav"), Wav16(Noise16(2 * 44100), 44100, 2));
    ASSERT_TRUE(m_folder.Make("ffmpeg -v error -i in.wav -c:a wmav2 -b:a 128k -metadata title=Old x.wma"));
  }
  std::string Path() const { return m_folder.File("x.wma"); }
  std::string Run(const std::string& program) const {
    return Python(m_folder,
                  "from mutagen.asf import *\nfrom mutagen.asf._attrs import *\nf=ASF('x.wma')\n" + program);
  }

  Workshop m_folder;
};

TEST_F(WmaTagTest, ReadsWhatOthersWrite) {
  ASSERT_NE(Run(R"(t=f.tags
for k,v in (('Title','Grüße Ω 🎵'),('Author','Ella'),('Description','note'),('WM/UserWebURL','u'),('WM/Publisher','p'),
            ('WM/Composer','c'),('WM/Conductor','q'),('WM/EncodedBy','o'),('WM/Genre','Jazz'),('WM/Year','1958-03')):
  t[k]=v
for k,v in (('Zeta',ASFDWordAttribute(4294967295)),('Alpha',ASFDWordAttribute(5)),('WM/TrackNumber',ASFDWordAttribute(7)),
            ('Beta',ASFQWordAttribute(1<<40)),('Text',ASFUnicodeAttribute('8'))):
  t.append((k,v))
f.save(); print(1))"),
            "");
  cWmaTagFile file;
  ASSERT_TRUE(file.Open(Path()));
  const std::string expected[kTagFields] = {"Grüße Ω 🎵", "Ella", "u",    "p",       "c",
                                            "q",         "o",    "Jazz", "1958-03", "note"};
  for (std::int32_t i = 0; i < kTagFields; ++i)
    EXPECT_EQ(file.Fields().Text(static_cast<enTagField>(i)), expected[i]) << i;
  EXPECT_EQ(file.Fields().Year(), 1958);
  EXPECT_EQ(file.Format().SampleRate(), 44100);
  EXPECT_EQ(file.Format().BitRate() / 1000, 128);
  EXPECT_NEAR(file.Milliseconds(), 1000, 50);
  ASSERT_EQ(file.NumberAttributes(), 3);
  const std::pair<const char*, std::int32_t> attributes[] = {
      {"", 0}, {"Zeta", -1}, {"Alpha", 5}, {"Beta", INT32_MAX}, {"", 0}};
  for (std::int32_t i = 0; i <= 4; ++i) {
    EXPECT_EQ(file.AttributeName(i), attributes[i].first);
    EXPECT_EQ(file.AttributeValue(i), attributes[i].second);
  }
}

TEST_F(WmaTagTest, OthersReadWhatIsSavedInItsOrderAndTheSoundStays) {
  ASSERT_NE(Run("f.tags.append(('WM/TrackNumber',ASFDWordAttribute(7))); "
                "f.tags.append(('Own',ASFDWordAttribute(1)))\n"
                "f.tags.append(('WM/Picture',ASFByteArrayAttribute(b'picture'))); f.save(); print(1)"),
            "");
  const std::string before = ReadBytes(Path());
  cWmaTagFile file;
  ASSERT_TRUE(file.Open(Path()));
  file.Fields().SetText(etfTitle, "Neu Ω 🎵");
  file.Fields().SetText(etfPublisher, "Pub");
  file.Fields().SetYear(2001);
  EXPECT_FALSE(file.DeleteAttribute(2));
  EXPECT_TRUE(file.DeleteAttribute(1));
  file.AddAttribute("Zeta Count=2", 1500);
  file.AddAttribute("Alpha", -3);
  ASSERT_TRUE(file.Save());
  EXPECT_EQ(
      Run("print([(k,str(v)) for k,v in f.tags if k != 'WM/EncodingSettings'])"),
      "[('Title', 'Neu Ω 🎵'), ('title', 'Neu Ω 🎵'), ('WM/TrackNumber', '7'), ('WM/Picture', '[binary data (7 "
      "bytes)]'), "
      "('WM/Publisher', 'Pub'), ('WM/Year', '2001'), ('Zeta Count=2', '1500'), ('Alpha', '4294967293')]\n");
  const std::string after = ReadBytes(Path());
  const std::string dataObject("\x36\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9\x00\xAA\x00\x62\xCE\x6C", 16);
  EXPECT_TRUE(after.substr(after.find(dataObject)) == before.substr(before.find(dataObject)));
  EXPECT_NE(after.find(LittleEndian(after.size(), 8)), after.npos) << "the size in its own properties";
}

TEST_F(WmaTagTest, DamagedDescriptionsKeepWhatIsGood) {
  const std::string whole = ReadBytes(Path());
  const std::string identity("\x40\xA4\xD0\xD2\x07\xE3\xD2\x11\x97\xF0\x00\xA0\xC9\x5E\xA8\x50", 16);
  const std::size_t at = whole.find(identity);
  ASSERT_NE(at, whole.npos);
  std::string manyValues = whole;
  manyValues.replace(at + 24, 2, "\xFF\xFF");
  WriteBytes(Path(), manyValues);
  cWmaTagFile file;
  ASSERT_TRUE(file.Open(Path()));
  EXPECT_EQ(file.Fields().Text(etfTitle), "Old");
  std::string longObject = whole;
  longObject.replace(at + 16, 8, std::string(7, '\xFF') + '\x7F');
  WriteBytes(Path(), longObject);
  EXPECT_FALSE(file.Open(Path()));
}

}  // namespace
}  // namespace qm
