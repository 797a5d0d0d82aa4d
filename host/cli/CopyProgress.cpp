#include "cli/CopyProgress.h"

#include "audio/cCopyAudioFileNCT.h"
#include "kits/common/Files.h"

namespace qm::cli {

CopyProgress::CopyProgress(cCopyAudioFileNCT& copier, const StopSignals& signals, std::size_t sources)
    : m_copier(copier), m_work(signals, sources) {
  copier.events.CopyStarted.connect([this](bool& cancel) { cancel = cancel || !m_work.GoesOn(); });
  copier.events.CopyProgress.connect([this](std::int16_t percent, bool& cancel) {
    cancel = cancel || !m_work.GoesOn();
    Show(percent);
  });
  copier.events.CopyFinished.connect([this] { ++m_pass; });
}

void CopyProgress::Next(std::size_t number) {
  m_source = number;
  m_pass = 0;
}

void CopyProgress::Show(std::int16_t percent) {
  const int passes = m_copier.Normalise() ? 2 : 1;
  m_work.Next(m_source, FileNameOf(m_copier.SourceFilename()));
  m_work.Show((100.0 * m_pass + percent) / passes);
}

}  // namespace qm::cli
