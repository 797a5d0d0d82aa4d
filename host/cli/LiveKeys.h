#pragma once
#include "cli/TerminalKeys.h"

namespace qm::cli {

class PlayRun;

// Does what the key stands for while one player is shown live.
void PressKey(const Key& key, PlayRun& run);

}  // namespace qm::cli
