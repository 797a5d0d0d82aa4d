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
  const struct {
    const char *older, *value, *key, *stored;  // stored: nullptr leaves the newer key out
    double expected;
  } cases[] = {
      {"OnlyAllowEjectStoppedCarts", "1", "OnlyAllowEjectStoppedItems", nullptr, sopEnabled},
      {"OnlyAllowEjectStoppedCarts", "1", "OnlyAllowEjectStoppedItems", "0", sopDisabled},
      {"InstantPlayerNumber", "4", "FirstInstantPlayer", "2", 2},
      {"InstantPlayerNumber", "4", "LastInstantPlayer", nullptr, 4},
      {"VellanStreamUseLargeBuffers", "-1", "VellanStreamBufferSize", nullptr, vsbsLarge},
      {"VellanStreamUseLargeBuffers", "0", "VellanStreamBufferSize", nullptr, vsbsStandard},
      {"VellanStreamUseLargeBuffers", "1", "VellanStreamBufferSize", "1", vsbsExtended},
      {"GeneralVolume", "60", "DuckAudioVolume", nullptr, 50},
      {"GeneralVolume", "4", "DuckAudioVolume", nullptr, 0},
      {"GeneralVolume", "85", "SweptVolume", "30", 85},  // ducking makes it the general one
  };
  for (const auto& c : cases) {
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

TEST_F(Profiles, OddContentsAreTakenAsFarAsTheyGo) {
  for (const auto& [key, value] : {std::pair{"GeneralVolume", "loud"},
                                   {"FadeDuration", "1e300"},
                                   {"NumberPlayers", "99999"},
                                   {"SweptVolume", "30"},
                                   {"AdvertVolume", "-99999"}})
    Store("Players", key, value);
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
  settings->SaveProfile("");  // with ducking no swept volume is kept
  EXPECT_EQ(registry->Read(Path("Players"), "SweptVolume"), std::nullopt);
}

TEST_F(SettingsTest, PlayersKeepTheirContentsWhenResizedAndBadIndicesAreIgnored) {
  const auto settings = Settings({});
  settings->SetMaxPlayers(4);
  settings->SetNumberPlayers(9);
  EXPECT_EQ(settings->NumberPlayers(), 4);
  for (const std::int32_t player : {-1, 0, 1, 2, 3, 4, 5, 17}) {
    settings->SetPlayerSoundDevice(player, 10 + player);
    settings->SetPlayerVisible(player, false);
    settings->SetPlayerCaption(player, "News");
  }
  settings->SetMaxPlayers(3);
  settings->SetMaxPlayers(6);
  EXPECT_EQ(settings->NumberPlayers(), 3);
  for (const std::int32_t player : {-1, 0, 1, 2, 3, 4, 6, 7, 17}) {
    const bool kept = player >= 1 && player <= 3, fresh = player >= 4 && player <= 6;
    EXPECT_EQ(settings->PlayerSoundDevice(player), kept ? 10 + player : 0);
    EXPECT_EQ(settings->PlayerCaption(player), kept ? "News" : "");
    EXPECT_EQ(settings->PlayerVisible(player), fresh) << player;
  }
  settings->SetPlayerVisible(2, true);
  settings->SetPlayerVisibleTemp(3, true);
  settings->SetPlayerVisibleTemp(2, true);
  EXPECT_EQ(settings->NumberVisiblePlayers(false), 1);
  EXPECT_EQ(settings->NumberVisiblePlayers(true), 2);
}

TEST_F(SettingsTest, TheAudioEditorIsTheFirstOneInstalled) {
  const TempFolder folder;
  const auto settings = Settings({});
  EXPECT_EQ(settings->FindAudioEditor(), "");
  const std::string root = folder.Path(), makers = "Software\\Syntrillium\\";
  // From the last choice to the first: each newcomer is preferred to those before it.
  const std::tuple<std::string, const char*, std::string, std::string> cases[] = {
      {makers + "CE96\\MAINDIR", "", "/96", "/96/COOL96.EXE"},
      {makers + "CE2000", "MAINDIR", "/2000", "/2000/COOL2000.EXE"},
      {makers + "CEPro", "MAINDIR", "/pro", "/pro/COOLPRO.EXE"},
      {"Software\\Adobe\\Audition\\3.0", "ApplicationPath", "\\au\\au.exe", "/au/au.exe"},
      {"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", "ProgramFilesDir", "/programs",
       "/programs/Quillmere/VellanEdit v1/VellanEdit.exe"},
  };
  for (const auto& [path, value, place, program] : cases) {
    registry->Write(path, value, root + place);
    MakeFolder(FolderOf(root + program));
    WriteBytes(root + program, "program");
    EXPECT_EQ(settings->FindAudioEditor(), root + program);
  }
}

}  // namespace
}  // namespace qm::test
