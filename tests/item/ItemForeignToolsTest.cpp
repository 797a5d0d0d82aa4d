// What others write is read, and what is written is read by others, field by field.
#include <sndfile.h>
#include <stdio.h>
#include <algorithm>

#include "FieldFixture.h"
#include "RiffFixture.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

using namespace test;

using CartInfo = SF_CART_INFO_VAR(8000);

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
const std::pair<const char*, int> kTimers[] = {{"AUDs", 500},  {"INTe", 2500}, {"SEG1", 17000},
                                               {"MRK1", 3000}, {"MRK2", 4000}, {"    ", -1},
                                               {"    ", -1},   {"    ", -1}};

class ForeignTools : public testing::Test {
 protected:
  ForeignTools() { WriteBytes(m_path, WaveWith("")); }
  void ExpectOutput(const std::string& command, const std::string& expected) {
    ASSERT_TRUE(RunCommand("{ " + command + " " + Quoted(m_path) + "; } >" + m_temp.File("told")));
    EXPECT_EQ(ReadBytes(m_temp.File("told")), expected);
  }

  TempFolder m_temp;
  const std::string m_path = m_temp.File("x.wav");
  cHDItem m_item;
};

TEST_F(ForeignTools, TheSoundFileLibraryWritesAndReadsACart) {
  CartInfo cart{};
  memcpy(cart.version, "0101", 4);
  for (const CartField& row : kCart)
    memcpy(reinterpret_cast<char*>(&cart) + row.offset, row.told, strlen(row.told));
  for (std::size_t i = 0; i < 8; ++i) {
    memcpy(cart.post_timers[i].usage, kTimers[i].first, 4);
    cart.post_timers[i].value = kTimers[i].second;
  }
  const std::string text = "<COMPOSER>Irving</COMPOSER><ENDING>F</ENDING>";
  memcpy(cart.tag_text, text.data(), text.size());
  cart.tag_text_size = static_cast<std::uint32_t>(text.size());
  SF_INFO info{};
  info.samplerate = kTestRate, info.channels = 1, info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
  SNDFILE* file = sf_open(m_path.c_str(), SFM_WRITE, &info);
  ASSERT_EQ(sf_command(file, SFC_SET_CART_INFO, &cart, sizeof cart), SF_TRUE);
  sf_write_short(file, Ramp16(20000).data(), 20000);
  sf_close(file);
  ASSERT_TRUE(m_item.LoadFromFile(m_path));
  for (const CartField& row : kCart) EXPECT_EQ(FieldText(m_item, row.field), row.value) << row.field;
  ExpectFields(m_item,
               "AudioStart1=0.5;IntroEnd1=2.5;Extro1=17;HookStart1=3;HookEnd1=4;Composer=Irving;"
               "TotalLength=20;EndType=0");

  WriteBytes(m_path, WaveWith(""));
  ASSERT_TRUE(m_item.SaveToFile(m_path, llfQuillmere));
  cart = {};
  file = sf_open(m_path.c_str(), SFM_READ, &info);
  EXPECT_EQ(sf_command(file, SFC_GET_CART_INFO, &cart, sizeof cart), SF_TRUE);
  sf_close(file);
  EXPECT_EQ(info.frames, 20000);
  for (const CartField& row : kCart) {
    const std::string field(reinterpret_cast<const char*>(&cart) + row.offset, row.bytes);
    EXPECT_EQ(Trim(field.substr(0, field.find('\0'))), row.told) << row.field;
  }
  for (std::size_t i = 0; i < 8; ++i) {
    EXPECT_EQ(std::string(cart.post_timers[i].usage, 4), kTimers[i].first);
    EXPECT_EQ(cart.post_timers[i].value, kTimers[i].second);
  }
  const std::string tagText(cart.tag_text, std::min<std::size_t>(cart.tag_text_size, sizeof cart.tag_text));
  EXPECT_TRUE(tagText.starts_with("<COMPOSER>Irving</COMPOSER>")) << tagText;
}

TEST_F(ForeignTools, BextListAndId3OfOthers) {
  const std::string in = m_temp.File("in.wav");
  WriteBytes(in, WaveWith(""));
  ASSERT_TRUE(
      RunCommand("sndfile-metadata-set --bext-description About --bext-orig-ref R1 --bext-orig-time 04:05:06 "
                 "--bext-coding-hist A=PCM --str-artist Benny " +
                 in + " " + m_path));
  ASSERT_TRUE(m_item.LoadFromFile(m_path));
  ExpectFields(m_item,
               "ItemDescription1=About;OriginatorReference=R1;OriginationTime=14706;ArtistName1=Benny");
  EXPECT_TRUE(m_item.CodingHistory().starts_with("A=PCM")) << m_item.CodingHistory();
  ASSERT_TRUE(RunCommand("ffmpeg -y -i " + in +
                         " -write_bext 1 -metadata originator=Tool -metadata origination_date=2020-01-02 "
                         "-metadata title=Song -metadata date=1987 -metadata genre=Jazz " +
                         m_path));
  ASSERT_TRUE(m_item.LoadFromFile(m_path));
  ExpectFields(m_item,
               "ItemTitle=Song;Year=1987;CategoryInfo=Jazz;Originator=Tool;OriginationDate=43832;"
               "TotalLength=20");
  ASSERT_TRUE(RunCommand(
      "/usr/bin/python3 -c \"import mutagen.wave as w, mutagen.id3 as i\nf=w.WAVE('" + in +
      "')\nf.add_tags()\nfor t,x in ((i.TIT2,'Caf\\u00e9'),(i.TPE1,'One'),(i.TPE2,'Two'),(i.TCON,'Jazz')): "
      "f.tags.add(t(encoding=0,text=[x]))\nf.tags.add(i.APIC(data=b'x'*200))\nf.save()\""));
  ASSERT_TRUE(m_item.LoadFromFile(in));
  ExpectFields(m_item, "ItemTitle=Caf\xC3\xA9;ArtistName1=One;ArtistName2=Two;CategoryInfo=Jazz");
}

TEST_F(ForeignTools, OthersReadOurBext) {
  SetFields(m_item,
            "ItemTitle=Our Title;Originator=Studio 1;OriginatorReference=REF9;OriginationDate=44230;"
            "OriginationTime=14706;Version=1");
  ASSERT_TRUE(m_item.SaveToFile(m_path, llfQuillmere));
  ExpectOutput("exiftool -s3 -Description -Originator -OriginatorReference -DateTimeOriginal -BWFVersion",
               "Our Title\nStudio 1\nREF9\n2021:02:03 04:05:06\n1\n");
  ExpectOutput("mediainfo --Output='General;%Description%|%Encoded_Date%|%Duration%'",
               "Our Title|2021-02-03 04:05:06|20000\n");
}

}  // namespace
}  // namespace qm
