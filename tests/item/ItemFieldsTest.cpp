#include "item/ItemFields.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>

#include "item/ItemFieldAccess.h"
#include "item/cHDItem.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

// A value that differs from what the item has, of the field's kind.
void Change(cHDItem& item, const ItemField& field, std::int32_t index) {
  if (field.IsText())
    field.setText(item, index, field.text(item, index) + "x");
  else
    field.setNumber(item, index,
                    field.kind == ifkFlag ? field.number(item, index) == 0 : field.number(item, index) + 7);
}

TEST(ItemFields, AFreshItemHasTheDefaultsThatStationsRelyOn) {
  const std::map<std::string, std::string> notZero = {
      {"InfoAvailable", "3"},    {"TimeStretchRatio", "1"},     {"ContentTypeNumber", "-1"},
      {"CategoryNumber", "-1"},  {"LoopStart", "-1"},           {"LoopEnd", "-1"},
      {"ScheduledLength", "-1"}, {"BackColour", "-2147483633"}, {"TextColour", "-2147483630"}};
  const cHDItem item;
  for (const ItemField& field : ItemFields()) {
    const auto expected = notZero.find(field.name);
    const std::string byDefault = expected != notZero.end() ? expected->second : field.IsText() ? "" : "0";
    for (std::int32_t index = 1; index <= field.count; ++index) {
      EXPECT_EQ(FieldText(item, field, index), byDefault) << field.name;
      EXPECT_TRUE(IsDefault(item, field, index)) << field.name;
    }
  }
}

TEST(ItemFields, EveryFieldHoldsItsOwnValueAndNoOther) {
  for (const ItemField& field : ItemFields()) {
    for (std::int32_t index = 1; index <= field.count; ++index) {
      cHDItem item;
      item.SetTotalLength(100);
      Change(item, field, index);
      EXPECT_FALSE(IsDefault(item, field, index)) << field.name << index;
      if (field.id == eifTotalLength) continue;  // moves every AudioEnd
      cHDItem untouched;
      untouched.SetTotalLength(100);
      for (const ItemField& other : ItemFields()) {
        for (std::int32_t i = 1; i <= other.count; ++i) {
          if (other.id == field.id && i == index) continue;
          EXPECT_EQ(FieldText(item, other, i), FieldText(untouched, other, i))
              << field.name << ", " << other.name;
        }
      }
    }
  }
}

TEST(ItemFields, ComparisonSeesEveryFieldButTheFour) {
  const std::set<std::string> apart = {"AudioFileLength", "AudioFileExists", "LastRefreshedDate",
                                       "LastRefreshedTime"};
  for (const ItemField& field : ItemFields()) {
    for (std::int32_t index = 1; index <= field.count; ++index) {
      const auto first = std::make_shared<cHDItem>(), second = std::make_shared<cHDItem>();
      Change(*second, field, index);
      EXPECT_EQ(first->IsSame(second, true), apart.contains(field.name)) << field.name << index;
    }
  }
}

TEST(ItemFields, KeysOfTheTextFormAreUnique) {
  std::set<std::string> seen;
  for (const ItemField& field : ItemFields()) {
    if (field.written == ifwNever) continue;
    for (std::int32_t index = 1; index <= field.count; ++index) {
      const std::string key = field.key + (field.count > 1 ? std::to_string(index) : "");
      EXPECT_TRUE(seen.insert(LowerCase(key)).second) << field.name;
    }
  }
}

TEST(ItemFields, ABadIndexReadsAsNothingAndWritesNothing) {
  cHDItem item;
  for (const ItemField& field : ItemFields()) {
    if (field.count == 1) continue;
    for (const std::int32_t index : {0, 4, -1, 32767}) {
      Change(item, field, index);
      EXPECT_EQ(FieldText(item, field, index), field.IsText() ? "" : "0") << field.name;
    }
  }
  EXPECT_EQ(item.AudioStartExtra(0), nullptr);
  EXPECT_EQ(item.ExtroExtra(4), nullptr);
  const auto fresh = std::make_shared<cHDItem>();
  EXPECT_TRUE(item.IsSame(fresh, true));
}

TEST(ItemFieldAccess, SetsByNameAndIndexOrSaysWhyNot) {
  struct Case {
    const char* name;
    const char* text;
    enSetFieldResult result;
    const char* reads;  // afterwards, under the same name
  };
  const Case cases[] = {
      {"ItemTitle", "Songs, old = new", sfrSet, "Songs, old = new"},
      {"extro", "170", sfrSet, "170"},
      {"Extro2", "1.5", sfrSet, "1.5"},
      {"Extro(3)", " 2:50 ", sfrSet, "170"},
      {"ArtistName3", "C", sfrSet, "C"},
      {"Extro4", "1", sfrUnknownField, ""},
      {"Extro(2", "1", sfrUnknownField, ""},
      {"Extro2)", "1", sfrUnknownField, ""},
      {"Year2", "1", sfrUnknownField, ""},
      {"Nothing", "1", sfrUnknownField, ""},
      {"", "1", sfrUnknownField, ""},
      {"Year", "1999", sfrSet, "1999"},
      {"Year", "1999x", sfrBadValue, "1999"},
      {"Year", "1999.5", sfrBadValue, "1999"},
      {"Year", "", sfrBadValue, "1999"},
      {"PlayVolume", "40000", sfrBadValue, "0"},
      {"IntroEnd", "soon", sfrBadValue, "0"},
      {"IntroEnd", "so:on", sfrBadValue, "0"},
      {"IntroEnd", "1e39", sfrBadValue, "0"},
      {"IntroEnd", "nan", sfrBadValue, "0"},
      {"KillDate", "2024-02-29", sfrSet, "45351"},
      {"KillDate", "45352", sfrSet, "45352"},
      {"KillDate", "tomorrow", sfrBadValue, "45352"},
      {"AirStartTime", "06:30:00", sfrSet, "23400"},
      {"AirStartTime", "0:00:00", sfrSet, "0"},
      {"LoopPlayToEnd", "true", sfrSet, "1"},
      {"LoopPlayToEnd", "maybe", sfrBadValue, "1"},
      {"EndType", "Slow Fade", sfrSet, "8"},
      {"EndType", "4", sfrSet, "4"},
      {"EndType", "abruptly", sfrBadValue, "4"},
      {"BackColour", "255", sfrSet, "255"},
  };
  cHDItem item;
  for (const Case& c : cases) {
    EXPECT_EQ(SetFieldText(item, c.name, c.text), c.result) << c.name << "=" << c.text;
    EXPECT_EQ(FieldText(item, c.name), c.reads) << c.name << "=" << c.text;
  }
  EXPECT_EQ(item.Extro(1), 170);
  EXPECT_EQ(item.ArtistName(1), "");
}

TEST(ItemFieldAccess, GoesThroughThePropertyWithItsEffects) {
  cHDItem item;
  SetFieldText(item, "TotalLength", "30");
  EXPECT_EQ(FieldText(item, "AudioEnd3"), "30");
  SetFieldText(item, "Extro", "25");
  SetFieldText(item, "AudioEnd", "20");
  EXPECT_EQ(FieldText(item, "Extro"), "20");
}

}  // namespace
}  // namespace qm
