#include <algorithm>

#include "audio/PeakFileTrace.h"
#include "audio/cPeakFile.h"
#include "kits/common/Numbers.h"
#include "services/Diagnostics.h"

namespace qm {
namespace {

constexpr std::int32_t kTraceLevel = 5;

struct ErrorTexts {
  enPeakFileErr error;
  const char* brief;
  const char* user;
};

constexpr ErrorTexts kErrorTexts[] = {
    {pfeCancelled, "Cancelled", "The process was cancelled"},
    {pfeOpenDestFileFail, "The destination file could not be created",
     "The waveform peak file could not be opened"},
    {pfeOpenAudioFileFail, "The Audio file could not be opened", "The audio file could not be opened"},
    {pfeInvalidPeakFile, "The destination file was invalid", "The waveform peak file was not valid"},
    {pfeInvalidAudioFile, "The Audio file was invalid", "The audio file was not valid"},
    {pfeOK, "No problem", ""},
};

const ErrorTexts* Find(enPeakFileErr error) {
  const auto* found = std::ranges::find(kErrorTexts, error, &ErrorTexts::error);
  return found == std::end(kErrorTexts) ? nullptr : found;
}

}  // namespace

std::string cPeakFile::GetLastErrorDescription() const {
  if (const ErrorTexts* texts = Find(m_lastError)) return texts->brief;
  return "Unknown problem, the code was " + NumberText(std::int32_t{m_lastError});
}

std::string cPeakFile::LastErrorDescription() const {
  const ErrorTexts* texts = Find(m_lastError);
  return texts == nullptr ? "" : texts->user;
}

PeakFileTrace::PeakFileTrace(const char* name) : m_name(name) {
  Trace(kTraceLevel, ednOpens, "Start ", name);
}

PeakFileTrace::~PeakFileTrace() {
  const ErrorTexts* texts = m_error == pfeOK ? nullptr : Find(m_error);
  if (texts == nullptr) {
    Trace(kTraceLevel, ednCloses, "Finish ", m_name);
  } else {
    Trace(kTraceLevel, ednCloses, "Exit : ", texts->brief);
  }
}

}  // namespace qm
