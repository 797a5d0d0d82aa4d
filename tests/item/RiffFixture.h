#pragma once
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "item/RiffSource.h"
#include "support/SoundFixtures.h"

namespace qm::test {

// A file in memory, whose power may be cut: once `budget` bytes are written, nothing more arrives.
class RiffMemory : public RiffTarget {
 public:
  explicit RiffMemory(std::string content) : bytes(std::move(content)) {}

  std::int64_t Size() const override { return static_cast<std::int64_t>(bytes.size()); }
  std::size_t ReadAt(std::int64_t position, void* out, std::size_t count) const override {
    if (position < 0 || position >= Size()) return 0;
    count = std::min(count, bytes.size() - static_cast<std::size_t>(position));
    std::memcpy(out, bytes.data() + position, count);
    return count;
  }
  bool WriteAt(std::int64_t position, std::string_view part) override {
    if (position < 0 || position > Size() || unflushed > 0) return false;
    const std::size_t arrives = std::min(budget - written, part.size());
    const auto at = static_cast<std::size_t>(position);
    bytes.replace(at, std::min(arrives, bytes.size() - at), part.substr(0, arrives));
    written += arrives;
    unflushed += 1;
    return arrives == part.size();
  }
  bool Flush() override {
    unflushed = 0;
    return written < budget;
  }

  std::string bytes;
  std::size_t budget = std::string::npos;
  std::size_t written = 0;
  int unflushed = 0;  // a second write before the first is safe is refused
};

inline constexpr std::uint32_t kTestRate = 1000;

inline std::string FormatChunk() {
  return Wav16({}, kTestRate, 1).substr(12, 24);
}

// What stands in front of the 16-bit mono audio of a file with 64-bit sizes.
inline std::string LongHead(std::uint64_t form, std::uint64_t data) {
  return "RF64\xFF\xFF\xFF\xFFWAVE" +
         Chunk("ds64", LittleEndian(form, 8) + LittleEndian(data, 8) + LittleEndian(data / 2, 8) +
                           LittleEndian(0, 4)) +
         FormatChunk() + "data\xFF\xFF\xFF\xFF";
}

// 16-bit mono at 1000 samples a second, with chunks behind the audio.
inline std::string WaveWith(const std::string& behind, std::size_t frames = 20000) {
  return Chunk("RIFF", Wav16(Ramp16(frames), kTestRate, 1).substr(8) + behind);
}

// `size` bytes of `fill` with texts put at their offsets.
inline std::string Laid(std::size_t size, char fill, const std::map<std::size_t, std::string>& texts) {
  std::string bytes(size, fill);
  for (const auto& [offset, text] : texts) bytes.replace(offset, text.size(), text);
  return bytes;
}

inline std::string Timer(const std::string& usage, std::uint32_t samples) {
  return usage + LittleEndian(samples, 4);
}

// A cart chunk as many write it: fields filled with zeros, no timers but those given.
inline std::string Cart(std::map<std::size_t, std::string> texts, const std::vector<std::string>& timers = {},
                        const std::string& tagText = "") {
  texts.emplace(0, "0101");
  for (std::size_t i = 0; i < 8; ++i)
    texts[684 + 8 * i] = i < timers.size() ? timers[i] : Timer("    ", 0xFFFFFFFF);
  return Chunk("cart", Laid(2048, '\0', texts) + tagText);
}

inline std::string Info(const std::string& subChunks) {
  return Chunk("LIST", "INFO" + subChunks);
}

inline std::string Frame(const std::string& id, const std::string& body) {
  const std::size_t n = body.size();
  const char size[] = {static_cast<char>(n >> 21), static_cast<char>(n >> 14 & 127),
                       static_cast<char>(n >> 7 & 127), static_cast<char>(n & 127)};
  return id + std::string(size, 4) + std::string(2, '\0') + body;
}

// With padding behind the frames, so that no chunk is too short to be looked at.
inline std::string Id3(const std::string& frames, const std::string& id = "id3 ") {
  return Chunk(id, "ID3\x03" + std::string(6, '\0') + frames + std::string(120, '\0'));
}

}  // namespace qm::test
