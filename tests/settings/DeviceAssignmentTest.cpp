#include <gmock/gmock.h>

#include <sstream>

#include "settings/SettingsFixture.h"

namespace qm::test {
namespace {

using ::testing::AllOf;
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
  const struct {
    const char* outputs;                // apart by "|"
    std::vector<std::int32_t> devices;  // one for each player
    const char* number = "-1";
    const char* automatic = "-1";
  } cases[] = {
      // Axia: numbers at the tenth character, every device a player
      {"Playback 2 (AXIA Wave01)|Playback 1 (Axia wave01)|Built-in|Playback 3 (Axia Wave02)", {2, 1, 3}},
      // Layla: in order, other families' names left out
      {"Realtek Analog|Layla Analog 1-2|Layla Digital|Layla Virtual 3-4|Layla Analog 5-6", {2, 4, 5, 4}},
      {"Analog 1-2 (Gina3G)|Analog 3-4 (Gina3G)|Analog 5-6 (Gina3G)", {1, 2, 3}},
      {"ANALOG OUT 1-2 (ECHO3G)|DIGITAL (ECHO3G)|ANALOG OUT 3-4 (ECHO3G)", {1, 3, 3, 1}},
      // Echo: number behind the dash
      {"Mia output no-2|Mia output no-1|Mia output no-9", {2, 1, 3, 1}},
      {"Delta 44 Multi 1/2|Delta 44 1/2|Delta 44 3/4|Delta 44 1/2", {2, 4}},
      // Delta 1010LT: its second pair
      {"Delta 1010LT 1/2|delta 1010lt 3/4|Delta 1010LT 3/4|Delta 1010LT 5/6", {2, 3, 3, 4}},
      {"Delta 66 3/4|Delta 66 1/2|Delta 66 1/2 #2", {2, 3, 3, 1}},
      // The card before the port, or behind it
      {"1:EDIROL UA-101 1-2|Edirol UA-101 3-4|Built-in", {1, 2, 3, 1}},
      {"Port-2 (UA-101)|Port-1 (EDIROL UA-101)", {2, 1, 1, 2}},
      {"UA-101 Port-3|1:UA-101 Port-1|UA-101 no-9", {2, 2, 1, 1}},
      {"ASI5044 WDM Wave 1|ASI5044 Wave 2|ASI5044 Mixer|ASI5044 Wave 1", {2, 4, 3, 4}},
      {"Delta 44 1/2|Line out 1 (Axia Wave01)", {2}},
      {"Built-in|USB|HDMI", {1, 2, 3}},
      {"Delta 44 1/2|Delta 44 1/2", {1}, "1"},
      {"Built-in|USB", {1, 2, 1, 2, 1}, "5"},
      {"Built-in|USB", {}, "0"},
      {"Delta 44 1/2|Delta 44 3/4|Delta 44 1/2", {1, 2}, "2", "0"},  // not wanted
  };
  for (const auto& c : cases) {
    Store("Players", "NumberPlayers", c.number);
    Store("Players", "AutomaticPlayerAssignment", c.automatic);
    std::vector<std::string> outputs;
    std::istringstream in(c.outputs);
    for (std::string name; std::getline(in, name, '|');) outputs.push_back(name);
    const auto settings = Settings(outputs);
    settings->LoadProfile("");
    EXPECT_EQ(Devices(*settings), c.devices) << c.outputs;
  }
}

TEST_F(AutomaticAssignment, SkipsOutputsThatDoNotFitAndMayFindNone) {
  const std::vector<SoundDevice> outputs = {{"Modem", 0x40}, {"A", kStereo}, {"Mono", 0x400}, {"B", kStereo}};
  cAudioSettings settings(m_platform,
                          std::make_shared<FixedSoundDeviceList>(outputs, std::vector<SoundDevice>{}));
  settings.LoadProfile("");
  EXPECT_THAT(Devices(settings), ElementsAre(2, 4));
  EXPECT_EQ(settings.EditSoundDevice(), 2);
  EXPECT_EQ(settings.RecordingSoundDevice(), 0);
  settings.SetMaxPlayers(1);
  settings.LoadProfile("");
  EXPECT_THAT(Devices(settings), ElementsAre(2));
  cAudioSettings without(m_platform);
  without.LoadProfile("");
  EXPECT_THAT(Devices(without), ElementsAre(0));
}

TEST_F(AutomaticAssignment, TellsTheUserOfPortsThatAreNotSeparated) {
  Settings({"Edirol UA-25"})->LoadProfile("");
  Settings({"UA-101 3-4", "ua-101 3-4", "UA-101 3-4", "UA-101 3-4"})->LoadProfile("");
  EXPECT_THAT(messages->shown, IsEmpty());
  Settings({"UA-101 1-2", "UA-101 3-4"})->LoadProfile("");
  EXPECT_THAT(
      messages->shown,
      ElementsAre(AllOf(
          HasSubstr("An Edirol UA-101 has been detected, but it is not set to use 'Separated Ports'"),
          HasSubstr("Please open the Edirol Control Panel and click 'Driver Menu'>Driver Settings'>'Use "
                    "Separated Ports' and then restart this application"))));
}

}  // namespace
}  // namespace qm::test
