#include "settings/cAudioSettings.h"

#include <gmock/gmock.h>

#include <optional>

#include "kits/common/Files.h"
#include "kits/sound/cAudioFormat.h"
#include "services/Diagnostics.h"
#include "settings/SettingsFixture.h"
#include "support/SoundFixtures.h"

namespace qm::test {
namespace {

using ::testing::HasSubstr;

// A key of a profile: what it is in a profile saved from defaults, another value, and where that arrives.
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
    {"Players", "HookPlayerNumber", "0", "4", QM_MEMBER(HookPlayerNumber())},
    {"Players", "PreviewPlayerNumber", "0", "3", QM_MEMBER(PreviewPlayerNumber())},
    {"Players", "OnPrimaryDisplay", "-1", "6", QM_MEMBER(NumberPlayersOnPrimaryDisplay())},
    {"Players", "OnlyAllowEjectStoppedItems", "255", "1", QM_MEMBER(OnlyAllowEjectStoppedItems())},
    {"Players", "FirstPlayer", "1", "2", QM_MEMBER(FirstPlayer())},
    {"Players", "LastPlayer", "255", "4", QM_MEMBER(LastPlayer())},
    {"Players", "FirstInstantPlayer", "0", "5", QM_MEMBER(FirstInstantPlayer())},
    {"Players", "LastInstantPlayer", "0", "6", QM_MEMBER(LastInstantPlayer())},
    {"Players", "FadeDuration", "2", "2.5", QM_MEMBER(FadeDuration())},
    {"Players", "FadeFirePercent", "65", "40", QM_MEMBER(FadeFirePercent())},
    {"AudioEditor", "Priority", "2", "1", QM_MEMBER(AudioEditorPriority())},
    {"AudioEditor", "RunAtIdleSpeed", "0", "1", QM_MEMBER(AudioEditorRunAtIdleSpeed())},
    {"Players", "VellanStreamBufferSize", "0", "1", QM_MEMBER(VellanStreamBufferSize())},
    {"Players", "VSDebugMode", "0", "7", QM_MEMBER(VellanStreamDebugMode())},
    {"Players", "DisplayDiffPlayerColours", "0", "1", QM_MEMBER(DisplayDiffPlayerColours())},
    {"Players", "DisplayPlayerVolumeControls", "1", "0", QM_MEMBER(DisplayPlayerVolumeControls())},
    {"Players", "DisplayPlayerStatusIcons", "1", "0", QM_MEMBER(DisplayPlayerStatusIcons())},
    {"Players", "UsePlayerDucking", "1", "0", QM_MEMBER(UsePlayerDucking())},
    {"Players", "GeneralVolume", "100", "80", QM_MEMBER(GeneralVolume())},
    {"Players", "SweptVolume", nullptr, "55", QM_MEMBER(SweptAudioVolume())},
    {"Players", "DuckAudioVolume", "90", "35", QM_MEMBER(DuckAudioVolume())},
    {"Players", "CartGroupVolume", "100", "70", QM_MEMBER(CartGroupVolume())},
    {"Players", "AdvertVolume", "100", "75", QM_MEMBER(AdvertVolume())},
    {"AudioFormat", "UseGlobalFormat", "1", "0", QM_MEMBER(UseGlobalAudioFormat())},
    {"AudioFormat", "AllowOtherFormat", "0", "1", QM_MEMBER(AudioAllowOtherFormat())},
    {"Players", "AudioRecordLocal", "0", "1", QM_MEMBER(AudioRecordLocal())},
    {"Players", "AudioAutoImportByFormat", "0", "1", QM_MEMBER(AudioAutoImportByFormat())},
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
  EXPECT_EQ(registry->Read(Path("Players"), "PlayerSoundDevice3"), std::nullopt);
  EXPECT_EQ(registry->Read(Path("Players"), "Caption2"), "");
  EXPECT_EQ(registry->Read(Path("AudioEditor"), "ExternalFilename"), "");
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

TEST_F(Profiles, SettingsThatNeverLoadedOneHaveTheSameDefaults) {
  const auto settings = Settings({"Built-in"});
  const auto loaded = Settings({});
  loaded->LoadProfile("");
  for (const Key& key : kKeys) {
    if (std::string_view(key.key) == "NumberPlayers") continue;
    EXPECT_EQ(key.member(*settings), key.member(*loaded)) << key.key;
  }
  EXPECT_EQ(settings->NumberPlayers(), -1);
  EXPECT_EQ(settings->EditorTemporaryPath(), loaded->EditorTemporaryPath());
}

TEST_F(Profiles, OlderNamesGiveTheDefaultsOfTheNewOnes) {
  struct Case {
    const char *older, *value, *key, *stored;  // stored: nullptr leaves the newer key out
    double expected;
    double (*member)(const cAudioSettings&);
  };
  const Case cases[] = {
      {"OnlyAllowEjectStoppedCarts", "1", "OnlyAllowEjectStoppedItems", nullptr, sopEnabled,
       QM_MEMBER(OnlyAllowEjectStoppedItems())},
      {"OnlyAllowEjectStoppedCarts", "1", "OnlyAllowEjectStoppedItems", "0", sopDisabled,
       QM_MEMBER(OnlyAllowEjectStoppedItems())},
      {"InstantPlayerNumber", "4", "FirstInstantPlayer", "2", 2, QM_MEMBER(FirstInstantPlayer())},
      {"InstantPlayerNumber", "4", "FirstInstantPlayer", "2", 4, QM_MEMBER(LastInstantPlayer())},
      {"VellanStreamUseLargeBuffers", "-1", "VellanStreamBufferSize", nullptr, vsbsLarge,
       QM_MEMBER(VellanStreamBufferSize())},
      {"VellanStreamUseLargeBuffers", "0", "VellanStreamBufferSize", nullptr, vsbsStandard,
       QM_MEMBER(VellanStreamBufferSize())},
      {"VellanStreamUseLargeBuffers", "1", "VellanStreamBufferSize", "1", vsbsExtended,
       QM_MEMBER(VellanStreamBufferSize())},
      {"GeneralVolume", "60", "DuckAudioVolume", nullptr, 50, QM_MEMBER(DuckAudioVolume())},
      {"GeneralVolume", "4", "DuckAudioVolume", nullptr, 0, QM_MEMBER(DuckAudioVolume())},
  };
  for (const Case& c : cases) {
    Store("Players", c.older, c.value);
    if (c.stored) Store("Players", c.key, c.stored);
    const auto settings = Settings({});
    settings->LoadProfile("");
    EXPECT_EQ(c.member(*settings), c.expected) << c.older << "=" << c.value;
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
  settings->SetUsePlayerDucking(false);
  settings->SetSweptAudioVolume(45);
  settings->SaveProfile("");
  EXPECT_EQ(registry->Read(Path("Players"), "SweptVolume"), "45");
  settings->LoadProfile("");
  EXPECT_EQ(settings->SweptAudioVolume(), 45);
  settings->SetUsePlayerDucking(true);
  settings->SaveProfile("");
  EXPECT_EQ(registry->Read(Path("Players"), "SweptVolume"), std::nullopt);
}

TEST_F(Profiles, AProfileWithoutAFormatLeavesTheOneThatTheHostGave) {
  Store("AudioFormat", "AllowOtherFormat", "1");
  const auto settings = Settings({});
  settings->AudioFormat()->SetSampleRate(32000);
  settings->LoadProfile("");
  EXPECT_EQ(settings->AudioFormat()->SampleRate(), 32000);
  EXPECT_FALSE(settings->AudioAllowOtherFormat());
}

TEST_F(Profiles, NonsenseInTheRegistryIsReadAsNumbersAre) {
  Store("Players", "GeneralVolume", "loud");
  Store("Players", "FadeDuration", "1e300");
  Store("Players", "NumberPlayers", "99999");
  Store("Players", "AdvertVolume", "-99999");
  const auto settings = Settings({"Built-in"});
  settings->LoadProfile("");
  EXPECT_EQ(settings->GeneralVolume(), 0);
  EXPECT_GT(settings->FadeDuration(), 1e38f);
  EXPECT_EQ(settings->NumberPlayers(), settings->MaxPlayers());
  EXPECT_EQ(settings->AdvertVolume(), -32768);
}

class PlayerTables : public SettingsTest {};

TEST_F(PlayerTables, KeepTheirContentsWhenResized) {
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
  EXPECT_EQ(settings->NumberPlayers(), 3);
  EXPECT_EQ(settings->PlayerSoundDevice(4), 0);
  settings->SetMaxPlayers(6);
  EXPECT_EQ(settings->NumberPlayers(), 3);
  EXPECT_EQ(settings->PlayerSoundDevice(3), 13);
  EXPECT_EQ(settings->PlayerSoundDevice(4), 0);
  EXPECT_EQ(settings->PlayerCaption(2), "News");
  EXPECT_FALSE(settings->PlayerVisible(2));
  EXPECT_TRUE(settings->PlayerVisible(1));
  EXPECT_TRUE(settings->PlayerVisible(6));
  settings->SetMaxPlayers(-1);
  EXPECT_EQ(settings->MaxPlayers(), 6);
}

TEST_F(PlayerTables, CountVisiblePlayersAndIgnoreBadIndices) {
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

class AudioEditor : public SettingsTest {};

TEST_F(AudioEditor, IsTheFirstOneInstalled) {
  const TempFolder folder;
  const auto put = [&](const std::string& path, const char* value, const std::string& place,
                       const char* file) {
    registry->Write(path, value, place);
    const std::string full = NativePath(file).string();
    MakeFolder(FolderOf(full));
    WriteFileAtomically(full, "program");
  };
  const auto settings = Settings({});
  EXPECT_EQ(settings->FindAudioEditor(), "");
  const std::string root = folder.Path();
  // From the last choice to the first: each newcomer is preferred to those before it.
  const std::string makers = "Software\\Syntrillium\\";
  struct Case {
    std::string path, value, place, program;
  };
  const Case cases[] = {
      {makers + "CE96\\MAINDIR", "", root + "/96", root + "/96/COOL96.EXE"},
      {makers + "CE2000", "MAINDIR", root + "/2000", root + "/2000/COOL2000.EXE"},
      {makers + "CEPro", "MAINDIR", root + "/pro", root + "/pro/COOLPRO.EXE"},
      {"Software\\Adobe\\Audition\\3.0", "ApplicationPath", root + "\\au\\au.exe", root + "/au/au.exe"},
      {"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", "ProgramFilesDir", root + "/programs",
       root + "/programs/Quillmere/VellanEdit v1/VellanEdit.exe"},
  };
  for (const Case& c : cases) {
    put(c.path, c.value.c_str(), c.place, c.program.c_str());
    EXPECT_EQ(settings->FindAudioEditor(), c.program);
  }
}

TEST_F(AudioEditor, DialogsAreTheHosts) {
  const auto settings = Settings({});
  EXPECT_FALSE(settings->DisplaySettings(adsfNormal));
  EXPECT_FALSE(settings->DisplayVellanSettings());
  enASDispSetflags shown = adsfNormal;
  settings->dialogs.settings = [&](cAudioSettings& edited, enASDispSetflags flags) {
    shown = flags;
    edited.SetGeneralVolume(50);
    return true;
  };
  EXPECT_TRUE(settings->DisplaySettings(adsfShowSimpleVolumes | adsfDisableAutoAssign));
  EXPECT_EQ(shown, 6);
  EXPECT_EQ(settings->GeneralVolume(), 50);
}

}  // namespace
}  // namespace qm::test
