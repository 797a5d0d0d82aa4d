#pragma once
#include <cstdint>
#include <memory>
#include <vector>

#include "audio/CopyBlocks.h"
#include "audio/CopySource.h"
#include "audio/cCopyAudioFileNCT.h"

namespace qm {

class CopyDestination;
class RetainedAudio;
class StoredFrames;

// The copying of one stretch into an open destination: a normalising pass when one is wanted, then the copy.
// Raises the events of the copier, whose settings it holds as they were at the beginning.
class CopyCore {
 public:
  // `stop`: read behind each event; true cancels as a listener does.
  CopyCore(const cCopyAudioFileNCT& copier, const bool& stop, CopySource& source, const CopyStretch& stretch,
           CopyDestination& destination, RetainedAudio& retained);

  enCopyError Run();
  bool SourceBrokeOff() const { return m_blocks.BrokenOff(); }

 private:
  enCopyError Scan();
  enCopyError Copy();
  enCopyError EndPass();
  bool Begin();
  bool GoesOn();
  bool Progress(std::int32_t percent);
  std::int64_t Remaining() const { return m_stretch.total - m_blocks.Position(); }
  std::int64_t NextBlock(bool& tailing) const;
  void CutTop(std::span<float>& block);
  std::unique_ptr<StoredFrames> OpenStored() const;
  bool Deliver(std::span<float> block, bool tailing);
  double GainFor(double peakPercent) const;

  const cCopyAudioFileNCT::Events& m_events;
  const cCopyAudioFileNCT::Settings m_settings;
  const bool& m_stop;
  CopySource& m_source;
  const CopyStretch& m_stretch;
  CopyDestination& m_destination;
  RetainedAudio& m_retained;
  CopyBlocks m_blocks;
  std::vector<float> m_tail;
  double m_gain = 100;  // per cent
  bool m_topFound = false;
  std::int32_t m_lastPercent = -1;
};

}  // namespace qm
