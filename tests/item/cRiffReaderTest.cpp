#include "item/cRiffReader.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "RiffFixture.h"

namespace qm {
namespace {

using namespace test;
using namespace std::string_literals;

std::string TagsOf(const cRiffReader& reader) {
  std::string text;
  for (std::int32_t i = 1; i <= reader.NumberRIFFChunkTags(); ++i) {
    const tyRiffChunkTag tag = reader.RIFFChunkTag(i);
    text += tag.ParentTag + "|" + tag.TagName + "|" + tag.FriendlyName + "|" + tag.Data + "\n";
  }
  return text;
}

std::string ChunksOf(const cRiffReader& reader) {
  std::string text;
  for (std::int32_t i = 1; i <= reader.NumberRIFFChunks(); ++i) {
    const tyRIFFChunk chunk = reader.RIFFChunk(i);
    text += chunk.Name + chunk.Type + " " + std::to_string(chunk.StartOfData) + "+" +
            std::to_string(chunk.Length) + " ";
  }
  return text;
}

TEST(RiffTags, AreThoseOfTheChunks) {
  const std::string xs(200, 'x');
  const std::pair<std::string, std::string> rows[] = {
      {Info(Chunk("INAM", "Title\0\0\0rest"s) + Chunk("itrk", "7") + Chunk("IXYZ", "Caf\xE9")) +
           Chunk("LIST", "adtl" + Chunk("labl", "x")) + Info(Chunk("INAM", "b")),
       "LIST|INAM|Title|Title\nLIST|itrk|Track|7\nLIST|IXYZ||Caf\xC3\xA9\nLIST|INAM|Title|b\n"},
      {Info("INAM"s + LittleEndian(3, 4) + "abc" + "IART" + LittleEndian(65, 4) + xs.substr(0, 65)),
       "LIST|INAM|Title|abc\nLIST|IART|Artist|" + xs.substr(0, 65) + "\n"},  // a pad forgotten
      {Info("INAM"s + LittleEndian(0xFFFFFFF9, 4) + "abcd"), "LIST|INAM|Title|abcd\n"},
      {Id3(Frame("TIT2", "\0Caf\xE9"s) + Frame("APIC", "\0picture"s) + Frame("TRCK", "\0007"s)),
       "id3 |TIT2||Caf\xC3\xA9\nid3 |APIC||\nid3 |TRCK|Track|7\n"},
      // The marks select the order that they do not name; the third kind is read as pairs.
      {Id3(Frame("TPE1", "\1\xFF\xFE\0A\1b"s) + Frame("TPE2", "\1\xFE\xFF"s + "A\0"s) +
               Frame("TPE3", "\3xyA\0B\0"s),
           "ID3 "),
       "id3 |TPE1||A\xC5\xA2\nid3 |TPE2||A\nid3 |TPE3||AB\n"},
      {Chunk("id3 ", Laid(110, 'x', {{10, "TPE1\x01\0\0\0\0\0\0"s}})),  // a frame too long
       "id3 |TPE1||" + xs.substr(0, 89) + "\n"},
      {Chunk("id3 ", Laid(100, '\0', {{10, Frame("TIT2", "\0T"s)}})), ""},
      // The last, with a character too large, is told.
      {Id3(Frame("TIT2", "\0T"s) + Frame("TPE1", "\1\xFF\xFE\x80\0"s)), "id3 |TIT2||T\n"},
  };
  for (const auto& row : rows) {
    cRiffReader reader;
    EXPECT_EQ(reader.LoadFromSource(RiffMemory(WaveWith(row.first, 10)), true, true),
              &row != &std::end(rows)[-1]);
    EXPECT_EQ(TagsOf(reader), row.second) << &row - rows;
  }
}

std::string Patched(std::string bytes, std::size_t at, std::uint32_t value) {
  return bytes.replace(at, 4, LittleEndian(value, 4));
}

TEST(RiffChunks, AreWalkedAsFarAsTheyMakeSense) {
  constexpr std::size_t kForm = 4, kData = 40;
  const std::string plain = WaveWith(Chunk("cue ", "abcd"), 4);
  const std::string whole = "fmt  20+16 data 44+8 cue  60+4 ";
  const std::string toTheEnd = "fmt  20+16 data 44+20 ";
  std::vector<std::pair<std::string, std::string>> rows = {
      {plain, whole},
      {Patched(plain, kForm, 0), ""},
      {Patched(plain, kForm, 36), whole},  // the form ends in its audio, and behind it
      {Patched(plain, kForm, 44), "fmt  20+16 data 44+8 "},
      {"RIFX" + plain.substr(4), ""},
      {plain.substr(0, 46), "fmt  20+16 data 44+2 "},
      {Chunk("RIFF", plain.substr(8) + "\1\2\3\4\0\0\0\0"s), whole},
  };
  // Beyond the file, of a pipe, and such that sums wrap
  for (const std::uint32_t far : {0x7FFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFF9u, 0xFFFFFFF8u}) {
    rows.emplace_back(Patched(plain, kForm, far), whole);
    rows.emplace_back(Patched(plain, kData, far), toTheEnd);
  }
  for (const auto& [bytes, chunks] : rows) {
    cRiffReader reader;
    EXPECT_EQ(reader.LoadFromSource(RiffMemory(bytes), false, false), bytes.starts_with("RIFF"));
    EXPECT_EQ(ChunksOf(reader), chunks) << testing::PrintToString(bytes);
    EXPECT_EQ(reader.RIFFChunk(0).Name + reader.RIFFChunk(99).Name + reader.RIFFChunkTag(0).Data, "");
  }
}

TEST(RiffChunks, EndAtACapAndOfNoFileAreNone) {
  std::string many;
  for (int i = 0; i < 5000; ++i) many += Chunk("JUNK", "");
  cRiffReader reader;
  EXPECT_TRUE(reader.LoadFromSource(RiffMemory(WaveWith(many, 1)), true, true));
  EXPECT_EQ(reader.NumberRIFFChunks(), 4096);
  for (const char* path : {"/no/such.wav", "/"}) EXPECT_FALSE(reader.LoadFromFile(path, true, true));
  EXPECT_EQ(reader.NumberRIFFChunks(), 0);
}

// Sparse on disk.
TEST(RiffChunks, AreFoundBehindGigabytesOfAudio) {
  const TempFolder folder;
  const std::string path = folder.File("long.wav"), list = Info(Chunk("INAM", "Far"));
  constexpr std::uint64_t kData = 5ull << 30;
  const std::string head = LongHead(kData + 80 + list.size() - 8, kData);
  ASSERT_EQ(head.size(), 80u);
  WriteBytes(path, head);
  std::filesystem::resize_file(path, head.size() + kData);
  std::ofstream(path, std::ios::binary | std::ios::app) << list;
  cRiffReader reader;
  ASSERT_TRUE(reader.LoadFromFile(path, true, true));
  EXPECT_EQ(TagsOf(reader), "LIST|INAM|Title|Far\n");
  EXPECT_EQ(ChunksOf(reader), "ds64 20+28 fmt  56+16 data 80+2147483647 LISTINFO 2147483647+16 ");
}

}  // namespace
}  // namespace qm
