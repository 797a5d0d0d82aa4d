#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

namespace qm {

// Finds where a recording begins: at the first frame that reaches a level or, with a time to hold, at the
// first frame of the run that has reached it for so long. A run ends with a gap of more than half that time
// or 100 ms.
class LevelTrigger {
 public:
  LevelTrigger(std::int16_t level, double holdSeconds, std::int32_t sampleRate, std::size_t channels);

  bool IsOpen() const { return m_open; }
  void SetLevel(std::int16_t level);

  // Looks at interleaved frames. True when it has opened: `begin` then holds what the recording begins with,
  // up to the last of these frames.
  bool Take(const float* frames, std::size_t count, std::vector<float>& begin);

 private:
  bool Loud(const float* frame) const;
  bool Step(const float* frame);

  const std::size_t m_channels;
  const std::uint64_t m_holdFrames;  // at least 1
  const std::uint64_t m_gapFrames;
  float m_level = 0;  // full scale 1
  bool m_open = false;
  std::uint64_t m_runFrames = 0;  // of the present run; 0 outside of one
  std::uint64_t m_quietFrames = 0;
  std::vector<float> m_run;
};

}  // namespace qm
