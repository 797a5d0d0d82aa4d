#include "item/ItemFields.h"

#include <memory>
#include <set>

#include "FieldFixture.h"
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
  cHDItem item;
  test::SetFields(
      item,
      "ItemTitle=Songs, old = new;extro=170;Extro(3)= 2:50 ;ArtistName3=C;Year=1999;EndType=Slow Fade;"
      "KillDate=2024-02-29;AirStartTime=06:30:00;LoopPlayToEnd=true");
  for (const char* name : {"Extro4", "Extro2)", "Year2", ""}) {
    EXPECT_EQ(SetFieldText(item, name, "1"), sfrUnknownField) << name;
    EXPECT_EQ(FieldText(item, name), "") << name;
  }
  for (const auto& [name, text] : {std::pair{"Year", "1999x"},
                                   {"Year", ""},
                                   {"PlayVolume", "40000"},
                                   {"IntroEnd", "soon"},
                                   {"IntroEnd", "1e39"},
                                   {"IntroEnd", "nan"},
                                   {"KillDate", "tomorrow"},
                                   {"LoopPlayToEnd", "maybe"},
                                   {"EndType", "abruptly"}})
    EXPECT_EQ(SetFieldText(item, name, text), sfrBadValue) << name << "=" << text;
  test::ExpectFields(
      item,
      "ItemTitle=Songs, old = new;extro=170;Extro(3)=170;ArtistName1=;ArtistName3=C;Year=1999;EndType=8;"
      "KillDate=45351;AirStartTime=23400;LoopPlayToEnd=1;PlayVolume=0;IntroEnd=0");
  test::SetFields(item, "KillDate=45352;TotalLength=30");
  test::ExpectFields(item, "KillDate=45352;AudioEnd3=30");  // through the property, with its effects
}

}  // namespace
}  // namespace qm
