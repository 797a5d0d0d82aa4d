#include "kits/sound/tags/cAudioTagFile.h"

#include <gtest/gtest.h>

#include "kits/sound/AudioFileChecks.h"
#include "support/PythonRun.h"

namespace qm {
namespace {

using namespace test;

// Title, artist, url, publisher, composer, performer, originator, genre, year and comment, as they stand in
// TagFields.
const std::string kTexts[kTagFields] = {"Grüße – ¡Óle! Ω", "Ella", "http://a.b/c", "Blue Note", "Müller",
                                        "Quartet",         "Anna", "Jazz",         "1958",      "Line “two”"};

struct Kind {
  const char* name;
  const char* file;
  const char* make;   // a shell command that makes the file from in.wav
  const char* write;  // python, with the texts in t
  const char* read;   // python that prints them in that order
};

constexpr char kWriteId3[] =
    "from mutagen.id3 import *\nfrom mutagen.id3._frames import *\nf=ID3()\n"
    "for c,i in ((TIT2,0),(TPE1,1),(TPUB,3),(TCOM,4),(TPE3,5),(TENC,6),(TCON,7),(TDRC,8)): "
    "f.add(c(3,[t[i]]))\n"
    "f.add(WXXX(3,'',t[2])); f.add(COMM(3,'eng','iTunNORM','0A')); f.add(COMM(3,'eng','',t[9]))\n";
constexpr char kReadId3[] =
    "from mutagen.id3 import *\nfrom mutagen.id3._frames import *\nf=ID3(n)\n"
    "for k in 'TIT2 TPE1 WXXX: TPUB TCOM TPE3 TENC TCON TDRC COMM::eng'.split():\n"
    "  print(f[k].url if k=='WXXX:' else f[k].text[0])";
constexpr char kNames[] =
    "k='title artist url publisher composer performer encoded-by genre date comment'.split()\n";
constexpr char kApeNames[] =
    "k='Title Artist Related Publisher Composer Performer EncodedBy Genre Year Comment'.split()\n"
    "from mutagen.apev2 import APEv2\n";

const std::string kSaveId3v23 = std::string(kWriteId3) + "f.update_to_v23()\nf.save(n,v1=0,v2_version=3)";
const std::string kSaveId3v24 = std::string(kWriteId3) + "f.save(n,v1=0)";
const std::string kSaveApe = std::string(kApeNames) + "f=APEv2()\nfor a,b in zip(k,t): f[a]=b\nf.save(n)";
const std::string kReadApe = std::string(kApeNames) + "f=APEv2(n)\nfor a in k: print(f[a])";
const std::string kOgg = std::string(kNames) + "from mutagen.oggvorbis import OggVorbis\nf=OggVorbis(n)\n";
const std::string kSaveOgg = kOgg + "for a,b in zip(k,t): f[a]=b\nf.save()";
const std::string kReadOgg = kOgg + "for a in k: print(f[a][0])";

const Kind kKinds[] = {
    {"Id3v23", "x.mp3", "lame --quiet -t in.wav x.mp3", kSaveId3v23.c_str(), kReadId3},
    {"Id3v24", "x.mp3", "lame --quiet -t in.wav x.mp3", kSaveId3v24.c_str(), kReadId3},
    {"Mp2", "x.mp2", "twolame --quiet in.wav x.mp2", kSaveId3v24.c_str(), kReadId3},
    {"Ape", "x.mp3", "lame --quiet -t in.wav x.mp3", kSaveApe.c_str(), kReadApe.c_str()},
    {"Ogg", "x.ogg", "sox in.wav x.ogg", kSaveOgg.c_str(), kReadOgg.c_str()},
    {"Chained", "x.ogg", "sox in.wav a.ogg; sox in.wav -r 22050 b.ogg; cat a.ogg b.ogg > x.ogg",
     kSaveOgg.c_str(), kReadOgg.c_str()},
};

class TagKindTest : public testing::TestWithParam<Kind> {
 protected:
  void SetUp() override {
    WriteBytes(m_folder.File("in.wav"), Wav16(Noise16(2 * 44100, 0.3), 44100, 2));
    ASSERT_TRUE(m_folder.Make(GetParam().make));
  }

  std::string Path() const { return m_folder.File(GetParam().file); }
  std::string Run(const std::string& program) const {
    std::string head = "n='" + std::string(GetParam().file) + "'\nt=[";
    for (const std::string& text : kTexts) head += "'" + text + "',";
    return Python(m_folder, head + "]\n" + program);
  }
  // Of all links of a chain.
  std::string Sound() const {
    m_folder.Make("ffmpeg -y -v error -i " + std::string(GetParam().file) + " -f s16le sound.raw");
    return m_folder.Bytes("sound.raw");
  }

  Workshop m_folder;
};

TEST_P(TagKindTest, OthersReadWhatIsSavedAndTheSoundStays) {
  const std::string sound = Sound(), bytes = ReadBytes(Path());
  ASSERT_FALSE(sound.empty());
  Run(GetParam().write);
  cAudioTagFile file;
  ASSERT_TRUE(file.Open(Path()));
  for (std::int32_t i = 0; i < kTagFields; ++i)
    EXPECT_EQ(file.Fields().Text(static_cast<enTagField>(i)), kTexts[i]) << i;
  if (std::string(GetParam().name) != "Ape") WriteBytes(Path(), bytes);
  ASSERT_TRUE(file.Open(Path()));
  const double length = file.Milliseconds();
  for (std::int32_t i = 0; i < kTagFields; ++i) file.Fields().SetText(static_cast<enTagField>(i), kTexts[i]);
  ASSERT_TRUE(file.Save());
  std::string expected;
  for (const std::string& text : kTexts) expected += text + "\n";
  EXPECT_EQ(Run(GetParam().read), expected);
  EXPECT_TRUE(Sound() == sound);
  ASSERT_TRUE(file.Open(Path()));
  EXPECT_EQ(file.Milliseconds(), length);
  const bool pagesAreRewritten = file.Format().FormatType() == aftOgg;
  EXPECT_TRUE(pagesAreRewritten || ReadBytes(Path()).find(bytes) != std::string::npos);
  // Emptied, they are gone.
  for (std::int32_t i = 0; i < kTagFields; ++i) file.Fields().SetText(static_cast<enTagField>(i), "");
  ASSERT_TRUE(file.Save());
  EXPECT_EQ(Run(GetParam().read), "");
  EXPECT_TRUE(Sound() == sound);
}

INSTANTIATE_TEST_SUITE_P(Kinds, TagKindTest, testing::ValuesIn(kKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

class MpegTagTest : public testing::Test {
 protected:
  void SetUp() override {
    WriteBytes(m_folder.File("in.wav"), Wav16(Noise16(8820), 44100, 1));
    ASSERT_TRUE(m_folder.Make("lame --quiet -t in.wav x.mp3"));
    m_sound = ReadBytes(Path());
  }
  std::string Path() const { return m_folder.File("x.mp3"); }
  std::string Id3v1(std::string title, std::string comment, int genre) const {
    title.resize(30);
    comment.resize(30);
    return "TAG" + title + std::string(60, '\0') + "1999" + comment + static_cast<char>(genre);
  }

  Workshop m_folder;
  std::string m_sound;
};

TEST_F(MpegTagTest, AnId3v1TagStaysAloneAndHoldsWhatFits) {
  struct {
    const char *title, *comment, *readTitle, *readComment;
  } const cases[] = {{"caf\xE9 \x93x\x94", "\x80 1", "café “x”", "€ 1"},
                     {"caf\xC3\xA9", "na\xC3\xAFve", "café", "naïve"}};
  for (const auto& each : cases) {
    WriteBytes(Path(), m_sound + Id3v1(each.title, each.comment, 17));
    EXPECT_TRUE(EndsInId3v1Tag(Path()));
    cAudioTagFile file;
    file.SetMode(etmID3v1);
    ASSERT_TRUE(file.Open(Path()));
    EXPECT_EQ(file.Fields().Text(etfTitle), each.readTitle);
    EXPECT_EQ(file.Fields().Text(etfComment), each.readComment);
    EXPECT_EQ(file.Fields().Text(etfGenre), "Rock");
    EXPECT_EQ(file.Fields().Year(), 1999);
    file.Fields().SetText(etfTitle, "Žižkov and thirty more characters");
    file.Fields().SetText(etfComment, "twenty-eight bytes of comment, no more");
    file.SetGenre(9, "Doom of our own");
    ASSERT_TRUE(file.Save());
    std::string expected =
        Id3v1("\x8Ei\x9Ekov and thirty more characters", "twenty-eight bytes of commen", 9);
    EXPECT_EQ(ReadBytes(Path()), m_sound + expected);
  }
}

// A field that is not touched stays as it was written, and so does what the library does not understand.
TEST_F(MpegTagTest, WhatDoesNotChangeStays) {
  ASSERT_NE(Python(m_folder, R"(from mutagen.id3 import *
from mutagen.id3._frames import *
f=ID3()
f.add(TPE1(3,['A','B'])); f.add(TDRC(3,['2003-05-12'])); f.add(TSOP(3,['B, A'])); f.add(PRIV(owner='o',data=b'xyz'))
f.save('x.mp3', v1=2, v2_version=4)
print('done'))"),
            "");
  cAudioTagFile file;
  file.SetMode(etmID3v1);
  ASSERT_TRUE(file.Open(Path()));
  EXPECT_EQ(file.Fields().Text(etfArtist), "A; B");
  const std::string before = ReadBytes(Path());
  ASSERT_TRUE(file.Save());
  EXPECT_TRUE(ReadBytes(Path()) == before);
  file.Fields().SetText(etfTitle, "New");
  ASSERT_TRUE(file.Save());
  EXPECT_EQ(Python(m_folder, R"(from mutagen.id3 import *
from mutagen.id3._frames import *
f=ID3('x.mp3')
print(f.version, f['TPE1'].text, f['TDRC'].text[0], f['TSOP'], f['PRIV:o:xyz'].data, f['TIT2'], open('x.mp3','rb').read()[-125:-122]))"),
            "(2, 4, 0) ['A', 'B'] 2003-05-12 B, A b'xyz' New b'New'\n");
}

// Comments that are Windows-1252 against the rules are read, and survive the saving of another field.
TEST_F(MpegTagTest, EightBitVorbisCommentsAreNotLost) {
  ASSERT_TRUE(
      m_folder.Make("sox in.wav --comment '' --add-comment $(printf 'title=caf\\351') "
                    "--add-comment mood=froh --add-comment $(printf 'mood=m\\374de') x.ogg"));
  cAudioTagFile file;
  ASSERT_TRUE(file.Open(m_folder.File("x.ogg")));
  EXPECT_EQ(file.Fields().Text(etfTitle), "café");
  file.Fields().SetText(etfArtist, "Ella");
  ASSERT_TRUE(file.Save());
  EXPECT_EQ(Python(m_folder,
                   "from mutagen.oggvorbis import *\nf=OggVorbis('x.ogg')\n"
                   "print(f['title'], f['mood'], f['artist'])"),
            "['café'] ['froh', 'müde'] ['Ella']\n");
}

TEST_F(MpegTagTest, RefusedIsUntouched) {
  cAudioTagFile file;
  EXPECT_FALSE(file.Open(m_folder.File("none.mp3")));
  WriteBytes(m_folder.File("text.mp3"), "no sound at all");
  EXPECT_FALSE(file.Open(m_folder.File("text.mp3")));
  ASSERT_TRUE(file.Open(m_folder.File("in.wav")));
  file.Fields().SetText(etfTitle, "New");
  EXPECT_FALSE(file.Save());
  ASSERT_TRUE(file.Open(Path()));
  file.Fields().SetText(etfTitle, "New");
  // Sound that went away since: the new file would have less of it than it should.
  WriteBytes(Path(), "gone");
  EXPECT_FALSE(file.Save());
  EXPECT_EQ(ReadBytes(Path()), "gone");
}

}  // namespace
}  // namespace qm
