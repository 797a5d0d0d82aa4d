#pragma once
#include <stdlib.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

// What tests of sound make their inputs with: folders that go away, signals, small files, other programs.
namespace qm::test {

// A folder of its own in the system's temporary folder, gone with its contents when the object goes.
class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "qmsoundXXXXXX").string();
    if (mkdtemp(name.data()) != nullptr) m_path = name;
  }
  ~TempFolder() {
    std::error_code ignored;
    if (!m_path.empty()) std::filesystem::remove_all(m_path, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& Path() const { return m_path; }
  std::string File(std::string_view name) const { return m_path + "/" + std::string(name); }

 private:
  std::string m_path;
};

// A word of a shell command, whatever it holds.
inline std::string Quoted(std::string_view word) {
  std::string text = "'";
  for (char c : word) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + "'";
}

// Runs a shell command in silence; true when it answers 0.
inline bool RunCommand(const std::string& command) {
  return std::system(("{ " + command + "; } >/dev/null 2>&1 </dev/null").c_str()) == 0;
}

inline std::string ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteBytes(const std::string& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Interleaved, full scale 1; each further channel an octave up.
inline std::vector<float> Sine(double rate, std::size_t frames, std::size_t channels = 1, double hertz = 440,
                               double amplitude = 0.5) {
  std::vector<float> samples(frames * channels);
  for (std::size_t f = 0; f < frames; ++f)
    for (std::size_t c = 0; c < channels; ++c)
      samples[f * channels + c] = static_cast<float>(
          amplitude * std::sin(2 * std::numbers::pi * hertz * std::exp2(c) * static_cast<double>(f) / rate));
  return samples;
}

// Interleaved; the first channel holds its own frame number (modulo 65536, as signed 16-bit), each further
// one that number shifted by 1000 times the channel, so that any sample tells where it came from.
inline std::vector<std::int16_t> Ramp16(std::size_t frames, std::size_t channels = 1) {
  std::vector<std::int16_t> samples(frames * channels);
  for (std::size_t f = 0; f < frames; ++f)
    for (std::size_t c = 0; c < channels; ++c)
      samples[f * channels + c] = static_cast<std::int16_t>(static_cast<std::uint16_t>(f + 1000 * c));
  return samples;
}

// Repeatable white noise over the whole 16-bit range, times amplitude.
inline std::vector<std::int16_t> Noise16(std::size_t samples, double amplitude = 1, std::uint32_t seed = 1) {
  std::vector<std::int16_t> noise(samples);
  for (auto& value : noise) {
    seed = seed * 1664525u + 1013904223u;
    value = static_cast<std::int16_t>(amplitude * (static_cast<std::int32_t>(seed >> 16) - 32768));
  }
  return noise;
}

inline std::string LittleEndian(std::uint64_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFF);
  return text;
}

// A RIFF chunk, padded to an even length.
inline std::string Chunk(std::string_view id, std::string_view body) {
  std::string chunk = std::string(id) + LittleEndian(body.size(), 4) + std::string(body);
  return body.size() % 2 ? chunk + '\0' : chunk;
}

// The bytes of a plain 16-bit PCM WAV file.
inline std::string Wav16(const std::vector<std::int16_t>& samples, std::uint32_t rate,
                         std::uint32_t channels) {
  std::string data;
  for (std::int16_t value : samples) data += LittleEndian(static_cast<std::uint16_t>(value), 2);
  std::string format = LittleEndian(1, 2) + LittleEndian(channels, 2) + LittleEndian(rate, 4) +
                       LittleEndian(rate * channels * 2, 4) + LittleEndian(channels * 2, 2) +
                       LittleEndian(16, 2);
  std::string form = "WAVE" + Chunk("fmt ", format) + Chunk("data", data);
  return Chunk("RIFF", form);
}

}  // namespace qm::test
