#include "item/ItemFields.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "item/ItemFieldAccess.h"
#include "item/cHDItem.h"

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

TEST(ItemFields, ABadIndexReadsAsNothingAndWritesNothing) {
  cHDItem item;
  for (const ItemField& field : ItemFields()) {
    for (const std::int32_t index : {0, 4, -1, 32767}) {
      if (field.count == 1) continue;
      Change(item, field, index);
      EXPECT_EQ(FieldText(item, field, index), field.IsText() ? "" : "0") << field.name;
    }
  }
  EXPECT_EQ(item.ExtroExtra(4), nullptr);
  EXPECT_TRUE(item.IsSame(std::make_shared<cHDItem>(), true));
}

TEST(ItemFieldAccess, SetsByNameAndIndexOrSaysWhyNot) {
  const struct {
    const char* name;
    const char* text;
    enSetFieldResult result;
    const char* reads;  // afterwards, under the same name
  } cases[] = {
      {"ItemTitle", "Songs, old = new", sfrSet, "Songs, old = new"},
      {"extro", "170", sfrSet, "170"},
      {"Extro(3)", " 2:50 ", sfrSet, "170"},
      {"ArtistName3", "C", sfrSet, "C"},
      {"Extro4", "1", sfrUnknownField, ""},
      {"Extro2)", "1", sfrUnknownField, ""},
      {"", "1", sfrUnknownField, ""},
      {"Year", "1999", sfrSet, "1999"},
      {"Year", "1999x", sfrBadValue, "1999"},
      {"Year", "", sfrBadValue, "1999"},
      {"IntroEnd", "1e39", sfrBadValue, "0"},
      {"IntroEnd", "nan", sfrBadValue, "0"},
      {"KillDate", "2024-02-29", sfrSet, "45351"},
      {"KillDate", "tomorrow", sfrBadValue, "45351"},
      {"AirStartTime", "06:30:00", sfrSet, "23400"},
      {"LoopPlayToEnd", "true", sfrSet, "1"},
      {"LoopPlayToEnd", "maybe", sfrBadValue, "1"},
      {"EndType", "Slow Fade", sfrSet, "8"},
      {"TotalLength", "30", sfrSet, "30"},
  };
  cHDItem item;
  for (const auto& c : cases) {
    EXPECT_EQ(SetFieldText(item, c.name, c.text), c.result) << c.name << "=" << c.text;
    EXPECT_EQ(FieldText(item, c.name), c.reads) << c.name << "=" << c.text;
  }
  EXPECT_EQ(item.AudioEnd(3), 30) << "through the property, with its effects";
}

}  // namespace
}  // namespace qm
