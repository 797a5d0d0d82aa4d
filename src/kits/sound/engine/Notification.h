#pragma once
#include <cstdint>
#include <memory>
#include <string>

namespace qm {

enum enNotification : std::int32_t {
  entPosition,      // position and levels
  entMark,          // number: EventId, tag
  entVolume,        // volume
  entVolumeStart,   // number: reference
  entVolumeNotify,  // number: reference
  entVolumeEnd,     // number: reference
  entLoopRestart,
  entLoopCompleted,
  entAudioEnd,
  entError,  // number, text
};

// Hears the notifications of one voice. Host thread.
class VoiceOwner {
 public:
  virtual ~VoiceOwner() = default;
  virtual void Deliver(const struct Notification& notification) = 0;
};

// Something that happened to a voice at a frame of the engine.
struct Notification {
  enNotification kind = entPosition;
  std::int64_t frame = 0;
  std::weak_ptr<VoiceOwner> owner;
  std::uint64_t voice = 0;  // serial number: an owner drops what belongs to an earlier voice of its own
  std::int32_t number = 0;
  std::int32_t tag = 0;
  float volume = 0;
  std::int16_t leftLevel = 0;
  std::int16_t rightLevel = 0;
  std::string text;
};

}  // namespace qm
