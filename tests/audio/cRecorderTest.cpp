#include "audio/cRecorder.h"

#include <gtest/gtest.h>

#include "audio/FakeRecording.h"
#include "contract/IPlayerCallback.h"
#include "item/cHDItem.h"
#include "kits/common/Clock.h"
#include "kits/common/Files.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Registry.h"
#include "kits/sound/SoundSystem.h"
#include "kits/sound/cAudioFile.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "settings/cAudioSettings.h"
#include "support/SoundFixtures.h"

namespace qm {
namespace {

using namespace test;

class FakeSound : public SoundSystem {
 public:
  std::vector<SoundDevice> Outputs() const override { return {}; }
  std::vector<SoundDevice> Inputs() const override { return {}; }
  std::unique_ptr<ctlVellanPlayer> CreatePlayer() override { return nullptr; }
  std::shared_ptr<RecordingControl> CreateRecorder() override { return control; }
  bool Pump() override { return false; }
  int WaitDescriptor() const override { return -1; }
  std::shared_ptr<FakeRecording> control = std::make_shared<FakeRecording>();
};

class FakeBox : public MessageBox {
 public:
  enMessageBoxAnswer Show(const std::string& text, std::int32_t style, const std::string&) override {
    EXPECT_EQ(style & 15, mbsYesNo);
    shown += text;
    return answer;
  }
  std::string shown;
  enMessageBoxAnswer answer = mbaYes;
};

// Writes every event of the recorder as "name s1 s2 text".
class Owner : public IPlayerCallback {
 public:
  void PlayerEvent(std::int16_t, std::int32_t, std::string&, float&, float&, std::string&,
                   std::string&) override {}
  void RecorderEvent(std::int32_t event, std::string& reference, float& s1, float& s2, std::string& text,
                     std::string&) override {
    EXPECT_EQ(reference, "A1");
    char line[200];
    std::snprintf(line, sizeof line, "%s %g %g %s", RecorderEventName(event), s1, s2, text.c_str());
    heard.emplace_back(line);
  }
  std::shared_ptr<cAudioSettings> AudioSettings() const override { return settings; }
  std::int16_t NumberPlayers() const override { return 0; }
  std::shared_ptr<cPlayer> Player(std::int16_t) const override { return nullptr; }

  std::shared_ptr<cAudioSettings> settings;
  std::vector<std::string> heard;
};

using Lines = std::vector<std::string>;

class RecorderTest : public testing::Test {
 protected:
  RecorderTest() {
    const auto platform = std::make_shared<Platform>(Platform{SystemClock(), MemoryRegistry(), box, sound});
    owner->settings = std::make_shared<cAudioSettings>(platform);
    owner->settings->SetRecordingSoundDevice(3);
    *owner->settings->AudioFormat() = Format(aftWAV, 8000, 1);
    recorder = std::make_shared<cRecorder>(platform);
    recorder->SetPlayerCallback(owner);
    EXPECT_TRUE(recorder->InitRecorder(owner->settings));
    item->SetReference("A1");
    item->SetAudioFileName(folder.File("a.wav"));
  }
  ~RecorderTest() override { recorder->Terminate(); }

  static cAudioFormat Format(std::int32_t type, std::int32_t rate, std::int32_t channels) {
    cAudioFormat format;
    format.SetFormatType(type);
    format.SetSampleRate(rate);
    format.SetChannels(channels);
    format.SetWAVFormatTag(wftPCM);
    return format;
  }
  // AudioEnd Extro TotalLength, "red" while it is marked as being recorded.
  std::string Marks() const {
    char text[80];
    std::snprintf(text, sizeof text, "%g %g %g %s", item->AudioEnd(1), item->Extro(1), item->TotalLength(),
                  item->BackColour() == 255 && item->TextColour() == 0xFFFFFF ? "red"
                  : item->BackColour() == kButtonFaceColour && item->TextColour() == kButtonTextColour
                      ? "plain"
                      : "odd");
    return text;
  }
  FakeRecording& Control() { return *sound->control; }
  Lines Heard() { return std::exchange(owner->heard, {}); }

  TempFolder folder;
  std::shared_ptr<FakeSound> sound = std::make_shared<FakeSound>();
  std::shared_ptr<FakeBox> box = std::make_shared<FakeBox>();
  std::shared_ptr<Owner> owner = std::make_shared<Owner>();
  std::shared_ptr<cHDItem> item = std::make_shared<cHDItem>();
  std::shared_ptr<cRecorder> recorder;
};

TEST_F(RecorderTest, RecordingMarksTheItemAndSavingCompletesIt) {
  item->SetTotalLength(50);
  item->SetIntroEnd(1, 4);
  item->SetEndType(ietFades);
  recorder->SetRecordingReference(7);
  ASSERT_TRUE(recorder->RecordItem(item, nullptr, 0, 0, " Recording ", "Reader", "Line 2"));
  EXPECT_EQ(recorder->Status(), rsRecording);
  EXPECT_EQ(Control().device, 3);
  EXPECT_EQ(Control().request.path, item->AudioFileName());
  EXPECT_EQ(Control().request.startSeconds, -1);
  EXPECT_EQ(Marks(), "0 0 50 red");
  EXPECT_EQ(item->IntroEnd(1), 0);
  EXPECT_EQ(item->EndType(), ietNonSpecific);
  EXPECT_EQ(item->ArtistName(1) + " " + item->ItemDescription(1), "Reader On Line 2");

  Control().events.State(ersRecording);
  Control().events.Position();
  Control().events.Level(100, -5);
  EXPECT_EQ(Marks(), "2 2 2 red");
  item->SetExtro(1, 1.5f);  // set by hand: the marks stay from here on
  Control().frames = 24000;
  Control().events.Position();
  EXPECT_EQ(Marks(), "2 1.5 2 red");
  Control().events.Error(9, "gone");
  Control().events.EndReached();
  EXPECT_EQ(Heard(), (Lines{"reRecording 0 0 ", "rePositionChanged 2 98 ", "reAudioLevelChanged 100 -5 ",
                            "rePositionChanged 3 97 ", "reError 9 0 gone", "reEndReached 3 0 "}));

  EXPECT_TRUE(recorder->CloseItem(rcpSave));
  EXPECT_EQ(box->shown, "");
  EXPECT_EQ(item->ItemTitle(), "New Audio Recorded");
  EXPECT_EQ(Marks(), "3 3 3 plain");
  EXPECT_EQ(recorder->PreviousHDItem(), item);
  EXPECT_EQ(recorder->PreviousSecondsRecorded(), 3);
  EXPECT_EQ(recorder->PreviousRecordingReference(), 7);
  EXPECT_EQ(recorder->Status(), rsClosed);
  EXPECT_EQ(Heard(), Lines{"reClosed 3 0 "});
}

TEST_F(RecorderTest, RefusalsDoNothing) {
  const auto refused = [&](const char* why, const std::shared_ptr<cHDItem>& what,
                           const cAudioFormat& format = Format(aftWAV, 8000, 1)) {
    EXPECT_FALSE(recorder->RecordItem(what, std::make_shared<cAudioFormat>(format))) << why;
  };
  refused("no item", nullptr);
  for (const auto& format : {Format(aftWAV, 48000, 2), Format(aftWAV, 0, 2), Format(aftWAV, 8000, 0),
                             Format(aftWAV, 8000, 3), Format(aftUnknown, 8000, 1)})
    refused("format", item, format);
  for (const auto& path : {std::string(), folder.Path(), folder.File("no/such.wav"), folder.File("a.wav")}) {
    item->SetAudioFileName(path);
    WriteBytes(folder.File("a.wav"), Wav16(Ramp16(10), 8000, 1));
    cAudioFile user;
    ASSERT_EQ(user.OpenForRead(folder.File("a.wav")), 0);
    refused("path, or in use", item);
  }
  EXPECT_EQ(Control().opened, 0);
  item->SetExtro(1, 5);
  Control().openResult = 4;
  refused("control", item);
  EXPECT_FALSE(recorder->HDItem());
  recorder->SetPlayerCallback(nullptr);
  Control().openResult = 0;
  refused("no owner", item);
  EXPECT_EQ(Marks(), "0 5 0 plain");
  EXPECT_TRUE(Heard().empty());
  EXPECT_TRUE(recorder->CloseItem(rcpDiscard));
}

TEST_F(RecorderTest, PauseAndResumeLeadBackToWhatWas) {
  EXPECT_FALSE(recorder->PauseItem());
  ASSERT_TRUE(recorder->RecordItem(item, nullptr, 1000, 0.5f));
  EXPECT_FALSE(recorder->RecordItem(item));
  EXPECT_EQ(Control().request.triggerLevel, 1000);
  EXPECT_EQ(Control().request.triggerSeconds, 0.5f);
  recorder->SetTriggerLevel(2000);
  EXPECT_EQ(Control().triggerLevel, 2000);
  Control().works = false;
  EXPECT_FALSE(recorder->PauseItem());
  EXPECT_EQ(recorder->Status(), rsWaitingLevel);
  Control().works = true;
  for (int twice = 0; twice < 2; ++twice) EXPECT_TRUE(recorder->PauseItem());
  EXPECT_EQ(recorder->Status(), rsPaused);
  EXPECT_TRUE(recorder->ResumeItem());
  EXPECT_EQ(recorder->Status(), rsWaitingLevel);
  recorder->PauseItem();
  Control().events.State(ersRecording);  // the trigger opened while the pause was on its way
  EXPECT_EQ(recorder->Status(), rsPaused);
  recorder->ResumeItem();
  EXPECT_EQ(recorder->Status(), rsRecording);
  EXPECT_EQ(Heard(), (Lines{"rePaused 0 0 ", "rePaused 0 0 ", "reRecording 0 0 ", "rePaused 0 0 ",
                            "reRecording 0 0 "}));
}

TEST_F(RecorderTest, ThePromptDecidesWhetherTheFileStays) {
  item->SetItemTitle("News");
  const std::tuple<enRecorderClosePrompt, enMessageBoxAnswer, bool, bool> rows[] = {
      {rcpSave, mbaNo, false, true},
      {rcpDiscard, mbaYes, false, false},
      {rcpPrompt, mbaYes, true, true},
      {rcpPrompt, mbaNo, true, false}};
  for (const auto& [prompt, answer, asks, keeps] : rows) {
    box->answer = answer;
    ASSERT_TRUE(recorder->RecordItem(item));
    WriteBytes(item->AudioFileName(), "growing");
    EXPECT_TRUE(recorder->CloseItem(prompt));
    EXPECT_EQ(Control().kept, keeps);
    EXPECT_EQ(FileExists(item->AudioFileName()), keeps);
    EXPECT_EQ(item->AudioEnd(1), keeps ? 2 : -1);
    EXPECT_EQ(Heard(), Lines{keeps ? "reClosed 2 0 " : "reClosed 0 0 "});
    EXPECT_EQ(std::exchange(box->shown, "").find("News") != std::string::npos, asks);
  }
}

TEST_F(RecorderTest, NetworkFilesAreRecordedLocallyAndTransferredAsOneStep) {
  std::string network = "\\" + folder.File("a.wav");
  for (char& c : network)
    if (c == '/') c = '\\';
  item->SetAudioFileName(network);
  ASSERT_TRUE(recorder->RecordItem(item));
  EXPECT_FALSE(recorder->TransferToNetwork());  // only where the settings ask for it
  recorder->CloseItem(rcpDiscard);
  owner->settings->SetAudioRecordLocal(true);

  ASSERT_TRUE(recorder->RecordItem(item));
  EXPECT_TRUE(recorder->TransferToNetwork());
  EXPECT_TRUE(FileExists(folder.File("a.wav")));
  std::string local = recorder->RecordFileName();
  EXPECT_EQ(ExtensionOf(local), "wav");
  std::string last;
  recorder->onProgress = [&](const std::string& caption, float percent) {
    last = caption + " " + std::to_string(percent);
  };
  EXPECT_TRUE(recorder->CloseItem(rcpSave));
  EXPECT_EQ(last, "Transferring to Network 100.000000");
  EXPECT_EQ(item->TotalLength(), 2);
  EXPECT_FALSE(FileExists(local));

  ASSERT_TRUE(recorder->RecordItem(item));
  local = recorder->RecordFileName();
  Heard();
  std::filesystem::remove(folder.File("a.wav"));
  std::filesystem::create_directory(folder.File("a.wav"));
  EXPECT_FALSE(recorder->CloseItem(rcpSave));
  EXPECT_NE(Heard().at(0).find(local), std::string::npos);
  EXPECT_EQ(item->AudioEnd(1), 2);  // the sound is still there
  EXPECT_TRUE(DeleteFile(local));
}

TEST_F(RecorderTest, ListenersMayCloseTerminateAndLetGo) {
  ASSERT_TRUE(recorder->RecordItem(item));
  auto wire = recorder->events.RecorderEvent.connect([&](std::int32_t event, auto&&...) {
    if (event == reError) recorder->CloseItem(rcpSave);
  });
  Control().events.Error(9, "gone");
  EXPECT_EQ(Heard(), (Lines{"reClosed 2 0 ", "reError 9 0 gone"}));
  wire.disconnect();

  ASSERT_TRUE(recorder->RecordItem(item));
  recorder->events.LevelChanged.connect([&](std::int16_t, std::int16_t) {
    const auto last = std::exchange(recorder, nullptr);
    last->Terminate();
    recorder = std::make_shared<cRecorder>();
  });
  Control().events.Level(1, 1);
  EXPECT_TRUE(Control().kept);
  EXPECT_TRUE(Heard().empty());
  EXPECT_FALSE(recorder->RecordItem(item));
  recorder->Terminate();
}

}  // namespace
}  // namespace qm
