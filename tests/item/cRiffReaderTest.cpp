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
  const struct {
    const char* name;
    std::string behind;
    std::string tags;
    bool whole = true;
  } rows[] = {
      {"list", Info(Chunk("INAM", "Title\0\0\0rest"s) + Chunk("itrk", "7") + Chunk("IXYZ", "Caf\xE9")),
       "LIST|INAM|Title|Title\nLIST|itrk|Track|7\nLIST|IXYZ||Caf\xC3\xA9\n"},
      {"otherList", Chunk("LIST", "adtl" + Chunk("labl", "x")), ""},
      {"padForgotten",
       Info("INAM"s + LittleEndian(3, 4) + "abc" + "IART" + LittleEndian(0x41, 4) + std::string(0x41, 'x')),
       "LIST|INAM|Title|abc\nLIST|IART|Artist|" + std::string(0x41, 'x') + "\n"},
      {"subChunkTooLong", Info("INAM"s + LittleEndian(0xFFFFFFF9, 4) + "abcd"), "LIST|INAM|Title|abcd\n"},
      {"frames", Id3(Frame("TIT2", "\0Caf\xE9"s) + Frame("APIC", "\0picture"s) + Frame("TRCK", "\0007"s)),
       "id3 |TIT2||Caf\xC3\xA9\nid3 |APIC||\nid3 |TRCK|Track|7\n"},
      {"otherCase", Id3(Frame("TPE1", "\0A"s), "ID3 "), "id3 |TPE1||A\n"},
      // The marks select the order that they do not name.
      {"littleEndianMark", Id3(Frame("TPE1", "\1\xFF\xFE\0A\1b"s)), "id3 |TPE1||A\xC5\xA2\n"},
      {"bigEndianMark", Id3(Frame("TPE1", "\1\xFE\xFF"s + "A\0"s)), "id3 |TPE1||A\n"},
      {"utf8AsPairs", Id3(Frame("TPE1", "\3xyA\0B\0"s)), "id3 |TPE1||AB\n"},
      {"characterTooLarge", Id3(Frame("TIT2", "\0T"s) + Frame("TPE1", "\1\xFF\xFE\x80\0"s)), "id3 |TIT2||T\n",
       false},
      {"frameTooLong", Chunk("id3 ", Laid(110, 'x', {{10, "TPE1\x01\0\0\0\0\0\0"s}})),
       "id3 |TPE1||" + std::string(89, 'x') + "\n"},
      {"hundredBytes", Chunk("id3 ", Laid(100, '\0', {{10, Frame("TIT2", "\0T"s)}})), ""},
      {"twoOfAKind", Info(Chunk("INAM", "a")) + Info(Chunk("INAM", "b")),
       "LIST|INAM|Title|a\nLIST|INAM|Title|b\n"},
  };
  for (const auto& row : rows) {
    cRiffReader reader;
    EXPECT_EQ(reader.LoadFromSource(RiffMemory(WaveWith(row.behind, 10)), true, true), row.whole) << row.name;
    EXPECT_EQ(TagsOf(reader), row.tags) << row.name;
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
  const struct {
    const char* name;
    std::string bytes;
    std::string chunks;
  } rows[] = {
      {"plain", plain, whole},
      {"form beyond the file", Patched(plain, kForm, 0x7FFFFFFF), whole},
      {"form of a pipe", Patched(plain, kForm, 0xFFFFFFFF), whole},
      {"form that wraps", Patched(plain, kForm, 0xFFFFFFF9), whole},
      {"form of no length", Patched(plain, kForm, 0), ""},
      {"form ends in its audio", Patched(plain, kForm, 36), whole},
      {"form ends behind its audio", Patched(plain, kForm, 44), "fmt  20+16 data 44+8 "},
      {"data beyond the file", Patched(plain, kData, 0x7FFFFF00), toTheEnd},
      {"data of a pipe", Patched(plain, kData, 0xFFFFFFFF), toTheEnd},
      {"data that wraps", Patched(plain, kData, 0xFFFFFFF8), toTheEnd},
      {"no form", "RIFX" + plain.substr(4), ""},
      {"cut", plain.substr(0, 46), "fmt  20+16 data 44+2 "},
      {"rubbish behind", Chunk("RIFF", plain.substr(8) + "\1\2\3\4\0\0\0\0"s), whole},
  };
  for (const auto& row : rows) {
    cRiffReader reader;
    const RiffMemory file(row.bytes);
    EXPECT_EQ(reader.LoadFromSource(file, false, false), row.bytes.starts_with("RIFF")) << row.name;
    EXPECT_EQ(ChunksOf(reader), row.chunks) << row.name;
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
  const std::string longLengths = LittleEndian(kData + 80 + list.size() - 8, 8) + LittleEndian(kData, 8) +
                                  LittleEndian(kData / 2, 8) + LittleEndian(0, 4);
  const std::string head =
      "RF64\xFF\xFF\xFF\xFFWAVE" + Chunk("ds64", longLengths) + FormatChunk() + "data\xFF\xFF\xFF\xFF";
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
