#include <gmock/gmock.h>

#include "kits/common/Clock.h"
#include "kits/common/Files.h"
#include "services/Diagnostics.h"
#include "settings/SettingsFixture.h"
#include "support/SoundFixtures.h"

namespace qm::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class AutomaticAssignment : public SettingsTest {
 protected:
  std::vector<std::int32_t> Devices(const cAudioSettings& settings) {
    std::vector<std::int32_t> devices;
    for (std::int32_t player = 1; player <= settings.NumberPlayers(); ++player)
      devices.push_back(settings.PlayerSoundDevice(player));
    return devices;
  }
};

TEST_F(AutomaticAssignment, KnowsTheFamiliesByTheirNames) {
  struct Case {
    const char* what;
    std::vector<std::string> outputs;
    std::vector<std::int32_t> devices;  // one for each player
  };
  const Case cases[] = {
      {"Axia: numbers at the tenth character, every device a player",
       {"Playback 2 (AXIA Wave01)", "Playback 1 (Axia wave01)", "Built-in", "Playback 3 (Axia Wave02)"},
       {2, 1, 3}},
      {"Layla: in order, other families' names left out",
       {"Realtek Analog", "Layla Analog 1-2", "Layla Digital", "Layla Virtual 3-4", "Layla Analog 5-6"},
       {2, 4, 5, 4}},
      {"Gina3G: three players",
       {"Analog 1-2 (Gina3G)", "Analog 3-4 (Gina3G)", "Analog 5-6 (Gina3G)"},
       {1, 2, 3}},
      {"Echo3G pattern",
       {"ANALOG OUT 1-2 (ECHO3G)", "DIGITAL (ECHO3G)", "ANALOG OUT 3-4 (ECHO3G)"},
       {1, 3, 3, 1}},
      {"Echo: number behind the dash",
       {"Mia output no-2", "Mia output no-1", "Mia output no-9"},
       {2, 1, 3, 1}},
      {"two Delta 44", {"Delta 44 Multi 1/2", "Delta 44 1/2", "Delta 44 3/4", "Delta 44 1/2"}, {2, 4}},
      {"Delta 1010LT: its second pair",
       {"Delta 1010LT 1/2", "delta 1010lt 3/4", "Delta 1010LT 3/4", "Delta 1010LT 5/6"},
       {2, 3, 3, 4}},
      {"Delta 66", {"Delta 66 3/4", "Delta 66 1/2", "Delta 66 1/2 #2"}, {2, 3, 3, 1}},
      {"Edirol before the port", {"1:EDIROL UA-101 1-2", "Edirol UA-101 3-4", "Built-in"}, {1, 2, 3, 1}},
      {"port before the card", {"Port-2 (UA-101)", "Port-1 (EDIROL UA-101)"}, {2, 1, 1, 2}},
      {"card before the port", {"UA-101 Port-3", "1:UA-101 Port-1", "UA-101 no-9"}, {2, 2, 1, 1}},
      {"ASI: no WDM",
       {"ASI5044 WDM Wave 1", "ASI5044 Wave 2", "ASI5044 Mixer", "ASI5044 Wave 1"},
       {2, 4, 3, 4}},
      {"Axia before Delta", {"Delta 44 1/2", "Line out 1 (Axia Wave01)"}, {2}},
      {"none known: all in order", {"Built-in", "USB", "HDMI"}, {1, 2, 3}},
  };
  for (const Case& c : cases) {
    const auto settings = Settings(c.outputs);
    settings->LoadProfile("");
    EXPECT_EQ(Devices(*settings), c.devices) << c.what;
  }
}

TEST_F(AutomaticAssignment, ASetNumberOfPlayersStands) {
  Store("Players", "NumberPlayers", "1");
  const auto one = Settings({"Delta 44 1/2", "Delta 44 1/2"});
  one->LoadProfile("");
  EXPECT_THAT(Devices(*one), ElementsAre(1));
  Store("Players", "NumberPlayers", "5");
  const auto shared = Settings({"Built-in", "USB"});
  shared->LoadProfile("");
  EXPECT_THAT(Devices(*shared), ElementsAre(1, 2, 1, 2, 1));
}

TEST_F(AutomaticAssignment, SkipsOutputsThatDoNotFit) {
  const auto platform = std::make_shared<Platform>(Platform{nullptr, registry, messages, nullptr});
  const std::vector<SoundDevice> outputs = {{"Modem", 0x40}, {"A", kStereo}, {"Mono", 0x400}, {"B", kStereo}};
  cAudioSettings settings(platform,
                          std::make_shared<FixedSoundDeviceList>(outputs, std::vector<SoundDevice>{}));
  settings.LoadProfile("");
  EXPECT_THAT(Devices(settings), ElementsAre(2, 4));
  EXPECT_EQ(settings.EditSoundDevice(), 2);
  EXPECT_EQ(settings.RecordingSoundDevice(), 0);
}

TEST_F(AutomaticAssignment, WithoutDevicesThereIsOnePlayerOnTheDefaultOne) {
  const auto platform = std::make_shared<Platform>(Platform{nullptr, registry, messages, nullptr});
  cAudioSettings settings(platform);
  settings.LoadProfile("");
  EXPECT_THAT(Devices(settings), ElementsAre(0));
}

TEST_F(AutomaticAssignment, IsOnlyDoneWhereTheProfileWantsIt) {
  Store("Players", "AutomaticPlayerAssignment", "0");
  Store("Players", "NumberPlayers", "2");
  Store("Players", "PlayerSoundDevice1", "2");
  const auto settings = Settings({"Delta 44 1/2", "Delta 44 3/4", "Delta 44 1/2"});
  settings->LoadProfile("");
  EXPECT_THAT(Devices(*settings), ElementsAre(2, 2));
  Store("Players", "AutomaticPlayerAssignment", "-1");
  settings->LoadProfile("");
  EXPECT_THAT(Devices(*settings), ElementsAre(1, 3));
  Store("Players", "NumberPlayers", "0");
  settings->LoadProfile("");
  EXPECT_EQ(settings->NumberPlayers(), 0);
}

TEST_F(AutomaticAssignment, NeverGivesMorePlayersThanThereMayBe) {
  const auto settings =
      Settings({"Output 1 (Axia Wave01)", "Output 2 (Axia Wave01)", "Output 3 (Axia Wave01)"});
  settings->SetMaxPlayers(2);
  settings->LoadProfile("");
  EXPECT_EQ(settings->NumberPlayers(), 2);
}

TEST_F(AutomaticAssignment, TellsTheUserOfPortsThatAreNotSeparated) {
  Settings({"UA-101 1-2", "UA-101 3-4"})->LoadProfile("");
  ASSERT_EQ(messages->texts.size(), 1u);
  EXPECT_THAT(messages->texts[0],
              HasSubstr("An Edirol UA-101 has been detected, but it is not set to use 'Separated Ports'"));
  EXPECT_THAT(messages->texts[0],
              HasSubstr("Please open the Edirol Control Panel and click 'Driver Menu'>Driver Settings'>'Use "
                        "Separated Ports' and then restart this application"));
  messages->texts.clear();
  Settings({"Edirol UA-25"})->LoadProfile("");
  Settings({"UA-101 3-4", "ua-101 3-4", "UA-101 3-4", "UA-101 3-4"})->LoadProfile("");
  EXPECT_THAT(messages->texts, IsEmpty());
}

TEST_F(AutomaticAssignment, TracesHowManyDevicesItFound) {
  const TempFolder folder;
  const auto clock = std::make_shared<ManualClock>(std::chrono::sys_days{std::chrono::year{2024} / 1 / 15});
  SetDiagnostics({clock, registry, messages, folder.Path(), "Settings"});
  SetDebugMode(5);
  Settings({"Delta 44 1/2", "Delta 44 3/4", "Delta 44 1/2"})->LoadProfile("");
  SetDebugMode(0);
  SetDiagnostics({});
  std::string lines;
  for (const auto& file : std::filesystem::directory_iterator(folder.Path()))
    ReadWholeFile(file.path().string(), lines);
  EXPECT_THAT(lines, HasSubstr(" Number Suitable Wave Out Devices=3"));
  EXPECT_THAT(lines, HasSubstr("Checked Number Suitable Wave Out Devices=2"));
  EXPECT_THAT(lines, HasSubstr("Start FindAudioEditor"));
  EXPECT_THAT(lines, HasSubstr("Finish FindAudioEditor - "));
}

}  // namespace
}  // namespace qm::test
