#include "cli/ItemArgument.h"

#include <gtest/gtest.h>

#include "item/cHDItem.h"
#include "support/SoundFixtures.h"

namespace qm::cli {
namespace {

// "path|name=value|name=value", or what is wrong.
std::string Taken(const std::string& text) {
  ItemArgument argument;
  std::string taken;
  if (!ParseItemArgument(text, argument, taken)) return "wrong";
  taken = argument.path;
  for (const auto& [name, value] : argument.fields) taken += "|" + name + "=" + value;
  return taken;
}

TEST(ItemArgument, IsTakenApartAtItsFieldsUnlessThereIsAFileOfThatName) {
  test::TempFolder folder;
  const std::string odd = folder.File("a.wav::Extro=3");
  test::WriteBytes(odd, "x");
  const std::pair<std::string, std::string> rows[] = {
      {"song.ogg", "song.ogg"},
      {"song.ogg::AudioStart=1.5,Extro=170", "song.ogg|AudioStart=1.5|Extro=170"},
      {"a::b, c=d.ogg::extro2=0:30.5", "a::b, c=d.ogg|extro2=0:30.5"},
      {"x.ogg::ItemTitle=Hello, World=1,Year=1999", "x.ogg|ItemTitle=Hello, World=1|Year=1999"},
      {"x.ogg::URL=a::b,ItemTitle=", "x.ogg|URL=a::b|ItemTitle="},
      {"no::Field", "no::Field"},
      {"::Extro=1", "::Extro=1"},
      {"", ""},
      {odd, odd},
      {odd + "::Extro=4", odd + "|Extro=4"},
      {odd + "::Extrow=4", "wrong"},
  };
  for (const auto& [text, taken] : rows) EXPECT_EQ(Taken(text), taken);
}

TEST(ItemArgument, SetsFieldsInTheOrderGiven) {
  ItemArgument argument;
  std::string errorText;
  ASSERT_TRUE(ParseItemArgument("a::TotalLength=60,Extro=50,AudioEnd=40,Extro3=7", argument, errorText));
  cHDItem item;
  ApplyFields(argument, item);
  EXPECT_EQ(item.Extro(1), 40);  // pulled back by the AudioEnd behind it
  EXPECT_EQ(item.Extro(3), 7);
}

}  // namespace
}  // namespace qm::cli
