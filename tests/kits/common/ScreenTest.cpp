#include <gtest/gtest.h>

#include "kits/common/Colours.h"
#include "kits/common/MessageBox.h"

namespace qm {
namespace {

TEST(Colours, SystemColoursAreLookedUpAndOthersStand) {
  EXPECT_EQ(ConvertColour(0xFF0000), 0xFF0000);
  EXPECT_EQ(ConvertColour(kButtonFaceColour), 0xC8D0D4);
  EXPECT_EQ(ConvertColour(kButtonTextColour), 0);
  EXPECT_EQ(ConvertColour(-1), 0) << "an unknown index";
  SetSystemColours([](std::int32_t index) { return 0x7F000000 | index; });
  EXPECT_EQ(ConvertColour(kButtonFaceColour), 15);
  SetSystemColours({});
  EXPECT_EQ(SystemColour(5), 0xFFFFFF);
}

TEST(Colours, NamesByIndex) {
  const std::pair<std::int32_t, const char*> cases[] = {{0, "COLOR_SCROLLBAR"},
                                                        {15, "COLOR_BTNFACE"},
                                                        {20, "COLOR_BTNHIGHLIGHT"},
                                                        {21, ""},
                                                        {26, ""},
                                                        {27, "COLOR_GRADIENTACTIVECAPTION"},
                                                        {28, "COLOR_GRADIENTINACTIVECAPTION"},
                                                        {29, ""},
                                                        {-1, ""}};
  for (const auto& [index, name] : cases) EXPECT_EQ(SystemColourName(index), name) << index;
}

TEST(MessageBox, TheConsolePrintsOneLineAndRefuses) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(ConsoleMessageBox()->Show("Delete\r\nit?", mbsYesNo | mbsQuestion, "Station"), mbaNo);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Station: Delete  it?\n");
}

TEST(MessageBox, RefusingAnswers) {
  EXPECT_EQ(RefusingAnswer(mbsExclamation), mbaOk);
  EXPECT_EQ(RefusingAnswer(mbsOkCancel | mbsCritical), mbaCancel);
  EXPECT_EQ(RefusingAnswer(mbsYesNoCancel), mbaCancel);
}

}  // namespace
}  // namespace qm
