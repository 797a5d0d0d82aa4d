#include "kits/sound/engine/VoiceStream.h"

#include <algorithm>

#include "kits/sound/cAudioFile.h"
#include "kits/sound/dsp/Resampler.h"
#include "kits/sound/dsp/Stretcher.h"

namespace qm {

VoiceStream::VoiceStream(const PlayPlan& plan, std::int32_t fileChannels, std::int32_t outRate,
                         std::int32_t outChannels, std::size_t ringFrames)
    : m_plan(plan),
      m_fileChannels(static_cast<std::size_t>(fileChannels)),
      m_outRate(static_cast<std::size_t>(outRate)),
      m_outChannels(static_cast<std::size_t>(outChannels)),
      m_ring(std::max(ringFrames, 4 * kChunk), m_outChannels),
      m_fileFrames(kChunk * m_fileChannels),
      m_chunk(kChunk * m_outChannels) {
  if (m_plan.OutLength() <= 0) m_complete = true;
}

VoiceStream::~VoiceStream() = default;

void VoiceStream::Produce(cAudioFile& file, std::size_t frames) {
  if (Complete()) return;
  if (!m_positioned && !Position(file)) {
    m_brokeOff = true;
    m_complete = true;
    return;
  }
  std::size_t room = std::min(frames, m_ring.Space());
  while (room > 0) {
    const std::int64_t left = m_plan.OutLength() - m_produced;
    const std::size_t n = std::min({room, kChunk, static_cast<std::size_t>(left)});
    std::size_t got = Next(file, m_chunk.data(), n);
    if (got == 0 && !m_brokeOff) {
      // Resampling and stretching come out a few frames short of the exact length: silence makes it up.
      std::fill_n(m_chunk.begin(), n * m_outChannels, 0.f);
      got = n;
    }
    m_ring.Write(m_chunk.data(), got);
    m_produced += static_cast<std::int64_t>(got);
    room -= got;
    if (got == 0 || m_produced == m_plan.OutLength()) {
      m_complete.store(true, std::memory_order_release);
      return;
    }
  }
}

// Converters take milliseconds to make: that is the producer's time, not the time of whoever wants the
// stream.
bool VoiceStream::Position(cAudioFile& file) {
  m_positioned = true;
  if (m_plan.resampling != 1) {
    m_resampler = std::make_unique<Resampler>(m_plan.resampling, m_outChannels);
    m_resamplerIn.resize(kChunk * m_outChannels);
  }
  if (m_plan.stretch != 1) {
    m_stretcher = std::make_unique<Stretcher>(m_plan.stretch, m_outRate, m_outChannels);
    m_stretcherIn.resize(kChunk * m_outChannels);
  }
  return file.Seek(m_plan.origin);
}

std::size_t VoiceStream::Next(cAudioFile& file, float* out, std::size_t frames) {
  if (m_stretcher) return FromStretcher(file, out, frames);
  return m_resampler ? FromResampler(file, out, frames) : FromFile(file, out, frames);
}

// Follows the plan's way through the file; 0 at its end, or where the file breaks off.
std::size_t VoiceStream::FromFile(cAudioFile& file, float* out, std::size_t frames) {
  if (m_brokeOff) return 0;
  const std::int64_t run = m_plan.Run(m_way);
  if (run == 0) return 0;
  const std::size_t wanted = std::min({frames, kChunk, static_cast<std::size_t>(run)});
  const bool same = m_fileChannels == m_outChannels;
  const std::size_t got = file.ReadFrames(same ? out : m_fileFrames.data(), wanted);
  if (!same) MapChannels(m_fileFrames.data(), out, got);
  m_way += static_cast<std::int64_t>(got);
  const bool turned = got == static_cast<std::size_t>(run) && m_way < m_plan.Length();
  if (got == 0 || (turned && !file.Seek(m_plan.Source(m_way)))) m_brokeOff = true;
  return got;
}

std::size_t VoiceStream::FromResampler(cAudioFile& file, float* out, std::size_t frames) {
  for (;;) {
    if (m_resamplerAt == m_resamplerFill) {
      m_resamplerFill = FromFile(file, m_resamplerIn.data(), kChunk);
      m_resamplerAt = 0;
    }
    const bool ended = m_resamplerFill == 0;
    const Resampler::Moved moved = m_resampler->Process(m_resamplerIn.data() + m_resamplerAt * m_outChannels,
                                                        m_resamplerFill - m_resamplerAt, out, frames);
    m_resamplerAt += moved.consumed;
    if (moved.produced > 0 || ended) return moved.produced;
  }
}

std::size_t VoiceStream::FromStretcher(cAudioFile& file, float* out, std::size_t frames) {
  for (;;) {
    const std::size_t taken = m_stretcher->Take(out, frames);
    if (taken > 0) return taken;
    const std::size_t got = m_resampler ? FromResampler(file, m_stretcherIn.data(), kChunk)
                                        : FromFile(file, m_stretcherIn.data(), kChunk);
    m_stretcher->Put(m_stretcherIn.data(), got, got == 0);
    if (got == 0) return m_stretcher->Take(out, frames);
  }
}

// Mono goes to both sides, stereo to its mean; of more channels the first two are left and right.
void VoiceStream::MapChannels(const float* from, float* to, std::size_t frames) const {
  for (std::size_t i = 0; i < frames; ++i) {
    const float left = from[i * m_fileChannels];
    const float right = m_fileChannels > 1 ? from[i * m_fileChannels + 1] : left;
    if (m_outChannels == 1) {
      to[i] = 0.5f * (left + right);
    } else {
      to[2 * i] = left;
      to[2 * i + 1] = right;
    }
  }
}

}  // namespace qm
