#pragma once
#include <cstdint>

#include "contract/PlayerVocabulary.h"

namespace qm {

// Everything that changes a player's Status.
enum TransportStep : std::int32_t {
  tsOpen,
  tsOpenFailed,
  tsCue,
  tsCueHook,
  tsPlay,
  tsPause,
  tsSeekToStart,
  tsSeek,
  tsClose,
  tsLock,
  tsUnLock,
};

inline constexpr std::int32_t kTransportSteps = tsUnLock + 1;

// Whether the step may be taken from that status.
bool StepIsLegal(TransportStep step, enPlayerStatus from);
// Where the step leads.
enPlayerStatus StepLeadsTo(TransportStep step);

}  // namespace qm
