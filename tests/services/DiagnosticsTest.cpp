#include "services/Diagnostics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "kits/common/Clock.h"
#include "kits/common/MessageBox.h"
#include "kits/common/Registry.h"
#include "support/SoundFixtures.h"

namespace qm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RecordingBox : public MessageBox {
 public:
  enMessageBoxAnswer Show(const std::string& text, std::int32_t style, const std::string& title) override {
    shown.push_back(title + "|" + std::to_string(style) + "|" + text);
    return mbaOk;
  }
  std::vector<std::string> shown;
};

class DiagnosticsTest : public testing::Test {
 protected:
  DiagnosticsTest() {
    setenv("TZ", "UTC", 1);
    tzset();
    m_clock->Set(std::chrono::sys_days(std::chrono::year(2026) / 3 / 9) + std::chrono::seconds(28865));
    m_registry->Write("SOFTWARE\\Quillmere", "DebugPath", m_temp.File("debug"));
    Start();
    SetDebugMode(5);
  }
  ~DiagnosticsTest() override {
    SetDebugMode(0);
    SetDiagnostics({});
  }

  void Start(const std::string& folder = "") {
    SetDiagnostics({m_clock, m_registry, m_box, folder, "Studio"});
  }
  std::string Log(const std::string& day = "20260309") const {
    return test::ReadBytes(m_temp.File("debug/Studio." + day + ".log"));
  }

  test::TempFolder m_temp;
  std::shared_ptr<ManualClock> m_clock = std::make_shared<ManualClock>();
  std::shared_ptr<Registry> m_registry = MemoryRegistry();
  std::shared_ptr<RecordingBox> m_box = std::make_shared<RecordingBox>();
};

TEST_F(DiagnosticsTest, LinesAreIndentedByTheirNestingInTheFileOfTheirDay) {
  WriteDebug("too many", 5, ednCloses);
  WriteDebug("Start Play", 5, ednOpens);
  WriteDebug("Start detail", 6, ednOpens);  // not written, so it does not nest
  WriteDebug("Start Cue", 5, ednOpens);
  m_clock->Advance(std::chrono::milliseconds(1999));
  WriteDebug("cueing");
  WriteDebug("Finish Cue", 5, ednCloses);
  Trace(5, ednPlain, "player ", 2, " at ", 1.5, std::string(" of "), std::size_t{3});
  m_clock->Advance(std::chrono::hours(24));
  WriteDebug("tomorrow");
  WriteDebug("Start again", 5, ednReset);
  EXPECT_EQ(Log(),
            "08:01:05 too many\n08:01:05 Start Play\n08:01:05     Start Cue\n08:01:06         cueing\n"
            "08:01:06     Finish Cue\n08:01:06     player 2 at 1.5 of 3\n");
  EXPECT_EQ(Log("20260310"), "08:01:06     tomorrow\n08:01:06 Start again\n");
  EXPECT_THAT(m_box->shown, IsEmpty());
}

TEST_F(DiagnosticsTest, AnUnwritableFileStaysSilentAndNestingGoesOn) {
  std::filesystem::create_directories(m_temp.File("debug/Studio.20260309.log"));
  WriteDebug("a", 5, ednOpens);
  EXPECT_THAT(m_box->shown, IsEmpty());
  std::filesystem::remove(m_temp.File("debug/Studio.20260309.log"));
  WriteDebug("b");
  EXPECT_EQ(Log(), "08:01:05     b\n");
}

TEST_F(DiagnosticsTest, TheModeDecidesWhichLevelsAreWritten) {
  const struct {
    std::int32_t mode, level;
    bool written;
  } rows[] = {{0, 0, false},  {0, -1, false}, {5, 5, true},   {5, 6, false}, {5, -1, true},
              {4, -1, false}, {-1, 99, true}, {-1, -1, true}, {-2, 5, false}};
  for (const auto& row : rows) {
    std::filesystem::remove_all(m_temp.File("debug"));
    SetDebugMode(row.mode);
    WriteDebug("x", row.level);
    EXPECT_EQ(Log(), row.written ? "08:01:05 x\n" : "") << row.mode << " " << row.level;
  }
  SetDebugMode(10);
  WriteDebug("x", 10);
  EXPECT_TRUE(std::regex_match(Log(), std::regex("08:01:05 ( *[0-9]+\\.[0-9]{2}){2} x\n"))) << Log();
}

TEST_F(DiagnosticsTest, TheFolderIsLookedUpOnce) {
  WriteDebug("a");
  m_registry->Delete("SOFTWARE\\Quillmere", "DebugPath");
  WriteDebug("b");
  EXPECT_EQ(Log(), "08:01:05 a\n08:01:05 b\n");
  setenv("XDG_STATE_HOME", m_temp.Path().c_str(), 1);
  for (const char* folder : {"own", "quillmere/DebugFiles"}) {
    Start(folder == std::string("own") ? m_temp.File("own/") : "");
    WriteDebug("c");
    EXPECT_EQ(test::ReadBytes(m_temp.File(folder) + "/Studio.20260309.log"), "08:01:05 c\n");
  }
  unsetenv("XDG_STATE_HOME");
}

TEST_F(DiagnosticsTest, AFolderThatCannotBeMadeIsToldOnce) {
  test::WriteBytes(m_temp.File("debug"), "in the way");
  WriteDebug("a", 5, ednOpens);
  WriteDebug("b");
  EXPECT_THAT(m_box->shown, ElementsAre("Studio|48|The Debug Files folder could not be created in '" +
                                        m_temp.File("debug") + "/'!"));
  std::filesystem::remove(m_temp.File("debug"));
  WriteDebug("c");
  EXPECT_EQ(Log(), "08:01:05 c\n") << "a line that was stopped opens nothing";
}

TEST_F(DiagnosticsTest, ProblemsAreShownAndWritten) {
  ReportProblem(" opening a.wav ", " no such file\n", false);
  ReportProblem("closing", " ", false);
  ReportProblem("saving", "full", true);
  const std::string was = " and the error's description was reported as : ", problem = "There was a problem ";
  const std::string first = problem + "opening a.wav" + was + "\"no such file\"",
                    second = problem + "closing";
  EXPECT_THAT(m_box->shown, ElementsAre("Studio|48|" + first, "Studio|48|" + second));
  EXPECT_EQ(Log(), "08:01:05 " + first + "\n08:01:05 " + second + "\n08:01:05 " + problem + "saving" + was +
                       "\"full\"\n");
}

}  // namespace
}  // namespace qm
