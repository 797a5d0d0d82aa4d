#include "settings/cAudioSettings.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <optional>

#include "kits/common/Files.h"
#include "kits/sound/cAudioFormat.h"
#include "settings/SettingsFixture.h"

namespace qm::test {
namespace {

// Keys of a profile that are called otherwise than their members, or whose defaults or loading are not plain:
// what each is in a profile saved from defaults, another value, and where that arrives.
struct Key {
  const char* subKey;
  const char* key;
  const char* byDefault;
  const char* other;
  double (*member)(const cAudioSettings& settings);
};

#define QM_MEMBER(Call) [](const cAudioSettings& settings) { return static_cast<double>(settings.Call); }

const Key kKeys[] = {
    {"Players", "AutomaticPlayerAssignment", "-1", "0", QM_MEMBER(AutomaticPlayerAssignment())},
    {"Players", "NumberPlayers", "2", "3", QM_MEMBER(NumberPlayers())},
    {"Players", "PlayerSoundDevice1", "1", "2", QM_MEMBER(PlayerSoundDevice(1))},
    {"Players", "PlayerSoundDevice2", "2", "9", QM_MEMBER(PlayerSoundDevice(2))},
    {"Players", "RecordingSoundDevice", "3", "1", QM_MEMBER(RecordingSoundDevice())},
    {"Players", "EditSoundDevice", "1", "5", QM_MEMBER(EditSoundDevice())},
    {"Players", "Visible1", "1", "0", QM_MEMBER(PlayerVisible(1))},
    {"Players", "OnPrimaryDisplay", "-1", "6", QM_MEMBER(NumberPlayersOnPrimaryDisplay())},
    {"Players", "OnlyAllowEjectStoppedItems", "255", "1", QM_MEMBER(OnlyAllowEjectStoppedItems())},
    {"Players", "FirstInstantPlayer", "0", "5", QM_MEMBER(FirstInstantPlayer())},
    {"Players", "LastInstantPlayer", "0", "6", QM_MEMBER(LastInstantPlayer())},
    {"Players", "FadeDuration", "2", "2.5", QM_MEMBER(FadeDuration())},
    {"AudioEditor", "Priority", "2", "1", QM_MEMBER(AudioEditorPriority())},
    {"AudioEditor", "RunAtIdleSpeed", "0", "1", QM_MEMBER(AudioEditorRunAtIdleSpeed())},
    {"Players", "VellanStreamBufferSize", "0", "1", QM_MEMBER(VellanStreamBufferSize())},
    {"Players", "VSDebugMode", "0", "7", QM_MEMBER(VellanStreamDebugMode())},
    {"Players", "UsePlayerDucking", "1", "0", QM_MEMBER(UsePlayerDucking())},
    {"Players", "GeneralVolume", "100", "80", QM_MEMBER(GeneralVolume())},
    {"Players", "SweptVolume", nullptr, "55", QM_MEMBER(SweptAudioVolume())},
    {"Players", "DuckAudioVolume", "90", "35", QM_MEMBER(DuckAudioVolume())},
    {"AudioFormat", "UseGlobalFormat", "1", "0", QM_MEMBER(UseGlobalAudioFormat())},
    {"AudioFormat", "AllowOtherFormat", "0", "1", QM_MEMBER(AudioAllowOtherFormat())},
    {"Players", "DisplayAlignment", "0", "1", QM_MEMBER(PlayerDisplayAlignment())},
};

class Profiles : public SettingsTest {};

TEST_F(Profiles, WithoutAnyKeyGiveTheDefaultsAndSaveThem) {
  const auto settings = Settings({"Built-in", "USB"}, 3);
  settings->LoadProfile("");
  EXPECT_TRUE(settings->SaveProfile(""));
  for (const Key& key : kKeys) {
    const auto stored = registry->Read(Path(key.subKey), key.key);
    EXPECT_EQ(stored.value_or("absent"), key.byDefault ? key.byDefault : "absent") << key.key;
  }
  EXPECT_EQ(registry->Read(Path("Players"), "Caption2"), "");
  EXPECT_EQ(registry->Read(Path("AudioEditor"), "TemporaryPath"), settings->EditorTemporaryPath());
  EXPECT_THAT(settings->EditorTemporaryPath(), ::testing::EndsWith("/"));
  for (const char* older :
       {"OnlyAllowEjectStoppedCarts", "InstantPlayerNumber", "VellanStreamUseLargeBuffers"})
    EXPECT_EQ(registry->Read(Path("Players"), older), std::nullopt) << older;
}

TEST_F(Profiles, ReadEveryKeyIntoItsMemberAndWriteItBack) {
  for (const Key& key : kKeys) Store(key.subKey, key.key, key.other);
  cAudioFormat format;
  format.SetFormatType(aftMP2);
  format.SetSampleRate(48000);
  Store("AudioFormat", "Serialisation", format.SerialisedFormat());
  Store("AudioEditor", "ExternalFilename", "/opt/edit");
  Store("AudioEditor", "TemporaryPath", "/scratch");
  Store("Players", "Caption3", "Jingles");

  const auto settings = Settings({"Built-in", "USB"}, 3);
  settings->LoadProfile(".default");
  for (const Key& key : kKeys) EXPECT_EQ(key.member(*settings), std::stod(key.other)) << key.key;
  EXPECT_EQ(*settings->AudioFormat(), format);
  EXPECT_EQ(settings->AudioEditor(), "/opt/edit");
  EXPECT_EQ(settings->EditorTemporaryPath(), "/scratch/");
  EXPECT_EQ(settings->PlayerCaption(3), "Jingles");

  settings->SaveProfile("Studio 2");
  for (const Key& key : kKeys)
    EXPECT_EQ(registry->Read(Path(key.subKey, "Studio 2"), key.key), key.other) << key.key;
  EXPECT_EQ(registry->Read(Path("Players", "Studio 2"), "Caption3"), "Jingles");
  const auto second = Settings({});
  second->LoadProfile("Studio 2");
  EXPECT_EQ(*second->AudioFormat(), format);
}

TEST_F(Profiles, OlderNamesGiveTheDefaultsOfTheNewOnes) {
  struct Case {
    const char *older, *value, *key, *stored;  // stored: nullptr leaves the newer key out
    double expected;
  };
  const Case cases[] = {
      {"OnlyAllowEjectStoppedCarts", "1", "OnlyAllowEjectStoppedItems", nullptr, sopEnabled},
      {"OnlyAllowEjectStoppedCarts", "1", "OnlyAllowEjectStoppedItems", "0", sopDisabled},
      {"InstantPlayerNumber", "4", "FirstInstantPlayer", "2", 2},
      {"InstantPlayerNumber", "4", "LastInstantPlayer", nullptr, 4},
      {"VellanStreamUseLargeBuffers", "-1", "VellanStreamBufferSize", nullptr, vsbsLarge},
      {"VellanStreamUseLargeBuffers", "0", "VellanStreamBufferSize", nullptr, vsbsStandard},
      {"VellanStreamUseLargeBuffers", "1", "VellanStreamBufferSize", "1", vsbsExtended},
      {"GeneralVolume", "60", "DuckAudioVolume", nullptr, 50},
      {"GeneralVolume", "4", "DuckAudioVolume", nullptr, 0},
  };
  for (const Case& c : cases) {
    Store("Players", c.older, c.value);
    if (c.stored) Store("Players", c.key, c.stored);
    const auto settings = Settings({});
    settings->LoadProfile("");
    const auto key = std::ranges::find(kKeys, std::string_view(c.key), &Key::key);
    EXPECT_EQ(key->member(*settings), c.expected) << c.older << "=" << c.value;
    registry->Delete(Path("Players"), c.older);
    registry->Delete(Path("Players"), c.key);
  }
}

TEST_F(Profiles, DuckingMakesTheSweptVolumeTheGeneralOne) {
  Store("Players", "SweptVolume", "30");
  Store("Players", "GeneralVolume", "85");
  const auto settings = Settings({});
  settings->LoadProfile("");
  EXPECT_EQ(settings->SweptAudioVolume(), 85);
  settings->SaveProfile("");
  EXPECT_EQ(registry->Read(Path("Players"), "SweptVolume"), std::nullopt);
}

TEST_F(Profiles, OddContentsAreTakenAsFarAsTheyGo) {
  Store("Players", "GeneralVolume", "loud");
  Store("Players", "FadeDuration", "1e300");
  Store("Players", "NumberPlayers", "99999");
  Store("Players", "AdvertVolume", "-99999");
  Store("AudioFormat", "AllowOtherFormat", "1");
  const auto settings = Settings({"Built-in"});
  settings->AudioFormat()->SetSampleRate(32000);
  settings->LoadProfile("");
  EXPECT_EQ(settings->GeneralVolume(), 0);
  EXPECT_GT(settings->FadeDuration(), 1e38f);
  EXPECT_EQ(settings->NumberPlayers(), settings->MaxPlayers());
  EXPECT_EQ(settings->AdvertVolume(), -32768);
  // Without a format in it the profile leaves the one that the host gave.
  EXPECT_EQ(settings->AudioFormat()->SampleRate(), 32000);
  EXPECT_FALSE(settings->AudioAllowOtherFormat());
}

TEST_F(SettingsTest, PlayersKeepTheirContentsWhenResized) {
  const auto settings = Settings({});
  settings->SetMaxPlayers(4);
  settings->SetNumberPlayers(9);
  EXPECT_EQ(settings->NumberPlayers(), 4);
  for (std::int32_t player = 1; player <= 4; ++player) {
    settings->SetPlayerSoundDevice(player, 10 + player);
    settings->SetPlayerVisible(player, false);
  }
  settings->SetPlayerCaption(2, "News");
  settings->SetMaxPlayers(3);
  settings->SetMaxPlayers(6);
  EXPECT_EQ(settings->NumberPlayers(), 3);
  EXPECT_EQ(settings->PlayerSoundDevice(3), 13);
  EXPECT_EQ(settings->PlayerSoundDevice(4), 0);
  EXPECT_EQ(settings->PlayerCaption(2), "News");
  EXPECT_FALSE(settings->PlayerVisible(2));
  EXPECT_TRUE(settings->PlayerVisible(6));
}

TEST_F(SettingsTest, CountsVisiblePlayersAndIgnoresBadIndices) {
  const auto settings = Settings({});
  settings->SetNumberPlayers(3);
  settings->SetPlayerVisible(1, false);
  settings->SetPlayerVisible(3, false);
  settings->SetPlayerVisibleTemp(3, true);
  settings->SetPlayerVisibleTemp(2, true);
  EXPECT_EQ(settings->NumberVisiblePlayers(false), 1);
  EXPECT_EQ(settings->NumberVisiblePlayers(true), 2);
  for (const std::int32_t index : {0, -1, 17}) {
    settings->SetPlayerCaption(index, "x");
    settings->SetPlayerVisible(index, true);
    settings->SetPlayerSoundDevice(index, 5);
    EXPECT_EQ(settings->PlayerCaption(index), "");
    EXPECT_FALSE(settings->PlayerVisible(index));
    EXPECT_EQ(settings->PlayerSoundDevice(index), 0);
  }
}

TEST_F(SettingsTest, TheAudioEditorIsTheFirstOneInstalled) {
  const TempFolder folder;
  const auto settings = Settings({});
  EXPECT_EQ(settings->FindAudioEditor(), "");
  const std::string root = folder.Path(), makers = "Software\\Syntrillium\\";
  struct Case {
    std::string path, value, place, program;
  };
  // From the last choice to the first: each newcomer is preferred to those before it.
  const Case cases[] = {
      {makers + "CE96\\MAINDIR", "", root + "/96", root + "/96/COOL96.EXE"},
      {makers + "CE2000", "MAINDIR", root + "/2000", root + "/2000/COOL2000.EXE"},
      {makers + "CEPro", "MAINDIR", root + "/pro", root + "/pro/COOLPRO.EXE"},
      {"Software\\Adobe\\Audition\\3.0", "ApplicationPath", root + "\\au\\au.exe", root + "/au/au.exe"},
      {"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", "ProgramFilesDir", root + "/programs",
       root + "/programs/Quillmere/VellanEdit v1/VellanEdit.exe"},
  };
  for (const Case& c : cases) {
    registry->Write(c.path, c.value, c.place);
    MakeFolder(FolderOf(c.program));
    WriteBytes(c.program, "program");
    EXPECT_EQ(settings->FindAudioEditor(), c.program);
  }
}

}  // namespace
}  // namespace qm::test
