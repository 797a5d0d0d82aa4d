#include "item/ItemMetadata.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include "RiffFixture.h"
#include "audio/TraceFixture.h"
#include "audio/cPeakFile.h"
#include "item/cHDItem.h"
#include "item/cHDItemMark.h"
#include "kits/sound/Platform.h"
#include "kits/sound/cAudioFormat.h"

namespace qm {
namespace {

using namespace test;

class ItemFiles : public TraceFixture {
 protected:
  ItemFiles() { m_platform.clock = m_clock, m_platform.messageBox = m_box; }
  bool Save(enHDFileFlags flags) { return m_item.SaveToFile(m_path, flags, &m_platform); }

  cHDItem m_item;
  const std::string m_path = m_temp.File("--odd\nn\xE9me.WAV");
  Platform m_platform;
};

TEST_F(ItemFiles, KeepAudioAndPeakFile) {
  WriteBytes(m_path, Wav16(Noise16(44100), 44100, 2));
  cPeakFile peaks(m_clock);
  ASSERT_EQ(peaks.ScanAudioFile(m_path), pfeOK);
  const std::string before = ReadBytes(m_path);
  ASSERT_TRUE(m_item.LoadFromFile(m_path));
  m_item.SetItemTitle("Noise");
  ASSERT_TRUE(Save(llfQuillmere));
  const std::string after = ReadBytes(m_path);
  EXPECT_TRUE(after.substr(8, before.size() - 8) == before.substr(8));
  EXPECT_EQ(m_item.AudioFileLength(), static_cast<std::int32_t>(after.size()));
  EXPECT_TRUE(peaks.CheckPeakFileValid(m_path));
  cHDItem back;
  ASSERT_TRUE(back.LoadFromFile(m_path));
  EXPECT_EQ(back.ItemTitle(), "Noise");
  EXPECT_EQ(back.AudioFormat()->SampleRate(), 44100);
  EXPECT_EQ(back.TotalLength(), 0.5f);
}

TEST_F(ItemFiles, RefuseWhatCannotBe) {
  m_item.SetTotalLength(7);
  for (const char* content : {"", static_cast<const char*>(nullptr)}) {
    if (content) WriteBytes(m_path, content);
    EXPECT_FALSE(m_item.LoadFromFile(m_path) || Save(llfQuillmere));
    EXPECT_EQ(m_item.TotalLength(), 7);
    EXPECT_EQ(m_item.AudioFileName(), "");
  }
  WriteBytes(m_path, "no RIFF file");
  EXPECT_FALSE(Save(llfQuillmere));
  EXPECT_FALSE(m_item.LoadFromFile(m_path));
  EXPECT_EQ(m_item.TotalLength(), 0);
  EXPECT_TRUE(m_item.AudioFileExists());
  WriteBytes(m_path, WaveWith(""));
  EXPECT_FALSE(Save(llfAutoDetect));  // no carrier
  std::filesystem::permissions(m_path, std::filesystem::perms::owner_read);
  EXPECT_FALSE(Save(llfQuillmere));
  EXPECT_TRUE(m_box->shown.empty());
  EXPECT_EQ(ReadBytes(m_path), WaveWith(""));
}

// A program that runs cannot be opened for writing, by whomever.
TEST_F(ItemFiles, TellWhenTheSystemRefuses) {
  const std::string path = m_temp.File("runs.wav");
  std::filesystem::copy_file("/bin/cat", path);
  FILE* running = popen((Quoted(path) + " /dev/zero 2>&1").c_str(), "r");
  ASSERT_TRUE(running && fgetc(running) == 0);
  for (const auto flags : {llfCartChunk, llfBext}) EXPECT_FALSE(m_item.SaveToFile(path, flags, &m_platform));
  pclose(running);
  const std::string start = "The WAV audio file is not read only, but Windows would not let the ";
  EXPECT_EQ(m_box->shown, (std::vector<std::string>{start + "CartChunk information be updated",
                                                    start + "Broadcast WAVE (BEXT) information be updated"}));
}

TEST_F(ItemFiles, KeepMarkersBesideTheAudio) {
  for (const std::int32_t place : {-5, 300, 300, 2147483647}) {
    auto mark = std::make_shared<cHDItemMark>();
    mark->SetStartSample(place);
    mark->SetTitle("M\xC3\xA4rk " + std::to_string(m_item.NumberMarkers()) + std::string(200, 'x'));
    mark->SetDuration(-1);
    mark->SetMarkerType(himtHook);
    mark->Setflags(3);
    m_item.AddMarker(mark);
  }
  std::string name = m_temp.File("x.wav");
  ASSERT_TRUE(m_item.SaveMarkersToFile(name));
  ASSERT_EQ(name, m_temp.File("x.wav.pmk"));
  const std::string bytes = ReadBytes(name);
  ASSERT_EQ(bytes.size(), 4 * 256u);
  EXPECT_EQ(bytes.substr(0, 144), "M\xE4rk 0" + std::string(122, 'x') +
                                      std::string("\xFB\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x0B\0\0\0\3\0\0\0", 16));
  std::ofstream(name, std::ios::app) << "half a record";
  cHDItem back;
  back.AddMarker(std::make_shared<cHDItemMark>());
  ASSERT_TRUE(back.LoadMarkersFromFile(name));
  ASSERT_EQ(back.NumberMarkers(), 4);
  for (std::int32_t i = 1; i <= 4; ++i) {
    EXPECT_EQ(back.Marker(i)->Guid(), m_item.Marker(i)->Guid());
    // One of the characters takes two bytes.
    EXPECT_EQ(back.Marker(i)->Title(), m_item.Marker(i)->Title().substr(0, 129));
    EXPECT_EQ(back.Marker(i)->StartSample(), m_item.Marker(i)->StartSample());
  }
  back.ClearMarkers();
  EXPECT_FALSE(back.SaveMarkersToFile(name));
  EXPECT_FALSE(std::filesystem::exists(name) || m_item.LoadMarkersFromFile(name));
  EXPECT_EQ(m_item.NumberMarkers(), 4);
}

}  // namespace
}  // namespace qm
