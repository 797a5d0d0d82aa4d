#include "playback/TransportSteps.h"

#include <array>

namespace qm {
namespace {

constexpr std::uint32_t From(enPlayerStatus status) {
  return 1u << status;
}

constexpr std::uint32_t kStopped = From(psOpen) | From(psCued) | From(psPaused);
constexpr std::uint32_t kOpened = kStopped | From(psPlaying);
constexpr std::uint32_t kUnlocked = kOpened | From(psClosed);

struct TransportRow {
  TransportStep step;
  std::uint32_t from;
  enPlayerStatus to;
};

constexpr std::array<TransportRow, kTransportSteps> kRows = {{
    {tsOpen, From(psClosed), psOpen},
    {tsOpenFailed, kUnlocked, psClosed},
    {tsCue, kOpened, psCued},
    {tsCueHook, kOpened, psPaused},
    {tsPlay, From(psCued) | From(psPaused), psPlaying},
    {tsPause, From(psPlaying), psPaused},
    {tsSeekToStart, kStopped, psCued},
    {tsSeek, kStopped, psPaused},
    {tsClose, kUnlocked, psClosed},
    {tsLock, kUnlocked, psLocked},
    {tsUnLock, kUnlocked | From(psLocked), psClosed},
}};

static_assert([] {
  for (std::size_t row = 0; row < kRows.size(); ++row)
    if (kRows[row].step != static_cast<TransportStep>(row)) return false;
  return true;
}());

}  // namespace

bool StepIsLegal(TransportStep step, enPlayerStatus from) {
  return (kRows[step].from & From(from)) != 0;
}

enPlayerStatus StepLeadsTo(TransportStep step) {
  return kRows[step].to;
}

}  // namespace qm
