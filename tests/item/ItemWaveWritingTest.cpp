#include "FieldFixture.h"
#include "RiffFixture.h"
#include "item/ItemMetadata.h"
#include "item/RiffWalk.h"
#include "item/WaveFacts.h"
#include "kits/common/Clock.h"
#include "kits/common/Text.h"
#include "kits/sound/Platform.h"
#include "kits/sound/cAudioFile.h"

namespace qm {
namespace {

using namespace test;
using namespace std::string_literals;

// Every field that comes back as it went.
constexpr char kFields[] =
    "ItemTitle=Caf\xC3\xA9;ArtistName1=\xC5\x81ucja;CutID=c1;Client=ACME;ContentTypeInfo=Music;OutCue=bye;"
    "CategoryInfo=Rock;AirStartDate=2021-02-03;AirStartTime=3723;AirEndDate=2030-12-31;AirEndTime=86399;"
    "URL=http://x;OnlineStoreReference=s;ItemDescription1=d;CopyrightCode=cc;Composer=co;MusicTitle=mt;"
    "Publisher=pu;Performer=pe;ProductTitle=pt;RecordLabel=rl;ISRC=GB1;RecordingNumber=9;WebNotes=w\r\nw;"
    "CopyrightMusicDuration=3661.25;CopyrightTotalDuration=2.5;OriginalSource=os;DABNotes=dab;StudioNotes=n;"
    "RightsManagementReference=rm;BackColour=255;TextColour=-2147483633;EndType=2;AudioStart1=1;"
    "AudioEnd1=18.5;IntroStart1=2;IntroEnd1=3.001;Extro1=17;HookStart1=0;HookEnd1=9";

std::unique_ptr<cHDItem> ItemWith(const std::string& fields) {
  auto item = std::make_unique<cHDItem>();
  item->SetTotalLength(20);
  SetFields(*item, fields);
  return item;
}

bool Save(cHDItem& item, RiffMemory& file, enHDFileFlags flags) {
  Platform platform;
  platform.clock = std::make_shared<ManualClock>(std::chrono::sys_days(std::chrono::year(2026) / 3 / 9));
  PrepareItemForSave(item, file, flags, platform);
  cAudioFormat format;
  format.SetSampleRate(kTestRate);
  item.ReplaceAudioFormat(format);
  return (!(flags & llfCartChunk) || SaveItemCart(item, file, flags)) &&
         (!(flags & llfBext) || SaveItemBext(item, file, flags));
}

std::unique_ptr<cHDItem> Load(const RiffMemory& file, enHDFileFlags flags = llfAutoDetect) {
  auto item = std::make_unique<cHDItem>();
  ResetMarks(*item);
  EXPECT_TRUE(LoadItemWave(*item, file, flags));
  RepairMarks(*item);
  return item;
}

// Ids and contents of the chunks but ours, with their places.
std::string Others(const RiffMemory& file) {
  RiffForm form;
  EXPECT_TRUE(WalkRiff(file, rxForm, form));
  std::string text;
  for (const RiffChunk& chunk : form.chunks)
    if (chunk.id != "cart" && chunk.id != "bext" && chunk.id != "ds64")
      text += chunk.id + std::to_string(chunk.start) +
              file.Read(chunk.start, static_cast<std::size_t>(chunk.length));
  return text;
}

std::string ChunkBytes(const RiffMemory& file, const char* id) {
  RiffForm form;
  const RiffChunk* chunk = WalkRiff(file, rxForm, form) ? FindRiffChunk(form, id) : nullptr;
  return chunk ? file.Read(chunk->start, static_cast<std::size_t>(chunk->length)) : "none";
}

TEST(WaveWriting, BringsFieldsBack) {
  const auto item = ItemWith(kFields);
  RiffMemory file(WaveWith(""));
  ASSERT_TRUE(Save(*item, file, llfQuillmere));
  const auto back = Load(file);
  for (const auto& [field, text] : SplitFields(kFields))
    EXPECT_EQ(FieldText(*back, field), FieldText(*item, field)) << field;
  EXPECT_EQ(back->ProducerAppName(), "Quillmere CartChunk Interface");
  const auto bext = Load(file, llfBext);
  ExpectFields(*bext, "ItemTitle=Caf\xC3\xA9;OriginationDate=46090");
  EXPECT_TRUE(ContainsIgnoringCase(bext->Originator(), " on ")) << bext->Originator();
}

TEST(WaveWriting, FillsTimersFromTheFirst) {
  const std::pair<const char*, const char*> rows[] = {
      {"AudioEnd1=19.999", ""},
      {"AudioEnd1=19.998", "AUDe19998 "},
      {"Extro2=5;Extro3=20", "SEG25000 "},
      {"HookEnd1=4;LoopStart=5;LoopEnd=9", "MRK10 MRK24000 MRK35000 MRK49000 "},
      {"AudioStart1=1;AudioEnd1=19;IntroStart1=2;IntroEnd1=3;Extro1=15;Extro2=16;Extro3=17;HookEnd1=4;"
       "LoopStart=5;LoopEnd=9",
       "AUDs1000 AUDe19000 INTs2000 INTe3000 SEG115000 SEG216000 SEG317000 "},
      {"AudioStart1=1;Extro1=15;Extro2=16;Extro3=17;IntroEnd1=0.0025;HookEnd1=4;LoopStart=5;LoopEnd=9",
       "AUDs1000 INTe2 SEG115000 SEG216000 SEG317000 MRK10 MRK24000 "},
  };
  for (const auto& [fields, expected] : rows) {
    RiffMemory file(WaveWith(""));
    ASSERT_TRUE(Save(*ItemWith(fields), file, llfCartChunk));
    const std::string cart = ChunkBytes(file, "cart");
    std::string timers;
    for (std::size_t at = 684; at < 748; at += 8) {
      std::uint32_t value = 0;
      std::memcpy(&value, cart.data() + at + 4, 4);
      if (value != 0xFFFFFFFF)
        timers += cart.substr(at, 4) + std::to_string(value) + " ";
      else
        EXPECT_EQ(cart.substr(at, 4), "    ");
    }
    EXPECT_EQ(timers, expected);
  }
}

TEST(WaveWriting, KeepsWithinTheChunkThereIs) {
  const std::string bext = Laid(700, 'u', {{602, "A=PCM"}});
  RiffMemory file(
      WaveWith(Chunk("cart", std::string(2048, '?')) + Info(Chunk("INAM", "x")) + Chunk("BEXT", bext)));
  const std::size_t before = file.bytes.size();
  auto item = ItemWith("StudioNotes=lost;Version=7;ItemTitle=" + std::string(63, 'x') + "\xC5\x81");
  const std::string others = Others(file);
  ASSERT_TRUE(Save(*item, file, llfQuillmere));
  EXPECT_EQ(file.bytes.size(), before);
  ExpectFields(*Load(file), "StudioNotes=;ItemTitle=" + std::string(63, 'x'));
  EXPECT_EQ(ChunkBytes(file, "cart").substr(680, 4), "????");  // the level reference is not ours
  const std::string written = ChunkBytes(file, "bext");
  EXPECT_EQ(written.substr(338, 8), "uuuuuuuu");  // nor are the time reference,
  EXPECT_EQ(written.substr(346, 66), "\7\0"s + std::string(64, '\0'));
  EXPECT_EQ(written.substr(412), bext.substr(412));  // the loudness and the history
  // 100 bytes of room for text: cut there, blanks behind what is shorter.
  RiffMemory roomy(WaveWith(Chunk("cart", std::string(2148, '?'))));
  for (const auto& [notes, text] : {std::pair(std::string(200, 'n'), "<NOTES>" + std::string(93, 'n')),
                                    {"n", "<NOTES>n</NOTES>" + std::string(84, ' ')}}) {
    item->SetStudioNotes(notes);
    ASSERT_TRUE(Save(*item, roomy, llfCartChunk));
    EXPECT_EQ(ChunkBytes(roomy, "cart").substr(2048), text);
  }
}

TEST(WaveWriting, ChoosesWhatStandsForATitle) {
  RiffMemory file(WaveWith(""));
  ASSERT_TRUE(Save(*ItemWith("ItemTitle=  ;ItemDescription1=about;ItemDescription2=who;EndType=4"), file,
                   llfQuillmere));
  // Our own convention has no word for that end type that is read.
  ExpectFields(*Load(file), "ItemTitle=about;ArtistName1=who;EndType=0");
  ExpectFields(*Load(file, llfBext), "ItemTitle=about");
  ExpectFields(*Load(file, llfCartChunk), "EndType=4");
  EXPECT_EQ(ChunkBytes(file, "cart").substr(616, 20), "EndingType=Sustain  ");
}

std::string PipeHead(std::string bytes, const char* form, const char* data) {
  return bytes.replace(4, 4, form, 4).replace(40, 4, data, 4);
}

struct Start {
  const char* name;
  std::string bytes;
  bool written = true;
};

const Start kStarts[] = {
    {"plain", WaveWith("")},
    {"chunksBehind", WaveWith(Info(Chunk("INAM", "x")) + Chunk("JUNK", "odd"))},
    {"padForgotten", WaveWith("JUNK" + LittleEndian(3, 4) + "odd")},
    {"long", LongHead(40072, 40000) + WaveWith("").substr(44)},
    {"pipe", PipeHead(WaveWith(""), "\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\xFF")},
    {"pipeGuess", PipeHead(WaveWith(""), "\x24\0\0\x7F", "\0\0\0\x7F")},
    {"neverCompleted", PipeHead(WaveWith(""), "\0\0\0\0", "\0\0\0\0")},
    {"chunkCut", Chunk("RIFF", WaveWith("").substr(8) + "JUNK\xFF\0\0\0abc"s)},
    {"zerosBehind", WaveWith("") + std::string(512, '\0')},
    {"cartThere", WaveWith(Cart({{4, "old"}}))},
    {"foreignBehind", WaveWith("") + "TAGsome old tag", false},
    {"formEndsWithinAChunk",
     WaveWith(Chunk("JUNK", std::string(100, '('))).replace(4, 4, LittleEndian(40084, 4)), false},
    {"cartBehindAChunkThatLies", WaveWith("JUNK" + LittleEndian(1 << 20, 4)) + Cart({}), false},
    {"secondAudioBehindALongForm",
     LongHead(40072, 40000) + WaveWith("").substr(44) + "data\xFF\xFF\xFF\xFF" + std::string(80, '2'), false},
    {"secondAudioInALongForm",
     LongHead(0, 40000) + WaveWith("").substr(44) + "data\xFF\xFF\xFF\xFF" + std::string(80, '2')},
    {"cartBehindTheForm", WaveWith("") + Cart({{4, "never taken in"}})},
    {"notWave", Chunk("RIFF", "AVI " + FormatChunk()), false},
};

// What the engine makes of it.
std::int64_t FramesPlayed(const RiffMemory& file) {
  const TempFolder folder;
  WriteBytes(folder.File("x.wav"), file.bytes);
  cAudioFile audio;
  return audio.OpenForRead(folder.File("x.wav")) == 0 ? audio.NumberSamples() : -1;
}

// The audio and every other chunk are where they were, with what they held.
void ExpectIntact(const RiffMemory& file, const std::string& others, const std::string& where) {
  ASSERT_EQ(Others(file).substr(0, others.size()), others) << where;
  RiffForm form;
  ASSERT_TRUE(WalkRiff(file, rxForm, form));
  ASSERT_EQ(FindWaveFacts(file, form)->Frames(), 20000) << where;
}

TEST(WaveWriting, LosesNothingToAPowerCutAtAnyByte) {
  auto item = ItemWith(kFields);
  for (const Start& start : kStarts) {
    SCOPED_TRACE(start.name);
    RiffMemory whole(start.bytes);
    ASSERT_EQ(Save(*item, whole, llfQuillmere), start.written);
    if (!start.written) {
      EXPECT_EQ(whole.bytes, start.bytes);
      continue;
    }
    const std::string others = Others(RiffMemory(start.bytes));
    ExpectIntact(whole, others, "whole");
    EXPECT_EQ(FramesPlayed(whole), 20000);
    constexpr std::size_t kStride = 13;  // smaller than what the lengths and heads take
    for (std::size_t budget = 0; budget < whole.written; budget += kStride) {
      RiffMemory cut(start.bytes);
      cut.budget = budget;
      ASSERT_FALSE(Save(*item, cut, llfQuillmere));
      ExpectIntact(cut, others, std::to_string(budget));
      if (budget % 10 == 0) {
        ASSERT_EQ(FramesPlayed(cut), 20000) << budget;
      }
      // Saved again, it is what it would have been.
      cut.budget = std::string::npos;
      cut.unflushed = 0;
      ASSERT_TRUE(Save(*item, cut, llfQuillmere)) << budget;
      ASSERT_TRUE(cut.bytes == whole.bytes) << budget;
    }
  }
}

}  // namespace
}  // namespace qm
