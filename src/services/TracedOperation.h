#pragma once
#include <string>
#include <string_view>

#include "services/Diagnostics.h"

namespace qm {

// The "Start", "Finish" and "Exit" trace lines of one operation, at level 5, its name put together from parts
// (text and numbers). Costs one comparison when diagnostics are off.
class TracedOperation {
 public:
  template <class... Parts>
  explicit TracedOperation(const Parts&... name) {
    if (!DebugWanted(kLevel)) return;
    (diagnostics_detail::Append(m_name, name), ...);
    Trace(kLevel, ednOpens, "Start ", m_name);
  }
  ~TracedOperation() {
    if (!m_name.empty()) Trace(kLevel, ednCloses, "Finish ", m_name);
  }
  TracedOperation(const TracedOperation&) = delete;
  TracedOperation& operator=(const TracedOperation&) = delete;

  void Line(std::string_view text) const { WriteDebug(text, kLevel); }
  // Leaves early, without "Finish": always false.
  bool Exit(std::string_view reason) {
    if (!m_name.empty()) Trace(kLevel, ednCloses, "Exit : ", reason);
    m_name.clear();
    return false;
  }

 private:
  static constexpr std::int32_t kLevel = 5;
  std::string m_name;  // empty when nothing is traced (any more)
};

}  // namespace qm
