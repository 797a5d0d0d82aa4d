#include "kits/common/TagText.h"

#include <gtest/gtest.h>
// rapidcheck takes up what stands before it.
#include <rapidcheck.h>

#include <algorithm>

#include "kits/common/Text.h"

namespace qm {
namespace {

// Every byte, those with a meaning in tag text more often.
rc::Gen<std::string> AnyText() {
  const auto byte =
      rc::gen::oneOf(rc::gen::arbitrary<char>(), rc::gen::element('"', '%', ' ', '=', '\n', '\r', '2', 'F'));
  return rc::gen::container<std::string>(byte);
}

TEST(TagText, EncodedTextIsOneUnquotedLineAndDecodesToItself) {
  EXPECT_TRUE(rc::check([] {
    const std::string text = *AnyText();
    const std::string encoded = EncodeTagValue(text);
    RC_ASSERT(
        std::ranges::all_of(encoded, [](char c) { return c != '"' && static_cast<unsigned char>(c) >= 32; }));
    RC_ASSERT(DecodeTagValue(encoded) == text);
  }));
}

TEST(TagText, PairsReadBackWhateverTheyHold) {
  EXPECT_TRUE(rc::check([] {
    const auto letters = rc::gen::nonEmpty(rc::gen::container<std::string>(rc::gen::inRange('a', 'z')));
    const auto keys = *rc::gen::unique<std::vector<std::string>>(letters);
    std::vector<std::string> values;
    std::string text;
    for (const std::string& key : keys) {
      std::string value = *AnyText();
      // A value that holds a pair hides later ones, so none is made here.
      std::erase(value, '=');
      text = AppendTag(std::move(text), key, value, "=", true);
      values.push_back(value);
    }
    for (std::size_t i = 0; i < keys.size(); ++i)
      RC_ASSERT(GetTagValue(text, UpperCase(keys[i]), "=", true) == values[i]);
  }));
}

TEST(TagText, DecodingLeavesOtherTextAlone) {
  for (const char* text : {"50% off", "100%", "%", "%2", "%41", "%zz", "%FF", "a%20b"})
    EXPECT_EQ(DecodeTagValue(text), text);
  EXPECT_EQ(DecodeTagValue("%22a%0d%0A%25%7f"), "\"a\r\n%\x7F");
}

TEST(TagText, KeysCountAtTheStartOfAPair) {
  const char* cases[][3] = {{"Ex1=5 HKEx1=7", "Ex1", "5"},
                            {"HKEx1=7 AudStEx1=8", "Ex1", ""},
                            {"HKEx1=7 ex1=9", "Ex1", "9"},
                            {" Ref=\"a b=c\" N=2", "Ref", "a b=c"},
                            {"Ref=\"a b=c\" N=2", "N", "2"},
                            {"Ref=\"open", "Ref", "open"},
                            {"Ref=\"\" N=2", "Ref", ""},
                            {"Ref=", "Ref", ""},
                            {"A=1 A=2", "A", "1"},
                            {"Title=\"x Ver=3\" Ver=4", "Ver", "3\""},  // inside a quoted value, but first
                            {"", "A", ""},
                            {"A", "A", ""}};
  for (const auto& [text, key, value] : cases) EXPECT_EQ(GetTagValue(text, key), value) << text;
}

TEST(TagText, OtherSeparatorsAndUnsecuredKeys) {
  EXPECT_EQ(GetTagValue("XEx1:5;Ex1:7", "Ex1", ":", false, ";"), "7");
  EXPECT_EQ(GetTagValue("XEx1:5;Ex1:7", "Ex1", ":", false, ";", false), "5");
  EXPECT_EQ(GetTagValue("a=1 b=2, b=3, c", "b", "=", false, ", "), "3");
  EXPECT_EQ(GetTagValue("b=2, c", "B", "=", false, ", "), "2");
  EXPECT_EQ(GetTagValue("b=2 c", "b", "=", false, ""), "2 c");
  EXPECT_EQ(AppendTag("a=1", "b", "x\"y", ":", true, ";"), "a=1;b:\"x%22y\"");
  EXPECT_EQ(AppendTag("", "b", "%1", "=", false), "b=%1");
}

TEST(TagText, HostileTextIsReadInOnePass) {
  std::string nearly;
  for (int i = 0; i < 200000; ++i) nearly += " Ke Key";
  EXPECT_EQ(GetTagValue(nearly + " Key=1", "Key"), "1");
  EXPECT_EQ(GetTagValue(std::string(1000000, '"'), "Key"), "");
  EXPECT_EQ(GetTagValue("Key=" + std::string(1000000, '"'), "Key"), "");
}

TEST(TagText, MarkupValuesLieBetweenTheirTags) {
  const char* cases[][3] = {{"<A>1</A><url>x</URL>", "URL", "x"},
                            {"</A><A>1<A>2</A>", "a", "1<A>2"},
                            {"<A>1", "A", ""},
                            {"1</A>", "A", ""}};
  for (const auto& [text, tag, value] : cases) EXPECT_EQ(GetMarkupTagValue(text, tag), value);
}

}  // namespace
}  // namespace qm
