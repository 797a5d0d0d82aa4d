#include "kits/common/Text.h"

#include <gtest/gtest.h>

#include "kits/common/EightBitText.h"
#include "kits/common/Utf8.h"

namespace qm {
namespace {

TEST(Text, ReferencesAreComparedTrimmedAndIgnoringAsciiCase) {
  EXPECT_TRUE(SameReference("  Jingle.1 \r\n", "JINGLE.1"));
  EXPECT_FALSE(SameReference("jingle 1", "jingle  1"));
  EXPECT_TRUE(SameReference("", " \t"));
  EXPECT_FALSE(EqualIgnoringCase("é", "É")) << "only ASCII letters have a case here";
}

TEST(Text, OnlyWellFormedUtf8IsValid) {
  for (const char* good : {"", "abc", "é", "€", "😀", "\xF4\x8F\xBF\xBF", "\xED\x9F\xBF", "\xC2\x80"})
    EXPECT_TRUE(IsValidUtf8(good)) << good;
  for (const char* bad : {"\x80", "a\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xF0\x80\x80\xAF", "\xED\xA0\x80",
                          "\xF4\x90\x80\x80", "\xFF", "\xE2\x82", "\xE2\x82z"})
    EXPECT_FALSE(IsValidUtf8(bad)) << bad;
}

TEST(Text, CharactersSurviveUtf8) {
  for (const char32_t character :
       {U'a', U'\x7F', U'\x80', U'\x7FF', U'\x800', U'\xFFFF', U'\x10000', U'\x10FFFF'}) {
    std::string text;
    AppendCharacter(text, character);
    std::size_t position = 0;
    char32_t read = 0;
    EXPECT_TRUE(NextCharacter(text, position, read));
    EXPECT_EQ(read, character);
    EXPECT_EQ(position, text.size());
  }
  std::string none;
  AppendCharacter(none, 0xD800);
  AppendCharacter(none, 0x110000);
  EXPECT_EQ(none, "");
}

TEST(Text, CutsBetweenCharacters) {
  const std::string text = "a€😀";  // 1, 3 and 4 bytes
  const std::size_t kept[] = {0, 1, 1, 1, 4, 4, 4, 4, 8, 8};
  for (std::size_t limit = 0; limit < std::size(kept); ++limit)
    EXPECT_EQ(CutAtCharacter(text, limit), text.substr(0, kept[limit])) << limit;
  EXPECT_EQ(CutAtCharacter("\xE9\xE9\xE9\xE9", 2).size(), 2u) << "no text at all";
}

TEST(EightBitText, BytesAreReadAsWhatTheyAre) {
  const std::pair<std::string, std::string> cases[] = {
      {"plain", "plain"},   {"caf\xE9", "café"}, {"café", "café"}, {"\x80 5 \x96 \x99", "€ 5 – ™"},
      {"\x81", "\xC2\x81"}, {"\xFF", "ÿ"},
  };
  for (const auto& [bytes, text] : cases) EXPECT_EQ(TextFromEightBit(bytes), text) << text;
}

TEST(EightBitText, WritesOneByteACharacterWhereThatReadsBack) {
  EXPECT_EQ(EightBitFromText("café €"), "caf\xE9 \x80");
  EXPECT_EQ(EightBitFromText("Łódź"), "Łódź");
  EXPECT_EQ(EightBitFromText("Ã©"), "Ã©") << "as Windows-1252 it would read back as another letter";
  EXPECT_EQ(EightBitFromText("\xE9\x80"), "\xE9\x80");
  EXPECT_EQ(EightBitFromText("éé", 1), "\xE9");
  EXPECT_EQ(EightBitFromText("aŁ", 2), "a");
  for (int code = 0; code < 256; ++code) {
    const std::string byte(1, static_cast<char>(code));
    EXPECT_EQ(EightBitFromText(TextFromEightBit(byte)), byte) << code;
  }
}

}  // namespace
}  // namespace qm
