#include <gtest/gtest.h>

#include "kits/common/Colours.h"
#include "kits/common/MessageBox.h"

namespace qm {
namespace {

TEST(Colours, SystemColoursAreLookedUpAndOthersStand) {
  const std::pair<std::int32_t, std::int32_t> colours[] = {
      {0xFF0000, 0xFF0000}, {kButtonFaceColour, 0xC8D0D4}, {kButtonTextColour, 0}, {-1, 0}};
  for (const auto& [colour, shown] : colours) EXPECT_EQ(ConvertColour(colour), shown) << colour;
  SetSystemColours([](std::int32_t index) { return 0x7F000000 | index; });
  EXPECT_EQ(ConvertColour(kButtonFaceColour), 15);
  SetSystemColours({});
  EXPECT_EQ(SystemColour(5), 0xFFFFFF);
  const std::pair<std::int32_t, const char*> names[] = {{0, "SCROLLBAR"},
                                                        {15, "BTNFACE"},
                                                        {20, "BTNHIGHLIGHT"},
                                                        {27, "GRADIENTACTIVECAPTION"},
                                                        {28, "GRADIENTINACTIVECAPTION"}};
  for (const auto& [index, name] : names) EXPECT_EQ(SystemColourName(index), std::string("COLOR_") + name);
  for (const std::int32_t index : {-1, 21, 26, 29}) EXPECT_EQ(SystemColourName(index), "") << index;
}

TEST(MessageBox, TheConsolePrintsOneLineAndRefuses) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(ConsoleMessageBox()->Show("Delete\r\nit?", mbsYesNo | mbsQuestion, "Station"), mbaNo);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Station: Delete  it?\n");
  EXPECT_EQ(RefusingAnswer(mbsExclamation), mbaOk);
  EXPECT_EQ(RefusingAnswer(mbsOkCancel | mbsCritical), mbaCancel);
  EXPECT_EQ(RefusingAnswer(mbsYesNoCancel), mbaCancel);
}

}  // namespace
}  // namespace qm
