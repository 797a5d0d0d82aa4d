#pragma once
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "kits/sound/engine/FrameRing.h"
#include "kits/sound/engine/PlayPlan.h"

namespace qm {

class cAudioFile;
class Resampler;
class Stretcher;

// The sound of one plan: read, resampled and stretched ahead by its producer (a reader thread, or the pump of
// an offline device), taken by its consumer (the mixer, under its lock).
//
// It holds exactly plan.OutLength() frames when the file keeps what it promises, and fewer when it breaks
// off.
class VoiceStream {
 public:
  // Frames of `outChannels` channels; the ring holds `ringFrames`.
  VoiceStream(const PlayPlan& plan, std::int32_t fileChannels, std::int32_t outRate, std::int32_t outChannels,
              std::size_t ringFrames);
  ~VoiceStream();

  const PlayPlan& Plan() const { return m_plan; }

  // Producer. Reads on from the file, which is this stream's alone during the call; about `frames` device
  // frames, as far as there is room. The first call positions the file.
  void Produce(cAudioFile& file, std::size_t frames);
  bool WantsMore() const { return !Complete() && m_ring.Space() >= kChunk; }
  std::size_t Fill() const { return m_ring.Fill(); }

  // Consumer.
  FrameRing& Ring() { return m_ring; }
  // No frame will be added: when the ring is empty too, the sound has ended. Asked before looking at the
  // ring.
  bool Complete() const { return m_complete.load(std::memory_order_acquire); }
  // With Complete(): the file broke off before the end of the plan.
  bool BrokeOff() const { return m_brokeOff.load(std::memory_order_acquire); }

  static constexpr std::size_t kChunk = 1024;  // frames produced at a time

 private:
  bool Position(cAudioFile& file);
  std::size_t FromFile(cAudioFile& file, float* out, std::size_t frames);
  std::size_t FromResampler(cAudioFile& file, float* out, std::size_t frames);
  std::size_t FromStretcher(cAudioFile& file, float* out, std::size_t frames);
  std::size_t Next(cAudioFile& file, float* out, std::size_t frames);
  void MapChannels(const float* from, float* to, std::size_t frames) const;

  const PlayPlan m_plan;
  const std::size_t m_fileChannels;
  const std::size_t m_outRate;
  const std::size_t m_outChannels;
  FrameRing m_ring;
  std::unique_ptr<Resampler> m_resampler;  // none at ratio 1
  std::unique_ptr<Stretcher> m_stretcher;  // likewise
  std::vector<float> m_fileFrames;
  std::vector<float> m_resamplerIn;
  std::vector<float> m_stretcherIn;
  std::vector<float> m_chunk;
  std::size_t m_resamplerAt = 0;  // frames of m_resamplerIn already taken
  std::size_t m_resamplerFill = 0;
  std::int64_t m_way = 0;  // source frames read
  std::int64_t m_produced = 0;
  bool m_positioned = false;
  std::atomic<bool> m_complete{false};
  std::atomic<bool> m_brokeOff{false};
};

}  // namespace qm
