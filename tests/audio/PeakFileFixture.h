#pragma once
#include <algorithm>
#include <bit>
#include <chrono>
#include <string>
#include <vector>

#include "TraceFixture.h"
#include "audio/cPeakFile.h"

namespace qm::test {

// A peak file object whose events are kept as text, and audio files written at 12:00 on the day of the clock.
class PeakFileFixture : public TraceFixture {
 protected:
  PeakFileFixture() {
    m_peaks.events.ScanAudioStart.connect([this] { m_events += "start "; });
    m_peaks.events.ScanAudioProgress.connect(
        [this](int percent) { m_events += std::to_string(percent) + " "; });
    m_peaks.events.ScanAudioEnd.connect(
        [this] { m_events += "end" + std::to_string(m_peaks.LastErrorCode()) + " "; });
  }

  std::string MakeAudio(const std::vector<std::int16_t>& samples, std::uint32_t channels,
                        const char* name = "a.wav") {
    WriteBytes(m_temp.File(name), Wav16(samples, 44100, channels));
    Touch(m_temp.File(name), -6 * 3600);
    return m_temp.File(name);
  }

  // Sets when a file was written, in seconds from the clock's time.
  void Touch(const std::string& path, int seconds) const {
    std::filesystem::last_write_time(
        path, std::chrono::file_clock::from_sys(m_clock->Now() + std::chrono::seconds(seconds)));
  }

  std::string PeakPath(const char* name = "a") const {
    return m_temp.File("Peakfiles/" + std::string(name) + ".ppk");
  }

  std::vector<std::int16_t> AllPoints() const {
    std::vector<std::int16_t> points;
    m_peaks.GetSamples(1, INT32_MAX, points);
    return points;
  }

  std::string m_events;
  cPeakFile m_peaks{m_clock};
};

// Replaces bytes inside a file.
inline void Patch(const std::string& path, std::size_t position, const std::string& bytes) {
  WriteBytes(path, ReadBytes(path).replace(position, bytes.size(), bytes));
}

inline std::string FloatBytes(float value) {
  return LittleEndian(std::bit_cast<std::uint32_t>(value), 4);
}
inline std::string DoubleBytes(double value) {
  return LittleEndian(std::bit_cast<std::uint64_t>(value), 8);
}

}  // namespace qm::test
