#pragma once
#include <cstdint>

#include "kits/sound/AudioFileReader.h"

struct AVCodecParameters;
struct AVPacket;

namespace qm {

// A source's coded packets with their places in the raw audio: what the decoder gives from the first packet
// on, encoder delay included.
struct AudioPacketPlace {
  std::int64_t start = 0;   // raw frame at which the packet's audio begins
  std::int64_t frames = 0;  // how many it stands for
  bool fresh = false;       // to be decoded by a decoder that has seen nothing yet
};

// Known from a source once it is open.
struct AudioPacketSourceInfo {
  cAudioFormat format;
  std::int64_t length = 0;       // frames delivered
  std::int64_t delay = 0;        // raw frames before the first one delivered
  std::int64_t preroll = 0;      // raw frames to be decoded before those of a seek are right
  std::int64_t rawAtDrain = -1;  // where the frames held back to the last by the decoder belong; -1 for none
};

class AudioPacketSource {
 public:
  explicit AudioPacketSource(std::shared_ptr<AudioFileBytes> bytes) : m_bytes(std::move(bytes)) {}
  virtual ~AudioPacketSource() = default;

  const AudioPacketSourceInfo& Info() const { return m_info; }
  // For audio inside of another type of file.
  void SetFormat(const cAudioFormat& format) { m_info.format = format; }

  // Name of the decoder and what it must know.
  virtual const char* DecoderName() const = 0;
  virtual bool FillParameters(AVCodecParameters* parameters) const = 0;

  // The next packet and its place; false at the end. A packet without bytes stands for audio that is lost.
  virtual bool Next(AVPacket* packet, AudioPacketPlace& place) = 0;

  // Next gives a packet that begins at or before the raw frame (or the first one).
  virtual bool Position(std::int64_t rawFrame) = 0;

  // Packets ended because the system failed to read the file.
  bool ReadFailed() const;
  void ForgetFailure();

 protected:
  const std::shared_ptr<AudioFileBytes> m_bytes;
  AudioPacketSourceInfo m_info;
};

// A reader that decodes the source's packets. Null, and the error, when there is no decoder for them.
std::unique_ptr<AudioFileReader> MakePacketReader(std::unique_ptr<AudioPacketSource> source,
                                                  AudioFileError& error);

}  // namespace qm
