#include "playback/cPlayLog.h"

#include <algorithm>

#include "item/cHDItem.h"
#include "kits/common/Numbers.h"
#include "kits/common/TagText.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

// Collects the pairs of the text.
struct LogText {
  std::string text;

  void Plain(const char* key, const std::string& value) { text = AppendTag(std::move(text), key, value); }
  template <class Number>
  void NotZero(const char* key, Number value) {
    if (value != 0) Plain(key, NumberText(value));
  }
  void NotEmpty(const char* key, const std::string& value) {
    if (!value.empty()) text = AppendTag(std::move(text), key, value, "=", true);
  }
};

bool SaysSomething(const std::string& hardwareState) {
  return std::any_of(hardwareState.begin(), hardwareState.end(),
                     [](char c) { return c != '0' && c != '\0'; });
}

}  // namespace

std::string cPlayLog::Serialisation(std::int32_t Options) const {
  LogText log;
  if (m_HardDiskItem && !Trim(m_HardDiskItem->Reference()).empty())
    log.NotEmpty("HDRef", m_HardDiskItem->Reference());
  if (m_StartDate > 0) log.Plain("StDt", DateTimeText(GetStartDateSD()));
  log.NotZero("Dur", m_Duration);
  log.NotZero("Flags", m_flags);
  log.NotZero("CompID", m_ComputerID);
  log.NotZero("Player", m_PlayerNumber);
  if (m_HardDiskItem && (Options & plsoIncludeHDSerial) != 0)
    log.NotEmpty("HD.Ser", m_HardDiskItem->Serialisation());
  log.NotEmpty("Login", m_LoginName);
  log.NotZero("LogRef", m_LogReference);
  log.NotEmpty("OnAirRef", m_OnAirReference);
  log.NotEmpty("SchRef", m_SchedulerReference);
  if ((Options & plsoIncludeHardware) != 0 && SaysSomething(m_HardwareState))
    log.Plain("HWState", m_HardwareState);
  return log.text;
}

}  // namespace qm
