// What others write is read, and what is written is read by others, field by field.
#include <gtest/gtest.h>
#include <sndfile.h>
#include <stdio.h>

#include "RiffFixture.h"
#include "item/ItemFieldAccess.h"
#include "item/cHDItem.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

using namespace test;

constexpr std::size_t kTagText = 400;
using CartInfo = SF_CART_INFO_VAR(kTagText);

struct CartField {
  const char* field;
  std::size_t offset;
  std::size_t bytes;
  const char* told;
  const char* value;  // of the item
};
#define QM_CART(Field, Member, ...) \
  { Field, offsetof(CartInfo, Member), sizeof(CartInfo::Member), __VA_ARGS__ }
const CartField kCart[] = {
    QM_CART("ItemTitle", title, "Blue Skies", "Blue Skies"),
    QM_CART("ArtistName1", artist, "B\xE9nny", "B\xC3\xA9nny"),
    QM_CART("CutID", cut_id, "C7", "C7"),
    QM_CART("Client", client_id, "ACME", "ACME"),
    QM_CART("ContentTypeInfo", category, "Advert", "Advert"),
    QM_CART("CategoryInfo", classification, "Spot", "Spot"),
    QM_CART("OutCue", out_cue, "...bye", "...bye"),
    QM_CART("AirStartDate", start_date, "2021-02-03", "44230"),
    QM_CART("AirStartTime", start_time, "06:00:00", "21600"),
    QM_CART("AirEndDate", end_date, "2031-12-31", "48213"),
    QM_CART("AirEndTime", end_time, "23:59:59", "86399"),
    QM_CART("ProducerAppName", producer_app_id, "Quillmere", "Quillmere"),
    QM_CART("ProducerAppVersion", producer_app_version, "v1.2", "v1.2"),
    QM_CART("URL", url, "http://example.org/", "http://example.org/"),
};

void WriteSound(const std::string& path, CartInfo* cart) {
  SF_INFO info{};
  info.samplerate = kTestRate, info.channels = 1, info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  ASSERT_NE(file, nullptr);
  if (cart) {
    ASSERT_EQ(sf_command(file, SFC_SET_CART_INFO, cart, sizeof *cart), SF_TRUE);
  }
  const auto samples = Ramp16(20000);
  sf_write_short(file, samples.data(), 20000);
  sf_close(file);
}

std::string Output(const std::string& command) {
  std::string text;
  FILE* pipe = popen((command + " 2>&1 </dev/null").c_str(), "r");
  for (int c = 0; pipe && (c = fgetc(pipe)) != EOF;) text += static_cast<char>(c);
  if (pipe) pclose(pipe);
  return text;
}

class ForeignTools : public testing::Test {
 protected:
  void Load() { ASSERT_TRUE(m_item.LoadFromFile(m_path)); }
  void ExpectFields(const char* fields) {
    for (const auto& [field, value] : SplitFields(fields))
      EXPECT_EQ(FieldText(m_item, field), value) << field;
  }
  void ExpectOutput(const std::string& command, const std::vector<const char*>& parts) {
    const std::string text = Output(command + " " + Quoted(m_path));
    for (const char* part : parts) EXPECT_NE(text.find(part), std::string::npos) << part << " in\n" << text;
  }

  TempFolder m_temp;
  const std::string m_path = m_temp.File("x.wav");
  cHDItem m_item;
};

TEST_F(ForeignTools, CartOfTheSoundFileLibrary) {
  CartInfo cart{};
  memcpy(cart.version, "0101", 4);
  for (const CartField& row : kCart)
    memcpy(reinterpret_cast<char*>(&cart) + row.offset, row.told, strlen(row.told));
  const std::pair<const char*, int> timers[] = {
      {"AUDs", 500}, {"INTe", 2500}, {"SEG1", 17000}, {"MRK1", 3000}, {"MRK2", 4000}};
  for (std::size_t i = 0; i < 8; ++i) {
    memcpy(cart.post_timers[i].usage, i < 5 ? timers[i].first : "    ", 4);
    cart.post_timers[i].value = i < 5 ? timers[i].second : -1;
  }
  const std::string text = "<COMPOSER>Irving</COMPOSER><ENDING>F</ENDING>";
  memcpy(cart.tag_text, text.data(), text.size());
  cart.tag_text_size = static_cast<std::uint32_t>(text.size());
  WriteSound(m_path, &cart);
  Load();
  for (const CartField& row : kCart) EXPECT_EQ(FieldText(m_item, row.field), row.value) << row.field;
  ExpectFields(
      "AudioStart1=0.5;IntroEnd1=2.5;Extro1=17;HookStart1=3;HookEnd1=4;Composer=Irving;TotalLength=20;"
      "EndType=0");
}

TEST_F(ForeignTools, TheSoundFileLibraryReadsOurCart) {
  WriteSound(m_path, nullptr);
  Load();
  for (const CartField& row : kCart)
    ASSERT_EQ(SetFieldText(m_item, row.field, row.value), sfrSet) << row.field;
  m_item.SetExtro(1, 17);
  m_item.SetComposer("Irving");
  ASSERT_TRUE(m_item.SaveToFile(m_path, llfQuillmere));
  SF_INFO info{};
  CartInfo cart{};
  SNDFILE* file = sf_open(m_path.c_str(), SFM_READ, &info);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(info.frames, 20000);
  SF_CART_INFO_VAR(16384) all{};
  EXPECT_EQ(sf_command(file, SFC_GET_CART_INFO, &all, sizeof all), SF_TRUE);
  sf_close(file);
  memcpy(&cart, &all, sizeof cart);
  for (const CartField& row : kCart) {
    const std::string field(reinterpret_cast<const char*>(&cart) + row.offset, row.bytes);
    EXPECT_EQ(Trim(field.substr(0, field.find('\0'))), row.told) << row.field;
  }
  EXPECT_EQ(std::string(cart.post_timers[0].usage, 4), "SEG1");
  EXPECT_EQ(cart.post_timers[0].value, 17000);
  EXPECT_EQ(cart.post_timers[1].value, -1);
  const std::string composer = "<COMPOSER>Irving</COMPOSER>";
  EXPECT_EQ(std::string(cart.tag_text, composer.size()), composer);
}

TEST_F(ForeignTools, BextAndListOfOthers) {
  WriteSound(m_temp.File("in.wav"), nullptr);
  ASSERT_TRUE(RunCommand(
      "sndfile-metadata-set --bext-description About --bext-originator Studio --bext-orig-ref R1 "
      "--bext-orig-date 2021-02-03 --bext-orig-time 04:05:06 --bext-coding-hist A=PCM --str-artist Benny " +
      m_temp.File("in.wav") + " " + m_path));
  Load();
  ExpectFields(
      "ItemDescription1=About;Originator=Studio;OriginatorReference=R1;OriginationDate=44230;OriginationTime="
      "14706;ArtistName1=Benny");
  EXPECT_TRUE(m_item.CodingHistory().starts_with("A=PCM")) << m_item.CodingHistory();
  ASSERT_TRUE(
      RunCommand("ffmpeg -y -i " + m_temp.File("in.wav") +
                 " -write_bext 1 -metadata description=More -metadata originator=Tool -metadata "
                 "origination_date=2020-01-02 "
                 "-metadata title=Song -metadata artist=Band -metadata date=1987 -metadata genre=Jazz " +
                 m_path));
  Load();
  ExpectFields(
      "ItemTitle=Song;ArtistName1=Band;Year=1987;CategoryInfo=Jazz;Originator=Tool;OriginationDate=43832;"
      "TotalLength=20");
}

TEST_F(ForeignTools, OthersReadOurBext) {
  WriteSound(m_path, nullptr);
  m_item.SetItemTitle("Our Title");
  m_item.SetOriginator("Studio 1");
  m_item.SetOriginatorReference("REF9");
  m_item.SetOriginationDate(44230);
  m_item.SetOriginationTime(14706);
  m_item.SetVersion(1);
  ASSERT_TRUE(m_item.SaveToFile(m_path, llfQuillmere));
  ExpectOutput(
      "sndfile-metadata-get --bext-description --bext-originator --bext-orig-ref --bext-orig-date "
      "--bext-orig-time",
      {": Our Title\n", ": Studio 1\n", ": REF9\n", ": 2021-02-03\n", ": 04:05:06\n"});
  ExpectOutput("exiftool -s3 -Description -Originator -OriginatorReference -DateTimeOriginal -BWFVersion",
               {"Our Title\n", "Studio 1\n", "REF9\n", "2021:02:03 04:05:06\n", "\n1\n"});
  ExpectOutput("mediainfo --Output='General;%Description%|%Producer%|%Encoded_Date%|%Duration%'",
               {"Our Title|", "2021-02-03 04:05:06|20000"});
}

TEST_F(ForeignTools, Id3OfTheTagLibrary) {
  WriteSound(m_path, nullptr);
  ASSERT_TRUE(RunCommand(
      "/usr/bin/python3 -c \"import mutagen.wave as w, mutagen.id3 as i\nf=w.WAVE('" + m_path +
      "')\nf.add_tags()\nfor t,x in ((i.TIT2,'Caf\\u00e9'),(i.TPE1,'One'),(i.TPE2,'Two'),(i.TCON,'Jazz')): "
      "f.tags.add(t(encoding=0,text=[x]))\nf.tags.add(i.APIC(data=b'x'*200))\nf.save()\""));
  Load();
  ExpectFields("ItemTitle=Caf\xC3\xA9;ArtistName1=One;ArtistName2=Two;CategoryInfo=Jazz");
}

}  // namespace
}  // namespace qm
