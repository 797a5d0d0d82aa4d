#include "audio/CopyCore.h"

#include <algorithm>

#include "audio/CopyDestination.h"
#include "audio/RetainedAudio.h"
#include "audio/StoredFrames.h"
#include "kits/common/Numbers.h"
#include "kits/sound/dsp/AudioProcessor.h"
#include "kits/sound/dsp/LevelScan.h"

namespace qm {
namespace {
constexpr std::int32_t kScanBits = 24;
constexpr std::int32_t kWhole = 100;
}  // namespace

CopyCore::CopyCore(const cCopyAudioFileNCT& copier, const bool& stop, CopySource& source,
                   const CopyStretch& stretch, CopyDestination& destination, RetainedAudio& retained)
    : m_events(copier.events),
      m_settings(copier.Choices()),
      m_stop(stop),
      m_source(source),
      m_stretch(stretch),
      m_destination(destination),
      m_retained(retained),
      m_blocks(source, stretch, destination.DestSampleRate(), destination.DestChannels()) {}

enCopyError CopyCore::Run() {
  if (m_settings.Normalise)
    if (const enCopyError error = Scan()) return error;
  return Copy();
}

// False when a listener cancels.
bool CopyCore::Begin() {
  bool cancel = false;
  m_events.CopyStarted(cancel);
  m_lastPercent = -1;
  return !cancel && !m_stop;
}

bool CopyCore::Progress(std::int32_t percent) {
  bool cancel = false;
  m_events.CopyProgress(static_cast<std::int16_t>(percent), cancel);
  return !cancel && !m_stop;
}

// Tells how far a pass is; false when a listener cancels.
bool CopyCore::GoesOn() {
  const double part = static_cast<double>(m_blocks.Position()) / static_cast<double>(m_stretch.total);
  const auto percent = static_cast<std::int32_t>(Limit<std::int64_t>(RoundToWhole(part * kWhole), 0, kWhole));
  if (percent == m_lastPercent) return true;
  m_lastPercent = percent;
  return Progress(percent);
}

enCopyError CopyCore::EndPass() {
  const bool goesOn = Progress(kWhole);
  m_events.CopyFinished();
  return goesOn ? cerOK : cerCancelled;
}

// The level of what will be written, and so behind the change of rate and channels, which moves peaks.
enCopyError CopyCore::Scan() {
  if (!Begin()) return cerCancelled;
  if (!m_blocks.Rewind()) return cerSourceNotOpened;
  double peak = 0;
  while (m_blocks.More()) {
    if (!GoesOn()) return cerCancelled;
    const auto second = static_cast<std::int64_t>(m_source.Format.SampleRate());
    if (!m_blocks.Read(std::min(second, Remaining()))) break;
    const std::span<float> block = m_blocks.Block();
    LimitRange(block);
    float first = 0, other = 0;
    const float level = AudioScanBufferForMaxLevel(block.data(), block.size_bytes(),
                                                   m_destination.DestChannels(), first, other, kScanBits);
    peak = std::max(peak, static_cast<double>(level));
  }
  m_gain = GainFor(peak);
  return EndPass();
}

// Up to 100 per cent nothing is clipped: whole numbers reach one step less above zero than below.
double CopyCore::GainFor(double peakPercent) const {
  if (peakPercent <= 0) return 100;
  const double wanted = static_cast<double>(m_settings.NormalisePercentage);
  const double reached = wanted <= 100 ? std::min(wanted, 100 * m_destination.Ceiling()) : wanted;
  return reached / peakPercent * 100;
}

enCopyError CopyCore::Copy() {
  if (!Begin()) return cerCancelled;
  if (!m_blocks.Rewind()) return cerSourceNotOpened;
  m_topFound = !m_settings.AutoTop;
  const auto stored = OpenStored();
  while (m_blocks.More()) {
    if (!GoesOn()) return cerCancelled;
    bool tailing = false;
    const std::int64_t block = NextBlock(tailing);
    if (block <= 0 || !(stored ? m_blocks.ReadStored(*stored, block) : m_blocks.Read(block))) break;
    if (!(stored ? m_destination.WriteStored(m_blocks.StoredBlock()) : Deliver(m_blocks.Block(), tailing)))
      return cerDestinationNotCreated;
  }
  if (!m_tail.empty()) m_retained.Prepend(std::move(m_tail));
  return EndPass();
}

// A second of the source, cut so that the audio to retain begins with a block of its own, and the audio
// retained before ends with a block.
std::int64_t CopyCore::NextBlock(bool& tailing) const {
  const std::int64_t position = m_blocks.Position(), mixPoint = m_stretch.mixPoint;
  std::int64_t block = m_source.Format.SampleRate();
  tailing = mixPoint >= 0 && position >= mixPoint;
  if (tailing)
    block = Remaining();
  else if (mixPoint >= 0 && position + block >= mixPoint)
    block = mixPoint - position;
  block = std::min(block, Remaining());
  const std::size_t held = m_retained.RetainedFrames(static_cast<std::size_t>(m_destination.DestChannels()));
  if (held > 0) block = std::min(block, m_blocks.SourceFramesFor(static_cast<std::int64_t>(held)));
  return block;
}

// The source as it is stored, where nothing is to be done to it and float would lose some of it.
std::unique_ptr<StoredFrames> CopyCore::OpenStored() const {
  const bool untouched =
      !m_settings.Normalise && !m_settings.AutoTop && m_stretch.mixPoint < 0 && m_retained.Samples().empty();
  if (!untouched || !m_destination.PassesStored(m_source.Format)) return nullptr;
  return StoredFrames::Open(m_source.Path);
}

void CopyCore::CutTop(std::span<float>& block) {
  const auto channels = static_cast<std::size_t>(m_destination.DestChannels());
  const float level = LevelOfPercent(static_cast<double>(m_settings.AutoTopThreshold));
  block = block.subspan(FramesBelowLevel(block, channels, level) * channels);
  m_topFound = !block.empty();
}

bool CopyCore::Deliver(std::span<float> block, bool tailing) {
  if (m_settings.Normalise) LimitRange(block);
  if (!m_topFound) CutTop(block);
  if (!m_topFound) return true;
  ApplyGain(block, m_gain);
  m_retained.MixUnder(block, static_cast<double>(m_settings.MixVolume));
  if (!tailing) return m_destination.Write(block);
  m_tail.insert(m_tail.end(), block.begin(), block.end());
  return true;
}

}  // namespace qm
