#pragma once
#include <cstdint>
#include <string>

namespace qm::cli {

// A player's event, and the engine's frame at which it happened.
struct HeardEvent {
  std::int64_t frame = 0;
  std::int32_t frameRate = 0;  // frames a second; 0 before any device has started
  std::int16_t player = 0;
  std::int32_t event = 0;  // enPlayerEvent
  const std::string& hdReference;
  float sValue1 = 0;
  float sValue2 = 0;
  const std::string& strValue1;
  const std::string& strValue2;

  double Seconds() const { return frameRate > 0 ? static_cast<double>(frame) / frameRate : 0; }
};

// Hears every event of the run, before the run acts on it.
class PlayObserver {
 public:
  virtual ~PlayObserver() = default;
  virtual void Hear(const HeardEvent& heard) = 0;
};

}  // namespace qm::cli
