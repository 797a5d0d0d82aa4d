#include "cli/ItemArgument.h"

#include <gtest/gtest.h>

#include "item/cHDItem.h"
#include "support/SoundFixtures.h"

namespace qm::cli {
namespace {

using Fields = std::vector<std::pair<std::string, std::string>>;

struct Taken {
  const char* text;
  const char* path;
  Fields fields;
};

TEST(ItemArgument, IsTakenApartAtItsFields) {
  const Taken taken[] = {
      {"song.ogg", "song.ogg", {}},
      {"song.ogg::AudioStart=1.5,Extro=170", "song.ogg", {{"AudioStart", "1.5"}, {"Extro", "170"}}},
      {"a::b, c=d.ogg::extro2=0:30.5", "a::b, c=d.ogg", {{"extro2", "0:30.5"}}},
      {"x.ogg::ItemTitle=Hello, World=1,Year=1999",
       "x.ogg",
       {{"ItemTitle", "Hello, World=1"}, {"Year", "1999"}}},
      {"x.ogg::URL=a::b,ItemTitle=", "x.ogg", {{"URL", "a::b"}, {"ItemTitle", ""}}},
      {"no::Field", "no::Field", {}},
      {"::Extro=1", "::Extro=1", {}},
      {"", "", {}},
  };
  for (const Taken& row : taken) {
    ItemArgument argument;
    std::string errorText;
    EXPECT_TRUE(ParseItemArgument(row.text, argument, errorText)) << row.text << ": " << errorText;
    EXPECT_EQ(argument.path, row.path) << row.text;
    EXPECT_EQ(argument.fields, row.fields) << row.text;
  }
}

TEST(ItemArgument, MeansTheFileOfThatNameWhenThereIsOne) {
  test::TempFolder folder;
  const std::string odd = folder.File("a.wav::Extro=3");
  test::WriteBytes(odd, "x");
  ItemArgument argument;
  std::string errorText;
  EXPECT_TRUE(ParseItemArgument(odd, argument, errorText));
  EXPECT_EQ(argument.path, odd);
  EXPECT_TRUE(ParseItemArgument(odd + "::Extro=4", argument, errorText));
  EXPECT_EQ(argument.path, odd);
  EXPECT_EQ(argument.fields, (Fields{{"Extro", "4"}}));
  EXPECT_FALSE(ParseItemArgument(odd + "::Extrow=4", argument, errorText));
}

TEST(ItemArgument, SetsFieldsInTheOrderGiven) {
  ItemArgument argument;
  std::string errorText;
  ASSERT_TRUE(ParseItemArgument("a::TotalLength=60,Extro=50,AudioEnd=40,Extro3=7", argument, errorText));
  cHDItem item;
  ApplyFields(argument, item);
  EXPECT_EQ(item.AudioEnd(1), 40);
  EXPECT_EQ(item.Extro(1), 40);  // pulled back by the AudioEnd behind it
  EXPECT_EQ(item.Extro(3), 7);
}

}  // namespace
}  // namespace qm::cli
