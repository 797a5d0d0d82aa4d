#include <cstdlib>

#include "kits/common/Numbers.h"
#include "kits/sound/SoundSystem.h"
#include "kits/sound/ctlVellanPlayer.h"
#include "playback/PlayerOperation.h"
#include "playback/cBasePlayer.h"
#include "services/Diagnostics.h"
#include "settings/cAudioSettings.h"

namespace qm {
namespace {

constexpr std::int32_t kDefaultBufferTotal = 4000;  // milliseconds
constexpr std::int32_t kDefaultBufferLength = 250;
constexpr std::int32_t kLargeBufferLength = 1000;

struct DeviceRange {
  std::int32_t first, last;
  std::int32_t type;
};

constexpr DeviceRange kDeviceRanges[] = {{1, 49, 0}, {101, 149, 2}};

StreamingSettings BuffersFor(StreamingSettings buffers, enVSBufferSize size) {
  if (size == vsbsExtended) {
    buffers.bufferTotal *= 2;
    buffers.bufferLength *= 2;
  } else if (size == vsbsLarge) {
    buffers.bufferLength = kLargeBufferLength;
    buffers.bufferTotal = Greater(buffers.bufferTotal, kDefaultBufferTotal);
  }
  return buffers;
}

void ChooseDevice(ctlVellanPlayer& control, std::int32_t device) {
  if (device < 1) control.SetDeviceNumber(device);
  for (const DeviceRange& range : kDeviceRanges) {
    if (device < range.first || device > range.last) continue;
    control.SetDeviceType(range.type);
    control.SetDeviceNumber(device - range.first + 1);
  }
}

}  // namespace

bool cBasePlayer::InitPlayer(std::int16_t PlayerNumber, const std::shared_ptr<cAudioSettings>& AudioSettings,
                             std::int16_t ListIndex) {
  PlayerOperation operation(*this, "InitPlayer");
  if (!m_control) return operation.Exit("No Control");
  m_reference = Greater<std::int16_t>(0, PlayerNumber);
  m_control->SetPlayerId(ListIndex >= 1 ? PlayerNumber * 100 + ListIndex : PlayerNumber);
  if (AudioSettings) {
    StreamingSettings buffers = m_platform->sound->Streaming();
    if (buffers.bufferTotal <= 0) buffers.bufferTotal = kDefaultBufferTotal;
    if (buffers.bufferLength <= 0) buffers.bufferLength = kDefaultBufferLength;
    buffers = BuffersFor(buffers, AudioSettings->VellanStreamBufferSize());
    m_control->SetBufferLength(buffers.bufferLength);
    m_control->SetBufferCount(
        static_cast<std::int32_t>(RoundToWhole(double(buffers.bufferTotal) / buffers.bufferLength)));
    ChooseDevice(*m_control,
                 PlayerNumber >= 1 ? AudioSettings->PlayerSoundDevice(PlayerNumber) : std::abs(PlayerNumber));
  }
  if (m_reference == 1) {
    WriteDebug("Loading Audio Engine", 5);
    SoundSystem& sound = *m_platform->sound;
    if (!sound.onTrace) sound.onTrace = [](const std::string& line) { WriteDebug(line, 5); };
    m_control->InitialiseEngine();
  }
  return true;
}

}  // namespace qm
