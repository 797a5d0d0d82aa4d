#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "kits/common/Clock.h"
#include "kits/common/MessageBox.h"
#include "services/Diagnostics.h"
#include "support/SoundFixtures.h"

namespace qm::test {

class RecordingBox : public MessageBox {
 public:
  enMessageBoxAnswer Show(const std::string& text, std::int32_t, const std::string&) override {
    shown.push_back(text);
    return mbaOk;
  }
  std::vector<std::string> shown;
};

// A folder, a clock that stands at 9 March 2026 18:00 UTC, and the trace of what a test does.
class TraceFixture : public testing::Test {
 protected:
  TraceFixture() {
    m_clock->Set(std::chrono::sys_days(std::chrono::year(2026) / 3 / 9) + std::chrono::hours(18));
    SetDiagnostics({m_clock, nullptr, m_box, m_temp.File("debug"), "t"});
    SetDebugMode(5);
  }
  ~TraceFixture() override {
    SetDebugMode(0);
    SetDiagnostics({});
  }

  // The lines written since the last call, without their times, each ended by "|".
  std::string TakeTrace() {
    std::string lines, text;
    for (const auto& file : std::filesystem::directory_iterator(m_temp.File("debug")))
      text += ReadBytes(file.path());
    std::filesystem::remove_all(m_temp.File("debug"));
    constexpr std::size_t kTime = 9;
    for (std::size_t start = 0, end = 0; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
      lines += text.substr(start + kTime, end - start - kTime) + "|";
    return lines;
  }

  TempFolder m_temp;
  std::shared_ptr<ManualClock> m_clock = std::make_shared<ManualClock>();
  std::shared_ptr<RecordingBox> m_box = std::make_shared<RecordingBox>();
};

}  // namespace qm::test
